// Rows of the device section and of the security service.
#ifndef KIO_SETTINGS_FIELDS_DEVICE_H
#define KIO_SETTINGS_FIELDS_DEVICE_H

#include "kioapp/record.h"
#include "settings/field.h"
#include "settings/fields_uplink.h"

namespace kio::settings {

// Fields of RssXmlData. Their nodes are whole paths.

// Quirk "missing-version-is-11": each part is 1 when its node is absent.
inline constexpr Field kVersionFields[] = {
    {.element = "major",
     .node = "/zentrolinks/specversion/major",
     .member = KIO_MEMBER(RssXmlData, specMajor),
     .load = Load::kInteger,
     .absent = 1,
     .offer = Offer::kReadOnly},
    {.element = "minor",
     .node = "/zentrolinks/specversion/minor",
     .member = KIO_MEMBER(RssXmlData, specMinor),
     .load = Load::kInteger,
     .absent = 1,
     .offer = Offer::kReadOnly},
};

// Version 1.0 devices have neither of the first two, whatever their nodes hold.
inline constexpr Field kFeatureFields[] = {
    {.node = "/zentrolinks/apcloning",
     .member = KIO_MEMBER(RssXmlData, apCloningFeature),
     .versions = Versions::kNot10,
     .load = Load::kCloningLevel},
    {.node = "/zentrolinks/easyroaming",
     .member = KIO_MEMBER(RssXmlData, easyRoamingFeature),
     .versions = Versions::kNot10,
     .load = Load::kIsOne},
    {.node = "/zentrolinks/fwupgrade",
     .member = KIO_MEMBER(RssXmlData, fwUpgradeFeature),
     .load = Load::kIsNotZero},
    {.node = "/zentrolinks/safetyvyr",
     .member = KIO_MEMBER(RssXmlData, safetyVyrFeature),
     .load = Load::kIsOne},
};

inline constexpr Field kDeviceFields[] = {
    {.node = "/zentrolinks/tempdirecory",
     .member = KIO_MEMBER(RssXmlData, tmpPath),
     .load = Load::kText},
    {.node = "/zentrolinks/scriptdirecory",
     .member = KIO_MEMBER(RssXmlData, scriptPath),
     .load = Load::kText},
    {.node = "/zentrolinks/configurable",
     .member = KIO_MEMBER(RssXmlData, configurable),
     .load = Load::kIsNotZero},
    {.element = "DeviceType",
     .node = "/sys/devicetype",
     .member = KIO_MEMBER(RssXmlData, deviceType),
     .load = Load::kText},
    {.element = "DeviceName",
     .node = "/sys/friendlyname",
     .member = KIO_MEMBER(RssXmlData, deviceName),
     .group = Group::kBasic,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kRule,
     .rule = KIO_MEMBER(RssXmlData, friendlyNameValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kRule},
    {.element = "DevicePwd",
     .node = "/sys/user:1/password",
     .member = KIO_MEMBER(RssXmlData, devicePwd),
     .group = Group::kBasic,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kRule,
     .rule = KIO_MEMBER(RssXmlData, passwordValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kRule},
    {.element = "RouterEnbl",
     .node = "/sys/routerenbl",
     .member = KIO_MEMBER(RssXmlData, routerEnbl),
     .group = Group::kBasic,
     .logged = true,
     .load = Load::kInteger,
     .snapshot = Snapshot::kFullOnly,
     .absent = 2,
     .write = Write::kSwitch,
     .offer = Offer::kSwitch,
     .located = "/sys/RouterEnbl"},
    {.element = "EasyRoaming",
     .node = "/zentrolinks/easyroaminginfo",
     .member = KIO_MEMBER(RssXmlData, easyRoaming),
     .group = Group::kDetail,
     .versions = Versions::kNot10,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .write = Write::kIfDifferent,
     .offer = Offer::kRoaming},
    {.element = "ExtenderEnbl",
     .member = KIO_MEMBER(RssXmlData, extenderEnbl),
     .group = Group::kDetail,
     .versions = Versions::kOnly10,
     .logged = true},
};

inline constexpr Field kDeviceRules[] = {
    {.element = "DeviceName_Validate",
     .node = "/sys/friendlyname_validate",
     .member = KIO_MEMBER(RssXmlData, friendlyNameValidate),
     .load = Load::kRule,
     .offer = Offer::kReadOnly},
    {.element = "DevicePwd_Validate",
     .node = "/sys/user:1/password_validate",
     .member = KIO_MEMBER(RssXmlData, passwordValidate),
     .load = Load::kRule,
     .offer = Offer::kReadOnly},
};

// Below "/safetyvyr".

inline constexpr Field kSafetyFields[] = {
    {.element = "SafetyVyrEnbl",
     .node = "/safetyvyrenbl",
     .member = KIO_MEMBER(RssSafetyVyr, safetyVyrEnbl),
     .group = Group::kBasic,
     .load = Load::kIsOne,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kInRange,
     .low = 0,
     .high = 1,
     .write = Write::kIfDifferent,
     .offer = Offer::kFlag},
    {.element = "UrlDetectEnbl",
     .node = "/urldetectenbl",
     .member = KIO_MEMBER(RssSafetyVyr, urlDetectEnbl),
     .group = Group::kBasic,
     .load = Load::kIsOne,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kInRange,
     .low = 0,
     .high = 1,
     .write = Write::kIfDifferent,
     .offer = Offer::kFlag},
    {.element = "SafetyNotifyEnbl",
     .node = "/safetynotifyenbl",
     .member = KIO_MEMBER(RssSafetyVyr, safetyNotifyEnbl),
     .group = Group::kBasic,
     .load = Load::kIsOne,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kInRange,
     .low = 0,
     .high = 1,
     .write = Write::kIfDifferent,
     .offer = Offer::kFlag},
    {.element = "ToolRecommendEnbl",
     .node = "/toolrecommendenbl",
     .member = KIO_MEMBER(RssSafetyVyr, toolRecommendEnbl),
     .group = Group::kBasic,
     .load = Load::kIsOne,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kInRange,
     .low = 0,
     .high = 1,
     .write = Write::kIfDifferent,
     .offer = Offer::kFlag},
};

static_assert(HasUniqueElements(kDeviceFields) && HasUniqueElements(kSafetyFields));

// Every member is a row above or one of the members named here: sections, path texts and the
// bookkeeping of an exchange.

static_assert(Coverage<RssSafetyVyr>()
                  .Add(kSafetyFields)
                  .Add(KIO_MEMBER(RssSafetyVyr, path))
                  .Add(KIO_MEMBER(RssSafetyVyr, restart))
                  .IsComplete());

static_assert(Coverage<RssXmlData>()
                  .Add(kVersionFields)
                  .Add(kFeatureFields)
                  .Add(kDeviceFields)
                  .Add(kDeviceRules)
                  .Add(kUplinkRules)
                  .Add(KIO_MEMBER(RssXmlData, specName))
                  .Add(KIO_MEMBER(RssXmlData, specVer))
                  .Add(KIO_MEMBER(RssXmlData, upLink))
                  .Add(KIO_MEMBER(RssXmlData, wlan))
                  .Add(KIO_MEMBER(RssXmlData, safetyVyr))
                  .Add(KIO_MEMBER(RssXmlData, devicePath))
                  .Add(KIO_MEMBER(RssXmlData, deviceRestart))
                  .Add(KIO_MEMBER(RssXmlData, roamingRestart))
                  .Add(KIO_MEMBER(RssXmlData, wlanSurveyRestart))
                  .Add(KIO_MEMBER(RssXmlData, saveflag))
                  .Add(KIO_MEMBER(RssXmlData, exeflag))
                  .Add(KIO_MEMBER(RssXmlData, pre_exeflag))
                  .Add(KIO_MEMBER(RssXmlData, exeWaitSec))
                  .Add(KIO_MEMBER(RssXmlData, setResult))
                  .Add(KIO_MEMBER(RssXmlData, setMsg))
                  .Add(KIO_MEMBER(RssXmlData, apCloningOnly))
                  .Add(KIO_MEMBER(RssXmlData, wlan24Feature))
                  .Add(KIO_MEMBER(RssXmlData, wlan5Feature))
                  .IsComplete());

}  // namespace kio::settings

#endif
