/* SPDX-License-Identifier: Apache-2.0 */
#include "tests/torture/operations.h"

#include <cstring>

#include <cjson/cJSON.h>

#include <pubsecplatform.h>
#include <pubsecstack/pubsecstack.h>

#include "core/core.h"
#include "core/state.h"
#include "tests/support/fake_platform.h"
#include "tests/support/settings.h"
#include "tests/torture/exchanges.h"
#include "tests/torture/faults.h"
#include "tests/torture/records.h"

namespace torture
{

namespace
{

Records& records()
{
    static Records* const only = new Records(everything());
    return *only;
}

/* As long as the text of a picture: it takes another way into its document than short ones. */
const char* longText()
{
    static const std::string text(10000, 'A');
    return text.c_str();
}

/* ------------------------------------------------------------------------------------------------------- session */

void anyCallback(u32, u32, const TPubSecPlatRegInfo*)
{
}

u32 configure()
{
    TPubSecPlatRegInfo info = configuration();
    info.dwSyncTimeMin = 1;
    return PubSecStackUpdateRegisterInfo(0, &info);
}

/* The register loop for so many passes; the timers run between them. */
void passes(u32 count)
{
    {
        const faults::Pause host;
        fake_platform::afterDelays(count, [] { PubSecStackUnInit(); });
    }
    fake_platform::runEvents();
}

/* Start, registration with its callbacks, keepalive and clock, a change of server identity, end. */
u32 wholeLife()
{
    configure();
    PubSecStackRegisterCB(anyCallback);
    const u32 result = PubSecStackInit();
    passes(3);
    PubSecStackUnInit();
    if (result != PUBSEC_OK || PubSecStackInit() != PUBSEC_OK)
    {
        PubSecStackUnInit();
        return PUBSEC_ERR_FAILED;
    }
    TPubSecPlatRegInfo info = configuration();
    info.dwSyncTimeMin = 1;
    stack::put(info.achUserName, "another");
    PubSecStackUpdateRegisterInfo(0, &info);
    passes(3);
    PubSecStackUnInit();
    return PubSecGetRegisterStatus(0) == 1 ? u32{PUBSEC_OK} : u32{PUBSEC_ERR_NOT_REGISTERED};
}

u32 startAndStop()
{
    const u32 result = PubSecStackInit();
    PubSecStackUnInit();
    return result;
}

u32 registerOnce()
{
    const u32 status = registration();
    g_bPubSecRegStatus[0] = 1;
    return status;
}

u32 unregisterOnce()
{
    g_bPubSecRegStatus[0] = 1;
    const u32 result = unregistration();
    g_bPubSecRegStatus[0] = 1;
    return result;
}

std::vector<Operation> session()
{
    return {
        {"(a whole life)", 50, {51, 54}, wholeLife},
        {"(registration)", 1, {0}, registerOnce},
        {"(keepalive)", 50, {51, 60, 75, 76}, keepalive},
        {"PubSecStackInit", 50, {51}, startAndStop},
        {"PubSecStackUnInit",
         50,
         {},
         [] {
             PubSecStackUnInit();
             return u32{50};
         }},
        {"PubSecStackUpdateRegisterInfo", 50, {}, configure},
        {"PubSecStackRegisterCB",
         50,
         {},
         [] {
             PubSecStackRegisterCB(anyCallback);
             return u32{50};
         }},
        {"PubSecGetRegisterStatus", 1, {}, [] { return PubSecGetRegisterStatus(0); }},
        {"PubSecGetSystemTimeMsg", 50, {51, 60, 75, 76, 77}, clockQuery},
        {"PubSecPostUserUnRegisterMsg", 50, {51, 60, 75, 76}, unregisterOnce},
        {"PubSecStackPostRegisterExt", 1, {0}, directRegistration},
        {"PubSecPostUserUnRegisterMsgExt",
         50,
         {51, 60, 75, 76},
         [] {
             const TPubSecRegParam to = param();
             return PubSecPostUserUnRegisterMsgExt(&to);
         }},
        {"PubSecStackTestRegister",
         50,
         {51},
         [] {
             const TPubSecRegParam to = param();
             return PubSecStackTestRegister(&to);
         }},
    };
}

/* --------------------------------------------------------------------------------------------------------- posts */

const std::set<u32> kPost = {51, 60, 75, 76};

std::vector<Operation> imagePosts()
{
    return {
        {"PubSecPostImage", 50, kPost,
         [] {
             char status[PUBSEC_STATUS_SIZE];
             return PubSecPostImage(0, records().pictures, status);
         }},
        {"PubSecPostImageEX", 50, kPost, [] { return PubSecPostImageEX(0, records().pictures, 0); }},
        {"PubSecPostImageSingle", 50, kPost,
         [] { return PubSecPostImageSingle(0, &records().pictures[0].ptImageInfo); }},
        {"PubSecPostImageFace", 50, kPost, [] { return PubSecPostImageFace(0, records().faces, 1); }},
        {"PubSecPostImagePerson", 50, kPost, [] { return PubSecPostImagePerson(0, records().persons, 1); }},
        {"PubSecPostImageMotorVehicle", 50, kPost,
         [] { return PubSecPostImageMotorVehicle(0, records().motorVehicles, 1); }},
        {"PubSecPostImageNonMotVeh", 50, kPost,
         [] { return PubSecPostImageNonMotVeh(0, records().nonMotorVehicles, 1); }},
        {"PubSecPostImageThing", 50, kPost, [] { return PubSecPostImageThing(0, records().things, 1); }},
        {"PubSecPostImageScene", 50, kPost, [] { return PubSecPostImageScene(0, records().scenes, 1); }},
    };
}

std::vector<Operation> dataPosts()
{
    return {
        {"PubSecPostVideoSlice",
         50,
         {51, 52, 60, 75, 76},
         [] {
             char status[PUBSEC_STATUS_SIZE];
             return PubSecPostVideoSlice(0, &records().sliceObject, status);
         }},
        {"PubSecPostFile", 50, kPost, [] { return PubSecPostFile(0, &records().sliceObject); }},
        {"PubSecPostVideoSliceData", 50, kPost, [] { return PubSecPostVideoSliceData(0, "id", "body"); }},
        {"PubSecPostVideoSliceDataEx", 50, kPost, [] { return PubSecPostVideoSliceDataEx(0, "id", longText()); }},
        {"PubSecPostImageData", 50, kPost, [] { return PubSecPostImageData(0, "id", "body"); }},
        {"PubSecPostFileData", 50, kPost, [] { return PubSecPostFileData(0, "id", "body"); }},
        {"PubSecCurlUpLoadFile",
         50,
         {65, 75, 76, 79},
         [] { return PubSecCurlUpLoadFile(url().c_str(), place().file.c_str(), 1); }},
        {"PubSecGetTransDataInf", 50, {51, 60, 74, 75, 76}, transferState},
        {"PubSecStackGetUploadPartParam",
         50,
         {},
         [] {
             char device[21];
             return PubSecStackGetUploadPartParam(0, device);
         }},
    };
}

std::vector<Operation> recordPosts()
{
    return {
        {"PubSecPostIllRecd", 50, kPost, [] { return PubSecPostIllRecd(0, records().violations); }},
        {"PubSecPostIllRecdEx", 50, kPost, [] { return PubSecPostIllRecdEx(0, 1, records().violations); }},
        {"PubSecPostNonMotorIllRecd", 50, kPost,
         [] { return PubSecPostNonMotorIllRecd(0, 1, records().nonMotorViolations); }},
        {"PubSecPostAccRecInf", 50, kPost, [] { return PubSecPostAccRecInf(0, records().access, url().c_str()); }},
        {"PubSecPostAccRecInfList", 50, kPost,
         [] { return PubSecPostAccRecInfList(0, records().access, url().c_str()); }},
        {"PubSecPostGpsInfo", 50, kPost, [] { return PubSecPostGpsInfo(0, &records().gps); }},
        {"PubSecPostWifiDeviceMSG", 50, kPost, [] { return PubSecPostWifiDeviceMSG(0, &records().wifi); }},
        {"PubSecPostRFIDMSG", 50, kPost, [] { return PubSecPostRFIDMSG(0, &records().rfid); }},
        {"PubSecPostDispositionNotification", 50, kPost,
         [] { return PubSecPostDispositionNotification(0, &records().notificationList); }},
        {"PubSecPosLogWriteMSG", 50, kPost,
         [] { return PubSecPosLogWriteMSG(&records().log, "127.0.0.1", place().port); }},
    };
}

/* ----------------------------------------------------------------------------------------------------- documents */

/* A tree of the host's, who deletes it whatever happened. */
template <typename Add> u32 onTree(Add add)
{
    cJSON* tree = nullptr;
    {
        const faults::Pause host;
        tree = cJSON_CreateObject();
    }
    const u32 result = add(tree);
    cJSON_Delete(tree);
    return result;
}

std::vector<Operation> documents()
{
    return {
        {"PubSecFaceObjectStructToJsonObject",
         50,
         {51},
         [] {
             return onTree([](cJSON* tree) { return PubSecFaceObjectStructToJsonObject(tree, 0, 1, records().faces); });
         }},
        {"PubSecPersonObjectStructToJsonObject",
         50,
         {51},
         [] {
             return onTree(
                 [](cJSON* tree) { return PubSecPersonObjectStructToJsonObject(tree, 1, 1, records().persons); });
         }},
        {"PubSecMotorVehicleObjectStructToJsonObject",
         50,
         {51},
         [] {
             return onTree([](cJSON* tree) {
                 return PubSecMotorVehicleObjectStructToJsonObject(tree, 0, 1, records().motorVehicles);
             });
         }},
        {"PubSecNonMotorVehicleObjectStructToJsonObject",
         50,
         {51},
         [] {
             return onTree([](cJSON* tree) {
                 return PubSecNonMotorVehicleObjectStructToJsonObject(tree, 1, 1, records().nonMotorVehicles);
             });
         }},
        {"PubSecDispositionNotificationObjectStructToJsonObject",
         50,
         {51},
         [] {
             return onTree([](cJSON* tree) {
                 return PubSecDispositionNotificationObjectStructToJsonObject(tree, 0, 1, records().notifications);
             });
         }},
        {"PubSecDispositionListObjectStructToJsonObject",
         50,
         {51},
         [] {
             return onTree([](cJSON* tree) {
                 return PubSecDispositionListObjectStructToJsonObject(tree, 0, 1, records().entries);
             });
         }},
        {"PubSecDispositionNotificationStructToString",
         1,
         {0},
         [] {
             char* const text = PubSecDispositionNotificationStructToString(&records().notificationList);
             const u32 made = text != nullptr ? 1 : 0;
             cJSON_free(text);
             return made;
         }},
    };
}

/* ------------------------------------------------------------------------------------------------------- helpers */

std::vector<Operation> identifiers()
{
    return {
        {"PubSecStackCreat_BasicObjectIdType",
         50,
         {},
         [] {
             const TPubSecObjectIdParam from = {"34020000001190000001", "20240131235959", 1, 7};
             char id[PUBSEC_OBJECT_ID_SIZE];
             return PubSecStackCreat_BasicObjectIdType(&from, id, sizeof(id));
         }},
        {"PubSecStackCreat_ImageCntObjectIdType",
         50,
         {},
         [] {
             const TPubSecImageCntIdParam from = {{"34020000001190000001", "20240131235959", 1, 7}, 5, 7};
             char id[PUBSEC_IMAGE_CNT_ID_SIZE];
             return PubSecStackCreat_ImageCntObjectIdType(&from, id, sizeof(id));
         }},
        {"PubSecStackCreat_DateTime",
         50,
         {},
         [] {
             const TPubSecTime time = {2024, 1, 31, 23, 59, 59};
             char text[PUBSEC_DATE_TIME_SIZE];
             return PubSecStackCreat_DateTime(&time, text, sizeof(text));
         }},
        {"PubSecStackCreat_DateTimeEx",
         50,
         {},
         [] {
             char text[PUBSEC_DATE_TIME_SIZE];
             return PubSecStackCreat_DateTimeEx(1706745599000u, text, sizeof(text));
         }},
        {"PubsecStackConvS32ToStr",
         0,
         {},
         [] { return PubsecStackConvS32ToStr(s_atStrPair_EGAT1400VideoFormatType, 3) != nullptr ? 1u : 0u; }},
        {"PubsecStackConvStrToS32",
         0,
         {},
         [] {
             s32 value = 0;
             return PubsecStackConvStrToS32(s_atStrPair_EGAT1400VideoFormatType, "Avi", &value) ? 1u : 0u;
         }},
    };
}

std::vector<Operation> digests()
{
    static const u8 bytes[100] = {1, 2, 3};
    return {
        {"PubSecStackCreat_FileHash",
         50,
         {51},
         [] {
             char hash[PUBSEC_FILE_HASH_SIZE];
             return PubSecStackCreat_FileHash(place().file.c_str(), hash, sizeof(hash));
         }},
        {"PubSecStackGet_FileSize", 3000, {}, [] { return PubSecStackGet_FileSize(place().file.c_str()); }},
        {"PSMDFile", 1, {0}, [] { return PSMDFile(place().file.c_str()) != nullptr ? 1u : 0u; }},
        {"PSMDFileEx",
         1,
         {0},
         [] {
             char hash[PUBSEC_FILE_HASH_SIZE];
             return PSMDFileEx(place().file.c_str(), hash, sizeof(hash));
         }},
        {"PSMDString", 1, {}, [] { return PSMDString(bytes, sizeof(bytes)) != nullptr ? 1u : 0u; }},
        {"PSMD5",
         1,
         {},
         [] {
             char text[PUBSEC_MD5_TEXT_SIZE];
             return PSMD5(bytes, sizeof(bytes), text, sizeof(text));
         }},
        {"PubSecStackBase64Encode",
         50,
         {},
         [] {
             char text[PUBSEC_BASE64_SIZE(sizeof(bytes))];
             return PubSecStackBase64Encode(bytes, sizeof(bytes), text, sizeof(text));
         }},
        {"xt_base64_encode",
         1,
         {},
         [] {
             char text[PUBSEC_BASE64_SIZE(sizeof(bytes))];
             return xt_base64_encode(text, sizeof(text), bytes, sizeof(bytes)) != nullptr ? 1u : 0u;
         }},
    };
}

/* ---------------------------------------------------------------------------------------------- copy and release */

/* Blocks of the pool, as a host that copies records takes them. */
template <typename Record> Record* taken(size_t count)
{
    const faults::Pause host;
    void* const block = AppMemPoolMallocEx(nullptr, count * sizeof(Record), "torture", 0);
    std::memset(block, 0, count * sizeof(Record));
    return static_cast<Record*>(block);
}

char* takenText()
{
    char* const text = taken<char>(8);
    return std::strcpy(text, "QUJDREV");
}

TPubSecSubImageInfo* takenSubImages()
{
    TPubSecSubImageInfo* const list = taken<TPubSecSubImageInfo>(2);
    list[0].pchData = takenText(); /* the second has none */
    return list;
}

template <typename Object> void giveSubImages(Object& object)
{
    object.nSubImageNum = 2;
    object.ptSubImageList = takenSubImages();
}

template <typename Object> struct Copies
{
    Object source = {};
    Object copy = {};
};

/* A copy, and the release of both as the header asks for it; the array is the copy's when the source could get none. */
template <typename Object, u32 (*Copy)(const Object*, Object*), u32 (*Release)(s32, Object*)> u32 copyAndRelease()
{
    static Copies<Object> both;
    both = Copies<Object>();
    giveSubImages(both.source);
    const u32 result = Copy(&both.source, &both.copy);
    Release(PUBSEC_MODE_POOL, &both.source);
    Release(PUBSEC_MODE_POOL, &both.copy);
    return result;
}

template <typename Object, u32 (*Release)(s32, Object*)> u32 release()
{
    static Object object;
    object = Object();
    giveSubImages(object);
    return Release(PUBSEC_MODE_POOL, &object);
}

void giveFeature(TPubSecImageObjInfo& image)
{
    image.ptFeatureInfo = taken<TPubSecFeatureInfo>(1);
    image.ptFeatureInfo->pchFeatureData = takenText();
}

u32 releaseImage()
{
    static TPubSecImageObjInfo image;
    giveFeature(image);
    return PubSecStackFree_TPubSecImageObjInfo(PUBSEC_MODE_POOL, &image);
}

u32 releasePicture()
{
    TPubSecIntelliPicObj picture = {};
    picture.nImageNum = picture.nFaceNum = picture.nPersonnelNum = picture.nMotorVehicleNum = 1;
    picture.nNonMotorVehicleNum = 1;
    picture.ptImageInfo = taken<TPubSecImageObjInfo>(1);
    giveFeature(*picture.ptImageInfo);
    giveSubImages(*(picture.ptFace = taken<TPubSecFaceObjInfo>(1)));
    giveSubImages(*(picture.ptPersonnel = taken<TPubSecPersonnelObjInfo>(1)));
    giveSubImages(*(picture.ptMotorVehicle = taken<TPubSecMotorVehicleObjInfo>(1)));
    giveSubImages(*(picture.ptNonMotorVehicle = taken<TPubSecNonMotorVehicleObjInfo>(1)));
    return PubSecStackFree_TPubSecIntelliPicObj(PUBSEC_MODE_POOL, &picture);
}

void giveSubImages(TPubSecVideoSliceInfo& slice)
{
    slice.dwSubImageNum = 2;
    slice.ptSubImageList = takenSubImages();
}

u32 releaseSlice()
{
    static TPubSecVideoSliceInfo slice;
    giveSubImages(slice);
    return PubSecStackFree_TPubSecVideoSliceInfo(PUBSEC_MODE_POOL, &slice);
}

u32 releaseSlices()
{
    TPubsecVideoSliceList list = {1, taken<TPubSecVideoSliceInfo>(1)};
    giveSubImages(*list.ptVideoSlice);
    return PubSecStackFree_TPubsecVideoSliceList(PUBSEC_MODE_POOL, &list);
}

void releaseNotifications(TPubsecDispositionNotificationList& list)
{
    PubSecStackFree_TPubsecDispositionNotificationList(PUBSEC_MODE_POOL, &list);
    AppMemPoolFreeEx(nullptr, list.aptDispoNotifyObj, "torture", 0);
}

TPubsecDispositionNotificationList takenNotifications()
{
    TPubsecDispositionNotificationList list = {1, taken<TPubSecDispoNotifyObj>(1), 0};
    TPubSecDispoNotifyObj& object = *list.aptDispoNotifyObj;
    object.dwPersonNum = object.dwFaceNum = object.dwMotorVehicleNum = object.dwNonMotorVehicleNum = 1;
    giveSubImages(object.tPerson);
    giveSubImages(object.tFace);
    giveSubImages(object.tMotorVehicle);
    giveSubImages(object.tNonMotorVehicle);
    return list;
}

u32 copyNotifications()
{
    TPubsecDispositionNotificationList source = takenNotifications();
    TPubsecDispositionNotificationList copy = {};
    const u32 result = PubSecStackDup_TPubsecDispositionNotificationList(&source, &copy);
    releaseNotifications(source);
    releaseNotifications(copy);
    return result;
}

u32 releaseNotificationList()
{
    TPubsecDispositionNotificationList list = takenNotifications();
    const u32 result = PubSecStackFree_TPubsecDispositionNotificationList(PUBSEC_MODE_POOL, &list);
    AppMemPoolFreeEx(nullptr, list.aptDispoNotifyObj, "torture", 0);
    return result;
}

#define COPY(record)                                                                                                   \
    {                                                                                                                  \
        "PubSecStackDup_" #record, 1, {}, copyAndRelease<record, PubSecStackDup_##record, PubSecStackFree_##record>    \
    }
#define RELEASE(record)                                                                                                \
    {                                                                                                                  \
        "PubSecStackFree_" #record, 1, {}, release<record, PubSecStackFree_##record>                                   \
    }

std::vector<Operation> copiesAndReleases()
{
    return {
        COPY(TPubSecPersonnelObjInfo),
        COPY(TPubSecFaceObjInfo),
        COPY(TPubSecMotorVehicleObjInfo),
        COPY(TPubSecNonMotorVehicleObjInfo),
        RELEASE(TPubSecPersonnelObjInfo),
        RELEASE(TPubSecFaceObjInfo),
        RELEASE(TPubSecMotorVehicleObjInfo),
        RELEASE(TPubSecNonMotorVehicleObjInfo),
        {"PubSecStackFree_TPubSecImageObjInfo", 1, {}, releaseImage},
        {"PubSecStackFree_TPubSecIntelliPicObj", 1, {}, releasePicture},
        {"PubSecStackFree_TPubSecVideoSliceInfo", 1, {}, releaseSlice},
        {"PubSecStackFree_TPubsecVideoSliceList", 1, {}, releaseSlices},
        {"PubSecStackDup_TPubsecDispositionNotificationList", 1, {0}, copyNotifications},
        {"PubSecStackFree_TPubsecDispositionNotificationList", 1, {}, releaseNotificationList},
    };
}

} // namespace

const std::vector<Operation>& operations()
{
    static const std::vector<Operation> all = [] {
        std::vector<Operation> joined;
        for (const std::vector<Operation>& some : {session(), imagePosts(), dataPosts(), recordPosts(), documents(),
                                                   identifiers(), digests(), copiesAndReleases()})
        {
            joined.insert(joined.end(), some.begin(), some.end());
        }
        return joined;
    }();
    return all;
}

} // namespace torture
