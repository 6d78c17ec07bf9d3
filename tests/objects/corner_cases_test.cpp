/* SPDX-License-Identifier: Apache-2.0 */
/* Corners of single records, each with the whole object that it has to give. */
#include <cstring>
#include <string>

#include <cjson/cJSON.h>
#include <gtest/gtest.h>

#include "objects/documents.h"
#include "objects/encoders.h"
#include "tests/objects/record_case.h"

namespace
{

template <typename R> std::string Object(void (*encode)(cJSON*, const R*), const R& record)
{
    return records::Printed([&](cJSON* object) { encode(object, &record); });
}

/* A number as it stands in the object: how many of its digits are printed is cJSON's business. */
template <typename R> double NumberIn(void (*encode)(cJSON*, const R*), const R& record, const char* key)
{
    double number = 0;
    records::Printed([&](cJSON* object) {
        encode(object, &record);
        number = cJSON_GetNumberValue(cJSON_GetObjectItemCaseSensitive(object, key));
    });
    return number;
}

bool Holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/* What an image-information object always has. */
constexpr const char* c_emptyImage =
    R"({"ImageID":"","InfoKind":0,"ImageSource":"","StoragePath":"","FileHash":"","FileFormat":"","ShotTime":"",)"
    R"("Title":"","ContentDescription":"","SecurityLevel":"","CollectorName":"","CollectorOrg":""})";

TPubSecImageObjInfo EmptyImage()
{
    TPubSecImageObjInfo image = {};
    image.nWidth = -1;
    image.nHeight = -1;
    return image;
}

TPubSecSubImageInfo EmptySubImage()
{
    TPubSecSubImageInfo image = {};
    image.nWidth = -1;
    image.nHeight = -1;
    return image;
}

TEST(ImageInfo, EmptyTextsLeaveTwelveMembers)
{
    EXPECT_EQ(Object(_PubSecImageInfoJson, EmptyImage()), c_emptyImage);
}

TEST(ImageInfo, ZeroSizeIsWritten)
{
    TPubSecImageObjInfo image = EmptyImage();
    image.nWidth = 0;
    EXPECT_TRUE(Holds(Object(_PubSecImageInfoJson, image), R"("SecurityLevel":"","Width":0,"CollectorName")"));
}

TEST(ImageInfo, AFlagOfZeroHidesTheValue)
{
    TPubSecImageObjInfo image = EmptyImage();
    image.nEventSort = 7;
    image.dShotPlaceLongitude = 116.5;
    EXPECT_EQ(Object(_PubSecImageInfoJson, image), c_emptyImage);
}

TEST(ImageInfo, AnglesComeBeforeDirections)
{
    TPubSecImageObjInfo image = EmptyImage();
    strcpy(image.achHorizontalShotDirection, "1");
    strcpy(image.achVerticalShotDirection, "2");
    image.bHorizontalShotAngleValid = 1;
    image.dHorizontalShotAngle = 33.25;
    image.bVerticalShotAngleValid = 1;
    image.dVerticalShotAngle = 0;
    EXPECT_TRUE(Holds(Object(_PubSecImageInfoJson, image),
                      R"("ContentDescription":"","HorizontalShotAngle":33.25,"VerticalShotAngle":0,)"
                      R"("HorizontalShotDirection":"1","VerticalShotDirection":"2","SecurityLevel":"")"));
}

TEST(ImageInfo, FeatureStandsBetweenOwnDataAndPlace)
{
    char data[] = "0.25 0.5";
    TPubSecFeatureInfo feature = {};
    strcpy(feature.achVendor, "maker");
    strcpy(feature.achAlgorithmVersion, "Inv");
    feature.pchFeatureData = data;
    TPubSecImageObjInfo image = EmptyImage();
    strcpy(image.achSelfDefObject, "own");
    strcpy(image.achPlaceCode, "110101");
    image.ptFeatureInfo = &feature;
    EXPECT_TRUE(Holds(Object(_PubSecImageInfoJson, image),
                      R"("SelfDefObject":"own","FeatureInfoObject":{"Vendor":"maker","AlgorithmVersion":"Inv",)"
                      R"("FeatureData":"0.25 0.5"},"PlaceCode":"110101"})"));
}

TEST(ImageInfo, TextsAreEscapedAndNotChanged)
{
    TPubSecImageObjInfo image = EmptyImage();
    strcpy(image.achTitle, "\"\\/\t\n\x01");
    strcpy(image.achKeyword, "\xE6\xB1\x89\xE5\xAD\x97");
    const std::string written = Object(_PubSecImageInfoJson, image);
    EXPECT_TRUE(Holds(written, R"("Title":"\"\\/\t\n\u0001")"));
    EXPECT_TRUE(Holds(written, "\"Keyword\":\"\xE6\xB1\x89\xE5\xAD\x97\""));
}

TEST(SubImage, FeatureIsWrittenForItsFlagHoweverEmpty)
{
    TPubSecSubImageInfo image = EmptySubImage();
    image.wFeatureValid = 1;
    EXPECT_EQ(
        Object(_PubSecSubImgObjJson, image),
        R"({"Type":"","FileFormat":"","FeatureInfoObject":{"Vendor":"","AlgorithmVersion":"","FeatureData":""}})");
}

TEST(SubImage, FeatureStandsBetweenDataAndAlgorithm)
{
    char data[] = "QUJD";
    char vector[] = "";
    TPubSecSubImageInfo image = EmptySubImage();
    strcpy(image.achType, "100");
    image.pchData = data;
    image.wFeatureValid = 0x100;
    image.tFeatureInfo.pchFeatureData = vector;
    image.bAlgorithmsStatusValid = 1;
    image.nAlgorithmsStatus = 0;
    EXPECT_EQ(Object(_PubSecSubImgObjJson, image),
              R"({"Type":"100","FileFormat":"","Data":"QUJD","FeatureInfoObject":{"Vendor":"","AlgorithmVersion":"",)"
              R"("FeatureData":""},"AlgorithmsStatus":0})");
}

TEST(SubImage, FeatureTextsAloneDoNotBringIt)
{
    char vector[] = "1";
    TPubSecSubImageInfo image = EmptySubImage();
    strcpy(image.tFeatureInfo.achVendor, "maker");
    image.tFeatureInfo.pchFeatureData = vector;
    EXPECT_EQ(Object(_PubSecSubImgObjJson, image), R"({"Type":"","FileFormat":""})");
}

TEST(SubImage, IdentifierAndPathAreOptionalHere)
{
    TPubSecSubImageInfo image = EmptySubImage();
    strcpy(image.achImageID, "Inv");
    strcpy(image.achStoragePath, "/a");
    EXPECT_EQ(Object(_PubSecSubImgObjJson, image), R"({"StoragePath":"/a","Type":"","FileFormat":""})");
}

constexpr const char* c_emptyFace =
    R"({"FaceID":"","InfoKind":0,"ShotTime":"","LocationMarkTime":"","FaceAppearTime":"",)"
    R"("FaceDisAppearTime":""})";

TEST(Face, AllZero)
{
    EXPECT_EQ(Object(_PubSecFaceObjListObjJson, TPubSecFaceObjInfo{}), c_emptyFace);
}

TEST(Face, FirstFiveMembers)
{
    TPubSecFaceObjInfo face = {};
    strcpy(face.achFaceID, "f");
    strcpy(face.achShotTime, "20240102030405");
    face.dwInfoKind = 1;
    strcpy(face.achSourceID, "s");
    strcpy(face.achDeviceID, "d");
    EXPECT_EQ(Object(_PubSecFaceObjListObjJson, face),
              R"({"FaceID":"f","InfoKind":1,"SourceID":"s","ShotTime":"20240102030405","DeviceID":"d",)"
              R"("LocationMarkTime":"","FaceAppearTime":"","FaceDisAppearTime":""})");
}

TEST(Face, PlaceAndSourceStandTwice)
{
    TPubSecFaceObjInfo face = {};
    face.bIdentityValid = 1;
    face.nIdentity = 3;
    face.bPlaceCodeValid = 1;
    face.nPlaceCode = 110101;
    strcpy(face.achSourceFactory, "5");
    strcpy(face.achPlaceCode, "110102");
    face.bSourceFactoryValid = 1;
    face.nSourceFactory = 6;
    EXPECT_TRUE(Holds(Object(_PubSecFaceObjListObjJson, face),
                      R"("FaceDisAppearTime":"","Identity":3,"PlaceCode":110101,"SourceFactory":"5",)"
                      R"("PlaceCode":"110102","SourceFactory":6})"));
}

TEST(Face, AnUnknownSourceLeavesItsNumber)
{
    TPubSecFaceObjInfo face = {};
    strcpy(face.achSourceFactory, "Inv");
    face.bSourceFactoryValid = 1;
    face.nSourceFactory = 2;
    EXPECT_TRUE(Holds(Object(_PubSecFaceObjListObjJson, face), R"("FaceDisAppearTime":"","SourceFactory":2})"));
}

TEST(Face, SimilarityKeepsItsFraction)
{
    TPubSecFaceObjInfo face = {};
    face.bSimilaritydegreeValid = 1;
    face.dSimilaritydegree = 0.875;
    EXPECT_TRUE(Holds(Object(_PubSecFaceObjListObjJson, face), R"("FaceDisAppearTime":"","Similaritydegree":0.875})"));
}

TEST(Face, FeatureStandsBetweenPersonAndLibrary)
{
    char data[] = "v";
    TPubSecFeatureInfo feature = {};
    feature.pchFeatureData = data;
    TPubSecFaceObjInfo face = {};
    strcpy(face.achPersonIDofFace, "p");
    strcpy(face.achTabID, "t");
    face.ptFeatureInfo = &feature;
    EXPECT_TRUE(Holds(Object(_PubSecFaceObjListObjJson, face),
                      R"("PersonIDofFace":"p","FeatureInfoObject":{"Vendor":"","AlgorithmVersion":"",)"
                      R"("FeatureData":"v"},"TabID":"t"})"));
}

TEST(Face, SubImagesAreNotTheEncodersBusiness)
{
    TPubSecSubImageInfo subImage = EmptySubImage();
    TPubSecFaceObjInfo face = {};
    face.nSubImageNum = 1;
    face.ptSubImageList = &subImage;
    EXPECT_EQ(Object(_PubSecFaceObjListObjJson, face), c_emptyFace);
}

TEST(Person, AllZero)
{
    EXPECT_EQ(Object(_PubSecPersonListObjJson, TPubSecPersonnelObjInfo{}),
              R"({"InfoKind":0,"SourceID":"","LocationMarkTime":"","PersonAppearTime":"","PersonDisAppearTime":""})");
}

TEST(Person, HeightIsATextAndItsLimitsAreNumbers)
{
    TPubSecPersonnelObjInfo person = {};
    person.bHeightUpLimitValid = 1;
    person.nHeightUpLimit = 180;
    strcpy(person.achHeight, "Inv");
    EXPECT_EQ(Object(_PubSecPersonListObjJson, person),
              R"({"InfoKind":0,"SourceID":"","LocationMarkTime":"","PersonAppearTime":"","PersonDisAppearTime":"",)"
              R"("HeightUpLimit":180})");
    strcpy(person.achHeight, "180");
    EXPECT_TRUE(Holds(Object(_PubSecPersonListObjJson, person), R"("HeightUpLimit":180,"Height":"180"})"));
}

TEST(Person, PlaceAndSourceStandTwice)
{
    TPubSecPersonnelObjInfo person = {};
    person.bPlaceCodeValid = 1;
    person.nPlaceCode = 110101;
    strcpy(person.achSourceFactory, "5");
    strcpy(person.achBloodType, "A");
    strcpy(person.achPlaceCode, "110102");
    strcpy(person.achCityCode, "110100");
    person.bSourceFactoryValid = 1;
    EXPECT_TRUE(Holds(Object(_PubSecPersonListObjJson, person),
                      R"("PersonDisAppearTime":"","PlaceCode":110101,"SourceFactory":"5","BloodType":"A",)"
                      R"("PlaceCode":"110102","CityCode":"110100","SourceFactory":0})"));
}

TEST(Person, FamilyIsIndependent)
{
    TPubSecPersonnelObjInfo person = {};
    strcpy(person.achSecondGuardianName, "g");
    strcpy(person.achSpouseID, "s");
    EXPECT_TRUE(Holds(Object(_PubSecPersonListObjJson, person),
                      R"("PersonDisAppearTime":"","SecondGuardianName":"g","SpouseID":"s"})"));
}

constexpr const char* c_emptyVehicle = R"({"MotorVehicleID":"","InfoKind":0,"SourceID":"","HasPlate":"0"})";

TEST(MotorVehicle, AllZero)
{
    EXPECT_EQ(Object(_PubSecMotorVehicleObjJson, TPubSecMotorVehicleObjInfo{}), c_emptyVehicle);
}

TEST(MotorVehicle, OnlyOneIsAPlate)
{
    TPubSecMotorVehicleObjInfo vehicle = {};
    vehicle.dwHasPlate = 1;
    EXPECT_EQ(Object(_PubSecMotorVehicleObjJson, vehicle),
              R"({"MotorVehicleID":"","InfoKind":0,"SourceID":"","HasPlate":"1"})");
    for (const u32 garbage : {2u, 0xFFFFFFFFu, 0x101u})
    {
        vehicle.dwHasPlate = garbage;
        EXPECT_EQ(Object(_PubSecMotorVehicleObjJson, vehicle), c_emptyVehicle);
    }
}

TEST(MotorVehicle, UseStandsTwice)
{
    TPubSecMotorVehicleObjInfo vehicle = {};
    vehicle.bUsingPropertiesCodeValid = 1;
    vehicle.nUsingPropertiesCode = 4;
    strcpy(vehicle.achUsingPropertiesCode, "A");
    EXPECT_EQ(Object(_PubSecMotorVehicleObjJson, vehicle),
              R"({"MotorVehicleID":"","InfoKind":0,"SourceID":"","HasPlate":"0","UsingPropertiesCode":4,)"
              R"("UsingPropertiesCode":"A"})");
}

TEST(MotorVehicle, LongitudeComesBeforeLatitude)
{
    TPubSecMotorVehicleObjInfo vehicle = {};
    vehicle.bSourceTypeValid = 1;
    vehicle.bShotPlaceLatitudeValid = 1;
    vehicle.dShotPlaceLatitude = 39.5;
    vehicle.bShotPlaceLongitudeValid = 1;
    vehicle.dShotPlaceLongitude = 116.25;
    vehicle.bPlaceCodeValid = 1;
    EXPECT_TRUE(Holds(Object(_PubSecMotorVehicleObjJson, vehicle),
                      R"("SourceType":0,"ShotPlaceLongitude":116.25,"ShotPlaceLatitude":39.5,"PlaceCode":0})"));
}

TEST(MotorVehicle, LabelsComeBeforeTheBrandAndTheFeatureAfterIt)
{
    char data[] = "v";
    TPubSecFeatureInfo feature = {};
    feature.pchFeatureData = data;
    TPubSecMotorVehicleObjInfo vehicle = {};
    strcpy(vehicle.achPlateCharReliability, "80");
    strcpy(vehicle.achBrandReliability, "90");
    vehicle.bYellowLabelCarFlagValid = 1;
    vehicle.bCdgFlagValid = 1;
    vehicle.ptFeatureInfo = &feature;
    strcpy(vehicle.achNationalityCode, "CHN");
    EXPECT_TRUE(Holds(Object(_PubSecMotorVehicleObjJson, vehicle),
                      R"("PlateCharReliability":"80","YellowLabelCarFlag":0,"CdgFlag":0,"BrandReliability":"90",)"
                      R"("FeatureInfoObject":{"Vendor":"","AlgorithmVersion":"","FeatureData":"v"},)"
                      R"("NationalityCode":"CHN"})"));
}

TEST(MotorVehicle, ExtensionsFollowTheTextRule)
{
    TPubSecMotorVehicleObjInfo vehicle = {};
    strcpy(vehicle.achXTNote, "Inv");
    EXPECT_EQ(Object(_PubSecMotorVehicleObjJson, vehicle), c_emptyVehicle);
    strcpy(vehicle.achXTNote, "note");
    EXPECT_TRUE(Holds(Object(_PubSecMotorVehicleObjJson, vehicle), R"("HasPlate":"0","XTNote":"note"})"));
}

TEST(NonMotorVehicle, AllZeroWritesEveryNumber)
{
    EXPECT_EQ(Object(_PubSecNonMotorVehicleObjJson, TPubSecNonMotorVehicleObjInfo{}),
              R"({"NonMotorVehicleID":"","InfoKind":0,"SourceID":"","LeftTopX":0,"LeftTopY":0,"RightBtmX":0,)"
              R"("RightBtmY":0,"MarkTime":"","AppearTime":"","DisappearTime":"","HasPlate":"0","PlateClass":"",)"
              R"("PlateColor":"","PlateNo":"","IsDecked":"0","IsAltered":"0","IsCovered":"0","Speed":0,)"
              R"("UsingPropertiesCode":0,"VehicleLength":0,"VehicleWidth":0,"VehicleHeight":0,"VehicleColor":"",)"
              R"("FilmColor":0,"IsModified":0,"CyclingType":0,"CyclingPersonNum":0,"SourceFactory":0,"DeviceClass":0,)"
              R"("ShotPlaceLongitude":0,"ShotPlaceLatitude":0,"SourceType":0,"State":0,"HasHelmet":0,"HasParasol":0,)"
              R"("HasRainshed":0,"HasTakeoutBox":0,"HasPassenger":0,"HasHood":0})");
}

/* Every number of this record absent. */
TPubSecNonMotorVehicleObjInfo UnknownNonMotorVehicle()
{
    TPubSecNonMotorVehicleObjInfo vehicle = {};
    for (s32* number :
         {&vehicle.nLeftTopX,      &vehicle.nLeftTopY,           &vehicle.nRightBtmX,     &vehicle.nRightBtmY,
          &vehicle.nVehicleLength, &vehicle.nVehicleWidth,       &vehicle.nVehicleHeight, &vehicle.nFilmColor,
          &vehicle.nIsModified,    &vehicle.nCyclingType,        &vehicle.nSourceFactory, &vehicle.nCyclingPersonNum,
          &vehicle.nDeviceClass,   &vehicle.nSourceType,         &vehicle.nState,         &vehicle.nHasHelmet,
          &vehicle.nHasParasol,    &vehicle.nHasRainshed,        &vehicle.nHasTakeoutBox, &vehicle.nHasPassenger,
          &vehicle.nHasHood,       &vehicle.nUsingPropertiesCode})
    {
        *number = -1;
    }
    vehicle.dSpeed = -1.0;
    vehicle.dShotPlaceLongitude = -1.0;
    vehicle.dShotPlaceLatitude = -1.0;
    return vehicle;
}

TEST(NonMotorVehicle, AllMinusOneLeavesWhatIsAlwaysWritten)
{
    EXPECT_EQ(Object(_PubSecNonMotorVehicleObjJson, UnknownNonMotorVehicle()),
              R"({"NonMotorVehicleID":"","InfoKind":0,"SourceID":"","LeftTopX":-1,"LeftTopY":-1,"RightBtmX":-1,)"
              R"("RightBtmY":-1,"MarkTime":"","AppearTime":"","DisappearTime":"","HasPlate":"0","PlateClass":"",)"
              R"("PlateColor":"","PlateNo":"","IsDecked":"0","IsAltered":"0","IsCovered":"0","VehicleColor":""})");
}

TEST(NonMotorVehicle, OnlyOneIsCovered)
{
    TPubSecNonMotorVehicleObjInfo vehicle = UnknownNonMotorVehicle();
    vehicle.dwIsCovered = 1;
    EXPECT_TRUE(Holds(Object(_PubSecNonMotorVehicleObjJson, vehicle), R"("IsAltered":"0","IsCovered":"1",)"));
    vehicle.dwIsCovered = 2;
    EXPECT_TRUE(Holds(Object(_PubSecNonMotorVehicleObjJson, vehicle), R"("IsAltered":"0","IsCovered":"0",)"));
}

TEST(NonMotorVehicle, UseStandsTwice)
{
    TPubSecNonMotorVehicleObjInfo vehicle = UnknownNonMotorVehicle();
    vehicle.nUsingPropertiesCode = 0;
    strcpy(vehicle.achUsingPropertiesCode, "B");
    EXPECT_TRUE(Holds(Object(_PubSecNonMotorVehicleObjJson, vehicle),
                      R"("IsCovered":"0","UsingPropertiesCode":0,"UsingPropertiesCode":"B","VehicleColor":"")"));
}

TEST(NonMotorVehicle, SpeedIsComparedExactly)
{
    TPubSecNonMotorVehicleObjInfo vehicle = UnknownNonMotorVehicle();
    vehicle.dSpeed = -1.0000001;
    EXPECT_TRUE(Holds(Object(_PubSecNonMotorVehicleObjJson, vehicle), R"("IsCovered":"0","Speed":-1.0000001,)"));
    vehicle.dSpeed = -0.5;
    EXPECT_TRUE(Holds(Object(_PubSecNonMotorVehicleObjJson, vehicle), R"("IsCovered":"0","Speed":-0.5,)"));
}

TEST(Thing, AllZero)
{
    EXPECT_EQ(Object(_PubSecThingObjJson, TPubSecThingObjInfo{}),
              R"({"ThingID":"","InfoKind":0,"SourceID":"","LeftTopX":0,"LeftTopY":0,"RightBtmX":0,"RightBtmY":0,)"
              R"("Name":"","Shape":"","Color":""})");
}

TEST(Thing, CoordinatesOfMinusOneAreLeftOut)
{
    TPubSecThingObjInfo thing = {};
    thing.nLeftTopX = thing.nLeftTopY = thing.nRightBtmX = thing.nRightBtmY = -1;
    EXPECT_EQ(Object(_PubSecThingObjJson, thing),
              R"({"ThingID":"","InfoKind":0,"SourceID":"","Name":"","Shape":"","Color":""})");
    thing.nLeftTopX = 0;
    EXPECT_EQ(Object(_PubSecThingObjJson, thing),
              R"({"ThingID":"","InfoKind":0,"SourceID":"","LeftTopX":0,"Name":"","Shape":"","Color":""})");
}

TEST(Scene, AllZero)
{
    EXPECT_EQ(Object(_PubSecPlaceObjJson, TPubSecSceneObjInfo{}),
              R"({"SceneID":"","InfoKind":0,"SourceID":"","RoadTerraintype":0})");
}

TEST(Scene, UnknownWeatherInAFieldOfThreeBytes)
{
    TPubSecSceneObjInfo scene = {};
    scene.nRoadTerraintype = -1;
    memcpy(scene.achWeatherType, "Inv", 3);
    EXPECT_EQ(Object(_PubSecPlaceObjJson, scene), R"({"SceneID":"","InfoKind":0,"SourceID":""})");
}

constexpr const char* c_emptySlice =
    R"({"VideoID":"","InfoKind":0,"VideoSource":"","StoragePath":"","FileHash":"","FileFormat":"","CodedFormat":"",)"
    R"("AudioFlag":0,"ContentDescription":"","ShotPlaceCode":"","SecurityLevel":"","VideoLen":0,"BeginTime":"",)"
    R"("EndTime":"","TimeErr":0,"Width":0,"Height":0,"EntryClerk":"","EntryClerkOrg":""})";

TEST(VideoSlice, AllZero)
{
    EXPECT_EQ(Object(_PubSecVideoSliceInfoJson, TPubSecVideoSliceInfo{}), c_emptySlice);
}

TEST(VideoSlice, AnUnknownDeviceIsLeftOut)
{
    TPubSecVideoSliceInfo slice = {};
    strcpy(slice.achDeviceID, "Inv");
    EXPECT_EQ(Object(_PubSecVideoSliceInfoJson, slice), c_emptySlice);
}

TEST(VideoSlice, LatitudeHasAKeyOfItsOwn)
{
    TPubSecVideoSliceInfo slice = {};
    slice.bShotPlaceLongitudeValid = 1;
    slice.dShotPlaceLongitude = 116.5;
    slice.bShotPlaceLatitudeValid = 1;
    slice.dShotPlaceLatitude = 39.5;
    const std::string written = Object(_PubSecVideoSliceInfoJson, slice);
    EXPECT_TRUE(Holds(written, R"("ShotPlaceCode":"","ShotPlaceLongitude":116.5,"ShotPlacetLatitude":39.5,)"));
    EXPECT_FALSE(Holds(written, "ShotPlaceLatitude"));
}

TEST(VideoSlice, UnsignedNumbersStayUnsigned)
{
    TPubSecVideoSliceInfo slice = {};
    slice.dwTimeErr = slice.dwWidth = slice.dwHeight = slice.dwFileSize = 0xFFFFFFFFu;
    slice.bFileSizeValid = 1;
    const std::string written = Object(_PubSecVideoSliceInfoJson, slice);
    EXPECT_TRUE(Holds(written, R"("TimeErr":4294967295,"Width":4294967295,"Height":4294967295,)"));
    EXPECT_TRUE(Holds(written, R"("EntryClerkOrg":"","FileSize":4294967295})"));
}

TEST(VideoSlice, SubImagesAreNotTheEncodersBusiness)
{
    TPubSecSubImageInfo subImage = EmptySubImage();
    TPubSecVideoSliceInfo slice = {};
    slice.dwSubImageNum = 1;
    slice.ptSubImageList = &subImage;
    EXPECT_EQ(Object(_PubSecVideoSliceInfoJson, slice), c_emptySlice);
}

TEST(File, IdentifierIsWrittenFirstAndOnlyWhenThereIsOne)
{
    TPubSecFileInfo file = {};
    file.nFileSize = -1;
    EXPECT_EQ(Object(_PubSecFileInfoJson, file),
              R"({"InfoKind":0,"Source":"","FileName":"","FileHash":"","FileFormat":"","Title":""})");
    strcpy(file.achFileID, "id");
    strcpy(file.achStoragePath, "/p");
    EXPECT_EQ(Object(_PubSecFileInfoJson, file),
              R"({"FileID":"id","InfoKind":0,"Source":"","FileName":"","StoragePath":"/p","FileHash":"",)"
              R"("FileFormat":"","Title":""})");
}

TEST(File, SizeIsSigned)
{
    TPubSecFileInfo file = {};
    EXPECT_TRUE(Holds(Object(_PubSecFileInfoJson, file), R"("Title":"","FileSize":0})"));
    file.nFileSize = -2;
    EXPECT_TRUE(Holds(Object(_PubSecFileInfoJson, file), R"("Title":"","FileSize":-2})"));
}

/* Every number of this record absent. */
TPubSecIllegalRecordInfo UnknownViolation()
{
    TPubSecIllegalRecordInfo record = {};
    for (s32* number : {&record.nIllegalAct,
                        &record.nLaneNo,
                        &record.nLeftTopX,
                        &record.nLeftTopY,
                        &record.nRightBtmX,
                        &record.nRightBtmY,
                        &record.nIllegalStatus,
                        &record.nVideoStatus,
                        &record.nCompImageStatus,
                        &record.nBackupMark,
                        &record.nIllegalActConfirm,
                        &record.nAIStatus,
                        &record.nSourceFactory,
                        &record.nDeviceClass,
                        &record.nWeight,
                        &record.nMaxWeight,
                        &record.nLength,
                        &record.nMaxLength,
                        &record.nWidth,
                        &record.nMaxWidth,
                        &record.nHeight,
                        &record.nMaxHeight})
    {
        *number = -1;
    }
    record.dSpeed = record.dMaxSpeed = record.dOverspeedRate = record.dOverRunRate = -1.0;
    return record;
}

TEST(IllegalRecord, NothingKnown)
{
    EXPECT_EQ(Object(_PubSecIllRecdObjJson, UnknownViolation()),
              R"({"IllegalRecordID":"","SourceID":"","TollgateID":"","DeviceID":"","HasPlate":"0"})");
}

TEST(IllegalRecord, TollgateComesBeforeDevice)
{
    TPubSecIllegalRecordInfo record = UnknownViolation();
    strcpy(record.achDeviceID, "d");
    strcpy(record.achTollgateID, "t");
    EXPECT_EQ(Object(_PubSecIllRecdObjJson, record),
              R"({"IllegalRecordID":"","SourceID":"","TollgateID":"t","DeviceID":"d","HasPlate":"0"})");
}

TEST(IllegalRecord, SpeedOfZeroIsASpeed)
{
    TPubSecIllegalRecordInfo record = UnknownViolation();
    record.dSpeed = 0.0;
    EXPECT_TRUE(Holds(Object(_PubSecIllRecdObjJson, record), R"("HasPlate":"0","Speed":0})"));
}

TEST(IllegalRecord, OnlyOneIsAPlate)
{
    TPubSecIllegalRecordInfo record = UnknownViolation();
    record.nHasPlate = 2;
    EXPECT_TRUE(Holds(Object(_PubSecIllRecdObjJson, record), R"("HasPlate":"0"})"));
    record.nHasPlate = -1;
    EXPECT_TRUE(Holds(Object(_PubSecIllRecdObjJson, record), R"("HasPlate":"0"})"));
    record.nHasPlate = 1;
    EXPECT_TRUE(Holds(Object(_PubSecIllRecdObjJson, record), R"("HasPlate":"1"})"));
}

TEST(IllegalRecord, PointersDecideForTheirTexts)
{
    TPubSecIllegalRecordInfo record = UnknownViolation();
    record.pchVideoIDs = "";
    record.pchPersonIDs = "Inv";
    EXPECT_TRUE(Holds(Object(_PubSecIllRecdObjJson, record), R"("HasPlate":"0","PersonIDs":"Inv","VideoIDs":""})"));
}

TEST(NonMotorIllegalRecord, AllZero)
{
    EXPECT_EQ(Object(_PubSecNonMotorIllRecdObjJson, TPubSecNonMotorIllegalRecordInfo{}),
              R"({"IllegalRecordID":"","SourceID":"","DeviceID":"","TollgateID":"","HasPlate":""})");
}

TEST(NonMotorIllegalRecord, SourceStandsBetweenPlaceAndProvince)
{
    TPubSecNonMotorIllegalRecordInfo record = {};
    strcpy(record.achHasPlate, "Inv");
    strcpy(record.achPlaceCode, "110101");
    record.bSourceFactoryValid = 1;
    strcpy(record.achProvinceCode, "110000");
    EXPECT_TRUE(Holds(Object(_PubSecNonMotorIllRecdObjJson, record),
                      R"("HasPlate":"Inv","PlaceCode":"110101","SourceFactory":0,"ProvinceCode":"110000"})"));
}

TEST(AccessRecord, AnUnknownSourceIsLeftOutAndAnEmptyDeviceIsNot)
{
    TPubSecAccessRecordInfo record = {};
    strcpy(record.achSourceID, "Inv");
    record.dwCardID = 4294967295u;
    record.nCardType = -1;
    record.nPunchAct = -1;
    EXPECT_EQ(Object(_PubSecAccRecdObjJson, record),
              R"({"AccessRecordID":"","DeviceID":"","SecureAccessID":"","AlarmEventCode":"","CardID":4294967295,)"
              R"("CardType":-1,"PersonCode":"","AccessTime":"","PunchAct":-1,"PunchResult":0,"PunchTime":""})");
}

TEST(Gps, CoordinatesAreAlwaysWritten)
{
    TPubSecGpsInfo gps = {};
    gps.fLongitude = -1.0F;
    gps.fLatitude = 39.75F;
    gps.nSourceType = -1;
    EXPECT_EQ(Object(_PubSecGpsMsgObject, gps),
              R"({"GPSID":"","DeviceID":"","SatelliteNo":0,"Direction":0,"Height":0,"Longitude":-1,)"
              R"("Latitude":39.75,"Speed":0,"CurrentTime":"","Positioning":"","ValidDataMark":0})");
}

TEST(Gps, FloatsAreWidened)
{
    TPubSecGpsInfo gps = {};
    gps.fLongitude = 116.3F;
    EXPECT_EQ(NumberIn(_PubSecGpsMsgObject, gps, "Longitude"), 116.30000305175781);
}

constexpr const char* c_unknownProbe =
    R"({"WifiDeviceDataID":"","DeviceID":"","DeviceName":"","Model":"","IPAddr":"","GPSInfo":"","PlaceCode":"",)"
    R"("Place":"","WifiProbeenable":"","CurrentTime":"","WorkPattern":"","DeviceMacAdress":""})";

TPubSecWifiDeviceInfo UnknownProbe()
{
    TPubSecWifiDeviceInfo probe = {};
    probe.fLongitude = -1.0F;
    probe.fLatitude = -1.0F;
    return probe;
}

TEST(WifiDevice, CoordinatesOfMinusOneAreLeftOut)
{
    EXPECT_EQ(Object(_PubSecWifiDetectionInfo, UnknownProbe()), c_unknownProbe);
}

TEST(WifiDevice, PositionNeedsExactlyOneInGpsInfo)
{
    TPubSecGpsInfo gps = {};
    gps.nSourceType = -1;
    TPubSecWifiDeviceInfo probe = UnknownProbe();
    probe.ptGPSData = &gps;
    for (const char* info : {"", "0", "2", "10", "1 ", "01"})
    {
        memcpy(probe.achGPSInfo, info, strlen(info) + 1);
        EXPECT_FALSE(Holds(Object(_PubSecWifiDetectionInfo, probe), "GPSData")) << info;
    }
    strcpy(probe.achGPSInfo, "1");
    EXPECT_TRUE(Holds(Object(_PubSecWifiDetectionInfo, probe),
                      R"("DeviceMacAdress":"","GPSData":{"GPSID":"","DeviceID":"","SatelliteNo":0,"Direction":0,)"
                      R"("Height":0,"Longitude":0,"Latitude":0,"Speed":0,"CurrentTime":"","Positioning":"",)"
                      R"("ValidDataMark":0}})"));
    probe.ptGPSData = nullptr;
    EXPECT_FALSE(Holds(Object(_PubSecWifiDetectionInfo, probe), "GPSData"));
}

TEST(WifiUser, TimeIsWrittenAsUnsigned64)
{
    TPubSecWifiUserInfo user = {};
    const auto written = [&](u64 qwTime) {
        user.qwEUTCTime = qwTime;
        return Object(_PubSecWifiUserObjJson, user);
    };
    EXPECT_EQ(written(0), R"({"WifiUserDataID":"","DeviceID":"","DiscoverMacAddr":"","StartTime":"","EndTime":"",)"
                          R"("EUTCTime":0})");
    EXPECT_TRUE(Holds(written(1704164645123u), R"("EUTCTime":1704164645123})"));
}

TEST(WifiUser, ALongTimeIsRoundedToADouble)
{
    TPubSecWifiUserInfo user = {};
    user.qwEUTCTime = 9007199254740993u;
    EXPECT_EQ(NumberIn(_PubSecWifiUserObjJson, user, "EUTCTime"), 9007199254740992.0);
    user.qwEUTCTime = 18446744073709551615u;
    EXPECT_EQ(NumberIn(_PubSecWifiUserObjJson, user, "EUTCTime"), 18446744073709551616.0);
}

TEST(WifiImei, LongitudeStandsTwiceAndLatitudeNever)
{
    TPubSecWifiImeiInfo imei = {};
    imei.dLongitude = 116.5;
    imei.dLatitude = 39.5;
    imei.nSourceFactory = -1;
    imei.nDeviceClass = -1;
    EXPECT_EQ(Object(_PubSecWifiIMEIObjJson, imei),
              R"({"DateTime":"","AreaCode":"","CI":"","Longitude":116.5,"Longitude":116.5,"ImeiID":""})");
}

TEST(Rfid, CoordinatesOfMinusOneAreLeftOut)
{
    TPubSecRFIDDeviceInfo device = {};
    device.fLongitude = device.fLatitude = -1.0F;
    EXPECT_EQ(Object(_PubSecRFIDInfo, device),
              R"({"RFIDDeviceDataID":"","DeviceID":"","DeviceName":"","Model":"","IPAddr":"","GPSInfo":"",)"
              R"("PlaceCode":"","Place":"","Probeenable":"","CurrentTime":"","WorkPattern":"","DeviceMacAdress":""})");
    TPubSecRFIDUserInfo user = {};
    user.fLatitude = -1.0F;
    EXPECT_EQ(Object(_PubSecRFIDUserObjJson, user),
              R"({"RFIDInfoDataID":"","DeviceID":"","RFIDID":"","StartTime":"","Longitude":0})");
}

TEST(LogEvent, AllZeroHasEveryMember)
{
    const TPubSecLogInfo event = {};
    char* document = _PubSecLogInfoJson(&event);
    EXPECT_STREQ(document, R"([{"clientId":"","clientTime":0,"category":"","action":"","value":{"TargetID":""},)"
                           R"("entryTime":0,"viidId":"","softVer":"","ip":"","test":""}])");
    cJSON_free(document);
}

} // namespace
