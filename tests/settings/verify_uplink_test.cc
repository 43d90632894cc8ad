// Verification of the uplink's providers and of the upstream network, field by field.
#include <string>

#include "settings/verify_field.h"

namespace kio::test {
namespace {

class VerifyUplinkTest : public VerifyFieldTest {};

TEST_P(VerifyUplinkTest, IsJudged) { ExpectJudged(); }

void Dsl(RssXmlData& r) {
  r.upLink.hardwareTypeCode = 1;
  Put(r.upLink.hardwareType, "ADSL");
}
void Apn(RssXmlData& r) {
  r.upLink.hardwareTypeCode = 4;
  Put(r.upLink.hardwareType, "WWanAPN");
}
void Site(RssXmlData& r) {
  r.upLink.hardwareTypeCode = 3;
  Put(r.upLink.hardwareType, "WWan802.11");
}
void Dsl10(RssXmlData& r) {
  r.specVer = 100;
  r.upLink.hardwareTypeCode = 5;
}

const Fault kProviderFaults[] = {
    {"DSL valid", [](RssXmlData& r) { Dsl(r); }, 0, ""},
    {"DSL country",
     [](RssXmlData& r) {
       Dsl(r);
       Put(r.upLink.dsl.countryName, "");
     },
     3, "Device/Uplink/DSL/CountryName"},
    {"VDSL provider",
     [](RssXmlData& r) {
       Dsl(r);
       r.upLink.hardwareTypeCode = 2;
       Put(r.upLink.dsl.ispName, "");
     },
     3, "Device/Uplink/DSL/IspName"},
    {"APN valid", [](RssXmlData& r) { Apn(r); }, 0, ""},
    {"APN country",
     [](RssXmlData& r) {
       Apn(r);
       Put(r.upLink.apn.countryName, "");
     },
     3, "Device/Uplink/APN/CountryName"},
    {"APN provider",
     [](RssXmlData& r) {
       Apn(r);
       Put(r.upLink.apn.ispName, "");
     },
     3, "Device/Uplink/APN/IspName"},
    {"plain DSL of version 1.1 is not verified",
     [](RssXmlData& r) {
       r.upLink.hardwareTypeCode = 5;
       Put(r.upLink.dsl.countryName, "");
       r.upLink.mtu = 0;
       r.upLink.dsl.encapModeCode = -1;
     },
     0, ""},
    {"DSL 1.0 valid", [](RssXmlData& r) { Dsl10(r); }, 0, ""},
    {"DSL 1.0 MTU 0",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.mtu = 0;
     },
     3, "Device/Uplink/DSL/MTU"},
    {"DSL 1.0 MTU 1",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.mtu = 1;
     },
     0, ""},
    {"DSL 1.0 MTU 1492",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.mtu = 1492;
     },
     0, ""},
    {"DSL 1.0 MTU 1493",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.mtu = 1493;
     },
     3, "Device/Uplink/DSL/MTU"},
    {"DSL 1.0 MTU -1",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.mtu = -1;
     },
     3, "Device/Uplink/DSL/MTU"},
    {"DSL 1.0 VPI 0",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.vpi = 0;
     },
     0, ""},
    {"DSL 1.0 VPI 9",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.vpi = 9;
     },
     3, "Device/Uplink/DSL/VPI"},
    {"DSL 1.0 VPI -1",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.vpi = -1;
     },
     3, "Device/Uplink/DSL/VPI"},
    {"DSL 1.0 VCI 31",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.vci = 31;
     },
     3, "Device/Uplink/DSL/VCI"},
    {"DSL 1.0 VCI 32",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.vci = 32;
     },
     0, ""},
    {"DSL 1.0 VCI 32767",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.vci = 32767;
     },
     0, ""},
    {"DSL 1.0 VCI 32768",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.vci = 32768;
     },
     3, "Device/Uplink/DSL/VCI"},
    {"encapsulation fault borrows the name of the encryption mode",
     [](RssXmlData& r) {
       Dsl10(r);
       r.upLink.dsl.encapModeCode = -1;
     },
     3, "Device/Uplink/DSL/EncryptionMode"},
};
INSTANTIATE_TEST_SUITE_P(Provider, VerifyUplinkTest, ::testing::ValuesIn(kProviderFaults));

const Fault kSiteFaults[] = {
    {"valid", [](RssXmlData& r) { Site(r); }, 0, ""},
    {"survey 2",
     [](RssXmlData& r) {
       Site(r);
       r.upLink.extenderSite.survey = 2;
     },
     3, "Device/Uplink/ExtenderSite/Survey"},
    {"survey -1",
     [](RssXmlData& r) {
       Site(r);
       r.upLink.extenderSite.survey = -1;
     },
     3, "Device/Uplink/ExtenderSite/Survey"},
    {"survey skips the rest",
     [](RssXmlData& r) {
       Site(r);
       r.upLink.extenderSite.survey = 1;
       r.wlan[0].wlEnbl = 9;
       r.safetyVyr.safetyVyrEnbl = 9;
       Put(r.upLink.extenderSite.wirelessName, "");
     },
     0, ""},
    {"bssid",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.connRefSiteBssid, "");
     },
     3, "Device/Uplink/ExtenderSite/ConnRefSiteBSSID"},
    {"type",
     [](RssXmlData& r) {
       Site(r);
       r.upLink.extenderSite.wirelessTypeCode = -1;
     },
     3, "Device/Uplink/ExtenderSite/WirelessType"},
    {"name",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.wirelessName, "");
     },
     10, "Device/Uplink/ExtenderSite/WirelessName"},
    {"name by the 2.4 GHz rule",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.wirelessName, std::string(32, 'w'));
     },
     0, ""},
    {"name by the 5 GHz rule",
     [](RssXmlData& r) {
       Site(r);
       r.upLink.extenderSite.wirelessTypeCode = 1;
       Put(r.upLink.extenderSite.wirelessName, std::string(32, 'w'));
     },
     10, "Device/Uplink/ExtenderSite/WirelessName"},
    {"key of no form",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.encryptionKey, "abc");
     },
     3, "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"key empty",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.encryptionKey, "");
     },
     0, ""},
    {"key WEP 5",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.encryptionKey, "abcde");
     },
     0, ""},
    {"key WEP 13",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.encryptionKey, "abcdefghijklm");
     },
     0, ""},
    {"key WEP of 26 digits",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.encryptionKey, "0123456789ABCDEF0123456789");
     },
     0, ""},
    {"key of 64 lower-case digits",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.encryptionKey, std::string(64, 'a'));
     },
     3, "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"key by the 2.4 GHz rule",
     [](RssXmlData& r) {
       Site(r);
       Put(r.upLink.extenderSite.encryptionKey, std::string(64, 'A'));
     },
     0, ""},
    {"key by the 5 GHz rule",
     [](RssXmlData& r) {
       Site(r);
       r.upLink.extenderSite.wirelessTypeCode = 1;
       Put(r.upLink.extenderSite.encryptionKey, std::string(64, 'A'));
     },
     10, "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"key empty against a rule",
     [](RssXmlData& r) {
       Site(r);
       Put(r.wlan[0].encryptionKeyValidate, "0,64,1");
       Put(r.upLink.extenderSite.encryptionKey, "");
     },
     10, "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"not looked at in version 1.1 with Ethernet",
     [](RssXmlData& r) {
       r.extenderEnbl = 1;
       r.upLink.extenderSite.survey = 7;
     },
     0, ""},
    {"version 1.0 extender 1",
     [](RssXmlData& r) {
       r.specVer = 100;
       r.extenderEnbl = 1;
       r.upLink.extenderSite.survey = 7;
     },
     3, "Device/Uplink/ExtenderSite/Survey"},
    {"version 1.0 extender 3",
     [](RssXmlData& r) {
       r.specVer = 100;
       r.extenderEnbl = 3;
       r.upLink.extenderSite.survey = 7;
     },
     3, "Device/Uplink/ExtenderSite/Survey"},
    {"version 1.0 extender 0",
     [](RssXmlData& r) {
       r.specVer = 100;
       r.extenderEnbl = 0;
       r.upLink.extenderSite.survey = 7;
     },
     0, ""},
    {"version 1.0 extender 2",
     [](RssXmlData& r) {
       r.specVer = 100;
       r.extenderEnbl = 2;
       r.upLink.extenderSite.survey = 7;
     },
     0, ""},
};
INSTANTIATE_TEST_SUITE_P(Site, VerifyUplinkTest, ::testing::ValuesIn(kSiteFaults));

}  // namespace
}  // namespace kio::test
