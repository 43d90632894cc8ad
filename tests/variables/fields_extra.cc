// Variables of the firmware information and of the site survey.
#include "variables/fields.h"

namespace kio::test {
namespace {

// A read of the firmware information `field`.
ReadOnlyField Firmware(const std::string& name, const std::string& path, const std::string& text) {
  return {name, path, text, {{Kind::kGetText, path, text}}};
}

// A read from a list of two sites.
ReadOnlyField Site(const std::string& name, const std::string& path, const std::string& text) {
  return {name,
          path,
          text,
          {{Kind::kGetInt, "/wirelesssitesurvey/site#", "2"}, {Kind::kGetText, path, text}}};
}

}  // namespace

std::vector<ReadOnlyField> ExtraTexts() {
  return {
      Firmware("rss_Ext_Fwu_Vendor", "/fwupgradeinfo/Vendor", "Someone"),
      Firmware("rss_Ext_Fwu_DeviceMAC", "/fwupgradeinfo/DeviceMAC", "02:00:00:00:00:77"),
      Firmware("rss_Ext_Fwu_HwVersion", "/fwupgradeinfo/HwVersion", "A1"),
      Firmware("rss_Ext_Fwu_RegionCode", "/fwupgradeinfo/RegionCode", "EU"),
      Firmware("rss_Ext_Fwu_CurrFwVersion", "/fwupgradeinfo/CurrFwVersion", "1.02"),
      Firmware("rss_Ext_Fwu_CurrFwFileName", "/fwupgradeinfo/CurrFwFileName", "k100_102.bin"),
      Firmware("rss_Ext_Fwu_AccessKey", "/fwupgradeinfo/AccessKey", "abc%s"),
      // Read elsewhere than its path says.
      {"rss_Ext_Fwu_ModelName",
       "/fwupgradeinfo/ModelName",
       "K-100",
       {{Kind::kGetText, "/sys/modelnumber", "K-100"}}},
      {"rss_Ext_Ssv_SiteNo",
       "/wirelesssitesurvey/site#",
       "2",
       {{Kind::kGetInt, "/wirelesssitesurvey/site#", "2"}}},
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
