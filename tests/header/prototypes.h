/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Every exported function with the type that hosts compile against, as a list X(result, name, (arguments)): the
 * compiler holds it against the headers, and the linker finds each function.
 */
#ifndef PUBSEC_TESTS_PROTOTYPES_H
#define PUBSEC_TESTS_PROTOTYPES_H

#define PROTOTYPES(X)                                                                                                  \
    X(u32, PubSecStackInit, (void))                                                                                    \
    X(void, PubSecStackUnInit, (void))                                                                                 \
    X(u32, PubSecStackUpdateRegisterInfo, (s32 nPlatform, const TPubSecPlatRegInfo* ptInfo))                           \
    X(void, PubSecStackRegisterCB, (PFPubSecRegStatus pfCallback))                                                     \
    X(u32, PubSecGetRegisterStatus, (s32 nPlatform))                                                                   \
    X(u32, PubSecGetSystemTimeMsg, (u32 dwPlatform, TPubSecSystemTime * ptTime))                                       \
    X(u32, PubSecPostUserUnRegisterMsg, (u32 dwPlatform))                                                              \
    X(u32, PubSecStackPostRegisterExt, (const TPubSecRegParam* ptParam))                                               \
    X(u32, PubSecPostUserUnRegisterMsgExt, (const TPubSecRegParam* ptParam))                                           \
    X(u32, PubSecStackTestRegister, (const TPubSecRegParam* ptParam))                                                  \
    X(u32, PubSecPostImage, (u32 dwPlatform, const TPubSecIntelliPicObj* ptPicture, char* pchStatus))                  \
    X(u32, PubSecPostImageEX, (u32 dwPlatform, const TPubSecIntelliPicObj* ptPictures, u32 dwIgnored))                 \
    X(u32, PubSecPostImageSingle, (u32 dwPlatform, TPubSecImageObjInfo* const* pptImage))                              \
    X(u32, PubSecPostImageFace, (u32 dwPlatform, const TPubSecFaceObjInfo* ptFaces, u32 dwNum))                        \
    X(u32, PubSecPostImagePerson, (u32 dwPlatform, const TPubSecPersonnelObjInfo* ptPersons, u32 dwNum))               \
    X(u32, PubSecPostImageMotorVehicle, (u32 dwPlatform, const TPubSecMotorVehicleObjInfo* ptVehicles, u32 dwNum))     \
    X(u32, PubSecPostImageNonMotVeh, (u32 dwPlatform, const TPubSecNonMotorVehicleObjInfo* ptVehicles, u32 dwNum))     \
    X(u32, PubSecPostImageThing, (u32 dwPlatform, const TPubSecThingObjInfo* ptThings, u32 dwNum))                     \
    X(u32, PubSecPostImageScene, (u32 dwPlatform, const TPubSecSceneObjInfo* ptScenes, u32 dwNum))                     \
    X(u32, PubSecPostVideoSlice, (u32 dwPlatform, const TPubSecVideoSliceObj* ptSlices, char* pchStatus))              \
    X(u32, PubSecPostFile, (u32 dwPlatform, const TPubSecVideoSliceObj* ptFiles))                                      \
    X(u32, PubSecPostVideoSliceData, (u32 dwPlatform, const char* pchVideoID, const char* pchBody))                    \
    X(u32, PubSecPostVideoSliceDataEx, (u32 dwPlatform, const char* pchVideoID, const char* pchBase64))                \
    X(u32, PubSecPostImageData, (u32 dwPlatform, const char* pchImageID, const char* pchBody))                         \
    X(u32, PubSecPostFileData, (u32 dwPlatform, const char* pchFileID, const char* pchBody))                           \
    X(u32, PubSecCurlUpLoadFile, (const char* pchUrl, const char* pchPath, u32 dwPosition))                            \
    X(u32, PubSecGetTransDataInf, (s32 nPlatform, TPubSecTransDataInf * ptInfo, const char* pchUrl, u32* pdwHttpCode)) \
    X(u32, PubSecStackGetUploadPartParam, (u16 wPlatform, char* pchDeviceID))                                          \
    X(u32, PubSecPostIllRecd, (u32 dwPlatform, const TPubSecIllegalRecordInfo* ptRecords))                             \
    X(u32, PubSecPostIllRecdEx, (u32 dwPlatform, u32 dwNum, const TPubSecIllegalRecordInfo* ptRecords))                \
    X(u32, PubSecPostNonMotorIllRecd, (u32 dwPlatform, u16 wNum, const TPubSecNonMotorIllegalRecordInfo* ptRecords))   \
    X(u32, PubSecPostAccRecInf, (u32 dwPlatform, const TPubSecAccessRecordInfo* ptRecord, const char* pchUrl))         \
    X(u32, PubSecPostAccRecInfList, (u32 dwPlatform, const TPubSecAccessRecordInfo* ptRecords, const char* pchUrl))    \
    X(u32, PubSecPostGpsInfo, (u32 dwPlatform, const TPubSecGpsInfo* ptGps))                                           \
    X(u32, PubSecPostWifiDeviceMSG, (u32 dwPlatform, const TPubSecWifiData* ptWifi))                                   \
    X(u32, PubSecPostRFIDMSG, (u32 dwPlatform, const TPubSecRFIDData* ptRfid))                                         \
    X(u32, PubSecPostDispositionNotification, (u32 dwPlatform, const TPubsecDispositionNotificationList* ptList))      \
    X(u32, PubSecPosLogWriteMSG, (const TPubSecLogInfo* ptLog, const char* pchHost, u32 dwPort))                       \
    X(u32, PubSecFaceObjectStructToJsonObject,                                                                         \
      (struct cJSON * ptRoot, u32 dwMode, u16 wNum, const TPubSecFaceObjInfo* ptFaces))                                \
    X(u32, PubSecPersonObjectStructToJsonObject,                                                                       \
      (struct cJSON * ptRoot, u32 dwMode, u16 wNum, const TPubSecPersonnelObjInfo* ptPersons))                         \
    X(u32, PubSecMotorVehicleObjectStructToJsonObject,                                                                 \
      (struct cJSON * ptRoot, u32 dwMode, u16 wNum, const TPubSecMotorVehicleObjInfo* ptVehicles))                     \
    X(u32, PubSecNonMotorVehicleObjectStructToJsonObject,                                                              \
      (struct cJSON * ptRoot, u32 dwMode, u16 wNum, const TPubSecNonMotorVehicleObjInfo* ptVehicles))                  \
    X(char*, PubSecDispositionNotificationStructToString, (const TPubsecDispositionNotificationList* ptList))          \
    X(u32, PubSecDispositionNotificationObjectStructToJsonObject,                                                      \
      (struct cJSON * ptParent, u32 dwForm, u16 wNum, const TPubSecDispoNotifyObj* ptObjects))                         \
    X(u32, PubSecDispositionListObjectStructToJsonObject,                                                              \
      (struct cJSON * ptParent, u32 dwForm, u16 wNum, const TPubSecDispositionListObj* ptEntries))                     \
    X(u32, PubSecStackCreat_BasicObjectIdType, (const TPubSecObjectIdParam* ptParam, char* pchId, u16 wIdLen))         \
    X(u32, PubSecStackCreat_ImageCntObjectIdType, (const TPubSecImageCntIdParam* ptParam, char* pchId, u16 wIdLen))    \
    X(u32, PubSecStackCreat_DateTime, (const TPubSecTime* ptTime, char* pchDateTime, u16 wDateTimeLen))                \
    X(u32, PubSecStackCreat_DateTimeEx, (u64 qwMilliseconds, char* pchDateTime, u16 wDateTimeLen))                     \
    X(u32, PubSecStackCreat_FileHash, (const char* pchFile, char* pchHash, u16 wHashLen))                              \
    X(u32, PubSecStackGet_FileSize, (const char* pchFile))                                                             \
    X(u32, PubSecStackBase64Encode, (const u8* pbySrc, u32 dwSrcLen, char* pchDst, u32 dwDstLen))                      \
    X(char*, xt_base64_encode, (char* pchDst, s32 nDstLen, const u8* pbySrc, u32 dwSrcLen))                            \
    X(const char*, PubsecStackConvS32ToStr, (const TPubSecStrPair* ptTable, s32 nValue))                               \
    X(bool, PubsecStackConvStrToS32, (const TPubSecStrPair* ptTable, const char* pchStr, s32* pnValue))                \
    X(char*, PSMDFile, (const char* pchPath))                                                                          \
    X(u32, PSMDFileEx, (const char* pchPath, char* pchOut, u16 wOutLen))                                               \
    X(char*, PSMDString, (const u8* pbyData, u32 dwLen))                                                               \
    X(u32, PSMD5, (const u8* pbyData, u32 dwLen, char* pchOut, u32 dwOutLen))                                          \
    X(u32, PubSecStackDup_TPubSecPersonnelObjInfo,                                                                     \
      (const TPubSecPersonnelObjInfo* ptSrc, TPubSecPersonnelObjInfo* ptDst))                                          \
    X(u32, PubSecStackDup_TPubSecFaceObjInfo, (const TPubSecFaceObjInfo* ptSrc, TPubSecFaceObjInfo* ptDst))            \
    X(u32, PubSecStackDup_TPubSecMotorVehicleObjInfo,                                                                  \
      (const TPubSecMotorVehicleObjInfo* ptSrc, TPubSecMotorVehicleObjInfo* ptDst))                                    \
    X(u32, PubSecStackDup_TPubSecNonMotorVehicleObjInfo,                                                               \
      (const TPubSecNonMotorVehicleObjInfo* ptSrc, TPubSecNonMotorVehicleObjInfo* ptDst))                              \
    X(u32, PubSecStackFree_TPubSecPersonnelObjInfo, (s32 nMode, TPubSecPersonnelObjInfo * ptRec))                      \
    X(u32, PubSecStackFree_TPubSecFaceObjInfo, (s32 nMode, TPubSecFaceObjInfo * ptRec))                                \
    X(u32, PubSecStackFree_TPubSecMotorVehicleObjInfo, (s32 nMode, TPubSecMotorVehicleObjInfo * ptRec))                \
    X(u32, PubSecStackFree_TPubSecNonMotorVehicleObjInfo, (s32 nMode, TPubSecNonMotorVehicleObjInfo * ptRec))          \
    X(u32, PubSecStackFree_TPubSecImageObjInfo, (s32 nMode, TPubSecImageObjInfo * ptRec))                              \
    X(u32, PubSecStackFree_TPubSecIntelliPicObj, (s32 nMode, TPubSecIntelliPicObj * ptRec))                            \
    X(u32, PubSecStackFree_TPubSecVideoSliceInfo, (s32 nMode, TPubSecVideoSliceInfo * ptRec))                          \
    X(u32, PubSecStackFree_TPubsecVideoSliceList, (s32 nMode, TPubsecVideoSliceList * ptList))                         \
    X(u32, PubSecStackDup_TPubsecDispositionNotificationList,                                                          \
      (TPubsecDispositionNotificationList * ptSrc, TPubsecDispositionNotificationList * ptDst))                        \
    X(u32, PubSecStackFree_TPubsecDispositionNotificationList,                                                         \
      (u32 dwMode, TPubsecDispositionNotificationList * ptList))

#endif
