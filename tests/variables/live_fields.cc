// Variables of the device, the radios, the firmware and the site survey that are read live.
#include "variables/fields.h"

namespace kio::test {
namespace {

// Read elsewhere than the path says.
ReadOnlyField TextAt(const std::string& node, const std::string& name, const std::string& path,
                     const std::string& text, Section section = Section::kNone) {
  return {.name = name,
          .path = path,
          .text = text,
          .calls = {{Kind::kGetText, node, text}},
          .section = section};
}

ReadOnlyField Text(const std::string& name, const std::string& path, const std::string& text,
                   Section section = Section::kNone) {
  return TextAt(path, name, path, text, section);
}

ReadOnlyField Number(const std::string& name, const std::string& path, const std::string& text) {
  return {.name = name, .path = path, .text = text, .calls = {{Kind::kGetInt, path, text}}};
}

// The router's own address is looked up, whether or not the text names it.
ReadOnlyField Address() {
  return {.name = "rss_Ext_Fwu_FwUpgradeURL",
          .path = "/fwupgradeinfo/FwUpgradeURL",
          .text = "http://192.0.2.1/fw",
          .calls = {{Kind::kGetText, "/fwupgradeinfo/FwUpgradeURL", "http://192.0.2.1/fw"},
                    {Kind::kGetText, "/runtime/zentrolinks/lanip", "192.0.2.1"},
                    {Kind::kGetText, "/zentrolinks/rsshttpport", "8080"}}};
}

// A read from a list of two sites.
ReadOnlyField Site(const std::string& name, const std::string& path, const std::string& text) {
  return {
      .name = name,
      .path = path,
      .text = text,
      .calls = {{Kind::kGetInt, "/wirelesssitesurvey/site#", "2"}, {Kind::kGetText, path, text}}};
}

}  // namespace

std::vector<ReadOnlyField> LiveFields() {
  return {
      Number("rss_FactoryDefault", "/sys/FactoryDefault", "0"),
      Text("rss_DeviceModel", "/sys/modelnumber", "K-100"),
      Text("rss_DeviceType", "/sys/DeviceType", "Extender"),
      Text("rss_WirelessConcurrent", "/lan/WirelessConcurrent", "2"),
      // Quirk "sxtendersite": the node that is read is spelled so, the path that is told is not.
      TextAt("/uplink/sxtendersite/connstatus", "rss_Upl_Ets_ConnStatus",
             "/uplink/extendersite/ConnStatus", "connected", Section::kUplink),
      Text("rss_Wl2_ChannelUsing", "/lan/wireless2.4:1/ChannelUsing", "11", Section::kWireless24),
      Text("rss_Wl5_ChannelUsing", "/lan/wireless5:1/ChannelUsing", "48", Section::kWireless5),
      Text("rss_Ext_Fwu_Vendor", "/fwupgradeinfo/Vendor", "Someone"),
      Text("rss_Ext_Fwu_DeviceMAC", "/fwupgradeinfo/DeviceMAC", "02:00:00:00:00:77"),
      Text("rss_Ext_Fwu_HwVersion", "/fwupgradeinfo/HwVersion", "A1"),
      Text("rss_Ext_Fwu_RegionCode", "/fwupgradeinfo/RegionCode", "EU"),
      Text("rss_Ext_Fwu_CurrFwVersion", "/fwupgradeinfo/CurrFwVersion", "1.02"),
      Text("rss_Ext_Fwu_CurrFwFileName", "/fwupgradeinfo/CurrFwFileName", "k100_102.bin"),
      Text("rss_Ext_Fwu_AccessKey", "/fwupgradeinfo/AccessKey", "abc%s"),
      // Quirk "model-name-lives-elsewhere".
      TextAt("/sys/modelnumber", "rss_Ext_Fwu_ModelName", "/fwupgradeinfo/ModelName", "K-100"),
      Address(),
      Number("rss_Ext_Ssv_SiteNo", "/wirelesssitesurvey/site#", "2"),
      // Quirk "sites-from-two".
      Site("rss_Ext_Ssv_S00_WirelessType", "/wirelesssitesurvey/site:2/WirelessType", "2.4"),
      Site("rss_Ext_Ssv_S00_BSSID", "/wirelesssitesurvey/site:2/BSSID", "02:00:00:00:0A:02"),
      Site("rss_Ext_Ssv_S00_WirelessName", "/wirelesssitesurvey/site:2/WirelessName", "Next door"),
      Site("rss_Ext_Ssv_S00_EncryptionMode", "/wirelesssitesurvey/site:2/EncryptionMode", "WPA2"),
      Site("rss_Ext_Ssv_S00_WirelessStrength", "/wirelesssitesurvey/site:2/WirelessStrength", "61"),
      Site("rss_Ext_Ssv_S01_BSSID", "/wirelesssitesurvey/site:3/BSSID", "02:00:00:00:0A:03"),
  };
}

}  // namespace kio::test
