/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/members/motor_vehicle.h"

#include "objects/encoders.h"

void _PubSecMotorVehicleObjJson(cJSON* ptObj, const TPubSecMotorVehicleObjInfo* ptVehicle)
{
    PubSecAddOwnMembers(ptObj, pubsec_members::motor_vehicle::c_tTable, ptVehicle);
}
