// Verifying the record before it is applied.

#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/step.h"
#include "settings/verify_fields.h"
#include "settings/verify_wlan.h"

namespace kio::settings {
namespace {

bool VerifyHardware(const Checked& checked) {
  RssUpLink& uplink = Record().upLink;
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
  return VerifyField(RowOf(kUplinkFields, "ConnType"), checked) &&
         VerifyFields(kUplinkFields, ConnectionGroup(), checked);
}

// Verifies a provider or, in version 1.0, the circuit of a DSL uplink. The uplink's frame size is
// verified together with the circuit.
// Quirk "mtu-fault-in-the-dsl-section": its element stands in the uplink.
bool VerifyProvider(SectionId section) {
  RssUpLink& uplink = Record().upLink;
  const Group group = HardwareGroupUsed();
  if (group == Group::kCircuit &&
      !VerifyField(RowOf(kUplinkFields, "MTU"), {&uplink, &Record(), uplink.dsl.path})) {
    return false;
  }
  auto* const isp = static_cast<RssIsp*>(StructureOf({section}));
  return VerifyFields(RowOf(section).fields, group, {isp, isp, isp->path});
}

Step VerifySite(RssExtenderSite& site) {
  if (!VerifyFields(kSiteFields, Group::kBasic, {&site, nullptr, site.path})) {
    return Step::kRefused;
  }
  // Quirk "survey-skips-the-rest": neither radios nor SafetyVyr are verified.
  if (site.survey == 1) {
    return Step::kStageDone;
  }
  // A negative code is reported before the rules of the radio are used.
  RssWlan& radio = Record().wlan[site.wirelessTypeCode == 1 ? 1 : 0];
  return GoOnIf(VerifyFields(kSiteFields, Group::kDetail, {&site, &radio, site.path}));
}

Step VerifyHardwareSection() {
  if (HasSiteUplink()) {
    return VerifySite(Record().upLink.extenderSite);
  }
  const SectionId section = HardwareSection();
  return GoOnIf(section == SectionId::kCount || VerifyProvider(section));
}

Step VerifyDeviceAndUplink() {
  if (Record().configurable == 0) {
    return Step::kStageDone;
  }
  if (!VerifyFields(kDeviceFields, {&Record(), &Record(), Record().devicePath})) {
    return Step::kRefused;
  }
  RssUpLink& uplink = Record().upLink;
  if (uplink.configurable == 0) {
    return Step::kGoOn;
  }
  const Checked checked{&uplink, &Record(), uplink.path};
  if (!VerifyHardware(checked) || !VerifyConnection(checked)) {
    return Step::kRefused;
  }
  return VerifyHardwareSection();
}

// Quirk "cloning-ignores-safetyvyr": a document must hold it, and nothing more is done with it.
bool VerifySafety() {
  RssSafetyVyr& safety = Record().safetyVyr;
  return Record().safetyVyrFeature == 0 || Record().apCloningOnly != 0 ||
         VerifyFields(kSafetyFields, {&safety, nullptr, safety.path});
}

}  // namespace
}  // namespace kio::settings

int Verify_RssXml(void) {
  using kio::settings::Step;
  kio::platform::LogEntry("Verify_RssXml");
  // Quirk "cloning-verifies-fixed-devices": the device's own "configurable" is then ignored.
  if (kio::Record().apCloningOnly == 0) {
    const Step step = kio::settings::VerifyDeviceAndUplink();
    if (step != Step::kGoOn) {
      return static_cast<int>(step == Step::kStageDone);
    }
  }
  if (!kio::settings::VerifyRadios() || !kio::settings::VerifySafety()) {
    return 0;
  }
  KIO_LOG_NAMED("Verify_RssXml", "done, ret=1\n");
  return 1;
}
