// Rows of the uplink, its providers and its upstream network.
#ifndef KIO_SETTINGS_FIELDS_UPLINK_H
#define KIO_SETTINGS_FIELDS_UPLINK_H

#include "kioapp/record.h"
#include "kioapp/xml.h"
#include "settings/field.h"

namespace kio::settings {

// Below "/uplink".

inline constexpr Field kUplinkFields[] = {
    {.element = "Configurable",
     .node = "/configurable",
     .member = KIO_MEMBER(RssUpLink, configurable),
     .load = Load::kIsOne,
     .offer = Offer::kReadOnly},
    {.element = "HardwareType",
     .node = "/hardwaretype",
     .member = KIO_MEMBER(RssUpLink, hardwareType),
     .group = Group::kBasic,
     .load = Load::kText,
     .words = HardwareTypeArray,
     .code = KIO_MEMBER(RssUpLink, hardwareTypeCode),
     .check = Check::kKeyword,
     .write = Write::kIfDifferent,
     .offer = Offer::kKeyword},
    {.element = "HardwareSupport",
     .node = "/hardwaresupport",
     .member = KIO_MEMBER(RssUpLink, hardwareSupport),
     .load = Load::kText,
     .offer = Offer::kReadOnly,
     .hides_path = true},
    {.element = "ConnType",
     .node = "/conntype",
     .member = KIO_MEMBER(RssUpLink, connType),
     .group = Group::kBasic,
     .document_limit = 31,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .words = ConnTypeArray,
     .code = KIO_MEMBER(RssUpLink, connTypeCode),
     .check = Check::kKeyword,
     .write = Write::kIfDifferent,
     .offer = Offer::kKeyword},
    // Quirk "mtu-is-never-written": read and, for the DSL circuit, verified, but the store has no
    // node for it.
    {.element = "MTU",
     .member = KIO_MEMBER(RssUpLink, mtu),
     .group = Group::kBasic,
     .versions = Versions::kOnly10,
     .check = Check::kInRange,
     .low = 1,
     .high = 1492},
    {.element = "LoginUserName",
     .node = "/loginusername",
     .member = KIO_MEMBER(RssUpLink, loginUserName),
     .group = Group::kLogin,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kRule,
     .rule = KIO_MEMBER(RssXmlData, loginUserNameValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kRule},
    {.element = "LoginPassword",
     .node = "/loginpassword",
     .member = KIO_MEMBER(RssUpLink, loginPassword),
     .group = Group::kLogin,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kRule,
     .rule = KIO_MEMBER(RssXmlData, loginPasswordValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kRule},
    {.element = "IP",
     .node = "/ip",
     .member = KIO_MEMBER(RssUpLink, ip),
     .group = Group::kAddress,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kHostAddress,
     .write = Write::kIfDifferent,
     .offer = Offer::kHostAddress},
    {.element = "NetMask",
     .node = "/netmask",
     .member = KIO_MEMBER(RssUpLink, netMask),
     .group = Group::kAddress,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kNetmask,
     .write = Write::kIfDifferent,
     .offer = Offer::kNetmask},
    // Quirk "gateway-may-be-elsewhere": nothing relates it to address and netmask.
    {.element = "Gateway",
     .node = "/gateway",
     .member = KIO_MEMBER(RssUpLink, gateway),
     .group = Group::kAddress,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kHostAddress,
     .write = Write::kIfDifferent,
     .offer = Offer::kHostAddress},
    {.element = "DNS",
     .node = "/dns",
     .member = KIO_MEMBER(RssUpLink, dns),
     .group = Group::kAddress,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kNameServer,
     .write = Write::kIfDifferent,
     .offer = Offer::kHostAddress,
     .hides_path = true},
};

// The rules stand in RssXmlData although their nodes stand below "/uplink".
inline constexpr Field kUplinkRules[] = {
    {.element = "LoginUserName_Validate",
     .node = "/loginusername_validate",
     .member = KIO_MEMBER(RssXmlData, loginUserNameValidate),
     .load = Load::kRule,
     .offer = Offer::kReadOnly},
    {.element = "LoginPassword_Validate",
     .node = "/loginpassword_validate",
     .member = KIO_MEMBER(RssXmlData, loginPasswordValidate),
     .load = Load::kRule,
     .offer = Offer::kReadOnly},
};

// Below "/uplink/dsl" and "/uplink/apn".

inline constexpr Field kIspFields[] = {
    {.element = "CountryName",
     .node = "/countryname",
     .member = KIO_MEMBER(RssIsp, countryName),
     .group = Group::kProvider,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kFilled,
     .write = Write::kIfDifferent,
     .offer = Offer::kAnything},
    {.element = "IspName",
     .node = "/ispname",
     .member = KIO_MEMBER(RssIsp, ispName),
     .group = Group::kProvider,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kFilled,
     .write = Write::kIfDifferent,
     .offer = Offer::kAnything},
};

// The circuit of a DSL uplink: the same structure, in format version 1.0 alone. The snapshot leaves
// it out.
inline constexpr Field kCircuitFields[] = {
    {.element = "VPI",
     .node = "/vpi",
     .member = KIO_MEMBER(RssIsp, vpi),
     .group = Group::kCircuit,
     .check = Check::kInRange,
     .low = 0,
     .high = 8,
     .write = Write::kIfDifferent},
    {.element = "VCI",
     .node = "/vci",
     .member = KIO_MEMBER(RssIsp, vci),
     .group = Group::kCircuit,
     .check = Check::kInRange,
     .low = 32,
     .high = 32767,
     .write = Write::kIfDifferent},
    // Quirk "encapsulation-fault-borrows-a-name": a fault is reported as that of the radio's mode.
    {.element = "EncapsulationMode",
     .node = "/encapsulationmode",
     .member = KIO_MEMBER(RssIsp, encapsulationMode),
     .group = Group::kCircuit,
     .logged = true,
     .words = ADslEncapModeArray,
     .code = KIO_MEMBER(RssIsp, encapModeCode),
     .check = Check::kKeyword,
     .fault_name = "EncryptionMode",
     .write = Write::kIfDifferent},
};

// Below "/uplink/extendersite".

inline constexpr Field kSiteFields[] = {
    // Applied on its own: a site survey excludes every other change.
    {.element = "Survey",
     .node = "/survey",
     .member = KIO_MEMBER(RssExtenderSite, survey),
     .group = Group::kBasic,
     .load = Load::kIsOne,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kInRange,
     .low = 0,
     .high = 1,
     .offer = Offer::kFlag},
    {.element = "ConnRefSiteBSSID",
     .node = "/connrefsitebssid",
     .member = KIO_MEMBER(RssExtenderSite, connRefSiteBssid),
     .group = Group::kDetail,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kFilled,
     .write = Write::kIfDifferent,
     .offer = Offer::kAnything},
    {.element = "WirelessType",
     .node = "/wirelesstype",
     .member = KIO_MEMBER(RssExtenderSite, wirelessType),
     .group = Group::kDetail,
     .logged = true,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .words = WirelessTypeArray,
     .code = KIO_MEMBER(RssExtenderSite, wirelessTypeCode),
     .check = Check::kKeyword,
     .write = Write::kIfDifferent,
     .offer = Offer::kKeyword},
    // Quirk "site-texts-of-17": name and key are cut to 17 characters. Their rules are those of the
    // radio that the wireless type selects.
    {.element = "WirelessName",
     .node = "/wirelessname",
     .member = KIO_MEMBER(RssExtenderSite, wirelessName),
     .group = Group::kDetail,
     .document_limit = 17,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kRule,
     .rule = KIO_MEMBER(RssWlan, wirelessNameValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kAnything},
    {.element = "EncryptionKey",
     .node = "/encryptionkey",
     .member = KIO_MEMBER(RssExtenderSite, encryptionKey),
     .group = Group::kDetail,
     .document_limit = 17,
     .load = Load::kText,
     .snapshot = Snapshot::kFullOnly,
     .check = Check::kSiteKey,
     .rule = KIO_MEMBER(RssWlan, encryptionKeyValidate),
     .write = Write::kIfDifferent,
     .offer = Offer::kAnything},
};

static_assert(HasUniqueElements(kUplinkFields) && HasUniqueElements(kIspFields) &&
              HasUniqueElements(kCircuitFields) && HasUniqueElements(kSiteFields));

// Every member is a row above or one of the members named here: path texts and bookkeeping.

static_assert(Coverage<RssIsp>()
                  .Add(kIspFields)
                  .Add(kCircuitFields)
                  .Add(KIO_MEMBER(RssIsp, path))
                  .IsComplete());

static_assert(Coverage<RssExtenderSite>()
                  .Add(kSiteFields)
                  .Add(KIO_MEMBER(RssExtenderSite, path))
                  .IsComplete());

static_assert(Coverage<RssUpLink>()
                  .Add(kUplinkFields)
                  .Add(KIO_MEMBER(RssUpLink, dsl))
                  .Add(KIO_MEMBER(RssUpLink, apn))
                  .Add(KIO_MEMBER(RssUpLink, extenderSite))
                  .Add(KIO_MEMBER(RssUpLink, path))
                  .Add(KIO_MEMBER(RssUpLink, restart))
                  .IsComplete());

}  // namespace kio::settings

#endif
