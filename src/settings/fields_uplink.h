// Rows of the uplink, its providers and its upstream network.
#ifndef KIO_SETTINGS_FIELDS_UPLINK_H
#define KIO_SETTINGS_FIELDS_UPLINK_H

#include "kioapp/record.h"
#include "settings/field.h"
#include "settings/keywords.h"

namespace kio::settings {

// Below "/uplink".

inline constexpr Field kUplinkFields[] = {
    Shown("Configurable", "/configurable", KIO_MEMBER(RssUpLink, configurable), Load::kIsOne)
        .Dumped(Dump::kPlain),
    Text("HardwareType", "/hardwaretype", KIO_MEMBER(RssUpLink, hardwareType))
        .InEverySnapshot()
        .OneOf(kHardwareTypes, KIO_MEMBER(RssUpLink, hardwareTypeCode))
        .Dumped(Dump::kQuotedWithCode),
    Shown("HardwareSupport", "/hardwaresupport", KIO_MEMBER(RssUpLink, hardwareSupport),
          Load::kText)
        .HidingItsPath(),
    Text("ConnType", "/conntype", KIO_MEMBER(RssUpLink, connType))
        .CutTo(31)
        .OneOf(kConnectionTypes, KIO_MEMBER(RssUpLink, connTypeCode))
        .Dumped(Dump::kNever),
    // Quirk "mtu-is-never-written": read and, for the DSL circuit, verified, but the store has no
    // node for it.
    Unloaded("MTU", KIO_MEMBER(RssUpLink, mtu), Group::kBasic)
        .For(Versions::kOnly10)
        .InRange(1, 1492)
        .Dumped(Dump::kNever),
    Text("LoginUserName", "/loginusername", KIO_MEMBER(RssUpLink, loginUserName))
        .In(Group::kLogin)
        .Obeying(KIO_MEMBER(RssXmlData, loginUserNameValidate)),
    Text("LoginPassword", "/loginpassword", KIO_MEMBER(RssUpLink, loginPassword))
        .In(Group::kLogin)
        .Obeying(KIO_MEMBER(RssXmlData, loginPasswordValidate)),
    Text("IP", "/ip", KIO_MEMBER(RssUpLink, ip))
        .In(Group::kAddress)
        .Checked(Check::kHostAddress)
        .AsVariable(VariableKind::kHostAddress)
        .Dumped(Dump::kQuotedPair),
    Text("NetMask", "/netmask", KIO_MEMBER(RssUpLink, netMask))
        .In(Group::kAddress)
        .Checked(Check::kNetmask)
        .AsVariable(VariableKind::kNetmask),
    // Quirk "gateway-may-be-elsewhere": it need not be in the network of address and netmask.
    Text("Gateway", "/gateway", KIO_MEMBER(RssUpLink, gateway))
        .In(Group::kAddress)
        .Checked(Check::kHostAddress)
        .AsVariable(VariableKind::kHostAddress),
    Text("DNS", "/dns", KIO_MEMBER(RssUpLink, dns))
        .In(Group::kAddress)
        .Checked(Check::kNameServer)
        .AsVariable(VariableKind::kHostAddress)
        .HidingItsPath(),
};

// The rules stand in RssXmlData although their nodes stand below "/uplink".
inline constexpr Field kUplinkRules[] = {
    Shown("LoginUserName_Validate", "/loginusername_validate",
          KIO_MEMBER(RssXmlData, loginUserNameValidate), Load::kRule),
    Shown("LoginPassword_Validate", "/loginpassword_validate",
          KIO_MEMBER(RssXmlData, loginPasswordValidate), Load::kRule),
};

// Below "/uplink/dsl" and "/uplink/apn".

consteval Field ProviderText(platform::TextView element, platform::TextView node,
                             const Member& member) {
  return Text(element, node, member)
      .In(Group::kProvider)
      .Checked(Check::kFilled)
      .Dumped(Dump::kPlain);
}

inline constexpr Field kDslFields[] = {
    ProviderText("CountryName", "/countryname", KIO_MEMBER(RssIsp, countryName)),
    ProviderText("IspName", "/ispname", KIO_MEMBER(RssIsp, ispName)),
    // The circuit, in format version 1.0 alone. The snapshot leaves it out.
    Unloaded("VPI", KIO_MEMBER(RssIsp, vpi), Group::kCircuit)
        .StoredAt("/vpi")
        .InRange(0, 8)
        .Dumped(Dump::kSlashPair),
    Unloaded("VCI", KIO_MEMBER(RssIsp, vci), Group::kCircuit).StoredAt("/vci").InRange(32, 32767),
    // Quirk "encapsulation-fault-borrows-a-name": a fault is reported as that of the radio's mode.
    Unloaded("EncapsulationMode", KIO_MEMBER(RssIsp, encapsulationMode), Group::kCircuit)
        .StoredAt("/encapsulationmode")
        .Logged()
        .OneOf(kEncapsulationModes, KIO_MEMBER(RssIsp, encapModeCode))
        .AsVariable(VariableKind::kNone)
        .CalledInFaults("EncryptionMode")
        .Dumped(Dump::kQuotedWithCode, "EncapMode"),
};

inline constexpr Field kApnFields[] = {
    ProviderText("CountryName", "/countryname", KIO_MEMBER(RssIsp, countryName)),
    ProviderText("IspName", "/ispname", KIO_MEMBER(RssIsp, ispName)),
};

// Below "/uplink/extendersite".

inline constexpr Field kSiteFields[] = {
    // Applied on its own: a site survey excludes every other change.
    Flag("Survey", "/survey", KIO_MEMBER(RssExtenderSite, survey)).Written(Write::kNever),
    Text("ConnRefSiteBSSID", "/connrefsitebssid", KIO_MEMBER(RssExtenderSite, connRefSiteBssid))
        .In(Group::kDetail)
        .Checked(Check::kFilled)
        .Dumped(Dump::kPlain),
    Text("WirelessType", "/wirelesstype", KIO_MEMBER(RssExtenderSite, wirelessType))
        .In(Group::kDetail)
        .Logged()
        .OneOf(kRadioTypes, KIO_MEMBER(RssExtenderSite, wirelessTypeCode))
        .Dumped(Dump::kQuotedWithCode),
    // Quirk "site-texts-of-17": name and key are cut to 17 characters. Their rules are those of the
    // radio that the wireless type selects.
    Text("WirelessName", "/wirelessname", KIO_MEMBER(RssExtenderSite, wirelessName))
        .In(Group::kDetail)
        .CutTo(17)
        .Obeying(KIO_MEMBER(RssWlan, wirelessNameValidate))
        .AsVariable(VariableKind::kAnything)
        .Dumped(Dump::kPlain),
    Text("EncryptionKey", "/encryptionkey", KIO_MEMBER(RssExtenderSite, encryptionKey))
        .In(Group::kDetail)
        .CutTo(17)
        .Obeying(KIO_MEMBER(RssWlan, encryptionKeyValidate))
        .Checked(Check::kSiteKey)
        .AsVariable(VariableKind::kAnything)
        .Dumped(Dump::kPlain),
};

}  // namespace kio::settings

#endif
