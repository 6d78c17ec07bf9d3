/* SPDX-License-Identifier: Apache-2.0 */
/* The members demanded of each record, one source a family. */
#ifndef TESTS_OBJECTS_DEMANDED_H
#define TESTS_OBJECTS_DEMANDED_H

#include "tests/objects/record_case.h"

namespace records
{

const std::vector<Member>& FeatureMembers();
const std::vector<Member>& ImageInfoMembers();
const std::vector<Member>& SubImageMembers();
const std::vector<Member>& FaceMembers();
const std::vector<Member>& PersonMembers();
const std::vector<Member>& MotorVehicleMembers();
const std::vector<Member>& NonMotorVehicleMembers();
const std::vector<Member>& ThingMembers();
const std::vector<Member>& SceneMembers();
const std::vector<Member>& VideoSliceMembers();
const std::vector<Member>& FileMembers();
const std::vector<Member>& IllegalRecordMembers();
const std::vector<Member>& NonMotorIllegalRecordMembers();
const std::vector<Member>& AccessRecordMembers();
const std::vector<Member>& GpsMembers();
const std::vector<Member>& WifiDeviceMembers();
const std::vector<Member>& WifiUserMembers();
const std::vector<Member>& WifiImeiMembers();
const std::vector<Member>& RfidDeviceMembers();
const std::vector<Member>& RfidUserMembers();
const std::vector<Member>& LogEventMembers();
const std::vector<Member>& NotificationMembers();

} // namespace records

#endif
