/* SPDX-License-Identifier: Apache-2.0 */
#include <stdio.h>
#include <string.h>

#include <pubsecstack/pubsecstack.h>

int main(void)
{
    TPubSecObjectIdParam tParam;
    TPubSecFaceObjInfo tFace;
    char achId[42];
    memset(&tFace, 0, sizeof(tFace));
    memset(&tParam, 0, sizeof(tParam));
    strcpy(tParam.achDeviceID, "34020000001190000001");
    strcpy(tParam.achDateTime, "20240229120000");
    tParam.eObjType = 1;
    tParam.qwSerialNo = 7;
    if (PubSecStackCreat_BasicObjectIdType(&tParam, achId, sizeof(achId)) != PUBSEC_OK)
    {
        return 1;
    }
    printf("%s\n", achId);
    /* Nobody is registered; but all that posts need is linked. */
    if (PubSecPostImageFace(0, &tFace, 1) != PUBSEC_ERR_NOT_REGISTERED)
    {
        return 1;
    }
    return strcmp(achId, "34020000001190000001022024022912000000007") == 0 ? 0 : 1;
}
