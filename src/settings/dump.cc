// Writing the record to the log.
//
// This is no walk over the field tables: fields share lines, and labels and quoting differ from
// line to line.

#include "kioapp/settings.h"
#include "platform/log.h"
#include "settings/record.h"

namespace kio::settings {
namespace {

using platform::kLogAction;

void DumpHead() {
  KIO_LOG(kLogAction, "----RSSXML_BGN----\n");
  KIO_LOG(kLogAction, "%s\n", rssXmlData.specName);
  KIO_LOG(kLogAction, " +- Ver=%d.%d\n", rssXmlData.specMajor, rssXmlData.specMinor);
  KIO_LOG(kLogAction, "%s\n", rssXmlData.devicePath);
  KIO_LOG(kLogAction, " +- Configurable=%d\n", rssXmlData.configurable);
}

void DumpRoaming() {
  if (!IsVersion10() && rssXmlData.easyRoamingFeature != 0) {
    KIO_LOG(kLogAction, " +- EasyRoaming=%s\n", rssXmlData.easyRoaming);
  }
}

void DumpDevice() {
  KIO_LOG(kLogAction, " +- DeviceName='%s'\n", rssXmlData.deviceName);
  KIO_LOG(kLogAction, " +- DevicePwd='%s'\n", rssXmlData.devicePwd);
  KIO_LOG(kLogAction, " +- DeviceType='%s'\n", rssXmlData.deviceType);
  KIO_LOG(kLogAction, " +- RouterEnbl=%d\n", rssXmlData.routerEnbl);
  if (IsVersion10()) {
    KIO_LOG(kLogAction, " +- ExtenderEnbl=%d\n", rssXmlData.extenderEnbl);
  }
  DumpRoaming();
  KIO_LOG(kLogAction, " +- wlanSurveyRestart=%d\n", rssXmlData.wlanSurveyRestart);
}

void DumpProvider(const RssIsp& isp) {
  KIO_LOG(kLogAction, "         +- CountryName=%s\n", isp.countryName);
  KIO_LOG(kLogAction, "         +- IspName=%s\n", isp.ispName);
}

void DumpDsl(const RssIsp& dsl) {
  KIO_LOG(kLogAction, "     +- %s\n", dsl.path);
  if (IsVersion10()) {
    KIO_LOG(kLogAction, "         +- VPI/VCI=%d/%d\n", dsl.vpi, dsl.vci);
    KIO_LOG(kLogAction, "         +- EncapMode='%s',%d\n", dsl.encapsulationMode,
            dsl.encapModeCode);
  } else {
    DumpProvider(dsl);
  }
}

void DumpApn(const RssIsp& apn) {
  KIO_LOG(kLogAction, "     +- %s\n", apn.path);
  DumpProvider(apn);
}

void DumpSite(const RssExtenderSite& site) {
  KIO_LOG(kLogAction, "     +- %s\n", site.path);
  KIO_LOG(kLogAction, "         +- Survey=%d\n", site.survey);
  KIO_LOG(kLogAction, "         +- ConnRefSiteBSSID=%s\n", site.connRefSiteBssid);
  KIO_LOG(kLogAction, "         +- WirelessType='%s',%d\n", site.wirelessType,
          site.wirelessTypeCode);
  KIO_LOG(kLogAction, "         +- WirelessName=%s\n", site.wirelessName);
  KIO_LOG(kLogAction, "         +- EncryptionKey=%s\n", site.encryptionKey);
}

void DumpUplink() {
  const RssUpLink& uplink = rssXmlData.upLink;
  KIO_LOG(kLogAction, " +- %s\n", uplink.path);
  KIO_LOG(kLogAction, "     +- Configurable=%d\n", uplink.configurable);
  KIO_LOG(kLogAction, "     +- HardwareType='%s',%d\n", uplink.hardwareType,
          uplink.hardwareTypeCode);
  KIO_LOG(kLogAction, "     +- LoginUserName='%s'\n", uplink.loginUserName);
  KIO_LOG(kLogAction, "     +- LoginPassword='%s'\n", uplink.loginPassword);
  KIO_LOG(kLogAction, "     +- IP,NetMask='%s,%s'\n", uplink.ip, uplink.netMask);
  KIO_LOG(kLogAction, "     +- Gateway='%s'\n", uplink.gateway);
  KIO_LOG(kLogAction, "     +- DNS='%s'\n", uplink.dns);
  KIO_LOG(kLogAction, "     +- restart='%d'\n", uplink.restart);
  switch (uplink.hardwareTypeCode) {
    case kHardwareAdsl:
    case kHardwareVdsl:
    case kHardwareDsl:
      DumpDsl(uplink.dsl);
      break;
    case kHardwareApn:
      DumpApn(uplink.apn);
      break;
    default:
      if (uplink.hardwareTypeCode == kHardwareWireless ||
          (IsVersion10() && rssXmlData.extenderEnbl != 2)) {
        DumpSite(uplink.extenderSite);
      }
      break;
  }
}

void DumpAccessControl(const RssWlan& wlan) {
  KIO_LOG(kLogAction, "     +- %s\n", wlan.accessControlPath);
  KIO_LOG(kLogAction, "         +- WlAcEnbl=%d\n", wlan.wlAcEnbl);
  if (wlan.wlAcEnbl != 1) {
    return;
  }
  KIO_LOG(kLogAction, "         +- WlAcMode=%d\n", wlan.wlAcMode);
  for (int i = 0; i < HeldRules(wlan); ++i) {
    KIO_LOG(kLogAction, "         +- %s:%d\n", wlan.acRule[i].path, i + 1);
    KIO_LOG(kLogAction, "             +- Active,MAC=%d,%s\n", wlan.acRule[i].active,
            wlan.acRule[i].mac);
  }
}

void DumpRadio(const RssWlan& wlan) {
  KIO_LOG(kLogAction, " +- %s\n", wlan.path);
  KIO_LOG(kLogAction, "     +- Configurable=%d\n", wlan.configurable);
  KIO_LOG(kLogAction, "     +- WlEnbl,WlSchedule=%d,%d\n", wlan.wlEnbl, wlan.wlSchedule);
  KIO_LOG(kLogAction, "     +- WirelessBSSID='%s'\n", wlan.wirelessBssid);
  KIO_LOG(kLogAction, "     +- WirelessName='%s'\n", wlan.wirelessName);
  KIO_LOG(kLogAction, "     +- EncryptionMode,Type='%s,%s'\n", wlan.encryptionMode,
          wlan.encryptionType);
  KIO_LOG(kLogAction, "     +- EncryptionKey='%s'\n", wlan.encryptionKey);
  if (!IsVersion10()) {
    KIO_LOG(kLogAction, "     +- Channel='%s'\n", wlan.channel);
    KIO_LOG(kLogAction, "     +- restart=%d\n", wlan.restart);
    DumpAccessControl(wlan);
  }
}

void DumpSafety() {
  const RssSafetyVyr& safety = rssXmlData.safetyVyr;
  KIO_LOG(kLogAction, " +- %s\n", safety.path);
  KIO_LOG(kLogAction, "     +- SafetyVyrEnbl=%d\n", safety.safetyVyrEnbl);
  KIO_LOG(kLogAction, "     +- UrlDetectEnbl=%d\n", safety.urlDetectEnbl);
  KIO_LOG(kLogAction, "     +- SafetyNotifyEnbl=%d\n", safety.safetyNotifyEnbl);
  KIO_LOG(kLogAction, "     +- ToolRecommendEnbl=%d\n", safety.toolRecommendEnbl);
  KIO_LOG(kLogAction, "     +- restart=%d\n", safety.restart);
}

void DumpFlags() {
  KIO_LOG(kLogAction, "+- apCloningOnly=%d\n", rssXmlData.apCloningOnly);
  KIO_LOG(kLogAction, "+- apCloningFeature=%d\n", rssXmlData.apCloningFeature);
  KIO_LOG(kLogAction, "+- fwUpgradeFeature=%d\n", rssXmlData.fwUpgradeFeature);
  KIO_LOG(kLogAction, "+- easyRoamingFeature=%d\n", rssXmlData.easyRoamingFeature);
  KIO_LOG(kLogAction, "+- safetyVyrFeature=%d\n", rssXmlData.safetyVyrFeature);
  KIO_LOG(kLogAction, "+- wlan24Feature=%d\n", rssXmlData.wlan24Feature);
  KIO_LOG(kLogAction, "+- wlan5Feature=%d\n", rssXmlData.wlan5Feature);
  KIO_LOG(kLogAction, "+- tmpPath=%s\n", rssXmlData.tmpPath);
  KIO_LOG(kLogAction, "+- scriptPath=%s\n", rssXmlData.scriptPath);
  KIO_LOG(kLogAction, "+- saveflag=%d\n", rssXmlData.saveflag);
  KIO_LOG(kLogAction, "----RSSXML_END----\n");
}

}  // namespace
}  // namespace kio::settings

// Quirk "dump-shows-passwords": whoever reads this level reads them.
void dump_RssXmlData(void) {
  using namespace kio::settings;  // NOLINT(google-build-using-namespace)
  if (!kio::platform::IsLogged(kio::platform::kLogAction)) {
    return;
  }
  DumpHead();
  if (rssXmlData.apCloningOnly != 0) {
    DumpRoaming();
  } else {
    DumpDevice();
    DumpUplink();
  }
  for (int radio = 0; radio < kRadioCount; ++radio) {
    if (RadioExists(radio)) {
      DumpRadio(rssXmlData.wlan[radio]);
    }
  }
  if (rssXmlData.safetyVyrFeature != 0) {
    DumpSafety();
  }
  DumpFlags();
}
