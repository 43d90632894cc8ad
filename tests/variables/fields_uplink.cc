// Variables of the uplink and of the networks behind it.
#include "variables/fields.h"

namespace kio::test {
namespace {

constexpr const char* kText = "any 'text' %s";
const std::string kLongLogin(65, 'x');

std::vector<StoredField> KeywordFields() {
  return {
      {"rss_Upl_HardwareType",
       "/uplink/HardwareType",
       "Ethernet",
       "WWan802.11",
       [](RssXmlData& r) {
         Put(r.upLink.hardwareType, "WWan802.11");
         r.upLink.hardwareTypeCode = 3;
       },
       "WWan802.11",
       {{"Fiber", 10}, {"", 10}, {"Ethernet ", 10}, {"Ether", 10}, {"3", 10}},
       10,
       Nothing(),
       true,
       Section::kUplink},
      {"rss_Upl_ConnType",
       "/uplink/ConnType",
       "DHCP",
       "PPPoE",
       [](RssXmlData& r) {
         Put(r.upLink.connType, "PPPoE");
         r.upLink.connTypeCode = 2;
       },
       "PPPoE",
       {{"PPP", 10}, {"", 10}, {"PPPoEA", 10}, {" DHCP", 10}},
       10,
       Nothing(),
       true,
       Section::kUplink},
  };
}

std::vector<StoredField> LoginFields() {
  return {
      {"rss_Upl_LoginUserName",
       "/uplink/LoginUserName",
       "line-user",
       "other user",
       [](RssXmlData& r) { Put(r.upLink.loginUserName, "other user"); },
       "other user",
       {{"", 10}, {kLongLogin, 10}, {"\x7F", 11}},
       10,
       Nothing(),
       false,
       Section::kUplink},
      {"rss_Upl_LoginPassword",
       "/uplink/LoginPassword",
       "line-pass",
       "p4ss",
       [](RssXmlData& r) { Put(r.upLink.loginPassword, "p4ss"); },
       "p4ss",
       {{"", 10}, {kLongLogin, 10}, {"\x1F", 11}},
       10,
       Nothing(),
       false,
       Section::kUplink},
  };
}

std::vector<StoredField> AddressFields() {
  return {
      {"rss_Upl_IP",
       "/uplink/IP",
       "10.0.0.2",
       "192.168.1.2",
       [](RssXmlData& r) { Put(r.upLink.ip, "192.168.1.2"); },
       "192.168.1.2",
       {{"", 2}, {"1.2.3", 2}, {"127.0.0.1", 2}, {"10.0.0.0", 2}, {"224.0.0.1", 2}, {"host", 2}},
       2,
       Nothing(),
       false,
       Section::kUplink},
      {"rss_Upl_NetMask",
       "/uplink/NetMask",
       "255.255.255.0",
       "255.255.0.0",
       [](RssXmlData& r) { Put(r.upLink.netMask, "255.255.0.0"); },
       "255.255.0.0",
       {{"", 2}, {"255.0.255.0", 2}, {"255.255.255", 2}, {"256.0.0.0", 2}},
       2,
       Nothing(),
       false,
       Section::kUplink},
      {"rss_Upl_Gateway",
       "/uplink/Gateway",
       "10.0.0.1",
       "172.16.0.254",
       [](RssXmlData& r) { Put(r.upLink.gateway, "172.16.0.254"); },
       "172.16.0.254",
       {{"", 2}, {"0.0.0.1", 2}, {"1.2.3.256", 2}},
       2,
       Nothing(),
       false,
       Section::kUplink},
      {"rss_Upl_DNS",
       "10.0.0.3",  // Quirk "value-for-a-path".
       "10.0.0.3",
       "9.9.9.9",
       [](RssXmlData& r) { Put(r.upLink.dns, "9.9.9.9"); },
       "9.9.9.9",
       {{"", 2}, {"127.0.0.1", 2}, {"9.9.9", 2}},
       2,
       Nothing(),
       false,
       Section::kUplink},
  };
}

StoredField TextField(const std::string& name, const std::string& path, const std::string& text,
                      const Change& stored, const Change& emptied) {
  return {name, path, text, kText, stored, kText, {}, 0, emptied, false, Section::kUplink};
}

std::vector<StoredField> SiteFields() {
  return {
      {"rss_Upl_Ets_Survey",
       "/uplink/extendersite/Survey",
       "0",
       "1",
       [](RssXmlData& r) { r.upLink.extenderSite.survey = 1; },
       "1",
       {{"2", 2}, {"-1", 2}, {"10", 2}},
       0,
       [](RssXmlData& r) { r.upLink.extenderSite.survey = 0; },
       false,
       Section::kUplink},
      {"rss_Upl_Ets_WirelessType",
       "/uplink/extendersite/WirelessType",
       "2.4",
       "5",
       [](RssXmlData& r) {
         Put(r.upLink.extenderSite.wirelessType, "5");
         r.upLink.extenderSite.wirelessTypeCode = 1;
       },
       "5",
       {{"", 10}, {"2", 10}, {"5.0", 10}, {"6", 10}},
       10,
       Nothing(),
       true,
       Section::kUplink},
      {"rss_Upl_Ets_ConnRefSiteBSSID",
       "/uplink/extendersite/ConnRefSiteBSSID",
       "02:00:00:00:99:01",
       kText,
       [](RssXmlData& r) { Put(r.upLink.extenderSite.connRefSiteBssid, kText); },
       kText,
       {},
       0,
       [](RssXmlData& r) { Put(r.upLink.extenderSite.connRefSiteBssid, ""); },
       false,
       Section::kUplink},
      TextField(
          "rss_Upl_Ets_WirelessName", "/uplink/extendersite/WirelessName", "Upstream",
          [](RssXmlData& r) { Put(r.upLink.extenderSite.wirelessName, kText); },
          [](RssXmlData& r) { Put(r.upLink.extenderSite.wirelessName, ""); }),
      TextField(
          "rss_Upl_Ets_EncryptionKey", "/uplink/extendersite/EncryptionKey", "upstream-key",
          [](RssXmlData& r) { Put(r.upLink.extenderSite.encryptionKey, kText); },
          [](RssXmlData& r) { Put(r.upLink.extenderSite.encryptionKey, ""); }),
  };
}

std::vector<StoredField> ProviderFields() {
  return {
      TextField(
          "rss_Upl_Dsl_CountryName", "/uplink/dsl/CountryName", "Norway",
          [](RssXmlData& r) { Put(r.upLink.dsl.countryName, kText); },
          [](RssXmlData& r) { Put(r.upLink.dsl.countryName, ""); }),
      TextField(
          "rss_Upl_Dsl_IspName", "/uplink/dsl/IspName", "Fjord DSL",
          [](RssXmlData& r) { Put(r.upLink.dsl.ispName, kText); },
          [](RssXmlData& r) { Put(r.upLink.dsl.ispName, ""); }),
      // Quirk "uplink-asp".
      TextField(
          "rss_Upl_Apn_CountryName", "/uplink/asp/CountryName", "Sweden",
          [](RssXmlData& r) { Put(r.upLink.apn.countryName, kText); },
          [](RssXmlData& r) { Put(r.upLink.apn.countryName, ""); }),
      TextField(
          "rss_Upl_Apn_IspName", "/uplink/asp/IspName", "Berg Mobile",
          [](RssXmlData& r) { Put(r.upLink.apn.ispName, kText); },
          [](RssXmlData& r) { Put(r.upLink.apn.ispName, ""); }),
  };
}

}  // namespace

std::vector<StoredField> UplinkFields() {
  return Joined({KeywordFields(), LoginFields(), AddressFields()});
}

std::vector<StoredField> ExtenderFields() { return Joined({SiteFields(), ProviderFields()}); }

std::vector<ReadOnlyField> UplinkTexts() {
  return {
      {"rss_Upl_Configurable", "/uplink/Configurable", "1", {}, Section::kUplink},
      // Quirk "value-for-a-path".
      {"rss_Upl_HardwareSupport",
       "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL",
       "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL",
       {},
       Section::kUplink},
      // Quirk "sxtendersite": the node that is read is spelled so, the path that is told is not.
      {"rss_Upl_Ets_ConnStatus",
       "/uplink/extendersite/ConnStatus",
       "connected",
       {{StoreCall::Kind::kGetText, "/uplink/sxtendersite/connstatus", "connected"}},
       Section::kUplink},
      {"rss_Upl_LoginUserName_Validate",
       "/uplink/LoginUserName_Validate",
       "0,64,1",
       {},
       Section::kUplink},
      {"rss_Upl_LoginPassword_Validate",
       "/uplink/LoginPassword_Validate",
       "0,63,2",
       {},
       Section::kUplink},
  };
}

}  // namespace kio::test
