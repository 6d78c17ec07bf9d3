/* SPDX-License-Identifier: Apache-2.0 */
/* GPS positions, and the reports of WiFi probes and RFID readers. The rules for fields are told in image.h. */
#ifndef PUBSECSTACK_SENSOR_H
#define PUBSECSTACK_SENSOR_H

#include <pubsecstack/types.h>

PUBSEC_C_BEGIN

/* One position of the device. */
typedef struct
{
    char achGPSID[49];       /* "GPSID", always */
    char achDeviceID[23];    /* "DeviceID", always */
    s32 nSatelliteNo;        /* "SatelliteNo", always */
    double dDirection;       /* "Direction", always */
    s32 nHeight;             /* "Height", always */
    float fLongitude;        /* "Longitude", always */
    float fLatitude;         /* "Latitude", always */
    double dSpeed;           /* "Speed", always */
    char achCurrentTime[15]; /* "CurrentTime", always */
    char achPositioning[33]; /* "Positioning", always */
    s32 nValidDataMark;      /* "ValidDataMark", always */
    char achSourceID[44];    /* "SourceID", text */
    s32 nSourceType;         /* "SourceType", not -1 */
} TPubSecGpsInfo;

/* A WiFi probe. */
typedef struct
{
    char achWifiDeviceDataID[42]; /* "WifiDeviceDataID", always */
    char achDeviceID[21];         /* "DeviceID", always */
    char achDeviceName[101];      /* "DeviceName", always */
    char achModel[101];           /* "Model", always */
    char achIPAddr[31];           /* "IPAddr", always */
    char achIPV6Addr[65];         /* "IPV6Addr", text */
    char achGPSInfo[3];           /* "GPSInfo", always */
    float fLongitude;             /* "Longitude", not -1 */
    float fLatitude;              /* "Latitude", not -1 */
    char achPlaceCode[7];         /* "PlaceCode", always */
    char achPlace[257];           /* "Place", always */
    char achWifiProbeenable[2];   /* "WifiProbeenable", always */
    char achCurrentTime[15];      /* "CurrentTime", always */
    char achTimeZone[33];         /* "TimeZone", text */
    char achAPScope[6];           /* "APScope", text */
    char achWorkPattern[9];       /* "WorkPattern", always */
    char achWirelessDataFrame[9]; /* "WirelessDataFrame", text */
    char achNetworkAccessType[9]; /* "NetworkAccessType", text */
    char achAPSendCyc[9];         /* "APSendCyc", text */
    char achDeviceMacAdress[49];  /* "DeviceMacAdress", always */
    char achCollectorName[51];    /* "CollectorName", text */
    char achCollectorOrg[101];    /* "CollectorOrg", text */
    char achCollectorIDType[4];   /* "CollectorIDType", text */
    char achCollectorID[31];      /* "CollectorID", text */
    char achDeviceSNNo[33];       /* "DeviceSNNo", text */
    char achAPSId[27];            /* "APSId", text */
    TPubSecGpsInfo* ptGPSData;    /* "GPSData", pointer, and only when achGPSInfo is "1" */
} TPubSecWifiDeviceInfo;

/* One terminal that a WiFi probe saw. */
typedef struct
{
    char achWifiUserDataID[49];       /* "WifiUserDataID", always */
    char achDeviceID[21];             /* "DeviceID", always */
    char achDiscoverMacAddr[49];      /* "DiscoverMacAddr", always */
    char achDiscoverSsidInf[33];      /* "DiscoverSsidInf", text */
    char achHistorySsid[1025];        /* "HistorySsid", text */
    char achImeiMsg[17];              /* "ImeiMsg", text */
    char achImsiMsg[17];              /* "ImsiMsg", text */
    char achOSVersion[17];            /* "OSVersion", text */
    char achDiscoverDeviceManuf[101]; /* "DiscoverDeviceManuf", text */
    char achStartTime[15];            /* "StartTime", always */
    char achEndTime[16];              /* "EndTime", always */
    u64 qwEUTCTime;                   /* "EUTCTime", always */
    char achPower[9];                 /* "Power", text */
    char achPhoneNo[16];              /* "PhoneNo", text */
    char achWireDisX[9];              /* "WireDisX", text */
    char achWireDisY[9];              /* "WireDisY", text */
    char achWIFIEncryptType[3];       /* "WIFIEncryptType", text */
    char achAPWifiChannel[3];         /* "APWifiChannel", text */
    char achMacAppearTimes[9];        /* "MacAppearTimes", text */
    char achSourceID[54];             /* "SourceID", text */
    char achSelfDefObject[64];        /* "SelfDefObject", text */
    char achCollectorName[51];        /* "CollectorName", text */
    char achCollectorOrg[101];        /* "CollectorOrg", text */
    char achCollectorIDType[4];       /* "CollectorIDType", text */
    char achCollectorID[31];          /* "CollectorID", text */
    char achDeviceSNNo[33];           /* "DeviceSNNo", text */
    char achAPSId[28];                /* "APSId", text */
} TPubSecWifiUserInfo;

/* One mobile identity that a WiFi probe captured. Its latitude is never written; its longitude is, twice. */
typedef struct
{
    char achHomeArea[8];          /* "HomeArea", text */
    char achWifiDeviceDataID[42]; /* "WifiDeviceDataID", text */
    char achDateTime[15];         /* "DateTime", always */
    char achPhoneModel[16];       /* "PhoneModel", text */
    char achIMEI[32];             /* "IMEI", text */
    char achMsisdn[16];           /* "Msisdn", text */
    char achIMSI[16];             /* "IMSI", text */
    char achTMSI[16];             /* "TMSI", text */
    char achAreaCode[8];          /* "AreaCode", always */
    char achCI[15];               /* "CI", always */
    double dLongitude;            /* "Longitude", always; twice */
    double dLatitude;             /* never written */
    char achMac[32];              /* "Mac", text */
    char achRssi[8];              /* "Rssi", text */
    char achLac[8];               /* "Lac", text */
    char achInctimer[8];          /* "Inctimer", text */
    char achAreaCideTime[15];     /* "AreaCideTime", text */
    char achSpcode[4];            /* "Spcode", text */
    char achNetWork[4];           /* "NetWork", text */
    char achEsn[64];              /* "Esn", text */
    char achPN[64];               /* "PN", text */
    char achFrequence[8];         /* "Frequence", text */
    char achSmsSendStatus[4];     /* "SmsSendStatus", text */
    char achSeqNum[64];           /* "SeqNum", text */
    char achEXPAND1[64];          /* "EXPAND1", text */
    char achEXPAND2[64];          /* "EXPAND2", text */
    char achEXPAND3[64];          /* "EXPAND3", text */
    char achEXPAND4[64];          /* "EXPAND4", text */
    char achEXPAND5[64];          /* "EXPAND5", text */
    char achImeiID[42];           /* "ImeiID", always */
    char achPlaceCode[7];         /* "PlaceCode", text */
    char achProvinceCode[7];      /* "ProvinceCode", text */
    char achCityCode[9];          /* "CityCode", text */
    s32 nSourceFactory;           /* "SourceFactory", not -1 */
    s32 nDeviceClass;             /* "DeviceClass", not -1 */
    u32 dwImeiNum; /* identities in the list that starts with this one; read from the first record only */
} TPubSecWifiImeiInfo;

/* The report of a WiFi probe. Each part is written when its pointer is not null. */
typedef struct
{
    s32 nWifiUserNum;
    TPubSecWifiDeviceInfo* ptWifiDevice; /* one record */
    TPubSecWifiUserInfo* ptWifiUser;     /* nWifiUserNum records */
    TPubSecWifiImeiInfo* ptWifiImei;     /* as many as the first one's dwImeiNum says */
} TPubSecWifiData;

/* An RFID reader. */
typedef struct
{
    char achRFIDDeviceDataID[42]; /* "RFIDDeviceDataID", always */
    char achDeviceID[21];         /* "DeviceID", always */
    char achDeviceName[101];      /* "DeviceName", always */
    char achModel[101];           /* "Model", always */
    char achIPAddr[31];           /* "IPAddr", always */
    char achIPV6Addr[65];         /* "IPV6Addr", text */
    char achGPSInfo[3];           /* "GPSInfo", always */
    float fLongitude;             /* "Longitude", not -1 */
    float fLatitude;              /* "Latitude", not -1 */
    char achPlaceCode[7];         /* "PlaceCode", always */
    char achPlace[257];           /* "Place", always */
    char achProbeenable[2];       /* "Probeenable", always */
    char achCurrentTime[15];      /* "CurrentTime", always */
    char achTimeZone[33];         /* "TimeZone", text */
    char achAPScope[9];           /* "APScope", text */
    char achWorkPattern[9];       /* "WorkPattern", always */
    char achDirectionalAngle[9];  /* "DirectionalAngle", text */
    char achAPCycle[9];           /* "APCycle", text */
    char achDeviceMacAdress[62];  /* "DeviceMacAdress", always */
    char achCollectorName[51];    /* "CollectorName", text */
    char achCollectorOrg[101];    /* "CollectorOrg", text */
    char achCollectorIDType[4];   /* "CollectorIDType", text */
    char achCollectorID[31];      /* "CollectorID", text */
} TPubSecRFIDDeviceInfo;

/* One tag that an RFID reader read. */
typedef struct
{
    char achRFIDInfoDataID[49]; /* "RFIDInfoDataID", always */
    char achDeviceID[21];       /* "DeviceID", always */
    char achRFIDID[49];         /* "RFIDID", always */
    char achStartTime[15];      /* "StartTime", always */
    char achEndTime[15];        /* "EndTime", text */
    char achPower[11];          /* "Power", text */
    float fLongitude;           /* "Longitude", not -1 */
    float fLatitude;            /* "Latitude", not -1 */
    char achMacAppearTimes[9];  /* "MacAppearTimes", text */
    char achSourceID[71];       /* "SourceID", text */
} TPubSecRFIDUserInfo;

/* The report of an RFID reader. Both parts are always written; without a reader its object is empty. */
typedef struct
{
    s32 nRFIDUserNum;
    TPubSecRFIDDeviceInfo* ptRFIDDevice; /* one record */
    TPubSecRFIDUserInfo* ptRFIDUser;     /* nRFIDUserNum records */
} TPubSecRFIDData;

PUBSEC_C_END

#endif
