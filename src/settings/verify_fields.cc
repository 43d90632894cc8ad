#include "settings/verify_fields.h"

#include <cerrno>

#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/validate.h"
#include "settings/verify_wlan.h"

namespace kio::settings {
namespace {

constexpr const char* kDefaultNameServer = "8.8.8.8";

constexpr int CodeFor(bool valid) {
  return valid ? KIOAPP_RESULT_APPLIED : KIOAPP_RESULT_INVALID_VALUE;
}

// Whether a text is the key of an upstream network; an open network has none. WEP keys of 13
// characters, or of 10 or 26 digits, are as long as a WPA phrase and pass as one.
bool IsSiteKey(const char* key) {
  return key[0] == '\0' || is_Valid_WpaPskKey(key) != 0 || is_Valid_WepKey(key, 5) != 0;
}

int CheckText(const Field& field, const Checked& checked) {
  char* const text = trim(TextOf(checked.section, field.member));
  switch (field.check) {
    case Check::kFilled:
      return CodeFor(text[0] != '\0');
    case Check::kRule:
      return CheckRule(text, TextOf(checked.rules, field.rule));
    case Check::kHostAddress:
      return CodeFor(is_Valid_IP(text) != 0);
    case Check::kNetmask:
      return CodeFor(is_Valid_Netmask(text) != 0);
    case Check::kNameServer:
      if (text[0] == '\0') {
        // Quirk "default-name-server": the default is written to the store like a value of the app.
        platform::CopyText(text, field.member.size, kDefaultNameServer);
      }
      return CodeFor(is_Valid_IP(text) != 0);
    case Check::kSiteKey:
      return IsSiteKey(text) ? CheckRule(text, TextOf(checked.rules, field.rule))
                             : KIOAPP_RESULT_INVALID_VALUE;
    case Check::kEncryptionType:
      return CheckEncryptionType(*static_cast<RssWlan*>(checked.section));
    case Check::kRadioKey:
      return CheckRadioKey(*static_cast<RssWlan*>(checked.section));
    default:
      // Check::kChannel: CheckField does the others.
      return CheckChannel(*static_cast<RssWlan*>(checked.section));
  }
}

int CheckField(const Field& field, const Checked& checked) {
  switch (field.check) {
    case Check::kNothing:
      return KIOAPP_RESULT_APPLIED;
    case Check::kInRange:
      return CodeFor(is_in_range(IntOf(checked.section, field.member), field.low, field.high) != 0);
    case Check::kKeyword:
      return CodeFor(IntOf(checked.section, field.code) >= 0);
    default:
      return CheckText(field, checked);
  }
}

}  // namespace

int CheckRule(const char* text, const char* rule) {
  // Quirk "rule-results-in-errno": the host reads the last one there.
  errno = validate_RssData(text, rule);
  return errno;
}

bool VerifyField(const Field& field, const Checked& checked) {
  const int code = CheckField(field, checked);
  if (code == KIOAPP_RESULT_APPLIED) {
    return true;
  }
  const platform::TextView name = field.fault_name.empty() ? field.element : field.fault_name;
  write_RssXml_KeyResult(checked.path, name.data(), code);
  return false;
}

bool VerifyFields(FieldTable table, const Checked& checked) {
  for (const Field& field : table) {
    if (IsIn(field.versions, IsVersion10()) && !VerifyField(field, checked)) {
      return false;
    }
  }
  return true;
}

bool VerifyFields(FieldTable table, Group group, const Checked& checked) {
  for (const Field& field : table) {
    if (field.group == group && IsIn(field.versions, IsVersion10()) &&
        !VerifyField(field, checked)) {
      return false;
    }
  }
  return true;
}

}  // namespace kio::settings
