#include "settings/apply_wlan.h"

#include "kioapp/settings.h"
#include "platform/exported_data.h"
#include "platform/store.h"
#include "settings/apply_fields.h"
#include "settings/record.h"
#include "settings/step.h"

namespace kio::settings {
namespace {

using platform::ReadStoreInt;
using platform::StorePath;
using platform::WriteStoreInt;

constexpr const Field& kEnableRow = RowOf(kWlanFields, "WlEnbl");
constexpr const Field& kScheduleRow = RowOf(kWlanFields, "WlSchedule");
constexpr const Field& kTypeRow = RowOf(kWlanFields, "EncryptionType");
constexpr const Field& kChannelRow = RowOf(kWlanFields, "Channel");
constexpr const Field& kAccessSwitchRow = RowOf(kAccessFields, "WlAcEnbl");
constexpr const Field& kAccessModeRow = RowOf(kAccessFields, "WlAcMode");

// Every row that is to be written is written below.
static_assert(AllAreWritten(kWlanFields, {Group::kDeviceOnly, Group::kBasic, Group::kDetail},
                            {"WlEnbl", "WlSchedule"}));
static_assert(AllAreWritten(kAccessFields, {}, {"WlAcEnbl", "WlAcMode"}));
static_assert(AllAreWritten(kRuleFields, {Group::kBasic}));

// One radio and its nodes.
struct Radio {
  int number;
  RssWlan& wlan;
  StorePath& nodes;
};

Step Refused(const char* path, const Field& field) {
  write_RssXml_VerifyError(path, field.element.data());
  return Step::kRefused;
}

bool IsCloning() { return Record().apCloningOnly != 0; }

Step ApplyClonedEnable(const Radio& radio, const char* path) {
  RssWlan& wlan = radio.wlan;
  const int stored = ReadStoreInt(path);
  if (stored == wlan.wlEnbl) {
    return Step::kGoOn;
  }
  // Quirk "cloning-stops-at-a-locked-switch": this radio and all later ones are left as they are.
  if (stored == 2 || stored == 3 || wlan.wlEnbl == 2) {
    return Step::kStageDone;
  }
  if (wlan.wlEnbl == 3) {
    wlan.wlEnbl = 1;
  }
  wlan.restart |= ApplyField(kEnableRow, &wlan, path);
  return Step::kGoOn;
}

void ApplyClonedSchedule(const Radio& radio, const char* path) {
  RssWlan& wlan = radio.wlan;
  const int stored = ReadStoreInt(path);
  if (stored == wlan.wlSchedule || stored == 2) {
    return;
  }
  if (wlan.wlSchedule == 2) {
    wlan.wlSchedule = 0;
  }
  // Quirk "cloned-schedule-without-maximum": any number is written.
  wlan.restart |= ApplyField(kScheduleRow, &wlan, path);
}

Step ApplySwitches(const Radio& radio) {
  RssWlan& wlan = radio.wlan;
  if (IsCloning()) {
    const Step step = ApplyClonedEnable(radio, radio.nodes.Node(kEnableRow.node));
    if (step == Step::kGoOn) {
      ApplyClonedSchedule(radio, radio.nodes.Node(kScheduleRow.node));
    }
    return step;
  }
  if (!ApplySwitch(wlan.wlEnbl, radio.nodes.Node(kEnableRow.node), 3, wlan.restart)) {
    return Refused(wlan.path, kEnableRow);
  }
  // Quirk "schedule-locks-at-two-only": the switch above is locked at 3 as well.
  if (!ApplySwitch(wlan.wlSchedule, radio.nodes.Node(kScheduleRow.node), 2, wlan.restart)) {
    return Refused(wlan.path, kScheduleRow);
  }
  return Step::kGoOn;
}

// Writes name and encryption. The channel is written later, when the stored access control was
// read.
void ApplyNetwork(const Radio& radio) {
  for (const Field& field : kWlanFields) {
    if (field.write != Write::kIfDifferent || &field == &kChannelRow) {
      continue;
    }
    const char* const path = radio.nodes.Node(field.node);
    // Quirk "version-10-writes-auto": version 1.0 has no encryption type of its own.
    radio.wlan.restart |= &field == &kTypeRow && IsVersion10()
                              ? StrCmpWithXStr(kEncryptionTypes[kTypeAuto], path, 0)
                              : ApplyField(field, &radio.wlan, path);
  }
}

void ApplyRules(const Radio& radio, StorePath& access) {
  RssWlan& wlan = radio.wlan;
  const int stored = ReadStoreInt(access.Node(kRuleCountNode));
  SectionPath rules(SectionId::kRule, radio.number);
  for (int i = 0; i < HeldRules(wlan); ++i) {
    rules.SelectInstance(i + RowOf(SectionId::kRule).first_instance);
    wlan.restart |= ApplyFields(kRuleFields, Group::kBasic, &wlan.acRule[i], rules);
  }
  for (int number = stored; number > wlan.wlAcRuleNo && number > 0; --number) {
    rules.SelectInstance(number);
    platform::DeleteStoreNode(rules.c_str());
    wlan.restart = 1;
  }
}

Step ApplyAccessSwitch(RssWlan& wlan, int stored, StorePath& access, bool& stays) {
  if (stored == wlan.wlAcEnbl) {
    return Step::kGoOn;
  }
  if (stored == 2) {
    stays = IsCloning();
    return stays ? Step::kGoOn : Refused(wlan.accessControlPath, kAccessSwitchRow);
  }
  // Quirk "cloned-access-zero-rewritten": the stored value is not compared with the 0 again.
  if (IsCloning() && wlan.wlAcEnbl == 2) {
    wlan.wlAcEnbl = 0;
  }
  // Quirk "access-switch-two-is-written": from then on the switch is locked.
  wlan.restart = 1;
  WriteStoreInt(access.Node(kAccessSwitchRow.node), wlan.wlAcEnbl);
  return Step::kGoOn;
}

Step ApplyAccessControl(const Radio& radio) {
  RssWlan& wlan = radio.wlan;
  SectionPath access(SectionId::kAccess, radio.number);
  // Quirk "absent-access-switch-is-locked": what is absent reads as 2.
  const int stored_switch =
      ReadStoreInt(access.Node(kAccessSwitchRow.node), kAccessSwitchRow.absent);
  const int stored_mode = ReadStoreInt(access.Node(kAccessModeRow.node), kAccessModeRow.absent);
  wlan.restart |= ApplyField(kChannelRow, &wlan, radio.nodes.Node(kChannelRow.node));
  bool stays = false;
  const Step step = ApplyAccessSwitch(wlan, stored_switch, access, stays);
  if (step != Step::kGoOn || stays || wlan.wlAcEnbl != 1) {
    return step;
  }
  if (wlan.wlAcMode != stored_mode) {
    wlan.restart = 1;
  }
  // Quirk "access-mode-always-written": even when it is equal.
  WriteStoreInt(access.Node(kAccessModeRow.node), wlan.wlAcMode);
  ApplyRules(radio, access);
  return Step::kGoOn;
}

// A cloned radio becomes the upstream network of a device with a wireless uplink.
// Quirk "cloned-site-of-the-last-radio": written for each radio in turn.
void ApplyClonedSite(const Radio& radio) {
  RssUpLink& uplink = Record().upLink;
  RssWlan& wlan = radio.wlan;
  const char* const word = kRadioWords[radio.number];
  SectionPath site(SectionId::kSite);
  uplink.restart |=
      StrCmpWithXStr(wlan.wirelessBssid, site.Node(RowOf(kSiteFields, "ConnRefSiteBSSID").node), 0);
  uplink.restart |= StrCmpWithXStr(word, site.Node(RowOf(kSiteFields, "WirelessType").node), 0);
  uplink.extenderSite.wirelessTypeCode = radio.number;
  uplink.restart |=
      StrCmpWithXStr(wlan.wirelessName, site.Node(RowOf(kSiteFields, "WirelessName").node), 0);
  uplink.restart |=
      StrCmpWithXStr(wlan.encryptionKey, site.Node(RowOf(kSiteFields, "EncryptionKey").node), 0);
  StorePath cloned(kClonedSiteNode);
  // Quirk "cloning-information-always-written": even when it is equal.
  platform::WriteStoreText(cloned.Node(RowOf(kSiteFields, "WirelessType").node), word);
  for (const Field& field : kWlanFields) {
    if (field.group != Group::kDeviceOnly && field.member.type == Member::Type::kText) {
      platform::WriteStoreText(cloned.Node(field.node), TextOf(&wlan, field.member));
    }
  }
}

Step ApplyRadio(const Radio& radio) {
  const Step step = ApplySwitches(radio);
  if (step != Step::kGoOn) {
    return step;
  }
  ApplyNetwork(radio);
  if (!IsVersion10()) {
    const Step access_step = ApplyAccessControl(radio);
    if (access_step != Step::kGoOn) {
      return access_step;
    }
  }
  if (IsCloning() && Record().upLink.hardwareTypeCode == kHardwareWireless) {
    ApplyClonedSite(radio);
  }
  return Step::kGoOn;
}

}  // namespace

bool ApplyRadios() {
  for (int number = 0; number < kRadioCount; ++number) {
    RssWlan& wlan = RadioOf(number);
    if (!RadioExists(number) || wlan.configurable == 0) {
      continue;
    }
    SectionPath nodes(SectionId::kRadio, number);
    const Step step = ApplyRadio({number, wlan, nodes});
    if (step != Step::kGoOn) {
      return step == Step::kStageDone;
    }
  }
  return true;
}

}  // namespace kio::settings
