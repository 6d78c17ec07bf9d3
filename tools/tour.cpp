/* SPDX-License-Identifier: Apache-2.0 */
#include "tour.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "device_session.h"

namespace device
{

namespace
{

/* What can be seen in the sample picture, beside the face. */
constexpr Box c_person = {20, 14, 365, 511};
constexpr Box c_helmet = {278, 345, 498, 511};
constexpr Box c_spacecraft = {355, 0, 470, 288};

/* Kinds of content, as the identifier builder counts them. */
constexpr u32 c_personContent = 0;
constexpr u32 c_motorContent = 1;
constexpr u32 c_nonMotorContent = 2;
constexpr u32 c_faceContent = 5;
constexpr u32 c_otherContent = 99;

constexpr std::size_t c_videoSize = std::size_t{300} * 1024;
constexpr u32 c_cutAt = 128 * 1024;

/* What the tour writes into records is its own, so a text that does not fit is a mistake in here. */
template <std::size_t size> void put(char (&field)[size], const std::string& text)
{
    if (text.size() >= size)
    {
        throw std::logic_error("\"" + text + "\" is longer than " + std::to_string(size - 1) + " characters");
    }
    std::memcpy(field, text.c_str(), text.size() + 1);
}

/* A file of its own that goes when it does. */
class TemporaryFile
{
  public:
    explicit TemporaryFile(const std::vector<unsigned char>& content)
    {
        const char* folder = std::getenv("TMPDIR");
        m_path = std::string(folder != nullptr ? folder : "/tmp") + "/pubsec-device.XXXXXX";
        const int descriptor = mkstemp(m_path.data());
        std::FILE* file = descriptor >= 0 ? fdopen(descriptor, "wb") : nullptr;
        const bool written = file != nullptr && std::fwrite(content.data(), 1, content.size(), file) == content.size();
        if (file == nullptr || std::fclose(file) != 0 || !written)
        {
            throw std::runtime_error("no temporary file in " + m_path);
        }
    }
    ~TemporaryFile()
    {
        unlink(m_path.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const char* path() const
    {
        return m_path.c_str();
    }

  private:
    std::string m_path;
};

/* Bytes that repeat nowhere near each other, the same in every run. */
std::vector<unsigned char> madeUpVideo()
{
    std::vector<unsigned char> video(c_videoSize);
    u32 state = 1;
    for (unsigned char& byte : video)
    {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<unsigned char>(state >> 24);
    }
    return video;
}

std::string base64Of(const std::vector<unsigned char>& bytes)
{
    std::string text(PUBSEC_BASE64_SIZE(bytes.size()), '\0');
    PubSecStackBase64Encode(bytes.data(), static_cast<u32>(bytes.size()), text.data(), static_cast<u32>(text.size()));
    text.pop_back();
    return text;
}

} // namespace

Tour::Tour(Report& report, const Options& options, Picture& picture, const Identity& identity)
    : m_report(report), m_options(options), m_picture(picture), m_identity(identity),
      m_subImage(subImageRecord(options, picture, identity))
{
}

void Tour::run()
{
    wholePicture();
    objects();
    slice();
    file();
    violation();
    accessRecord();
    sensors();
    disposition();
    logEvent();
}

std::string Tour::objectId(u64 serial) const
{
    TPubSecObjectIdParam param = {};
    put(param.achDeviceID, m_options.deviceId);
    put(param.achDateTime, m_identity.shotTime);
    param.eObjType = 1;
    param.qwSerialNo = serial;
    char id[PUBSEC_OBJECT_ID_SIZE] = {};
    PubSecStackCreat_BasicObjectIdType(&param, id, sizeof(id));
    return id;
}

std::string Tour::contentId(u32 kind, u64 serial) const
{
    TPubSecImageCntIdParam param = {};
    put(param.tBasic.achDeviceID, m_options.deviceId);
    put(param.tBasic.achDateTime, m_identity.shotTime);
    param.tBasic.eObjType = 1;
    param.tBasic.qwSerialNo = 1; /* all was seen in the one picture */
    param.eImageCntType = kind;
    param.qwImageSerialNo = serial;
    char id[PUBSEC_IMAGE_CNT_ID_SIZE] = {};
    PubSecStackCreat_ImageCntObjectIdType(&param, id, sizeof(id));
    return id;
}

void Tour::row(const char* operation, const std::string& request, u32 code, const std::string& remark)
{
    m_report.row(operation, request, code, remark);
}

/* ------------------------------------------------------------------------------------------------------ objects */

TPubSecPersonnelObjInfo Tour::person() const
{
    TPubSecPersonnelObjInfo record = {};
    put(record.achPersonID, contentId(c_personContent, 1));
    put(record.achSourceID, m_identity.imageId);
    put(record.achDeviceID, m_options.deviceId);
    record.dwInfoKind = 1;
    record.bLeftTopXValid = record.bLeftTopYValid = record.bRightBtmXValid = record.bRightBtmYValid = 1;
    record.nLeftTopX = c_person.left;
    record.nLeftTopY = c_person.top;
    record.nRightBtmX = c_person.right;
    record.nRightBtmY = c_person.bottom;
    put(record.achLocationMarkTime, m_identity.entryTime);
    put(record.achPersonAppearTime, m_identity.shotTime);
    put(record.achPersonDisAppearTime, m_identity.shotTime);
    put(record.achName, "Inv"); /* not known: left out */
    return record;
}

TPubSecFaceObjInfo Tour::face()
{
    TPubSecFaceObjInfo record = faceRecord(m_options, m_identity, m_subImage);
    put(record.achFaceID, contentId(c_faceContent, 2));
    return record;
}

TPubSecThingObjInfo Tour::thing(u64 serial, const char* name, const Box& box) const
{
    TPubSecThingObjInfo record = {};
    put(record.achThingID, contentId(c_otherContent, serial));
    put(record.achSourceID, m_identity.imageId);
    put(record.achDeviceID, m_options.deviceId);
    record.dwInfoKind = 1;
    record.nLeftTopX = box.left;
    record.nLeftTopY = box.top;
    record.nRightBtmX = box.right;
    record.nRightBtmY = box.bottom;
    put(record.achName, name);
    put(record.achShape, "other");
    put(record.achColor, "2");
    return record;
}

TPubSecMotorVehicleObjInfo Tour::motorVehicle() const
{
    TPubSecMotorVehicleObjInfo record = {};
    put(record.achMotorVehicleID, contentId(c_motorContent, 1));
    put(record.achSourceID, m_identity.imageId);
    put(record.achTollgateID, m_options.deviceId);
    put(record.achDeviceID, m_options.deviceId);
    record.dwInfoKind = 1;
    record.dwHasPlate = 1;
    put(record.achPlateColor, "5");
    put(record.achPlateNo, "A12345");
    record.bSpeedValid = 1;
    record.dSpeed = 47.5;
    put(record.achPassTime, m_identity.shotTime);
    return record;
}

/* Absent numbers of this record are -1. */
TPubSecNonMotorVehicleObjInfo Tour::nonMotorVehicle() const
{
    TPubSecNonMotorVehicleObjInfo record = {};
    record.dSpeed = record.dShotPlaceLongitude = record.dShotPlaceLatitude = -1.0;
    record.nUsingPropertiesCode = record.nVehicleLength = record.nVehicleWidth = record.nVehicleHeight = -1;
    record.nFilmColor = record.nIsModified = record.nSourceFactory = record.nDeviceClass = record.nSourceType = -1;
    record.nState = record.nHasParasol = record.nHasRainshed = record.nHasTakeoutBox = record.nHasHood = -1;
    record.nCyclingType = 1;
    record.nCyclingPersonNum = 1;
    record.nHasHelmet = 1;
    record.nHasPassenger = 0;
    put(record.achNonMotorVehicleID, contentId(c_nonMotorContent, 1));
    put(record.achSourceID, m_identity.imageId);
    put(record.achDeviceID, m_options.deviceId);
    record.dwInfoKind = 1;
    put(record.achMarkTime, m_identity.entryTime);
    put(record.achAppearTime, m_identity.shotTime);
    put(record.achDisappearTime, m_identity.shotTime);
    put(record.achVehicleColor, "1");
    return record;
}

TPubSecSceneObjInfo Tour::scene() const
{
    TPubSecSceneObjInfo record = {};
    put(record.achSceneID, contentId(c_otherContent, 9));
    put(record.achSourceID, m_identity.imageId);
    put(record.achDeviceID, m_options.deviceId);
    record.dwInfoKind = 1;
    put(record.achBeginTime, m_identity.shotTime);
    put(record.achSceneDescribe, "a portrait before a model");
    record.nRoadTerraintype = -1;
    return record;
}

void Tour::wholePicture()
{
    TPubSecImageObjInfo image = imageRecord(m_options, m_picture, m_identity);
    TPubSecPersonnelObjInfo persons[] = {person()};
    TPubSecFaceObjInfo faces[] = {face()};
    TPubSecThingObjInfo things[] = {thing(1, "helmet", c_helmet), thing(2, "model of a spacecraft", c_spacecraft)};
    TPubSecIntelliPicObj gathered = {};
    gathered.ptImageInfo = &image;
    gathered.nImageNum = 1;
    gathered.ptPersonnel = persons;
    gathered.nPersonnelNum = 1;
    gathered.ptFace = faces;
    gathered.nFaceNum = 1;
    gathered.ptThing = things;
    gathered.nThingNum = 2;
    gathered.pchData = m_picture.base64.c_str();
    row("picture", "POST /VIID/Images", PubSecPostImage(c_platform, &gathered, nullptr));
    row("image info", "POST /VIID/Images", PubSecPostImageSingle(c_platform, &gathered.ptImageInfo));
    row("image data", "POST /VIID/Images/<id>/Data",
        PubSecPostImageData(c_platform, m_identity.imageId, m_picture.base64.c_str()));
}

void Tour::objects()
{
    const TPubSecPersonnelObjInfo persons[] = {person()};
    const TPubSecFaceObjInfo faces[] = {face()};
    const TPubSecMotorVehicleObjInfo motors[] = {motorVehicle()};
    const TPubSecNonMotorVehicleObjInfo nonMotors[] = {nonMotorVehicle()};
    const TPubSecThingObjInfo things[] = {thing(1, "helmet", c_helmet)};
    const TPubSecSceneObjInfo scenes[] = {scene()};
    row("faces", "POST /VIID/Faces", PubSecPostImageFace(c_platform, faces, 1));
    row("persons", "POST /VIID/Persons", PubSecPostImagePerson(c_platform, persons, 1));
    row("motors", "POST /VIID/MotorVehicles", PubSecPostImageMotorVehicle(c_platform, motors, 1));
    row("non-motors", "POST /VIID/NonMotorVehicles", PubSecPostImageNonMotVeh(c_platform, nonMotors, 1));
    row("things", "POST /VIID/Things", PubSecPostImageThing(c_platform, things, 1));
    row("scenes", "POST /VIID/Scenes", PubSecPostImageScene(c_platform, scenes, 1));
}

/* ------------------------------------------------------------------------------------------- slices and files */

void Tour::slice()
{
    const std::string id = objectId(101);
    TPubSecVideoSliceInfo record = {};
    put(record.achVideoID, id);
    record.dwInfoKind = 1;
    put(record.achVideoSource, "02");
    put(record.achDeviceID, m_options.deviceId);
    put(record.achFileFormat, "Ps");
    put(record.achCodedFormat, "H264");
    put(record.achBeginTime, m_identity.shotTime);
    put(record.achEndTime, m_identity.entryTime);
    TPubSecFaceObjInfo faces[] = {face()};
    TPubSecVideoSliceObj gathered = {};
    gathered.ptVideoSlice = &record;
    gathered.nVideoSliceNum = 1;
    gathered.ptFace = faces;
    gathered.nFaceNum = 1;
    row("slice", "POST /VIID/VideoSlices", PubSecPostVideoSlice(c_platform, &gathered, nullptr));
    const std::string data = base64Of(std::vector<unsigned char>(30000, 0x5A));
    row("slice data", "POST /VIID/VideoSlices/<id>/Data",
        PubSecPostVideoSliceDataEx(c_platform, id.c_str(), data.c_str()));
}

void Tour::file()
{
    const std::vector<unsigned char> video = madeUpVideo();
    const TemporaryFile whole(video);
    const std::string id = objectId(102);
    TPubSecFileInfo record = {};
    record.dwInfoKind = 1;
    put(record.achSource, "02");
    put(record.achFileName, "video.ps");
    put(record.achFileFormat, "Ps");
    put(record.achTitle, "a made-up video");
    put(record.achFileID, id);
    record.nFileSize = static_cast<s32>(PubSecStackGet_FileSize(whole.path()));
    char hash[PUBSEC_FILE_HASH_SIZE] = {};
    PubSecStackCreat_FileHash(whole.path(), hash, sizeof(hash));
    put(record.achFileHash, hash);
    TPubSecVideoSliceObj gathered = {};
    gathered.ptFile = &record;
    gathered.nFileNum = 1;
    row("file", "POST /VIID/Files", PubSecPostFile(c_platform, &gathered));

    /* The line goes down after the first part; the server says how much it has, and the rest follows from there. */
    const TemporaryFile part(std::vector<unsigned char>(video.begin(), video.begin() + c_cutAt));
    upload(part.path(), "upload part", 0);
    upload(whole.path(), "upload rest", c_cutAt);
}

void Tour::upload(const std::string& path, const std::string& name, u32 held)
{
    const std::string resource = "/VIID/Upload/video.ps";
    const std::string url = m_options.serverUrl() + resource;
    TPubSecTransDataInf state = {};
    u32 status = 0;
    const u32 asked = PubSecGetTransDataInf(static_cast<s32>(c_platform), &state, url.c_str(), &status);
    m_report.row("ask state", "GET " + resource, asked == PUBSEC_OK && state.dwFileLength == held,
                 std::to_string(asked) + " HTTP " + std::to_string(status) + ", the server holds " +
                     std::to_string(state.dwFileLength) + " bytes");
    const u32 code = PubSecCurlUpLoadFile((url + "?position=" + std::to_string(state.dwFileLength)).c_str(),
                                          path.c_str(), state.dwFileLength);
    row(name.c_str(), "POST " + resource, code, ", from byte " + std::to_string(state.dwFileLength));
}

/* ----------------------------------------------------------------------------------------------- other records */

/* Absent numbers of this record are -1 too; the identifier lists are texts of the host's. */
void Tour::violation()
{
    TPubSecIllegalRecordInfo record = {};
    for (s32* number : {&record.nLaneNo,      &record.nLeftTopX,
                        &record.nLeftTopY,    &record.nRightBtmX,
                        &record.nRightBtmY,   &record.nIllegalStatus,
                        &record.nVideoStatus, &record.nCompImageStatus,
                        &record.nBackupMark,  &record.nIllegalActConfirm,
                        &record.nAIStatus,    &record.nSourceFactory,
                        &record.nDeviceClass, &record.nWeight,
                        &record.nMaxWeight,   &record.nLength,
                        &record.nMaxLength,   &record.nWidth,
                        &record.nMaxWidth,    &record.nHeight,
                        &record.nMaxHeight})
    {
        *number = -1;
    }
    record.dMaxSpeed = record.dOverspeedRate = record.dOverRunRate = -1.0;
    put(record.achIllegalRecordID, contentId(c_otherContent, 20));
    put(record.achSourceID, m_identity.imageId);
    put(record.achDeviceID, m_options.deviceId);
    put(record.achTollgateID, m_options.deviceId);
    put(record.achShotTime, m_identity.shotTime);
    record.nIllegalAct = 1625;
    record.nHasPlate = 1;
    put(record.achPlateNo, "A12345");
    record.dSpeed = 81.0;
    const std::string vehicle = contentId(c_motorContent, 1);
    record.pchMotorVehicleIDs = vehicle.c_str();
    record.dwIllegalRecordNum = 1;
    row("violation", "POST /VIID/IllegalRecords", PubSecPostIllRecd(c_platform, &record));
}

void Tour::accessRecord()
{
    TPubSecAccessRecordInfo record = {};
    put(record.achAccessRecordID, contentId(c_otherContent, 30));
    put(record.achDeviceID, m_options.deviceId);
    put(record.achSecureAccessID, "door-1");
    record.dwCardID = 4711;
    put(record.achAccessTime, m_identity.shotTime);
    put(record.achPunchTime, m_identity.shotTime);
    record.dwRecordNum = 1;
    const std::string resource = "/VIID/AccessRecords";
    row("access", "POST " + resource,
        PubSecPostAccRecInfList(c_platform, &record, (m_options.serverUrl() + resource).c_str()));
}

void Tour::sensors()
{
    TPubSecGpsInfo gps = {};
    put(gps.achGPSID, contentId(c_otherContent, 40));
    put(gps.achDeviceID, m_options.deviceId);
    gps.nSatelliteNo = 9;
    gps.fLongitude = 116.5F;
    gps.fLatitude = 39.75F;
    put(gps.achCurrentTime, m_identity.shotTime);
    gps.nSourceType = -1;
    row("gps", "POST /VIID/GPSDatas", PubSecPostGpsInfo(c_platform, &gps));

    TPubSecWifiDeviceInfo probe = {};
    put(probe.achWifiDeviceDataID, objectId(41));
    put(probe.achDeviceID, m_options.deviceId);
    put(probe.achDeviceName, "probe");
    put(probe.achGPSInfo, "1");
    probe.fLongitude = probe.fLatitude = -1.0F;
    put(probe.achCurrentTime, m_identity.shotTime);
    probe.ptGPSData = &gps;
    TPubSecWifiUserInfo terminal = {};
    put(terminal.achWifiUserDataID, contentId(c_otherContent, 42));
    put(terminal.achDeviceID, m_options.deviceId);
    put(terminal.achDiscoverMacAddr, "02-00-00-00-00-01");
    put(terminal.achStartTime, m_identity.shotTime);
    put(terminal.achEndTime, m_identity.entryTime);
    TPubSecWifiData wifi = {};
    wifi.ptWifiDevice = &probe;
    wifi.ptWifiUser = &terminal;
    wifi.nWifiUserNum = 1;
    row("wifi", "POST /VIID/WifiDetector/WifiDatas", PubSecPostWifiDeviceMSG(c_platform, &wifi));

    TPubSecRFIDDeviceInfo reader = {};
    put(reader.achRFIDDeviceDataID, objectId(43));
    put(reader.achDeviceID, m_options.deviceId);
    put(reader.achDeviceName, "reader");
    reader.fLongitude = reader.fLatitude = -1.0F;
    put(reader.achCurrentTime, m_identity.shotTime);
    TPubSecRFIDUserInfo tag = {};
    put(tag.achRFIDInfoDataID, contentId(c_otherContent, 44));
    put(tag.achDeviceID, m_options.deviceId);
    put(tag.achRFIDID, "E2000017221101441890");
    put(tag.achStartTime, m_identity.shotTime);
    tag.fLongitude = tag.fLatitude = -1.0F;
    TPubSecRFIDData rfid = {};
    rfid.ptRFIDDevice = &reader;
    rfid.ptRFIDUser = &tag;
    rfid.nRFIDUserNum = 1;
    row("rfid", "POST /VIID/RFIDDatas", PubSecPostRFIDMSG(c_platform, &rfid));
}

void Tour::disposition()
{
    std::vector<TPubSecDispoNotifyObj> notifications(1, TPubSecDispoNotifyObj{});
    TPubSecDispoNotifyObj& notification = notifications[0];
    put(notification.achNotificationID, m_options.deviceId.substr(0, 20) + std::string(m_identity.shotTime).substr(1));
    put(notification.achDispositionID, "340200000011900000012026000001");
    put(notification.achTitle, "a watched face was seen");
    put(notification.achTriggerTime, m_identity.shotTime);
    put(notification.achCntObjectID, contentId(c_faceContent, 2));
    notification.dwFaceNum = 1;
    notification.tFace = face();
    TPubsecDispositionNotificationList list = {};
    list.wObjectNum = 1;
    list.aptDispoNotifyObj = notifications.data();
    row("disposition", "POST /VIID/DispositionNotifications", PubSecPostDispositionNotification(c_platform, &list));
}

void Tour::logEvent()
{
    TPubSecLogInfo event = {};
    put(event.achClientId, m_options.deviceId);
    put(event.achCategory, "device");
    put(event.achAction, "tour");
    put(event.achTargetID, m_identity.imageId);
    put(event.achViidId, m_options.deviceId);
    put(event.achIp, "127.0.0.1");
    row("log event", "POST /log/event", PubSecPosLogWriteMSG(&event, m_options.host.c_str(), m_options.port));
}

} // namespace device
