/* SPDX-License-Identifier: Apache-2.0 */
/* The least that a host does: registers, posts one face with its picture, unregisters. Usage: minimal_host HOST PORT
 * JPEG */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <pubsecplatform_posix.h>
#include <pubsecstack/pubsecstack.h>

#define DEVICE_ID "34020000001190000001"

static void OnStatus(u32 dwPlatform, u32 dwStatus, const TPubSecPlatRegInfo* ptInfo)
{
    fprintf(stderr, "platform %u at %s: %s\n", dwPlatform, ptInfo->achServerIP,
            dwStatus != 0 ? "registered" : "not registered");
}

/* Waits until the platform's status is the one asked for, half a minute at most. Returns 1 when it is. */
static int WaitForStatus(u32 dwStatus)
{
    for (int nTenths = 0; nTenths < 300 && PubSecGetRegisterStatus(0) != dwStatus; nTenths++)
    {
        AppDelay(100);
    }
    return PubSecGetRegisterStatus(0) == dwStatus;
}

/* The file as base64, which the caller frees; null when it cannot be read. */
static char* ReadPicture(const char* pchFile)
{
    const u32 dwSize = PubSecStackGet_FileSize(pchFile);
    FILE* ptFile = fopen(pchFile, "rb");
    if (ptFile == NULL || dwSize == UINT32_MAX)
    {
        return NULL;
    }
    const u32 dwTextSize = PUBSEC_BASE64_SIZE(dwSize);
    u8* pbyBytes = malloc(dwSize);
    char* pchText = malloc(dwTextSize);
    if (pbyBytes == NULL || pchText == NULL || fread(pbyBytes, 1, dwSize, ptFile) != dwSize ||
        PubSecStackBase64Encode(pbyBytes, dwSize, pchText, dwTextSize) != PUBSEC_OK)
    {
        free(pchText);
        pchText = NULL;
    }
    free(pbyBytes);
    fclose(ptFile);
    return pchText;
}

static u32 PostFace(char* pchPicture)
{
    TPubSecImageCntIdParam tId = {.tBasic = {.achDeviceID = DEVICE_ID, .eObjType = 1}, .eImageCntType = 5};
    TPubSecSubImageInfo tSubImage = {.achType = "14", .achFileFormat = "Jpeg", .nWidth = -1, .nHeight = -1};
    TPubSecFaceObjInfo tFace = {.achDeviceID = DEVICE_ID, .dwInfoKind = 1};

    PubSecStackCreat_DateTimeEx((u64)PosixPlatformDeviceClockMs(), tFace.achShotTime, sizeof(tFace.achShotTime));
    memcpy(tId.tBasic.achDateTime, tFace.achShotTime, sizeof(tFace.achShotTime));
    PubSecStackCreat_BasicObjectIdType(&tId.tBasic, tFace.achSourceID, sizeof(tFace.achSourceID));
    PubSecStackCreat_ImageCntObjectIdType(&tId, tFace.achFaceID, sizeof(tFace.achFaceID));
    memcpy(tSubImage.achImageID, tFace.achSourceID, sizeof(tFace.achSourceID));
    tSubImage.pchData = pchPicture;
    tFace.nSubImageNum = 1;
    tFace.ptSubImageList = &tSubImage;
    return PubSecPostImageFace(0, &tFace, 1);
}

int main(int nCount, char** apchArguments)
{
    char* pchPicture = nCount == 4 ? ReadPicture(apchArguments[3]) : NULL;
    if (pchPicture == NULL)
    {
        fprintf(stderr, "usage: minimal_host HOST PORT JPEG\n");
        return 2;
    }
    TPubSecPlatRegInfo tPlatform = {.dwEnable = 1,
                                    .achDeviceID = DEVICE_ID,
                                    .achUserName = "admin",
                                    .achPassword = "viewlib",
                                    .dwKeepaliveSec = 60,
                                    .dwSyncTimeMin = 60};
    snprintf(tPlatform.achServerIP, sizeof(tPlatform.achServerIP), "%s", apchArguments[1]);
    tPlatform.dwServerPort = (u32)strtoul(apchArguments[2], NULL, 10);

    PubSecStackRegisterCB(OnStatus);
    PubSecStackUpdateRegisterInfo(0, &tPlatform);
    PubSecStackInit();
    u32 dwResult = PUBSEC_ERR_NOT_REGISTERED;
    if (WaitForStatus(1))
    {
        dwResult = PostFace(pchPicture);
    }
    fprintf(stderr, "face: %u %s\n", dwResult, PubSecResultText(dwResult));

    tPlatform.dwEnable = 0; /* the register loop unregisters on its next pass */
    PubSecStackUpdateRegisterInfo(0, &tPlatform);
    const int nLeft = WaitForStatus(0);
    PubSecStackUnInit();
    PosixPlatformStop(); /* returns when the exchange that is under way has ended */
    free(pchPicture);
    return dwResult == PUBSEC_OK && nLeft ? 0 : 1;
}
