#include "variables/field_variables.h"

#include "kioapp/text.h"
#include "kioapp/validate.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/record.h"
#include "settings/verify_wlan.h"

namespace kio::variables {
namespace {

using platform::ParseInt;

constexpr unsigned int CodeFor(bool valid) { return valid ? KIOAPP_VAR_DONE : KIOAPP_VAR_REFUSED; }

// Whether the value is four numbers within their bounds. A missing number is a fault.
bool IsRoaming(const char* value) {
  int numbers[4] = {};
  for (int& number : numbers) {
    if (!platform::ScanInt(&value, &number)) {
      return false;
    }
  }
  return numbers[0] < 0 && numbers[1] >= 0 && numbers[2] >= 1 && numbers[3] >= 1;
}

// Quirk "switch-below-two": any number is accepted, unless the device has locked the switch.
bool MaySwitch(int current, int wanted) { return wanted == current || current < 2; }

void LogWord(TextView name, const char* word, int code) {
  // The log calls the encryption words "EncrypMode" and "EncrypType".
  constexpr TextView kLong = "Encryption";
  constexpr const char* kShort = "Encryp";
  const char* label = name.data();
  const bool is_long = std::strncmp(label, kLong.data(), kLong.size()) == 0;
  if (is_long) {
    label += kLong.size();
  }
  KIO_LOG(platform::kLogDetail, "Rss %s%s='%s' -> %d\n", is_long ? kShort : "", label, word, code);
}

class FieldVariable {
 public:
  FieldVariable(const Variable& variable, const SectionInstance& instance, const Request& request)
      : variable_(variable),
        field_(variable.field()),
        instance_(instance),
        request_(request),
        structure_(StructureOfVariable(variable, instance)) {}

  unsigned int Serve() {
    if (field_.variable_kind == VariableKind::kReadOnly) {
      return request_.reads() ? Read() : CodeFor(false);
    }
    if (request_.checks()) {
      const unsigned int code = Check();
      if (code != KIOAPP_VAR_DONE) {
        return code;
      }
    }
    if (request_.writes()) {
      Store();
      return KIOAPP_VAR_DONE;
    }
    if (!request_.reads()) {
      // Quirk "valid-words-are-refused": a word that is only validated is refused even when it is
      // valid.
      return CodeFor(field_.variable_kind != VariableKind::kKeyword);
    }
    return Read();
  }

 private:
  unsigned int Check() {
    const char* const value = request_.value;
    switch (field_.variable_kind) {
      case VariableKind::kFlag:
        return CodeFor(ParseInt(value) == 0 || ParseInt(value) == 1);
      case VariableKind::kSwitch:
        return CodeFor(MaySwitch(settings::IntOf(structure_, field_.member), ParseInt(value)));
      case VariableKind::kKeyword:
        return CheckWord();
      case VariableKind::kRule:
        return static_cast<unsigned int>(
            validate_RssData(value, settings::TextOf(RuleStructure(), field_.rule)));
      case VariableKind::kHostAddress:
        return CodeFor(is_Valid_IP(value) != 0);
      case VariableKind::kNetmask:
        return CodeFor(is_Valid_Netmask(value) != 0);
      case VariableKind::kChannel:
        return CodeFor(IsChannel(value));
      case VariableKind::kRoaming:
        return CodeFor(IsRoaming(value));
      default:
        return KIOAPP_VAR_DONE;
    }
  }

  unsigned int CheckWord() {
    word_code_ = SearchKeyArray(request_.value, field_.words);
    if (word_code_ < 0) {
      return KIOAPP_VAR_UNKNOWN_WORD;
    }
    LogWord(variable_.name(), request_.value, word_code_);
    return KIOAPP_VAR_DONE;
  }

  bool IsChannel(const char* value) {
    RssWlan& wlan = Record().wlan[instance_.radio];
    // Quirk "checking-trims-the-list": it does so in the record, even when nothing is set.
    trim(wlan.channelList);
    // Quirk "channel-is-not-trimmed": blanks around it count as part of it.
    return settings::IsListedChannel(wlan, value);
  }

  // A radio's rules are members of the radio's structure; all others are members of the record.
  [[nodiscard]] void* RuleStructure() const {
    return variable_.section() == SectionId::kRadio ? structure_ : &Record();
  }

  void Store() {
    if (field_.member.type == settings::Member::Type::kInt) {
      settings::IntOf(Target(), field_.member) = ParseInt(request_.value);
      return;
    }
    platform::CopyText(settings::TextOf(structure_, field_.member), field_.member.size,
                       request_.value);
    if (field_.has_words()) {
      settings::IntOf(structure_, field_.code) = word_code_;
    }
  }

  // Quirk "active-goes-to-the-rule-of-its-value": 0 or 1 becomes the flag of rule 0 or 1, whichever
  // rule was named.
  [[nodiscard]] void* Target() const {
    if (&field_ != &settings::RowOf(settings::kRuleFields, "Active")) {
      return structure_;
    }
    return &Record().wlan[instance_.radio].acRule[ParseInt(request_.value) == 0 ? 0 : 1];
  }

  [[nodiscard]] unsigned int Read() const {
    if (request_.reads_path() && !field_.hides_path) {
      platform::TextBuffer path(request_.value, KIOAPP_VAR_SIZE);
      AppendPath(path, variable_, instance_);
    } else if (field_.member.type == settings::Member::Type::kInt) {
      request_.AnswerNumber(settings::IntOf(structure_, field_.member));
    } else {
      request_.Answer(settings::TextOf(structure_, field_.member));
    }
    return KIOAPP_VAR_DONE;
  }

  const Variable& variable_;
  const Field& field_;
  const SectionInstance& instance_;
  const Request& request_;
  void* const structure_;
  int word_code_ = -1;
};

}  // namespace

unsigned int ServeField(const Variable& variable, const SectionInstance& instance,
                        const Request& request) {
  return FieldVariable(variable, instance, request).Serve();
}

}  // namespace kio::variables
