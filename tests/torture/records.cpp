/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/torture/records.h"

#include <cstring>

namespace torture
{

namespace
{

/* Fills records in place and gives their pointers and numbers values that hold. */
class Filler
{
  public:
    Filler(const Source& source, Records& records) : m_source(source), m_records(records)
    {
    }

    void all()
    {
        m_source.fill(m_records.text, sizeof(m_records.text));
        m_records.text[sizeof(m_records.text) - 1] = '\0';
        each(&m_records.feature, 1);
        each(m_records.subImages);
        each(m_records.images);
        objects();
        each(m_records.access);
        each(m_records.pictures);
        each(m_records.slices);
        each(m_records.files);
        each(m_records.violations);
        each(m_records.nonMotorViolations);
        each(&m_records.sliceObject, 1);
        sensors();
        each(&m_records.log, 1);
        each(m_records.entries);
        each(m_records.notifications);
        each(&m_records.notificationList, 1);
    }

  private:
    void objects()
    {
        each(m_records.persons);
        each(m_records.faces);
        each(m_records.motorVehicles);
        each(m_records.nonMotorVehicles);
        each(m_records.things);
        each(m_records.scenes);
    }

    void sensors()
    {
        each(&m_records.gps, 1);
        each(&m_records.wifiDevice, 1);
        each(m_records.wifiUsers);
        each(m_records.wifiImeis);
        each(&m_records.wifi, 1);
        each(&m_records.rfidDevice, 1);
        each(m_records.rfidUsers);
        each(&m_records.rfid, 1);
    }

    template <typename Record> void each(Record* records, size_t count)
    {
        m_source.fill(records, count * sizeof(Record));
        for (size_t index = 0; index < count; ++index)
        {
            link(records[index]);
        }
    }

    template <typename Record, size_t Count> void each(Record (&records)[Count])
    {
        each(&records[0], Count);
    }

    template <typename Target> Target* orNull(Target* target)
    {
        return m_source.isNull() ? nullptr : target;
    }

    /* Where the number is unsigned there are none below 0. */
    u32 unsignedNumber()
    {
        const s32 number = m_source.number();
        return number < 0 ? 0 : static_cast<u32>(number);
    }

    void link(TPubSecFeatureInfo& feature)
    {
        feature.pchFeatureData = orNull(m_records.text);
    }

    void link(TPubSecSubImageInfo& image)
    {
        image.pchData = orNull(m_records.text);
        link(image.tFeatureInfo);
    }

    void link(TPubSecImageObjInfo& image)
    {
        image.ptFeatureInfo = orNull(&m_records.feature);
    }

    template <typename Object> void linkSubImages(Object& object)
    {
        object.nSubImageNum = m_source.number();
        object.ptSubImageList = orNull(m_records.subImages);
    }

    void link(TPubSecPersonnelObjInfo& person)
    {
        linkSubImages(person);
    }

    void link(TPubSecFaceObjInfo& face)
    {
        linkSubImages(face);
        face.ptFeatureInfo = orNull(&m_records.feature);
    }

    void link(TPubSecMotorVehicleObjInfo& vehicle)
    {
        linkSubImages(vehicle);
        vehicle.ptFeatureInfo = orNull(&m_records.feature);
    }

    void link(TPubSecNonMotorVehicleObjInfo& vehicle)
    {
        linkSubImages(vehicle);
    }

    void link(TPubSecThingObjInfo& thing)
    {
        linkSubImages(thing);
    }

    void link(TPubSecSceneObjInfo& scene)
    {
        linkSubImages(scene);
    }

    void link(TPubSecAccessRecordInfo& access)
    {
        access.dwRecordNum = static_cast<u32>(m_source.number());
    }

    void link(TPubSecIntelliPicObj& picture)
    {
        picture.ptImageInfo = orNull(m_records.images);
        picture.ptMotorVehicle = orNull(m_records.motorVehicles);
        picture.ptPersonnel = orNull(m_records.persons);
        picture.ptFace = orNull(m_records.faces);
        picture.ptNonMotorVehicle = orNull(m_records.nonMotorVehicles);
        picture.ptThing = orNull(m_records.things);
        picture.ptScene = orNull(m_records.scenes);
        picture.ptAccessRecord = orNull(m_records.access);
        for (s32* number : {&picture.nImageNum, &picture.nPersonnelNum, &picture.nFaceNum, &picture.nMotorVehicleNum,
                            &picture.nNonMotorVehicleNum, &picture.nThingNum, &picture.nSceneNum})
        {
            *number = m_source.number();
        }
        picture.pchData = orNull(m_records.text);
    }

    void link(TPubSecVideoSliceInfo& slice)
    {
        slice.dwSubImageNum = static_cast<u32>(m_source.number());
        slice.ptSubImageList = orNull(m_records.subImages);
    }

    void link(TPubSecFileInfo&)
    {
    }

    void link(TPubSecIllegalRecordInfo& violation)
    {
        violation.dwSubImageNum = static_cast<u32>(m_source.number());
        violation.ptSubImageList = orNull(m_records.subImages);
        violation.dwIllegalRecordNum = unsignedNumber();
        for (const char** text : {&violation.pchMotorVehicleIDs, &violation.pchNonMotorVehicleIDs,
                                  &violation.pchPersonIDs, &violation.pchVideoIDs, &violation.pchAlogorithmName})
        {
            *text = orNull(m_records.text);
        }
    }

    void link(TPubSecNonMotorIllegalRecordInfo& violation)
    {
        violation.wSubImageNum = static_cast<u16>(unsignedNumber());
        violation.ptSubImageList = orNull(m_records.subImages);
    }

    void link(TPubSecVideoSliceObj& object)
    {
        object.ptVideoSlice = orNull(m_records.slices);
        object.ptFile = orNull(m_records.files);
        object.ptMotorVehicle = orNull(m_records.motorVehicles);
        object.ptPerson = orNull(m_records.persons);
        object.ptFace = orNull(m_records.faces);
        object.ptNonMotorVehicle = orNull(m_records.nonMotorVehicles);
        object.ptThing = orNull(m_records.things);
        object.ptScene = orNull(m_records.scenes);
        object.ptIllegalRecord = orNull(m_records.violations);
        object.ptNonMotorIllegalRecord = orNull(m_records.nonMotorViolations);
        for (s32* number : {&object.nVideoSliceNum, &object.nPersonNum, &object.nFaceNum, &object.nMotorVehicleNum,
                            &object.nNonMotorVehicleNum, &object.nThingNum, &object.nSceneNum, &object.nFileNum,
                            &object.nFilePersonNum, &object.nFileFaceNum, &object.nFileMotorVehicleNum,
                            &object.nFileNonMotorVehicleNum, &object.nFileThingNum, &object.nFileSceneNum})
        {
            *number = m_source.number();
        }
        object.dwNonMotorIllegalRecordNum = unsignedNumber();
        object.pchData = orNull(m_records.text);
    }

    void link(TPubSecGpsInfo&)
    {
    }

    void link(TPubSecWifiDeviceInfo& device)
    {
        device.ptGPSData = orNull(&m_records.gps);
    }

    void link(TPubSecWifiUserInfo&)
    {
    }

    void link(TPubSecWifiImeiInfo& imei)
    {
        imei.dwImeiNum = unsignedNumber();
    }

    void link(TPubSecWifiData& wifi)
    {
        wifi = {m_source.number(), orNull(&m_records.wifiDevice), orNull(m_records.wifiUsers),
                orNull(m_records.wifiImeis)};
    }

    void link(TPubSecRFIDDeviceInfo&)
    {
    }

    void link(TPubSecRFIDUserInfo&)
    {
    }

    void link(TPubSecRFIDData& rfid)
    {
        rfid = {m_source.number(), orNull(&m_records.rfidDevice), orNull(m_records.rfidUsers)};
    }

    void link(TPubSecLogInfo&)
    {
    }

    /* Tested whole, the low half counts: with a half above it is a number of entries all the same. */
    u32 dispositionNumber()
    {
        return unsignedNumber() | (m_source.isNull() ? 0x10000u : 0u);
    }

    void link(TPubSecDispositionListObj& entry)
    {
        entry = {
            dispositionNumber(), orNull(m_records.persons), dispositionNumber(), orNull(m_records.motorVehicles),
            dispositionNumber(), orNull(m_records.faces),   dispositionNumber(), orNull(m_records.nonMotorVehicles)};
    }

    void link(TPubSecDispoNotifyObj& notification)
    {
        link(notification.tPerson);
        link(notification.tMotorVehicle);
        link(notification.tFace);
        link(notification.tNonMotorVehicle);
        for (u32* number : {&notification.dwPersonNum, &notification.dwMotorVehicleNum, &notification.dwFaceNum,
                            &notification.dwNonMotorVehicleNum})
        {
            *number = unsignedNumber();
        }
        notification.dwDispositionNum = dispositionNumber();
        notification.ptDispositionList = orNull(m_records.entries);
    }

    void link(TPubsecDispositionNotificationList& list)
    {
        list.wObjectNum = static_cast<u16>(unsignedNumber());
        list.aptDispoNotifyObj = orNull(m_records.notifications);
        list.dwObjectForm = unsignedNumber();
    }

    const Source& m_source;
    Records& m_records;
};

} // namespace

Source everything()
{
    return {[](void* bytes, size_t size) { std::memset(bytes, 'x', size); }, [] { return 1; }, [] { return false; }};
}

Records::Records(const Source& source)
{
    Filler(source, *this).all();
}

} // namespace torture
