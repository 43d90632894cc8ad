// Verifying the record before it is applied.

#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/log.h"
#include "settings/field_tables.h"
#include "settings/verify_fields.h"

namespace kio::settings {
namespace {

enum class Verdict {
  kFault,   // reported
  kGoOn,    // no fault so far
  kEnough,  // valid, and what follows is not looked at
};

constexpr Verdict Judged(bool valid) { return valid ? Verdict::kGoOn : Verdict::kFault; }

bool VerifyHardware(const Checked& checked) {
  RssUpLink& uplink = rssXmlData.upLink;
  const Field& row = RowOf(kUplinkFields, "HardwareType");
  if (!VerifyField(row, checked)) {
    return false;
  }
  // Quirk "hardware-is-a-substring": part of a listed word is enough.
  if (!IsVersion10() && strstri(uplink.hardwareSupport, trim(uplink.hardwareType)) == nullptr) {
    write_RssXml_VerifyError(uplink.path, row.element.data());
    return false;
  }
  return true;
}

bool VerifyConnection(const Checked& checked) {
  if (!VerifyField(RowOf(kUplinkFields, "ConnType"), checked)) {
    return false;
  }
  switch (rssXmlData.upLink.connTypeCode) {
    case kConnPppoe:
    case kConnPppoa:
      return VerifyFields(kUplinkFields, Group::kLogin, checked);
    case kConnStatic:
      return VerifyFields(kUplinkFields, Group::kAddress, checked);
    default:
      return true;
  }
}

bool VerifyProvider(RssIsp& isp) { return VerifyFields(kIspFields, {&isp, &isp, isp.path}); }

// The circuit of version 1.0. The uplink's frame size is reported in the DSL section.
// Quirk "mtu-fault-in-the-dsl-section": although the element stands in the uplink.
bool VerifyCircuit(RssUpLink& uplink) {
  return VerifyField(RowOf(kUplinkFields, "MTU"), {&uplink, &rssXmlData, uplink.dsl.path}) &&
         VerifyFields(kCircuitFields, {&uplink.dsl, &uplink.dsl, uplink.dsl.path});
}

Verdict VerifySite(RssExtenderSite& site) {
  if (!VerifyFields(kSiteFields, Group::kBasic, {&site, nullptr, site.path})) {
    return Verdict::kFault;
  }
  // Quirk "survey-skips-the-rest": neither radios nor SafetyVyr are looked at.
  if (site.survey == 1) {
    return Verdict::kEnough;
  }
  // A negative code is reported before its radio's rules come into play.
  RssWlan& radio = rssXmlData.wlan[site.wirelessTypeCode == 1 ? 1 : 0];
  return Judged(VerifyFields(kSiteFields, Group::kDetail, {&site, &radio, site.path}));
}

Verdict VerifyHardwareSection() {
  RssUpLink& uplink = rssXmlData.upLink;
  switch (uplink.hardwareTypeCode) {
    case kHardwareAdsl:
    case kHardwareVdsl:
      return Judged(VerifyProvider(uplink.dsl));
    case kHardwareApn:
      return Judged(VerifyProvider(uplink.apn));
    case kHardwareDsl:
      return Judged(!IsVersion10() || VerifyCircuit(uplink));
    default:
      return HasSiteUplink() ? VerifySite(uplink.extenderSite) : Verdict::kGoOn;
  }
}

Verdict VerifyDeviceAndUplink() {
  if (rssXmlData.configurable == 0) {
    return Verdict::kEnough;
  }
  if (!VerifyFields(kDeviceFields, {&rssXmlData, &rssXmlData, rssXmlData.devicePath})) {
    return Verdict::kFault;
  }
  RssUpLink& uplink = rssXmlData.upLink;
  if (uplink.configurable == 0) {
    return Verdict::kGoOn;
  }
  const Checked checked{&uplink, &rssXmlData, uplink.path};
  if (!VerifyHardware(checked) || !VerifyConnection(checked)) {
    return Verdict::kFault;
  }
  return VerifyHardwareSection();
}

// Quirk "cloning-ignores-safetyvyr": a document must hold it, and nothing more is done with it.
bool VerifySafety() {
  RssSafetyVyr& safety = rssXmlData.safetyVyr;
  return rssXmlData.safetyVyrFeature == 0 || rssXmlData.apCloningOnly != 0 ||
         VerifyFields(kSafetyFields, {&safety, nullptr, safety.path});
}

}  // namespace
}  // namespace kio::settings

int Verify_RssXml(void) {
  using kio::settings::Verdict;
  kio::platform::LogEntry("Verify_RssXml");
  // Quirk "cloning-verifies-fixed-devices": the device's own switch is then not looked at.
  if (rssXmlData.apCloningOnly == 0) {
    const Verdict verdict = kio::settings::VerifyDeviceAndUplink();
    if (verdict != Verdict::kGoOn) {
      return static_cast<int>(verdict == Verdict::kEnough);
    }
  }
  if (!kio::settings::VerifyRadios() || !kio::settings::VerifySafety()) {
    return 0;
  }
  kio::platform::LogName("Verify_RssXml");
  KIO_LOG(kio::platform::kLogDetail, "done, ret=1\n");
  return 1;
}
