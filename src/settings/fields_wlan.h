// Rows of a radio and its access control.
#ifndef KIO_SETTINGS_FIELDS_WLAN_H
#define KIO_SETTINGS_FIELDS_WLAN_H

#include "kioapp/record.h"
#include "settings/field.h"
#include "settings/keywords.h"

namespace kio::settings {

// Below "/lan/wireless2.4:1" and "/lan/wireless5:1".

inline constexpr Field kWlanFields[] = {
    Shown("ChannelList", "/channellist", KIO_MEMBER(RssWlan, channelList), Load::kTrimmed),
    Shown("WirelessName_Validate", "/wirelessname_validate",
          KIO_MEMBER(RssWlan, wirelessNameValidate), Load::kRule),
    Shown("EncryptionKey_Validate", "/encryptionkey_validate",
          KIO_MEMBER(RssWlan, encryptionKeyValidate), Load::kRule),
    Switch("WlEnbl", "/wlenbl", KIO_MEMBER(RssWlan, wlEnbl)).InRange(0, 3).Dumped(Dump::kPlainPair),
    Switch("WlSchedule", "/wlschedule", KIO_MEMBER(RssWlan, wlSchedule)).InRange(0, 2),
    // Tells which radio is meant; the app does not set it.
    Text("WirelessBSSID", "/wirelessbssid", KIO_MEMBER(RssWlan, wirelessBssid))
        .For(Versions::kNot10)
        .Checked(Check::kFilled)
        .Written(Write::kNever)
        .AsVariable(VariableKind::kReadOnly),
    Text("WirelessName", "/wirelessname", KIO_MEMBER(RssWlan, wirelessName))
        .Obeying(KIO_MEMBER(RssWlan, wirelessNameValidate)),
    Text("EncryptionMode", "/encryptionmode", KIO_MEMBER(RssWlan, encryptionMode))
        .Logged()
        .OneOf(kEncryptionModes, KIO_MEMBER(RssWlan, encryptionModeCode))
        .Dumped(Dump::kQuotedPair),
    Text("EncryptionType", "/encryptiontype", KIO_MEMBER(RssWlan, encryptionType))
        .In(Group::kDetail)
        .For(Versions::kNot10)
        .Logged()
        .OneOf(kEncryptionTypes, KIO_MEMBER(RssWlan, encryptionTypeCode))
        .Checked(Check::kEncryptionType)
        .Dumped(Dump::kQuoted, "Type"),
    // Quirk "radio-key-of-31": a document's key is cut to 31 characters.
    Text("EncryptionKey", "/encryptionkey", KIO_MEMBER(RssWlan, encryptionKey))
        .CutTo(31)
        .Obeying(KIO_MEMBER(RssWlan, encryptionKeyValidate))
        .Checked(Check::kRadioKey),
    Text("Channel", "/channel", KIO_MEMBER(RssWlan, channel))
        .In(Group::kDetail)
        .For(Versions::kNot10)
        .Checked(Check::kChannel)
        .AsVariable(VariableKind::kChannel),
    Shown("Country", "/country", KIO_MEMBER(RssWlan, country), Load::kText).InFullSnapshots(),
};

// Below the radio's "/accesscontrol".

inline constexpr const char* kRuleCountNode = "/acrule#";

inline constexpr Field kAccessFields[] = {
    // Quirk "access-switch-fault-borrows-a-name": verification calls it by the radio's switch.
    Switch("WlAcEnbl", "/wlacenbl", KIO_MEMBER(RssWlan, wlAcEnbl))
        .InRange(0, 2)
        .CalledInFaults("WlEnbl"),
    Setting("WlAcMode", "/wlacmode", KIO_MEMBER(RssWlan, wlAcMode), Load::kInteger)
        .In(Group::kDetail)
        .InRange(0, 1)
        .AsVariable(VariableKind::kFlag),
    // No document holds it: the parser counts the rules that are listed.
    // Quirk "any-number-of-rules": a variable takes more than there can be.
    Unloaded("AcRuleNo", KIO_MEMBER(RssWlan, wlAcRuleNo), Group::kDeviceOnly)
        .AsVariable(VariableKind::kAnything)
        .WithVariablePath(kRuleCountNode)
        .Dumped(Dump::kNever),
};

// Below an instance of the radio's "/accesscontrol/acrule".

inline constexpr Field kRuleFields[] = {
    Setting("Active", "/active", KIO_MEMBER(RssAcRule, active), Load::kInteger)
        .InRange(0, 1)
        .AsVariable(VariableKind::kFlag)
        .Dumped(Dump::kPlainPair),
    // Quirk "any-mac-passes": its form is the app's affair.
    Text("MAC", "/mac", KIO_MEMBER(RssAcRule, mac)).Checked(Check::kFilled).Dumped(Dump::kPlain),
};

}  // namespace kio::settings

#endif
