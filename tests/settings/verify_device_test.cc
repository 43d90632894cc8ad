// Verification of the device's and the uplink's settings, field by field.
#include <cerrno>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using Change = std::function<void(RssXmlData&)>;

struct Fault {
  const char* name;
  Change change;
  int code;  // 0 when the change is still valid
  const char* message;
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

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
void Static(RssXmlData& r) { r.upLink.connTypeCode = 1; }
void Pppoa(RssXmlData& r) { r.upLink.connTypeCode = 3; }
void Dsl10(RssXmlData& r) {
  r.specVer = 100;
  r.upLink.hardwareTypeCode = 5;
}

#define KIO_CHANGE(...) [](RssXmlData& r) { __VA_ARGS__; }

class VerifyFieldTest : public SettingsTest, public ::testing::WithParamInterface<Fault> {};

TEST_P(VerifyFieldTest, IsJudged) {
  const Fault& fault = GetParam();
  FillSampleRecord();
  fault.change(rssXmlData);
  RssXmlData before;
  std::memcpy(&before, &rssXmlData, sizeof(before));
  const int result = Verify_RssXml();
  EXPECT_TRUE(Host().Writes().empty());
  if (fault.code == 0) {
    EXPECT_EQ(result, 1) << rssXmlData.setMsg;
    EXPECT_TRUE(Host().commands().empty());
  } else {
    EXPECT_EQ(result, 0);
    EXPECT_EQ(Host().commands(), ResultCommands(fault.code, fault.message, 0));
    before.setResult = fault.code;
    std::memcpy(before.setMsg, rssXmlData.setMsg, sizeof(before.setMsg));
  }
  EXPECT_EQ(std::memcmp(&before, &rssXmlData, sizeof(before)), 0) << "the record was changed";
}

const Fault kDeviceFaults[] = {
    {"baseline", KIO_CHANGE((void)r), 0, ""},
    {"name too long", KIO_CHANGE(Put(r.deviceName, std::string(33, 'n'))), 10, "Device/DeviceName"},
    {"name at its limit", KIO_CHANGE(Put(r.deviceName, std::string(32, 'n'))), 0, ""},
    {"name empty", KIO_CHANGE(Put(r.deviceName, "")), 10, "Device/DeviceName"},
    {"name not printable", KIO_CHANGE(Put(r.deviceName, "a\x7F")), 11, "Device/DeviceName"},
    {"name above a maximum",
     KIO_CHANGE(Put(r.friendlyNameValidate, "1,14,1"); Put(r.deviceName, "15")), 20,
     "Device/DeviceName"},
    {"name below a minimum",
     KIO_CHANGE(Put(r.friendlyNameValidate, "1,14,1"); Put(r.deviceName, "0")), 21,
     "Device/DeviceName"},
    {"name with a rule of another kind",
     KIO_CHANGE(Put(r.friendlyNameValidate, "2"); Put(r.deviceName, "")), 0, ""},
    {"password too short", KIO_CHANGE(Put(r.devicePwd, "abc")), 10, "Device/DevicePwd"},
    {"password character", KIO_CHANGE(Put(r.devicePwd, "abc\xE9")), 11, "Device/DevicePwd"},
    {"hardware unknown", KIO_CHANGE(r.upLink.hardwareTypeCode = -1), 3,
     "Device/Uplink/HardwareType"},
    {"hardware not supported", KIO_CHANGE(Put(r.upLink.hardwareSupport, "ADSL,DSL")), 3,
     "Device/Uplink/HardwareType"},
    {"hardware in any case", KIO_CHANGE(Put(r.upLink.hardwareSupport, "xxETHERNETxx")), 0, ""},
    {"hardware support empty", KIO_CHANGE(Put(r.upLink.hardwareSupport, "")), 3,
     "Device/Uplink/HardwareType"},
    {"hardware text empty", KIO_CHANGE(Put(r.upLink.hardwareType, "")), 3,
     "Device/Uplink/HardwareType"},
    {"hardware support not asked in version 1.0",
     KIO_CHANGE(r.specVer = 100; Put(r.upLink.hardwareSupport, "")), 0, ""},
    {"connection unknown", KIO_CHANGE(r.upLink.connTypeCode = -1), 3, "Device/Uplink/ConnType"},
    {"uplink not configurable",
     KIO_CHANGE(r.upLink.configurable = 0; r.upLink.connTypeCode = -1;
                r.upLink.hardwareTypeCode = -1),
     0, ""},
    {"nothing configurable",
     KIO_CHANGE(r.configurable = 0; Put(r.deviceName, ""); r.upLink.connTypeCode = -1;
                r.wlan[0].wlEnbl = 9; r.safetyVyr.safetyVyrEnbl = 9),
     0, ""},
    {"router switch is not verified", KIO_CHANGE(r.routerEnbl = 99), 0, ""},
};
INSTANTIATE_TEST_SUITE_P(Device, VerifyFieldTest, ::testing::ValuesIn(kDeviceFaults));

const Fault kConnectionFaults[] = {
    {"PPPoE valid", KIO_CHANGE(r.upLink.connTypeCode = 2), 0, ""},
    {"PPPoE user", KIO_CHANGE(r.upLink.connTypeCode = 2; Put(r.upLink.loginUserName, "")), 10,
     "Device/Uplink/LoginUserName"},
    {"PPPoA user", KIO_CHANGE(Pppoa(r); Put(r.upLink.loginUserName, "\x01")), 11,
     "Device/Uplink/LoginUserName"},
    {"PPPoA password", KIO_CHANGE(Pppoa(r); Put(r.upLink.loginPassword, std::string(65, 'p'))), 10,
     "Device/Uplink/LoginPassword"},
    {"PPPoE password by number",
     KIO_CHANGE(r.upLink.connTypeCode = 2; Put(r.loginPasswordValidate, "1,5")), 0, ""},
    {"DHCP needs nothing",
     KIO_CHANGE(Put(r.upLink.loginUserName, ""); Put(r.upLink.ip, ""); Put(r.upLink.dns, "x")), 0,
     ""},
    {"static valid", KIO_CHANGE(Static(r)), 0, ""},
    {"static ip empty", KIO_CHANGE(Static(r); Put(r.upLink.ip, "")), 3, "Device/Uplink/IP"},
    {"static ip", KIO_CHANGE(Static(r); Put(r.upLink.ip, "10.0.0.0")), 3, "Device/Uplink/IP"},
    {"static ip cut short", KIO_CHANGE(Static(r); Put(r.upLink.ip, "10.0.0")), 3,
     "Device/Uplink/IP"},
    {"static mask empty", KIO_CHANGE(Static(r); Put(r.upLink.netMask, "")), 3,
     "Device/Uplink/NetMask"},
    {"static mask", KIO_CHANGE(Static(r); Put(r.upLink.netMask, "255.0.255.0")), 3,
     "Device/Uplink/NetMask"},
    {"static mask zero", KIO_CHANGE(Static(r); Put(r.upLink.netMask, "0.0.0.0")), 0, ""},
    {"static gateway empty", KIO_CHANGE(Static(r); Put(r.upLink.gateway, "")), 3,
     "Device/Uplink/Gateway"},
    {"static gateway", KIO_CHANGE(Static(r); Put(r.upLink.gateway, "224.0.0.1")), 3,
     "Device/Uplink/Gateway"},
    {"static gateway elsewhere", KIO_CHANGE(Static(r); Put(r.upLink.gateway, "9.9.9.9")), 0, ""},
    {"static dns", KIO_CHANGE(Static(r); Put(r.upLink.dns, "127.0.0.1")), 3, "Device/Uplink/DNS"},
};
INSTANTIATE_TEST_SUITE_P(Connection, VerifyFieldTest, ::testing::ValuesIn(kConnectionFaults));

const Fault kProviderFaults[] = {
    {"DSL valid", KIO_CHANGE(Dsl(r)), 0, ""},
    {"DSL country", KIO_CHANGE(Dsl(r); Put(r.upLink.dsl.countryName, "")), 3,
     "Device/Uplink/DSL/CountryName"},
    {"VDSL provider",
     KIO_CHANGE(Dsl(r); r.upLink.hardwareTypeCode = 2; Put(r.upLink.dsl.ispName, "")), 3,
     "Device/Uplink/DSL/IspName"},
    {"APN valid", KIO_CHANGE(Apn(r)), 0, ""},
    {"APN country", KIO_CHANGE(Apn(r); Put(r.upLink.apn.countryName, "")), 3,
     "Device/Uplink/APN/CountryName"},
    {"APN provider", KIO_CHANGE(Apn(r); Put(r.upLink.apn.ispName, "")), 3,
     "Device/Uplink/APN/IspName"},
    {"plain DSL of version 1.1 is not verified",
     KIO_CHANGE(r.upLink.hardwareTypeCode = 5; Put(r.upLink.dsl.countryName, ""); r.upLink.mtu = 0;
                r.upLink.dsl.encapModeCode = -1),
     0, ""},
    {"DSL 1.0 valid", KIO_CHANGE(Dsl10(r)), 0, ""},
    {"DSL 1.0 MTU 0", KIO_CHANGE(Dsl10(r); r.upLink.mtu = 0), 3, "Device/Uplink/DSL/MTU"},
    {"DSL 1.0 MTU 1", KIO_CHANGE(Dsl10(r); r.upLink.mtu = 1), 0, ""},
    {"DSL 1.0 MTU 1492", KIO_CHANGE(Dsl10(r); r.upLink.mtu = 1492), 0, ""},
    {"DSL 1.0 MTU 1493", KIO_CHANGE(Dsl10(r); r.upLink.mtu = 1493), 3, "Device/Uplink/DSL/MTU"},
    {"DSL 1.0 MTU -1", KIO_CHANGE(Dsl10(r); r.upLink.mtu = -1), 3, "Device/Uplink/DSL/MTU"},
    {"DSL 1.0 VPI 0", KIO_CHANGE(Dsl10(r); r.upLink.dsl.vpi = 0), 0, ""},
    {"DSL 1.0 VPI 9", KIO_CHANGE(Dsl10(r); r.upLink.dsl.vpi = 9), 3, "Device/Uplink/DSL/VPI"},
    {"DSL 1.0 VPI -1", KIO_CHANGE(Dsl10(r); r.upLink.dsl.vpi = -1), 3, "Device/Uplink/DSL/VPI"},
    {"DSL 1.0 VCI 31", KIO_CHANGE(Dsl10(r); r.upLink.dsl.vci = 31), 3, "Device/Uplink/DSL/VCI"},
    {"DSL 1.0 VCI 32", KIO_CHANGE(Dsl10(r); r.upLink.dsl.vci = 32), 0, ""},
    {"DSL 1.0 VCI 32767", KIO_CHANGE(Dsl10(r); r.upLink.dsl.vci = 32767), 0, ""},
    {"DSL 1.0 VCI 32768", KIO_CHANGE(Dsl10(r); r.upLink.dsl.vci = 32768), 3,
     "Device/Uplink/DSL/VCI"},
    {"encapsulation fault borrows the name of the encryption mode",
     KIO_CHANGE(Dsl10(r); r.upLink.dsl.encapModeCode = -1), 3, "Device/Uplink/DSL/EncryptionMode"},
};
INSTANTIATE_TEST_SUITE_P(Provider, VerifyFieldTest, ::testing::ValuesIn(kProviderFaults));

const Fault kSiteFaults[] = {
    {"valid", KIO_CHANGE(Site(r)), 0, ""},
    {"survey 2", KIO_CHANGE(Site(r); r.upLink.extenderSite.survey = 2), 3,
     "Device/Uplink/ExtenderSite/Survey"},
    {"survey -1", KIO_CHANGE(Site(r); r.upLink.extenderSite.survey = -1), 3,
     "Device/Uplink/ExtenderSite/Survey"},
    {"survey skips the rest",
     KIO_CHANGE(Site(r); r.upLink.extenderSite.survey = 1; r.wlan[0].wlEnbl = 9;
                r.safetyVyr.safetyVyrEnbl = 9; Put(r.upLink.extenderSite.wirelessName, "")),
     0, ""},
    {"bssid", KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.connRefSiteBssid, "")), 3,
     "Device/Uplink/ExtenderSite/ConnRefSiteBSSID"},
    {"type", KIO_CHANGE(Site(r); r.upLink.extenderSite.wirelessTypeCode = -1), 3,
     "Device/Uplink/ExtenderSite/WirelessType"},
    {"name", KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.wirelessName, "")), 10,
     "Device/Uplink/ExtenderSite/WirelessName"},
    {"name by the 2.4 GHz rule",
     KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.wirelessName, std::string(32, 'w'))), 0, ""},
    {"name by the 5 GHz rule",
     KIO_CHANGE(Site(r); r.upLink.extenderSite.wirelessTypeCode = 1;
                Put(r.upLink.extenderSite.wirelessName, std::string(32, 'w'))),
     10, "Device/Uplink/ExtenderSite/WirelessName"},
    {"key of no form", KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.encryptionKey, "abc")), 3,
     "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"key empty", KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.encryptionKey, "")), 0, ""},
    {"key WEP 5", KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.encryptionKey, "abcde")), 0, ""},
    {"key of 64 lower-case digits",
     KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.encryptionKey, std::string(64, 'a'))), 3,
     "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"key by the 2.4 GHz rule",
     KIO_CHANGE(Site(r); Put(r.upLink.extenderSite.encryptionKey, std::string(64, 'A'))), 0, ""},
    {"key by the 5 GHz rule",
     KIO_CHANGE(Site(r); r.upLink.extenderSite.wirelessTypeCode = 1;
                Put(r.upLink.extenderSite.encryptionKey, std::string(64, 'A'))),
     10, "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"key empty against a rule",
     KIO_CHANGE(Site(r); Put(r.wlan[0].encryptionKeyValidate, "0,64,1");
                Put(r.upLink.extenderSite.encryptionKey, "")),
     10, "Device/Uplink/ExtenderSite/EncryptionKey"},
    {"not looked at in version 1.1 with Ethernet",
     KIO_CHANGE(r.extenderEnbl = 1; r.upLink.extenderSite.survey = 7), 0, ""},
    {"version 1.0 extender 1",
     KIO_CHANGE(r.specVer = 100; r.extenderEnbl = 1; r.upLink.extenderSite.survey = 7), 3,
     "Device/Uplink/ExtenderSite/Survey"},
    {"version 1.0 extender 3",
     KIO_CHANGE(r.specVer = 100; r.extenderEnbl = 3; r.upLink.extenderSite.survey = 7), 3,
     "Device/Uplink/ExtenderSite/Survey"},
    {"version 1.0 extender 0",
     KIO_CHANGE(r.specVer = 100; r.extenderEnbl = 0; r.upLink.extenderSite.survey = 7), 0, ""},
    {"version 1.0 extender 2",
     KIO_CHANGE(r.specVer = 100; r.extenderEnbl = 2; r.upLink.extenderSite.survey = 7), 0, ""},
};
INSTANTIATE_TEST_SUITE_P(Site, VerifyFieldTest, ::testing::ValuesIn(kSiteFaults));

}  // namespace
}  // namespace kio::test
