/* SPDX-License-Identifier: Apache-2.0 */
#include <cstdio>

#include <pubsecstack/pubsecstack.h>

int main()
{
    TPubSecFaceObjInfo tFace = {};
    const u32 dwResult = PubSecPostImageFace(0, &tFace, 1);
    std::printf("%s\n", PubSecResultText(dwResult));
    return dwResult == PUBSEC_ERR_NOT_REGISTERED && PubSecGetRegisterStatus(0) == 0 ? 0 : 1;
}
