/* The settings record: one global record through which every settings exchange runs.
 *
 * It holds, side by side, what the device can do and how values are checked (read from the store),
 * the values that the app asked for, and the bookkeeping of the exchange. The layout is fixed for
 * the life of the library; a host may read every member between calls.
 *
 * Switches hold 0 (off), 1 (on), and 2 where the store node could not be read. Members whose names
 * end in Code hold the index of the text beside them in a keyword table of xml.h, or -1 for an
 * unknown word. Members named path, and those ending in Path, hold element paths for messages, such
 * as "Device/Wireless5", unless their comment says otherwise. Members whose names end in Validate
 * hold rules for `validate_RssData` (validate.h).
 */
#ifndef KIOAPP_RECORD_H
#define KIOAPP_RECORD_H

#include "kioapp/attributes.h"

KIOAPP_BEGIN_DECLS

/* One access-control rule of a radio. */
typedef struct {
  int active;   /* 1 when the rule is in force, else 0 */
  char mac[18]; /* station address */
  char path[128];
} RssAcRule;

/* Internet provider of a DSL or a mobile (APN) uplink. */
typedef struct {
  char countryName[128];
  char ispName[128];
  int vpi; /* format version 1.0 only, like the three below */
  int vci;
  char encapsulationMode[128]; /* word of ADslEncapModeArray */
  char path[128];
  int encapModeCode;
} RssIsp;

/* The upstream network of a device whose uplink is wireless. */
typedef struct {
  int survey;                /* 1 asks for a site survey instead of a change */
  char connRefSiteBssid[18]; /* address of the upstream access point */
  char wirelessType[32];     /* word of WirelessTypeArray */
  char wirelessName[128];
  char encryptionKey[128];
  char path[128];
  int wirelessTypeCode;
} RssExtenderSite;

/* The uplink (WAN). */
typedef struct {
  int configurable;
  char hardwareSupport[128]; /* the hardware types that the device has, as one text */
  char hardwareType[32];     /* word of HardwareTypeArray */
  char connType[128];        /* word of ConnTypeArray */
  int mtu;                   /* bytes; format version 1.0 only */
  char loginUserName[128];
  char loginPassword[128];
  char ip[16];
  char netMask[16];
  char gateway[16];
  char dns[16];
  RssIsp dsl;
  RssIsp apn;
  RssExtenderSite extenderSite;
  char path[128];
  int restart; /* non-zero when applying changed the uplink */
  int connTypeCode;
  int hardwareTypeCode;
} RssUpLink;

/* One radio. */
typedef struct {
  int configurable;
  int wlEnbl;
  int wlSchedule;
  char wirelessBssid[18];
  char wirelessName[128];
  char encryptionMode[32]; /* word of WlanEncrypModeArray */
  char encryptionType[32]; /* word of WlanEncrypTypeArray */
  char encryptionKey[128];
  char country[32];
  char channelList[128]; /* channels that may be set, with commas between them */
  char channel[32];      /* "0" chooses automatically */
  int wlAcEnbl;          /* access control is on */
  int wlAcMode;
  RssAcRule acRule[40];
  char accessControlPath[128];
  int wlAcRuleNo; /* number of rules used, from acRule[0] on */
  char path[128];
  int restart; /* non-zero when applying changed the radio */
  int encryptionModeCode;
  int encryptionTypeCode;
  char wirelessNameValidate[128];
  char encryptionKeyValidate[128];
} RssWlan;

/* The switches of the security service. */
typedef struct {
  int safetyVyrEnbl;
  int urlDetectEnbl;
  int safetyNotifyEnbl;
  int toolRecommendEnbl;
  char path[128];
  int restart; /* non-zero when applying changed a switch */
} RssSafetyVyr;

/* A version of the settings document format, "major.minor". */
typedef struct {
  int major;
  int minor;
  char path[32]; /* name of the element that held it */
  int combined;  /* 100 x major + minor */
} RssSpecVersion;

/* The settings record. Its first four members lie as those of RssSpecVersion do. */
typedef struct {
  int specMajor; /* the device's format version */
  int specMinor;
  char specName[32];
  int specVer; /* 100 x specMajor + specMinor; 100 selects the older dialect */
  int configurable;
  char deviceName[128];
  char devicePwd[128];
  char deviceType[128];
  int routerEnbl;
  int extenderEnbl; /* format version 1.0 only */
  char easyRoaming[128];
  RssUpLink upLink;
  char loginUserNameValidate[128];
  char loginPasswordValidate[128];
  RssWlan wlan[2]; /* 2.4 GHz, 5 GHz */
  RssSafetyVyr safetyVyr;
  char devicePath[32];
  unsigned char deviceRestart; /* name, password, router mode or roaming changed */
  int roamingRestart;
  int wlanSurveyRestart; /* a site survey must run */
  char friendlyNameValidate[128];
  char passwordValidate[128];
  unsigned char saveflag;         /* something changed that must be saved */
  int exeflag;                    /* actions that the next commit runs (platform.h) */
  int pre_exeflag;                /* actions of the exchange before, kept for a later commit */
  int exeWaitSec;                 /* seconds that the app is told to wait */
  int setResult;                  /* last result code written */
  char setMsg[128];               /* last result message */
  unsigned char apCloningOnly;    /* 1 while settings of another access point are read */
  unsigned char apCloningFeature; /* 0 to 2 */
  unsigned char fwUpgradeFeature;
  unsigned char easyRoamingFeature;
  unsigned char safetyVyrFeature;
  unsigned char wlan24Feature; /* the 2.4 GHz radio exists */
  unsigned char wlan5Feature;  /* the 5 GHz radio exists */
  char tmpPath[128];           /* directory of the result document */
  char scriptPath[128];        /* directory of the resync scripts */
} RssXmlData;

/* The record. Zeroed when the library is loaded. */
extern KIOAPP_API RssXmlData rssXmlData;

KIOAPP_END_DECLS

#endif
