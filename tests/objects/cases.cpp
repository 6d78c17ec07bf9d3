/* SPDX-License-Identifier: Apache-2.0 */
#include "objects/encoders.h"
#include "tests/objects/demanded.h"

namespace records
{

const std::vector<Case>& AllCases()
{
    static const std::vector<Case> cases = {
        CaseOf("ImageInfo", ImageInfoMembers(), _PubSecImageInfoJson),
        CaseOf("SubImage", SubImageMembers(), _PubSecSubImgObjJson),
        CaseOf("Face", FaceMembers(), _PubSecFaceObjListObjJson),
        CaseOf("Person", PersonMembers(), _PubSecPersonListObjJson),
        CaseOf("MotorVehicle", MotorVehicleMembers(), _PubSecMotorVehicleObjJson),
        CaseOf("NonMotorVehicle", NonMotorVehicleMembers(), _PubSecNonMotorVehicleObjJson),
        CaseOf("Thing", ThingMembers(), _PubSecThingObjJson),
        CaseOf("Scene", SceneMembers(), _PubSecPlaceObjJson),
        CaseOf("VideoSlice", VideoSliceMembers(), _PubSecVideoSliceInfoJson),
        CaseOf("File", FileMembers(), _PubSecFileInfoJson),
        CaseOf("IllegalRecord", IllegalRecordMembers(), _PubSecIllRecdObjJson),
        CaseOf("NonMotorIllegalRecord", NonMotorIllegalRecordMembers(), _PubSecNonMotorIllRecdObjJson),
        CaseOf("AccessRecord", AccessRecordMembers(), _PubSecAccRecdObjJson),
        CaseOf("Gps", GpsMembers(), _PubSecGpsMsgObject),
        CaseOf("WifiDevice", WifiDeviceMembers(), _PubSecWifiDetectionInfo),
        CaseOf("WifiUser", WifiUserMembers(), _PubSecWifiUserObjJson),
        CaseOf("WifiImei", WifiImeiMembers(), _PubSecWifiIMEIObjJson),
        CaseOf("RfidDevice", RfidDeviceMembers(), _PubSecRFIDInfo),
        CaseOf("RfidUser", RfidUserMembers(), _PubSecRFIDUserObjJson),
    };
    return cases;
}

} // namespace records
