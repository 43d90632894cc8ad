/* The public structures once more, written from the interface's definition and not from the
 * headers: the layout test compares the two. */
#ifndef KIO_TESTS_ABI_INTERFACE_TYPES_H
#define KIO_TESTS_ABI_INTERFACE_TYPES_H

#include <stdint.h>

typedef struct {
  int active;
  char mac[18];
  char path[128];
} AbiRssAcRule;

typedef struct {
  char countryName[128];
  char ispName[128];
  int vpi;
  int vci;
  char encapsulationMode[128];
  char path[128];
  int encapModeCode;
} AbiRssIsp;

typedef struct {
  int survey;
  char connRefSiteBssid[18];
  char wirelessType[32];
  char wirelessName[128];
  char encryptionKey[128];
  char path[128];
  int wirelessTypeCode;
} AbiRssExtenderSite;

typedef struct {
  int configurable;
  char hardwareSupport[128];
  char hardwareType[32];
  char connType[128];
  int mtu;
  char loginUserName[128];
  char loginPassword[128];
  char ip[16];
  char netMask[16];
  char gateway[16];
  char dns[16];
  AbiRssIsp dsl;
  AbiRssIsp apn;
  AbiRssExtenderSite extenderSite;
  char path[128];
  int restart;
  int connTypeCode;
  int hardwareTypeCode;
} AbiRssUpLink;

typedef struct {
  int configurable;
  int wlEnbl;
  int wlSchedule;
  char wirelessBssid[18];
  char wirelessName[128];
  char encryptionMode[32];
  char encryptionType[32];
  char encryptionKey[128];
  char country[32];
  char channelList[128];
  char channel[32];
  int wlAcEnbl;
  int wlAcMode;
  AbiRssAcRule acRule[40];
  char accessControlPath[128];
  int wlAcRuleNo;
  char path[128];
  int restart;
  int encryptionModeCode;
  int encryptionTypeCode;
  char wirelessNameValidate[128];
  char encryptionKeyValidate[128];
} AbiRssWlan;

typedef struct {
  int safetyVyrEnbl;
  int urlDetectEnbl;
  int safetyNotifyEnbl;
  int toolRecommendEnbl;
  char path[128];
  int restart;
} AbiRssSafetyVyr;

typedef struct {
  int major;
  int minor;
  char path[32];
  int combined;
} AbiRssSpecVersion;

typedef struct {
  int specMajor;
  int specMinor;
  char specName[32];
  int specVer;
  int configurable;
  char deviceName[128];
  char devicePwd[128];
  char deviceType[128];
  int routerEnbl;
  int extenderEnbl;
  char easyRoaming[128];
  AbiRssUpLink upLink;
  char loginUserNameValidate[128];
  char loginPasswordValidate[128];
  AbiRssWlan wlan[2];
  AbiRssSafetyVyr safetyVyr;
  char devicePath[32];
  unsigned char deviceRestart;
  int roamingRestart;
  int wlanSurveyRestart;
  char friendlyNameValidate[128];
  char passwordValidate[128];
  unsigned char saveflag;
  int exeflag;
  int pre_exeflag;
  int exeWaitSec;
  int setResult;
  char setMsg[128];
  unsigned char apCloningOnly;
  unsigned char apCloningFeature;
  unsigned char fwUpgradeFeature;
  unsigned char easyRoamingFeature;
  unsigned char safetyVyrFeature;
  unsigned char wlan24Feature;
  unsigned char wlan5Feature;
  char tmpPath[128];
  char scriptPath[128];
} AbiRssXmlData;

typedef struct {
  AbiRssSpecVersion specVersion;
  char fileUrl[128];
  char notesUrl[128];
  char deviceMac[18];
  char currFileName[130];
} AbiFwXmlData;
typedef struct AbiClientAuthInfo {
  struct AbiClientAuthInfo *next;
  char ip[128];
  char username[64];
  char password[64];
  char sessionid[32];
  unsigned int logout;
} AbiClientAuthInfo;

typedef struct AbiKioTimer {
  struct AbiKioTimer *next;
  unsigned int remaining;
  unsigned int interval;
  unsigned int user_b;
  uintptr_t arg;
  unsigned int user_a;
  void (*callback)(uintptr_t arg);
} AbiKioTimer;

#endif
