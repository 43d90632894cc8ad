// Rows of a radio and its access control.
#ifndef KIO_SETTINGS_FIELDS_WLAN_H
#define KIO_SETTINGS_FIELDS_WLAN_H

#include "kioapp/record.h"
#include "kioapp/xml.h"
#include "settings/field.h"

namespace kio::settings {

// Below "/lan/wireless2.4:1" and "/lan/wireless5:1".

inline constexpr Field kWlanFields[] = {
    {.element = "ChannelList",
     .node = "/channellist",
     .member = KIO_MEMBER(RssWlan, channelList),
     .load = Load::kTrimmed,
     .offer = Offer::kReadOnly},
    {.element = "WirelessName_Validate",
     .node = "/wirelessname_validate",
     .member = KIO_MEMBER(RssWlan, wirelessNameValidate),
     .load = Load::kRule,
     .offer = Offer::kReadOnly},
    {.element = "EncryptionKey_Validate",
     .node = "/encryptionkey_validate",
     .member = KIO_MEMBER(RssWlan, encryptionKeyValidate),
     .load = Load::kRule,
     .offer = Offer::kReadOnly},
    {.element = "WlEnbl",
     .node = "/wlenbl",
     .member = KIO_MEMBER(RssWlan, wlEnbl),
     .group = Group::kBasic,
     .load = Load::kInteger,
     .snapshot = Snapshot::kFullOnly,
     .absent = 2,
     .check = Check::kInRange,
     .low = 0,
     .high = 3,
     .write = Write::kSwitch,
     .offer = Offer::kSwitch},
    {.element = "WlSchedule",
     .node = "/wlschedule",
     .member = KIO_MEMBER(RssWlan, wlSchedule),
     .group = Group::kBasic,
     .load = Load::kInteger,
     .snapshot = Snapshot::kFullOnly,
     .absent = 2,
     .check = Check::kInRange,
     .low = 0,
     .high = 2,
     .write = Write::kSwitch,
     .offer = Offer::kSwitch},
    // Tells which radio is meant; the app does not set it.
    {.element = "WirelessBSSID",
     .node = "/wirelessbssid",
     .member = KIO_MEMBER(RssWlan, wirelessBssid),
     .group = Group::kBasic,
     .versions = Versions::kNot10,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kFilled,
     .offer = Offer::kReadOnly},
    {.element = "WirelessName",
     .node = "/wirelessname",
     .member = KIO_MEMBER(RssWlan, wirelessName),
     .group = Group::kBasic,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kRule,
     .rule = KIO_MEMBER(RssWlan, wirelessNameValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kRule},
    {.element = "EncryptionMode",
     .node = "/encryptionmode",
     .member = KIO_MEMBER(RssWlan, encryptionMode),
     .group = Group::kBasic,
     .logged = true,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .words = WlanEncrypModeArray,
     .code = KIO_MEMBER(RssWlan, encryptionModeCode),
     .check = Check::kKeyword,
     .write = Write::kIfDifferent,
     .offer = Offer::kKeyword},
    {.element = "EncryptionType",
     .node = "/encryptiontype",
     .member = KIO_MEMBER(RssWlan, encryptionType),
     .group = Group::kDetail,
     .versions = Versions::kNot10,
     .logged = true,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .words = WlanEncrypTypeArray,
     .code = KIO_MEMBER(RssWlan, encryptionTypeCode),
     .check = Check::kEncryptionType,
     .write = Write::kIfDifferent,
     .offer = Offer::kKeyword},
    // Quirk "radio-key-of-31": a document's key is cut to 31 characters.
    {.element = "EncryptionKey",
     .node = "/encryptionkey",
     .member = KIO_MEMBER(RssWlan, encryptionKey),
     .group = Group::kBasic,
     .document_limit = 31,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kRadioKey,
     .rule = KIO_MEMBER(RssWlan, encryptionKeyValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kRule},
    {.element = "Channel",
     .node = "/channel",
     .member = KIO_MEMBER(RssWlan, channel),
     .group = Group::kDetail,
     .versions = Versions::kNot10,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kChannel,
     .write = Write::kIfDifferent,
     .offer = Offer::kChannel},
    {.element = "Country",
     .node = "/country",
     .member = KIO_MEMBER(RssWlan, country),
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .offer = Offer::kReadOnly},
};

// Below the radio's "/accesscontrol".

inline constexpr Field kAccessFields[] = {
    // Quirk "access-switch-fault-borrows-a-name": verification calls it by the radio's switch.
    {.element = "WlAcEnbl",
     .node = "/wlacenbl",
     .member = KIO_MEMBER(RssWlan, wlAcEnbl),
     .group = Group::kBasic,
     .load = Load::kInteger,
     .snapshot = Snapshot::kFullOnly,
     .absent = 2,
     .check = Check::kInRange,
     .low = 0,
     .high = 2,
     .fault_name = "WlEnbl",
     .write = Write::kSwitch,
     .offer = Offer::kSwitch},
    {.element = "WlAcMode",
     .node = "/wlacmode",
     .member = KIO_MEMBER(RssWlan, wlAcMode),
     .group = Group::kDetail,
     .load = Load::kInteger,
     .snapshot = Snapshot::kFullOnly,
     .absent = 0,
     .check = Check::kInRange,
     .low = 0,
     .high = 1,
     .write = Write::kIfDifferent,
     .offer = Offer::kFlag},
    // No document holds it: there it is the number of rules that are listed.
    // Quirk "any-number-of-rules": a variable takes more than there can be.
    {.element = "AcRuleNo",
     .member = KIO_MEMBER(RssWlan, wlAcRuleNo),
     .offer = Offer::kAnything,
     .located = "/acrule#"},
};

// Below an instance of the radio's "/accesscontrol/acrule".

inline constexpr Field kRuleFields[] = {
    {.element = "Active",
     .node = "/active",
     .member = KIO_MEMBER(RssAcRule, active),
     .group = Group::kBasic,
     .load = Load::kInteger,
     .snapshot = Snapshot::kFullOnly,
     .absent = 0,
     .check = Check::kInRange,
     .low = 0,
     .high = 1,
     .write = Write::kIfDifferent,
     .offer = Offer::kFlag},
    // Quirk "any-mac-passes": its form is the app's affair.
    {.element = "MAC",
     .node = "/mac",
     .member = KIO_MEMBER(RssAcRule, mac),
     .group = Group::kBasic,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kFilled,
     .write = Write::kIfDifferent,
     .offer = Offer::kAnything},
};

static_assert(HasUniqueElements(kWlanFields) && HasUniqueElements(kAccessFields) &&
              HasUniqueElements(kRuleFields));

// Every member is a row above or one of the members named here: path texts and bookkeeping.

static_assert(Coverage<RssAcRule>().Add(kRuleFields).Add(KIO_MEMBER(RssAcRule, path)).IsComplete());

static_assert(Coverage<RssWlan>()
                  .Add(kWlanFields)
                  .Add(kAccessFields)
                  .Add(KIO_MEMBER(RssWlan, configurable))
                  .Add(KIO_MEMBER(RssWlan, acRule))
                  .Add(KIO_MEMBER(RssWlan, accessControlPath))
                  .Add(KIO_MEMBER(RssWlan, path))
                  .Add(KIO_MEMBER(RssWlan, restart))
                  .IsComplete());

}  // namespace kio::settings

#endif
