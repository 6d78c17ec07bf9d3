/* SPDX-License-Identifier: Apache-2.0 */
/* A host in plain C: configures the stack, starts it, asks, ends it. Gives the number of what went wrong, or 0. */
#include <string.h>

#include <pubsecplatform_posix.h>
#include <pubsecstack/pubsecstack.h>

#include "prototypes.h"

static void OnStatus(u32 dwPlatform, u32 dwStatus, const TPubSecPlatRegInfo* ptInfo)
{
    (void)dwPlatform;
    (void)dwStatus;
    (void)ptInfo;
}

/* Whether the linker has found every function. */
static int HasAll(void)
{
#define COUNT(result, name, arguments) nFound += (int)(sizeof(&name) > 0 && &name != 0);
#define ONE(result, name, arguments) +1
    int nFound = 0;
    PROTOTYPES(COUNT)
    return nFound == 0 PROTOTYPES(ONE);
#undef ONE
#undef COUNT
}

static int Run(void)
{
    TPubSecPlatRegInfo tInfo;
    TPubSecFaceObjInfo tFace;
    char achText[16];
    memset(&tInfo, 0, sizeof(tInfo));
    memset(&tFace, 0, sizeof(tFace));
    strcpy(tInfo.achServerIP, "127.0.0.1");
    if (PubSecStackUpdateRegisterInfo(0, &tInfo) != PUBSEC_OK)
    {
        return 1;
    }
    PubSecStackRegisterCB(OnStatus);
    if (PubSecStackInit() != PUBSEC_OK || PubSecStackInit() != PUBSEC_ERR_ALREADY_INIT)
    {
        return 2;
    }
    if (PubSecGetRegisterStatus(0) != 0 || PubSecPostImageFace(0, &tFace, 1) != PUBSEC_ERR_NOT_REGISTERED)
    {
        return 3;
    }
    if (PubSecStackBase64Encode((const u8*)"foo", 3, achText, sizeof(achText)) != PUBSEC_OK ||
        strcmp(achText, "Zm9v") != 0)
    {
        return 4;
    }
    if (strcmp(PubSecResultText(PUBSEC_ERR_NOT_FOUND), "HTTP 404") != 0)
    {
        return 5;
    }
    PubSecStackUnInit();
    return PosixPlatformStop() == 0 ? 0 : 6;
}

int main(void)
{
    return HasAll() ? Run() : 7;
}
