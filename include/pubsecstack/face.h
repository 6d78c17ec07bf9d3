/* SPDX-License-Identifier: Apache-2.0 */
/* Faces. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_FACE_H
#define PUBSECSTACK_FACE_H

#include <pubsecstack/image.h>

PUBSEC_C_BEGIN

/*
 * One face: where it lies in the picture, when it appeared, whose it is, what it looks like and how it was matched.
 * "InfoKind" and "SourceID" are written before "ShotTime".
 */
typedef struct
{
    char achFaceID[49];   /* "FaceID", always */
    char achShotTime[15]; /* "ShotTime", always */
    u32 dwInfoKind;       /* "InfoKind", always */
    char achSourceID[42]; /* "SourceID", text */
    char achDeviceID[21]; /* "DeviceID", text */

    /* where it lies and when it was seen */
    u32 bLeftTopXValid;
    s32 nLeftTopX; /* "LeftTopX", flag */
    u32 bLeftTopYValid;
    s32 nLeftTopY; /* "LeftTopY", flag */
    u32 bRightBtmXValid;
    s32 nRightBtmX; /* "RightBtmX", flag */
    u32 bRightBtmYValid;
    s32 nRightBtmY;                /* "RightBtmY", flag */
    char achLocationMarkTime[15];  /* "LocationMarkTime", always */
    char achFaceAppearTime[15];    /* "FaceAppearTime", always */
    char achFaceDisAppearTime[15]; /* "FaceDisAppearTime", always */

    /* identity */
    char achIDType[4];     /* "IDType", text */
    char achIDNumber[31];  /* "IDNumber", text */
    char achName[51];      /* "Name", text */
    char achUsedName[51];  /* "UsedName", text */
    char achAlias[51];     /* "Alias", text */
    char achGenderCode[3]; /* "GenderCode", text */
    u32 bAgeUpLimitValid;
    s32 nAgeUpLimit; /* "AgeUpLimit", flag */
    u32 bAgeLowerLimitValid;
    s32 nAgeLowerLimit;                /* "AgeLowerLimit", flag */
    char achEthicCode[3];              /* "EthicCode", text */
    char achNationalityCode[4];        /* "NationalityCode", text */
    char achNativeCityCode[7];         /* "NativeCityCode", text */
    char achResidenceAdminDivision[7]; /* "ResidenceAdminDivision", text */
    char achChineseAccentCode[7];      /* "ChineseAccentCode", text */
    char achJobCategory[4];            /* "JobCategory", text */
    u32 bAccompanyNumberValid;
    s32 nAccompanyNumber; /* "AccompanyNumber", flag */

    /* appearance */
    char achSkinColor[5];         /* "SkinColor", text */
    char achHairStyle[3];         /* "HairStyle", text */
    char achHairColor[3];         /* "HairColor", text */
    char achFaceStyle[5];         /* "FaceStyle", text */
    char achFacialFeature[41];    /* "FacialFeature", text */
    char achPhysicalFeature[201]; /* "PhysicalFeature", text */
    char achRespiratorColor[3];   /* "RespiratorColor", text */
    char achCapStyle[3];          /* "CapStyle", text */
    char achCapColor[3];          /* "CapColor", text */
    char achGlassStyle[3];        /* "GlassStyle", text */
    char achGlassColor[3];        /* "GlassColor", text */

    /* role, case and detention */
    u32 bIsDriverValid;
    s32 nIsDriver; /* "IsDriver", flag */
    u32 bIsForeignerValid;
    s32 nIsForeigner;              /* "IsForeigner", flag */
    char achPassportType[3];       /* "PassportType", text */
    char achImmigrantTypeCode[13]; /* "ImmigrantTypeCode", text */
    u32 bIsSuspectedTerroristValid;
    s32 nIsSuspectedTerrorist;            /* "IsSuspectedTerrorist", flag */
    char achSuspectedTerroristNumber[20]; /* "SuspectedTerroristNumber", text */
    u32 bIsCriminalInvolvedValid;
    s32 nIsCriminalInvolved;                      /* "IsCriminalInvolved", flag */
    char achCriminalInvolvedSpecilisationCode[3]; /* "CriminalInvolvedSpecilisationCode", text */
    char achBodySpeciallMark[8];                  /* "BodySpeciallMark", text */
    char achCrimeMethod[5];                       /* "CrimeMethod", text */
    char achCrimeCharacterCode[4];                /* "CrimeCharacterCode", text */
    char achEscapedCriminalNumber[24];            /* "EscapedCriminalNumber", text */
    u32 bIsDetaineesValid;
    s32 nIsDetainees;                    /* "IsDetainees", flag */
    char achDetentionHouseCode[10];      /* "DetentionHouseCode", text */
    char achDetaineesIdentity[3];        /* "DetaineesIdentity", text */
    char achDetaineesSpecialIdentity[3]; /* "DetaineesSpecialIdentity", text */
    char achMemberTypeCode[4];           /* "MemberTypeCode", text */
    u32 bIsVictimValid;
    s32 nIsVictim;                  /* "IsVictim", flag */
    char achVictimType[4];          /* "VictimType", text */
    char achInjuredDegree[2];       /* "InjuredDegree", text */
    char achCorpseConditionCode[3]; /* "CorpseConditionCode", text */
    u32 bIsSuspiciousPersonValid;
    s32 nIsSuspiciousPerson; /* "IsSuspiciousPerson", flag */

    /* quality and features of the face */
    u32 bAttitudeValid;
    s32 nAttitude; /* "Attitude", flag */
    u32 bSimilaritydegreeValid;
    double dSimilaritydegree;     /* "Similaritydegree", flag */
    char achEyebrowStyle[33];     /* "EyebrowStyle", text */
    char achNoseStyle[33];        /* "NoseStyle", text */
    char achMustacheStyle[33];    /* "MustacheStyle", text */
    char achLipStyle[33];         /* "LipStyle", text */
    char achWrinklePouch[33];     /* "WrinklePouch", text */
    char achAcneStain[33];        /* "AcneStain", text */
    char achFreckleBirthmark[33]; /* "FreckleBirthmark", text */
    char achScarDimple[33];       /* "ScarDimple", text */
    char achOtherFeature[33];     /* "OtherFeature", text */
    char achEmotion[4];           /* "Emotion", text */
    char achPersonIDofFace[67];   /* "PersonIDofFace", text */

    /* sub-images and feature vector */
    s32 nSubImageNum;                    /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", after all other members; released with the record */
    TPubSecFeatureInfo* ptFeatureInfo;   /* "FeatureInfoObject", pointer */

    /* library of faces, and collector */
    char achTabID[48]; /* "TabID", text */
    u32 bMaritalstatusValid;
    s32 nMaritalstatus;         /* "Maritalstatus", flag */
    char achFamilyAddress[129]; /* "FamilyAddress", text */
    char achSelfDefObject[128]; /* "SelfDefObject", text */
    char achRelativeTabId[64];  /* "RelativeTabId", text */
    char achRelativeID[64];     /* "RelativeID", text */
    char achCollectorOrg[101];  /* "CollectorOrg", text */
    char achCollectorID[31];    /* "CollectorID", text */
    char achDeviceSNNo[33];     /* "DeviceSNNo", text */
    char achAPSId[21];          /* "APSId", text */
    char achDateBirth[17];      /* "DateBirth", text */

    /* disposition, place and source */
    u32 bDispTagValid;
    s32 nDispTag; /* "DispTag", flag */
    u32 bShotPlaceLongitudeValid;
    double dShotPlaceLongitude; /* "ShotPlaceLongitude", flag */
    u32 bShotPlaceLatitudeValid;
    double dShotPlaceLatitude; /* "ShotPlaceLatitude", flag */
    char achRaceCode[8];       /* "RaceCode", text */
    char achCrimeType[8];      /* "CrimeType", text */
    char achAddressDesc[128];  /* "AddressDesc", text */
    char achLogoutTime[15];    /* "LogoutTime", text */
    char achRegisterTime[15];  /* "RegisterTime", text */
    char achMaxSimilarPic[18]; /* "MaxSimilarPic", text */
    u32 bFaceQualityValid;
    s32 nFaceQuality; /* "FaceQuality", flag */
    u32 bDataTypeValid;
    s32 nDataType; /* "DataType", flag */
    u32 bIdentityValid;
    s32 nIdentity; /* "Identity", flag */
    u32 bPlaceCodeValid;
    s32 nPlaceCode;           /* "PlaceCode", flag */
    char achSourceFactory[8]; /* "SourceFactory", text */
    char achSourceKey[16];    /* "SourceKey", text */
    char achLocationKey[16];  /* "LocationKey", text */
    u32 bDirectionValid;
    s32 nDirection;          /* "Direction", flag */
    char achPlaceCode[7];    /* "PlaceCode", text */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[7];     /* "CityCode", text */
    u32 bSourceFactoryValid;
    s32 nSourceFactory; /* "SourceFactory", flag */
    u32 bDeviceClassValid;
    s32 nDeviceClass; /* "DeviceClass", flag */

    /* management */
    char achManageOrgName[64];     /* "ManageOrgName", text */
    char achManagePersonName[64];  /* "ManagePersonName", text */
    char achManagePhoneNumber[64]; /* "ManagePhoneNumber", text */
    u32 bQualityValid;
    s32 nQuality; /* "Quality", flag */
} TPubSecFaceObjInfo;

PUBSEC_C_END

#endif
