/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/image.h"

#include "objects/encoders.h"

void _PubSecImageInfoJson(cJSON* ptObj, const TPubSecImageObjInfo* ptImageInfo)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::image_info::c_tTable, ptImageInfo);
}

void _PubSecSubImgObjJson(cJSON* ptObj, const TPubSecSubImageInfo* ptSubImage)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::sub_image::c_tTable, ptSubImage);
}
