// Rows of the device section and of the security service.
#ifndef KIO_SETTINGS_FIELDS_DEVICE_H
#define KIO_SETTINGS_FIELDS_DEVICE_H

#include "kioapp/record.h"
#include "platform/nodes.h"
#include "settings/field.h"

namespace kio::settings {

// Fields of RssXmlData. Their nodes are whole paths.

// Quirk "missing-version-is-11": each part is 1 when its node is absent.
inline constexpr Field kVersionFields[] = {
    Shown("major", "/zentrolinks/specversion/major", KIO_MEMBER(RssXmlData, specMajor),
          Load::kInteger)
        .WhenAbsent(1),
    Shown("minor", "/zentrolinks/specversion/minor", KIO_MEMBER(RssXmlData, specMinor),
          Load::kInteger)
        .WhenAbsent(1),
};

// Devices of version 1.0 do not have the first two, whatever their nodes hold.
inline constexpr Field kFeatureFields[] = {
    Known("", "/zentrolinks/apcloning", KIO_MEMBER(RssXmlData, apCloningFeature),
          Load::kCloningLevel)
        .For(Versions::kNot10),
    Known("", "/zentrolinks/easyroaming", KIO_MEMBER(RssXmlData, easyRoamingFeature), Load::kIsOne)
        .For(Versions::kNot10),
    Known("", "/zentrolinks/fwupgrade", KIO_MEMBER(RssXmlData, fwUpgradeFeature), Load::kIsNotZero),
    Known("", "/zentrolinks/safetyvyr", KIO_MEMBER(RssXmlData, safetyVyrFeature), Load::kIsOne),
};

inline constexpr Field kDeviceFields[] = {
    Known("", platform::kTempDirectoryNode, KIO_MEMBER(RssXmlData, tmpPath), Load::kText),
    Known("", platform::kScriptDirectoryNode, KIO_MEMBER(RssXmlData, scriptPath), Load::kText),
    Known("", "/zentrolinks/configurable", KIO_MEMBER(RssXmlData, configurable), Load::kIsNotZero),
    Text("DeviceName", "/sys/friendlyname", KIO_MEMBER(RssXmlData, deviceName))
        .Obeying(KIO_MEMBER(RssXmlData, friendlyNameValidate)),
    Text("DevicePwd", platform::kPasswordNode, KIO_MEMBER(RssXmlData, devicePwd))
        .Obeying(KIO_MEMBER(RssXmlData, passwordValidate)),
    Known("DeviceType", "/sys/devicetype", KIO_MEMBER(RssXmlData, deviceType), Load::kText)
        .Dumped(Dump::kQuoted),
    Switch("RouterEnbl", "/sys/routerenbl", KIO_MEMBER(RssXmlData, routerEnbl))
        .Logged()
        .WithVariablePath("/sys/RouterEnbl"),
    Text("EasyRoaming", "/zentrolinks/easyroaminginfo", KIO_MEMBER(RssXmlData, easyRoaming))
        .In(Group::kRoaming)
        .For(Versions::kNot10)
        .NotNeeded(Optional::kWhileCloning)
        .AsVariable(VariableKind::kRoaming)
        .Dumped(Dump::kPlain),
    Unloaded("ExtenderEnbl", KIO_MEMBER(RssXmlData, extenderEnbl), Group::kExtender)
        .For(Versions::kOnly10)
        .Logged(),
};

inline constexpr Field kDeviceRules[] = {
    Shown("DeviceName_Validate", "/sys/friendlyname_validate",
          KIO_MEMBER(RssXmlData, friendlyNameValidate), Load::kRule),
    Shown("DevicePwd_Validate", "/sys/user:1/password_validate",
          KIO_MEMBER(RssXmlData, passwordValidate), Load::kRule),
};

// Below "/safetyvyr".

inline constexpr Field kSafetyFields[] = {
    Flag("SafetyVyrEnbl", "/safetyvyrenbl", KIO_MEMBER(RssSafetyVyr, safetyVyrEnbl)),
    Flag("UrlDetectEnbl", "/urldetectenbl", KIO_MEMBER(RssSafetyVyr, urlDetectEnbl)),
    Flag("SafetyNotifyEnbl", "/safetynotifyenbl", KIO_MEMBER(RssSafetyVyr, safetyNotifyEnbl)),
    Flag("ToolRecommendEnbl", "/toolrecommendenbl", KIO_MEMBER(RssSafetyVyr, toolRecommendEnbl)),
};

}  // namespace kio::settings

#endif
