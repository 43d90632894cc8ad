// Applying the verified record to the device.

#include "kioapp/settings.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/store.h"
#include "settings/apply_fields.h"
#include "settings/apply_wlan.h"
#include "settings/record.h"
#include "settings/survey.h"

namespace kio::settings {
namespace {

using platform::StorePath;

// Every row that is to be written is written below. The tables of versions, features and rules are
// never written.
static_assert(AllAreWritten(kVersionFields, {}) && AllAreWritten(kFeatureFields, {}) &&
              AllAreWritten(kDeviceRules, {}) && AllAreWritten(kUplinkRules, {}));
static_assert(AllAreWritten(kDeviceFields, {Group::kBasic, Group::kRoaming}, {"RouterEnbl"}));
static_assert(AllAreWritten(kUplinkFields, {Group::kLogin, Group::kAddress},
                            {"HardwareType", "ConnType"}));
static_assert(AllAreWritten(kDslFields, {Group::kProvider, Group::kCircuit}) &&
              AllAreWritten(kApnFields, {Group::kProvider}) &&
              AllAreWritten(kSiteFields, {Group::kDetail}));
static_assert(AllAreWritten(kSafetyFields, {Group::kBasic}));

void ClearRestartFlags() {
  Record().deviceRestart = 0;
  Record().upLink.restart = 0;
  for (RssWlan& wlan : Record().wlan) {
    wlan.restart = 0;
  }
  Record().wlanSurveyRestart = 0;
  Record().roamingRestart = 0;
  Record().safetyVyr.restart = 0;
  Record().saveflag = 0;
}

// Returns false when a change is refused, which is then reported.
bool ApplyDevice() {
  StorePath nodes("");
  Record().deviceRestart |=
      static_cast<unsigned char>(ApplyFields(kDeviceFields, Group::kBasic, &Record(), nodes));
  const Field& row = RowOf(kDeviceFields, "RouterEnbl");
  if (!ApplySwitch(Record().routerEnbl, nodes.Node(row.node), 3, Record().deviceRestart)) {
    write_RssXml_VerifyError(Record().devicePath, row.element.data());
    return false;
  }
  return true;
}

int ApplyHardwareSection() {
  if (HasSiteUplink()) {
    return ApplyFields(SectionId::kSite, Group::kDetail);
  }
  const SectionId section = HardwareSection();
  return section != SectionId::kCount ? ApplyFields(section, HardwareGroupUsed()) : 0;
}

void ApplyUplink() {
  RssUpLink& uplink = Record().upLink;
  if (uplink.configurable == 0) {
    return;
  }
  SectionPath nodes(SectionId::kUplink);
  const Field& hardware = RowOf(kUplinkFields, "HardwareType");
  if (!IsVersion10()) {
    uplink.restart |= ApplyField(hardware, &uplink, nodes.Node(hardware.node));
  }
  const Field& connection = RowOf(kUplinkFields, "ConnType");
  uplink.restart |= ApplyField(connection, &uplink, nodes.Node(connection.node));
  uplink.restart |= ApplyFields(kUplinkFields, ConnectionGroup(), &uplink, nodes);
  uplink.restart |= ApplyHardwareSection();
}

// Quirk "roaming-flag-never-set": a changed text restarts the device instead.
void ApplyRoaming() {
  if (!IsVersion10() && Record().easyRoamingFeature != 0) {
    Record().deviceRestart |=
        static_cast<unsigned char>(ApplyFields(SectionId::kDevice, Group::kRoaming));
  }
}

void ApplySafety() {
  if (Record().safetyVyrFeature != 0 && Record().apCloningOnly == 0) {
    Record().safetyVyr.restart |= ApplyFields(SectionId::kSafety, Group::kBasic);
  }
}

// A changed device no longer holds its factory settings.
void ApplySaveFlag() {
  const int changed = Record().deviceRestart | Record().upLink.restart | Record().wlan[0].restart |
                      Record().wlan[1].restart | Record().roamingRestart |
                      Record().safetyVyr.restart;
  Record().saveflag = static_cast<unsigned char>(changed);
  if (Record().saveflag != 0) {
    platform::WriteStoreInt("/sys/factorydefault", 0);
  }
}

// Returns false when a change is refused, which is then reported.
// Quirk "refusal-keeps-earlier-writes": a host that minds undoes them.
bool ApplyRecord() {
  if (Record().apCloningOnly == 0) {
    if (Record().upLink.extenderSite.survey != 0 && HasSiteUplink()) {
      // Quirk "survey-excludes-the-rest": nothing else is applied together with a site survey.
      Record().wlanSurveyRestart = static_cast<int>(RequestSiteSurvey());
      return true;
    }
    if (!ApplyDevice()) {
      return false;
    }
    ApplyUplink();
  }
  ApplyRoaming();
  if (!ApplyRadios()) {
    return false;
  }
  ApplySafety();
  ApplySaveFlag();
  return true;
}

}  // namespace
}  // namespace kio::settings

int Apply_RssXmlToDevice(void) {
  kio::platform::LogEntry("Apply_RssXmlToDevice");
  kio::settings::ClearRestartFlags();
  if (kio::Record().configurable == 0) {
    return 1;
  }
  if (!kio::settings::ApplyRecord()) {
    return 0;
  }
  KIO_LOG(kio::platform::kLogAction,
          "done,ret=1,Restart:wlan2.4=%d,wlan5=%d,uplink=%d,survey=%d,roaming=%d\n",
          kio::Record().wlan[0].restart, kio::Record().wlan[1].restart,
          kio::Record().upLink.restart, kio::Record().wlanSurveyRestart,
          kio::Record().roamingRestart);
  return 1;
}
