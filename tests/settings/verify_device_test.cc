// Verification of the device and of its connection, field by field.
#include <string>

#include "settings/verify_field.h"

namespace kio::test {
namespace {

class VerifyDeviceTest : public VerifyFieldTest {};

TEST_P(VerifyDeviceTest, IsJudged) { ExpectJudged(); }

void Static(RssXmlData& r) { r.upLink.connTypeCode = 1; }
void Pppoa(RssXmlData& r) { r.upLink.connTypeCode = 3; }

const Fault kDeviceFaults[] = {
    {"baseline", [](RssXmlData& r) { (void)r; }, 0, ""},
    {"name too long", [](RssXmlData& r) { Put(r.deviceName, std::string(33, 'n')); }, 10,
     "Device/DeviceName"},
    {"name at its limit", [](RssXmlData& r) { Put(r.deviceName, std::string(32, 'n')); }, 0, ""},
    {"name empty", [](RssXmlData& r) { Put(r.deviceName, ""); }, 10, "Device/DeviceName"},
    {"name not printable", [](RssXmlData& r) { Put(r.deviceName, "a\x7F"); }, 11,
     "Device/DeviceName"},
    {"name above a maximum",
     [](RssXmlData& r) {
       Put(r.friendlyNameValidate, "1,14,1");
       Put(r.deviceName, "15");
     },
     20, "Device/DeviceName"},
    {"name below a minimum",
     [](RssXmlData& r) {
       Put(r.friendlyNameValidate, "1,14,1");
       Put(r.deviceName, "0");
     },
     21, "Device/DeviceName"},
    {"name with a rule of another kind",
     [](RssXmlData& r) {
       Put(r.friendlyNameValidate, "2");
       Put(r.deviceName, "");
     },
     0, ""},
    {"password too short", [](RssXmlData& r) { Put(r.devicePwd, "abc"); }, 10, "Device/DevicePwd"},
    {"password character", [](RssXmlData& r) { Put(r.devicePwd, "abc\xE9"); }, 11,
     "Device/DevicePwd"},
    {"hardware unknown", [](RssXmlData& r) { r.upLink.hardwareTypeCode = -1; }, 3,
     "Device/Uplink/HardwareType"},
    {"hardware not supported", [](RssXmlData& r) { Put(r.upLink.hardwareSupport, "ADSL,DSL"); }, 3,
     "Device/Uplink/HardwareType"},
    {"hardware in any case", [](RssXmlData& r) { Put(r.upLink.hardwareSupport, "xxETHERNETxx"); },
     0, ""},
    {"hardware support empty", [](RssXmlData& r) { Put(r.upLink.hardwareSupport, ""); }, 3,
     "Device/Uplink/HardwareType"},
    {"hardware text empty", [](RssXmlData& r) { Put(r.upLink.hardwareType, ""); }, 3,
     "Device/Uplink/HardwareType"},
    {"hardware support not asked in version 1.0",
     [](RssXmlData& r) {
       r.specVer = 100;
       Put(r.upLink.hardwareSupport, "");
     },
     0, ""},
    {"connection unknown", [](RssXmlData& r) { r.upLink.connTypeCode = -1; }, 3,
     "Device/Uplink/ConnType"},
    {"uplink not configurable",
     [](RssXmlData& r) {
       r.upLink.configurable = 0;
       r.upLink.connTypeCode = -1;
       r.upLink.hardwareTypeCode = -1;
     },
     0, ""},
    {"nothing configurable",
     [](RssXmlData& r) {
       r.configurable = 0;
       Put(r.deviceName, "");
       r.upLink.connTypeCode = -1;
       r.wlan[0].wlEnbl = 9;
       r.safetyVyr.safetyVyrEnbl = 9;
     },
     0, ""},
    {"router switch is not verified", [](RssXmlData& r) { r.routerEnbl = 99; }, 0, ""},
};
INSTANTIATE_TEST_SUITE_P(Device, VerifyDeviceTest, ::testing::ValuesIn(kDeviceFaults));

const Fault kConnectionFaults[] = {
    {"PPPoE valid", [](RssXmlData& r) { r.upLink.connTypeCode = 2; }, 0, ""},
    {"PPPoE user",
     [](RssXmlData& r) {
       r.upLink.connTypeCode = 2;
       Put(r.upLink.loginUserName, "");
     },
     10, "Device/Uplink/LoginUserName"},
    {"PPPoA user",
     [](RssXmlData& r) {
       Pppoa(r);
       Put(r.upLink.loginUserName, "\x01");
     },
     11, "Device/Uplink/LoginUserName"},
    {"PPPoA password",
     [](RssXmlData& r) {
       Pppoa(r);
       Put(r.upLink.loginPassword, std::string(65, 'p'));
     },
     10, "Device/Uplink/LoginPassword"},
    {"PPPoE password by number",
     [](RssXmlData& r) {
       r.upLink.connTypeCode = 2;
       Put(r.loginPasswordValidate, "1,5");
     },
     0, ""},
    {"DHCP needs nothing",
     [](RssXmlData& r) {
       Put(r.upLink.loginUserName, "");
       Put(r.upLink.ip, "");
       Put(r.upLink.dns, "x");
     },
     0, ""},
    {"static valid", [](RssXmlData& r) { Static(r); }, 0, ""},
    {"static ip empty",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.ip, "");
     },
     3, "Device/Uplink/IP"},
    {"static ip",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.ip, "10.0.0.0");
     },
     3, "Device/Uplink/IP"},
    {"static ip cut short",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.ip, "10.0.0");
     },
     3, "Device/Uplink/IP"},
    {"static mask empty",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.netMask, "");
     },
     3, "Device/Uplink/NetMask"},
    {"static mask",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.netMask, "255.0.255.0");
     },
     3, "Device/Uplink/NetMask"},
    {"static mask zero",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.netMask, "0.0.0.0");
     },
     0, ""},
    {"static gateway empty",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.gateway, "");
     },
     3, "Device/Uplink/Gateway"},
    {"static gateway",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.gateway, "224.0.0.1");
     },
     3, "Device/Uplink/Gateway"},
    {"static gateway elsewhere",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.gateway, "9.9.9.9");
     },
     0, ""},
    {"static dns",
     [](RssXmlData& r) {
       Static(r);
       Put(r.upLink.dns, "127.0.0.1");
     },
     3, "Device/Uplink/DNS"},
};
INSTANTIATE_TEST_SUITE_P(Connection, VerifyDeviceTest, ::testing::ValuesIn(kConnectionFaults));

}  // namespace
}  // namespace kio::test
