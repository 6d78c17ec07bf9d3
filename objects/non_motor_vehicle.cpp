/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/non_motor_vehicle.h"

#include "objects/encoders.h"

void _PubSecNonMotorVehicleObjJson(cJSON* ptObj, const TPubSecNonMotorVehicleObjInfo* ptVehicle)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::non_motor_vehicle::c_tTable, ptVehicle);
}
