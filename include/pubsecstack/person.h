/* SPDX-License-Identifier: Apache-2.0 */
/* Persons. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_PERSON_H
#define PUBSECSTACK_PERSON_H

#include <pubsecstack/image.h>

PUBSEC_C_BEGIN

/*
 * One whole person: body, clothing, belongings, behaviour, identity, family and guardians. Height is a text here,
 * its limits are numbers.
 */
typedef struct
{
    char achPersonID[49]; /* "PersonID", text */
    u32 dwInfoKind;       /* "InfoKind", always */
    char achSourceID[42]; /* "SourceID", always */
    char achDeviceID[21]; /* "DeviceID", text */

    /* where the person is and when seen */
    u32 bLeftTopXValid;
    s32 nLeftTopX; /* "LeftTopX", flag */
    u32 bLeftTopYValid;
    s32 nLeftTopY; /* "LeftTopY", flag */
    u32 bRightBtmXValid;
    s32 nRightBtmX; /* "RightBtmX", flag */
    u32 bRightBtmYValid;
    s32 nRightBtmY;                  /* "RightBtmY", flag */
    char achLocationMarkTime[15];    /* "LocationMarkTime", always */
    char achPersonAppearTime[15];    /* "PersonAppearTime", always */
    char achPersonDisAppearTime[15]; /* "PersonDisAppearTime", always */

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
    char achPersonOrg[101];            /* "PersonOrg", text */
    char achJobCategory[7];            /* "JobCategory", text */
    u32 bAccompanyNumberValid;
    s32 nAccompanyNumber; /* "AccompanyNumber", flag */

    /* body */
    u32 bHeightUpLimitValid;
    s32 nHeightUpLimit; /* "HeightUpLimit", flag */
    u32 bHeightLowerLimitValid;
    s32 nHeightLowerLimit;        /* "HeightLowerLimit", flag */
    char achBodyType[5];          /* "BodyType", text */
    char achSkinColor[5];         /* "SkinColor", text */
    char achHairStyle[3];         /* "HairStyle", text */
    char achHairColor[3];         /* "HairColor", text */
    char achGesture[3];           /* "Gesture", text */
    char achStatus[3];            /* "Status", text */
    char achFaceStyle[5];         /* "FaceStyle", text */
    char achFacialFeature[41];    /* "FacialFeature", text */
    char achPhysicalFeature[201]; /* "PhysicalFeature", text */
    char achBodyFeature[71];      /* "BodyFeature", text */

    /* behaviour */
    char achHabitualMovement[3];      /* "HabitualMovement", text */
    char achBehavior[3];              /* "Behavior", text */
    char achBehaviorDescription[257]; /* "BehaviorDescription", text */

    /* belongings and clothing */
    char achAppendant[129];            /* "Appendant", text */
    char achAppendantDescription[257]; /* "AppendantDescription", text */
    char achUmbrellaColor[3];          /* "UmbrellaColor", text */
    char achRespiratorColor[3];        /* "RespiratorColor", text */
    char achCapStyle[3];               /* "CapStyle", text */
    char achCapColor[3];               /* "CapColor", text */
    char achGlassStyle[3];             /* "GlassStyle", text */
    char achGlassColor[3];             /* "GlassColor", text */
    char achScarfColor[3];             /* "ScarfColor", text */
    char achBagStyle[3];               /* "BagStyle", text */
    char achBagColor[3];               /* "BagColor", text */
    char achCoatStyle[3];              /* "CoatStyle", text */
    char achCoatLength[2];             /* "CoatLength", text */
    char achCoatColor[3];              /* "CoatColor", text */
    char achTrousersStyle[3];          /* "TrousersStyle", text */
    char achTrousersColor[3];          /* "TrousersColor", text */
    char achTrousersLen[2];            /* "TrousersLen", text */
    char achShoesStyle[3];             /* "ShoesStyle", text */
    char achShoesColor[5];             /* "ShoesColor", text */

    /* role, case and detention */
    u32 bIsDriverValid;
    s32 nIsDriver; /* "IsDriver", flag */
    u32 bIsForeignerValid;
    s32 nIsForeigner;             /* "IsForeigner", flag */
    char achPassportType[3];      /* "PassportType", text */
    char achImmigrantTypeCode[5]; /* "ImmigrantTypeCode", text */
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
    char achMemberTypeCode[8];           /* "MemberTypeCode", text */
    u32 bIsVictimValid;
    s32 nIsVictim;                  /* "IsVictim", flag */
    char achVictimType[4];          /* "VictimType", text */
    char achInjuredDegree[2];       /* "InjuredDegree", text */
    char achCorpseConditionCode[3]; /* "CorpseConditionCode", text */
    u32 bIsSuspiciousPersonValid;
    s32 nIsSuspiciousPerson; /* "IsSuspiciousPerson", flag */
    char achCoatTexture[4];  /* "CoatTexture", text */

    /* sub-images */
    s32 nSubImageNum;                    /* entries of ptSubImageList */
    TPubSecSubImageInfo* ptSubImageList; /* "SubImageList", after all other members; released with the record */

    /* library of persons, and collector */
    char achTabID[72]; /* "TabID", text */
    u32 bMaritalstatusValid;
    s32 nMaritalstatus;         /* "Maritalstatus", flag */
    char achFamilyAddress[129]; /* "FamilyAddress", text */
    char achCollectorOrg[101];  /* "CollectorOrg", text */
    char achCollectorID[31];    /* "CollectorID", text */
    char achDeviceSNNo[33];     /* "DeviceSNNo", text */
    char achAPSId[21];          /* "APSId", text */
    char achDateBirth[17];      /* "DateBirth", text */

    /* disposition, place and source */
    u32 bDispTagValid;
    s32 nDispTag;         /* "DispTag", flag */
    char achShotTime[15]; /* "ShotTime", text */
    u32 bIdentityValid;
    s32 nIdentity; /* "Identity", flag */
    u32 bPlaceCodeValid;
    s32 nPlaceCode;           /* "PlaceCode", flag */
    char achSourceFactory[8]; /* "SourceFactory", text */
    char achSourceKey[16];    /* "SourceKey", text */
    char achLocationKey[16];  /* "LocationKey", text */
    u32 bDirectionValid;
    s32 nDirection; /* "Direction", flag */

    /* more of what is seen */
    u32 bCoatVeinValid;
    s32 nCoatVein; /* "CoatVein", flag */
    u32 bTrousersVeinValid;
    s32 nTrousersVein; /* "TrousersVein", flag */
    u32 bRidingValid;
    s32 nRiding; /* "Riding", flag */
    u32 bHasLiftingValid;
    s32 nHasLifting; /* "HasLifting", flag */
    u32 bHasTrolleyCaseValid;
    s32 nHasTrolleyCase; /* "HasTrolleyCase", flag */
    u32 bHasTrolleyValid;
    s32 nHasTrolley; /* "HasTrolley", flag */

    /* guardians and family */
    char achFirstGuardianID[32];        /* "FirstGuardianID", text */
    char achFirstGuardianName[32];      /* "FirstGuardianName", text */
    char achFirstGuardianRelation[16];  /* "FirstGuardianRelation", text */
    char achSecondGuardianID[32];       /* "SecondGuardianID", text */
    char achSecondGuardianName[32];     /* "SecondGuardianName", text */
    char achSecondGuardianRelation[16]; /* "SecondGuardianRelation", text */
    char achFatherID[32];               /* "FatherID", text */
    char achFatherName[32];             /* "FatherName", text */
    char achMotherID[32];               /* "MotherID", text */
    char achMotherName[32];             /* "MotherName", text */
    char achSpouseID[32];               /* "SpouseID", text */
    char achSpouseName[32];             /* "SpouseName", text */
    char achHouseholdRelation[32];      /* "HouseholdRelation", text */
    char achHouseholdID[32];            /* "HouseholdID", text */
    char achResidentID[32];             /* "ResidentID", text */
    char achNewHouseholdID[32];         /* "NewHouseholdID", text */

    /* personal data */
    char achHeight[8];                /* "Height", text */
    char achEducation[8];             /* "Education", text */
    char achMilitaryService[8];       /* "MilitaryService", text */
    char achMilitaryServiceOrg[32];   /* "MilitaryServiceOrg", text */
    char achMilitaryServiceAddr[128]; /* "MilitaryServiceAddr", text */
    char achBirthPlace[128];          /* "BirthPlace", text */
    char achFaith[16];                /* "Faith", text */
    char achBloodType[8];             /* "BloodType", text */

    /* place and origin */
    char achPlaceCode[7];    /* "PlaceCode", text */
    char achProvinceCode[7]; /* "ProvinceCode", text */
    char achCityCode[7];     /* "CityCode", text */
    u32 bSourceFactoryValid;
    s32 nSourceFactory; /* "SourceFactory", flag */
    u32 bDeviceClassValid;
    s32 nDeviceClass; /* "DeviceClass", flag */
} TPubSecPersonnelObjInfo;

PUBSEC_C_END

#endif
