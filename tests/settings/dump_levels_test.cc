// The levels of the lines of the record in the log.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/log_levels.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

// A device with values of its own where sections have lines that read the same.
void FillRecord() {
  FillSampleRecord();
  rssXmlData.configurable = 1;
  rssXmlData.upLink.configurable = 2;
  rssXmlData.upLink.restart = 3;
  for (RssWlan& radio : rssXmlData.wlan) {
    radio.configurable = 4;
    radio.restart = 5;
  }
  rssXmlData.safetyVyr.restart = 6;
}

void DumpWith(int hardware) {
  FillRecord();
  rssXmlData.upLink.hardwareTypeCode = hardware;
  dump_RssXmlData();
}

void Dump() { DumpWith(0); }
void DumpDsl() { DumpWith(1); }
void DumpSite() { DumpWith(3); }
void DumpApn() { DumpWith(4); }
void DumpVersion10() {
  FillRecord();
  rssXmlData.specVer = 100;
  rssXmlData.upLink.hardwareTypeCode = 5;
  rssXmlData.extenderEnbl = 1;
  dump_RssXmlData();
}

// Whole lines, without the uptime before them.
void ExpectLines(void (*dump)(), const std::vector<std::string>& lines) {
  std::vector<LoggedMessage> messages;
  messages.reserve(lines.size());
  for (const std::string& line : lines) {
    messages.push_back({line.c_str(), dump, kActionLevel, "1000: " + line + "\n"});
  }
  ExpectLevels(messages);
}

class DumpLevelsTest : public SettingsTest {};

TEST_F(DumpLevelsTest, Device) {
  ExpectLines(Dump,
              {"----RSSXML_BGN----", "specVersion", " +- Ver=1.1", "Device", " +- Configurable=1",
               " +- DeviceName='Kitchen'", " +- DevicePwd='secret12'", " +- DeviceType='Router'",
               " +- RouterEnbl=1", " +- EasyRoaming=roam-1", " +- wlanSurveyRestart=0"});
  ExpectLines(DumpVersion10, {" +- ExtenderEnbl=1"});
}

TEST_F(DumpLevelsTest, Uplink) {
  ExpectLines(Dump,
              {" +- Device/Uplink", "     +- Configurable=2", "     +- HardwareType='Ethernet',0",
               "     +- LoginUserName='line-user'", "     +- LoginPassword='line-pass'",
               "     +- IP,NetMask='10.0.0.2,255.255.255.0'", "     +- Gateway='10.0.0.1'",
               "     +- DNS='10.0.0.3'", "     +- restart='3'"});
  ExpectLines(DumpDsl, {"     +- Device/Uplink/DSL", "         +- CountryName=Norway",
                        "         +- IspName=Fjord DSL"});
  ExpectLines(DumpVersion10, {"     +- Device/Uplink/DSL", "         +- VPI/VCI=8/35",
                              "         +- EncapMode='LLC',0"});
  ExpectLines(DumpApn, {"     +- Device/Uplink/APN"});
  ExpectLines(DumpSite,
              {"     +- Device/Uplink/ExtenderSite", "         +- Survey=0",
               "         +- ConnRefSiteBSSID=02:00:00:00:99:01", "         +- WirelessType='2.4',0",
               "         +- WirelessName=Upstream", "         +- EncryptionKey=upstream-key"});
}

TEST_F(DumpLevelsTest, Radios) {
  ExpectLines(
      Dump, {" +- Device/Wireless2.4", "     +- Configurable=4", "     +- WlEnbl,WlSchedule=1,0",
             "     +- WirelessBSSID='02:00:00:00:24:01'", "     +- WirelessName='Home'",
             "     +- EncryptionMode,Type='WPA2,AES'", "     +- EncryptionKey='home-key-24'",
             "     +- Channel='6'", "     +- restart=5", "     +- Device/Wireless2.4/AccessControl",
             "         +- WlAcEnbl=1", "         +- WlAcMode=1",
             "         +- Device/Wireless2.4/AccessControl/AcRule:1",
             "             +- Active,MAC=1,02:00:00:00:00:01"});
}

TEST_F(DumpLevelsTest, SafetyVyrAndFlags) {
  ExpectLines(Dump,
              {" +- Device/SafetyVyr", "     +- SafetyVyrEnbl=1", "     +- UrlDetectEnbl=0",
               "     +- SafetyNotifyEnbl=1", "     +- ToolRecommendEnbl=0", "     +- restart=6"});
  ExpectLines(Dump, {"+- apCloningOnly=0", "+- apCloningFeature=1", "+- fwUpgradeFeature=1",
                     "+- easyRoamingFeature=1", "+- safetyVyrFeature=1", "+- wlan24Feature=1",
                     "+- wlan5Feature=1", "+- tmpPath=/var/tmp", "+- scriptPath=/etc/scripts",
                     "+- saveflag=0", "----RSSXML_END----"});
}

}  // namespace
}  // namespace kio::test
