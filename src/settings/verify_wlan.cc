#include "settings/verify_wlan.h"

#include <cstdint>

#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/validate.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/verify_fields.h"

namespace kio::settings {
namespace {

consteval std::uint8_t Bit(EncryptionType type) { return static_cast<std::uint8_t>(1U << type); }

// The encryption types that go with each mode.
constexpr std::uint8_t kWpaTypes = Bit(kTypeAuto) | Bit(kTypeTkip) | Bit(kTypeAes);
constexpr std::uint8_t kTypesOfMode[] = {
    Bit(kTypeAuto) | Bit(kTypeNotGiven),
    Bit(kTypeAuto) | Bit(kTypeOpen) | Bit(kTypeShared),
    kWpaTypes,
    kWpaTypes,
    kWpaTypes,
};
static_assert(std::size(kTypesOfMode) == kModeWpa2 + 1);

bool KeyFitsMode(const char* key, int mode) {
  switch (mode) {
    case kModeWpa:
    case kModeWpaWpa2:
    case kModeWpa2:
      return is_Valid_WpaPskKey(key) != 0;
    case kModeWep:
      return is_Valid_WepKey(key, 5) != 0 || is_Valid_WepKey(key, 13) != 0;
    default:
      return true;
  }
}

// Quirk "channel-of-three-characters": only the channel's first three characters are looked for.
bool IsInChannelList(const char* channel, const char* list) {
  char wanted_text[8];
  platform::TextBuffer wanted(wanted_text);
  wanted.Append(',').Append(platform::TextView(channel, strnlen(channel, 3))).Append(',');
  char listed_text[129];
  // Quirk "full-channel-list-loses-a-comma": of a list of 127 characters the closing comma is cut.
  platform::TextBuffer(listed_text).Append(',').Append(list).Append(',');
  return strstri(listed_text, wanted_text) != nullptr;
}

bool VerifyRule(RssAcRule& rule) {
  const Checked checked{&rule, &rule, rule.path};
  if (!VerifyField(RowOf(kRuleFields, "Active"), checked)) {
    return false;
  }
  if (rule.mac[0] <= ' ' && trim(rule.mac)[0] == '\0') {
    platform::LogTime(platform::kLogAction);
    KIO_LOG(platform::kLogAction, "Invalid Mac=%s\n", rule.mac);
  }
  return VerifyField(RowOf(kRuleFields, "MAC"), checked);
}

bool VerifyAccessControl(RssWlan& wlan) {
  const Checked checked{&wlan, &wlan, wlan.accessControlPath};
  if (!VerifyFields(kAccessFields, Group::kBasic, checked)) {
    return false;
  }
  if (wlan.wlAcEnbl != 1) {
    return true;
  }
  if (!VerifyFields(kAccessFields, Group::kDetail, checked)) {
    return false;
  }
  for (int i = 0; i < HeldRules(wlan); ++i) {
    if (!VerifyRule(wlan.acRule[i])) {
      return false;
    }
  }
  return true;
}

}  // namespace

int CheckEncryptionType(const RssWlan& wlan) {
  const int mode = wlan.encryptionModeCode;
  const int type = wlan.encryptionTypeCode;
  const bool fits = mode > kModeWpa2 || (type <= kTypeNotGiven && mode >= kModeNone && type >= 0 &&
                                         ((kTypesOfMode[mode] >> type) & 1) != 0);
  return type >= 0 && fits ? KIOAPP_RESULT_APPLIED : KIOAPP_RESULT_INVALID_VALUE;
}

int CheckRadioKey(const RssWlan& wlan) {
  return KeyFitsMode(wlan.encryptionKey, wlan.encryptionModeCode)
             ? CheckRule(wlan.encryptionKey, wlan.encryptionKeyValidate)
             : KIOAPP_RESULT_INVALID_VALUE;
}

bool IsListedChannel(const RssWlan& wlan, const char* channel) {
  return channel[0] != '\0' && platform::ParseInt(channel) >= 0 &&
         IsInChannelList(channel, wlan.channelList);
}

int CheckChannel(RssWlan& wlan) {
  if (IsListedChannel(wlan, wlan.channel)) {
    return KIOAPP_RESULT_APPLIED;
  }
  if (Record().apCloningOnly == 0) {
    return KIOAPP_RESULT_INVALID_VALUE;
  }
  // Quirk "cloning-resets-the-channel": a channel that the radio does not have becomes 0 and is no
  // fault.
  platform::CopyText(wlan.channel, "0");
  return KIOAPP_RESULT_APPLIED;
}

bool VerifyRadios() {
  for (int radio = 0; radio < kRadioCount; ++radio) {
    RssWlan& wlan = RadioOf(radio);
    if (!RadioExists(radio) || wlan.configurable == 0) {
      continue;
    }
    if (!VerifyFields(kWlanFields, {&wlan, &wlan, wlan.path})) {
      return false;
    }
    if (!IsVersion10() && !VerifyAccessControl(wlan)) {
      return false;
    }
  }
  return true;
}

}  // namespace kio::settings
