/* SPDX-License-Identifier: Apache-2.0 */
/*
 * One of everything that a host can post, every byte of it taken from a source: texts without an end, flags and numbers
 * of any value. Only pointers are kept valid, and the numbers of entries are no higher than what is there.
 */
#ifndef PUBSEC_TESTS_TORTURE_RECORDS_H
#define PUBSEC_TESTS_TORTURE_RECORDS_H

#include <cstddef>
#include <functional>

#include <pubsecstack/pubsecstack.h>

namespace torture
{

/* Where bytes and numbers of entries come from. */
struct Source
{
    std::function<void(void* bytes, size_t size)> fill;
    std::function<s32()> number;  /* of entries: -1, 0, 1 or 2 */
    std::function<bool()> isNull; /* whether a pointer is */
};

/* Every byte 'x', one entry in every list, no pointer null: all that can be written is. */
Source everything();

struct Records
{
    explicit Records(const Source& source);
    Records(const Records&) = delete;
    Records& operator=(const Records&) = delete;

    static constexpr size_t kEach = 2;

    char text[48]; /* what text pointers point at; ends in a NUL */
    TPubSecFeatureInfo feature;
    TPubSecSubImageInfo subImages[kEach];
    TPubSecImageObjInfo images[kEach];
    TPubSecPersonnelObjInfo persons[kEach];
    TPubSecFaceObjInfo faces[kEach];
    TPubSecMotorVehicleObjInfo motorVehicles[kEach];
    TPubSecNonMotorVehicleObjInfo nonMotorVehicles[kEach];
    TPubSecThingObjInfo things[kEach];
    TPubSecSceneObjInfo scenes[kEach];
    TPubSecAccessRecordInfo access[kEach];
    TPubSecIntelliPicObj pictures[kEach];
    TPubSecVideoSliceInfo slices[kEach];
    TPubSecFileInfo files[kEach];
    TPubSecIllegalRecordInfo violations[kEach];
    TPubSecNonMotorIllegalRecordInfo nonMotorViolations[kEach];
    TPubSecVideoSliceObj sliceObject;
    TPubSecGpsInfo gps;
    TPubSecWifiDeviceInfo wifiDevice;
    TPubSecWifiUserInfo wifiUsers[kEach];
    TPubSecWifiImeiInfo wifiImeis[kEach];
    TPubSecWifiData wifi;
    TPubSecRFIDDeviceInfo rfidDevice;
    TPubSecRFIDUserInfo rfidUsers[kEach];
    TPubSecRFIDData rfid;
    TPubSecLogInfo log;
    TPubSecDispositionListObj entries[kEach];
    TPubSecDispoNotifyObj notifications[kEach];
    TPubsecDispositionNotificationList notificationList;
};

} // namespace torture

#endif
