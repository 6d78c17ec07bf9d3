/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/video_slice.h"

#include "objects/encoders.h"

void _PubSecVideoSliceInfoJson(cJSON* ptObj, const TPubSecVideoSliceInfo* ptSlice)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::video_slice::c_tTable, ptSlice);
}
