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
  int active;     /* 1 when the rule is in force, else 0 */
  char mac[18];   /* station address */
  char path[128]; /* element path of the rule */
} RssAcRule;

/* Internet provider of a DSL or a mobile (APN) uplink. */
typedef struct {
  char countryName[128]; /* country of the provider */
  char ispName[128];     /* name of the provider */
  int vpi;               /* path of the circuit; format version 1.0 only, like the two below */
  int vci;               /* channel of the circuit */
  char encapsulationMode[128]; /* word of ADslEncapModeArray */
  char path[128];              /* element path of the provider */
  int encapModeCode;           /* code of encapsulationMode; format version 1.0 only */
} RssIsp;

/* The upstream network of a device whose uplink is wireless. */
typedef struct {
  int survey;                /* 1 asks for a site survey instead of a change */
  char connRefSiteBssid[18]; /* address of the upstream access point */
  char wirelessType[32];     /* word of WirelessTypeArray */
  char wirelessName[128];    /* name of the network */
  char encryptionKey[128];   /* key of the network */
  char path[128];            /* element path of the site */
  int wirelessTypeCode;      /* code of wirelessType */
} RssExtenderSite;

/* The uplink (WAN). */
typedef struct {
  int configurable;             /* 1 when the app may change the uplink */
  char hardwareSupport[128];    /* the hardware types that the device has, as one text */
  char hardwareType[32];        /* word of HardwareTypeArray */
  char connType[128];           /* word of ConnTypeArray */
  int mtu;                      /* bytes; format version 1.0 only */
  char loginUserName[128];      /* user name at the provider */
  char loginPassword[128];      /* password at the provider */
  char ip[16];                  /* own address of a static uplink */
  char netMask[16];             /* netmask of a static uplink */
  char gateway[16];             /* gateway of a static uplink */
  char dns[16];                 /* name server of a static uplink */
  RssIsp dsl;                   /* provider of a DSL uplink */
  RssIsp apn;                   /* provider of a mobile uplink */
  RssExtenderSite extenderSite; /* upstream network of a wireless uplink */
  char path[128];               /* element path of the uplink */
  int restart;                  /* non-zero when applying changed the uplink */
  int connTypeCode;             /* code of connType */
  int hardwareTypeCode;         /* code of hardwareType */
} RssUpLink;

/* One radio. */
typedef struct {
  int configurable;                /* 0 when the app may not change the radio */
  int wlEnbl;                      /* the radio is on */
  int wlSchedule;                  /* the schedule is on */
  char wirelessBssid[18];          /* address of the radio */
  char wirelessName[128];          /* name of the network */
  char encryptionMode[32];         /* word of WlanEncrypModeArray */
  char encryptionType[32];         /* word of WlanEncrypTypeArray */
  char encryptionKey[128];         /* key of the network */
  char country[32];                /* country whose channels the radio uses */
  char channelList[128];           /* channels that may be set, with commas between them */
  char channel[32];                /* "0" chooses automatically */
  int wlAcEnbl;                    /* access control is on */
  int wlAcMode;                    /* 0 or 1, as the device defines it */
  RssAcRule acRule[40];            /* the rules of the access control */
  char accessControlPath[128];     /* element path of the access control */
  int wlAcRuleNo;                  /* number of rules used, from acRule[0] on */
  char path[128];                  /* element path of the radio */
  int restart;                     /* non-zero when applying changed the radio */
  int encryptionModeCode;          /* code of encryptionMode */
  int encryptionTypeCode;          /* code of encryptionType */
  char wirelessNameValidate[128];  /* rule for wirelessName */
  char encryptionKeyValidate[128]; /* rule for encryptionKey */
} RssWlan;

/* The switches of the security service. */
typedef struct {
  int safetyVyrEnbl;     /* the service */
  int urlDetectEnbl;     /* its detection of addresses */
  int safetyNotifyEnbl;  /* its notices */
  int toolRecommendEnbl; /* its recommendations */
  char path[128];        /* element path of the service */
  int restart;           /* non-zero when applying changed a switch */
} RssSafetyVyr;

/* A version of the settings document format, "major.minor". */
typedef struct {
  int major;     /* before the point */
  int minor;     /* behind it */
  char path[32]; /* name of the element that held it */
  int combined;  /* 100 x major + minor */
} RssSpecVersion;

/* The settings record. Its first four members lie as those of RssSpecVersion do. */
typedef struct {
  int specMajor;                   /* the device's format version */
  int specMinor;                   /* its minor number */
  char specName[32];               /* name of the element that holds it */
  int specVer;                     /* 100 x specMajor + specMinor; 100 selects the older dialect */
  int configurable;                /* 0 when the app may change nothing */
  char deviceName[128];            /* name of the router */
  char devicePwd[128];             /* administrator password */
  char deviceType[128];            /* kind of device, such as Router */
  int routerEnbl;                  /* router mode is on */
  int extenderEnbl;                /* format version 1.0 only */
  char easyRoaming[128];           /* settings of the roaming between access points */
  RssUpLink upLink;                /* the uplink */
  char loginUserNameValidate[128]; /* rule for upLink.loginUserName */
  char loginPasswordValidate[128]; /* rule for upLink.loginPassword */
  RssWlan wlan[2];                 /* 2.4 GHz, 5 GHz */
  RssSafetyVyr safetyVyr;          /* the security service */
  char devicePath[32];             /* element path of the device */
  unsigned char deviceRestart;     /* name, password, router mode or roaming changed */
  int roamingRestart;              /* 0 after applying: a changed roaming counts in deviceRestart */
  int wlanSurveyRestart;           /* a site survey must run */
  char friendlyNameValidate[128];  /* rule for deviceName */
  char passwordValidate[128];      /* rule for devicePwd */
  unsigned char saveflag;          /* something changed that must be saved */
  int exeflag;                     /* actions that the next commit runs (platform.h) */
  int pre_exeflag;                 /* actions of the exchange before, kept for a later commit */
  int exeWaitSec;                  /* seconds that the app is told to wait */
  int setResult;                   /* last result code written */
  char setMsg[128];                /* last result message */
  unsigned char apCloningOnly;     /* 1 while settings of another access point are read */
  unsigned char apCloningFeature;  /* 0 to 2 */
  unsigned char fwUpgradeFeature;  /* the firmware can be upgraded */
  unsigned char easyRoamingFeature; /* documents hold EasyRoaming */
  unsigned char safetyVyrFeature;   /* documents hold SafetyVyr */
  unsigned char wlan24Feature;      /* the 2.4 GHz radio exists */
  unsigned char wlan5Feature;       /* the 5 GHz radio exists */
  char tmpPath[128];                /* directory of the result document */
  char scriptPath[128];             /* directory of the resync scripts */
} RssXmlData;

/* The record. Zeroed when the library is loaded. */
extern KIOAPP_API RssXmlData rssXmlData;

KIOAPP_END_DECLS

#endif
