#include "variables/field_variables.h"

#include "kioapp/text.h"
#include "kioapp/validate.h"
#include "kioapp/xml.h"
#include "platform/log.h"
#include "settings/record.h"
#include "settings/verify_wlan.h"

namespace kio::variables {
namespace {

using platform::ParseInt;

constexpr unsigned int Judged(bool valid) { return valid ? KIOAPP_VAR_DONE : KIOAPP_VAR_REFUSED; }

// Numbers that are missing count as bad.
bool IsRoaming(const char* value) {
  int numbers[4] = {};
  for (int& number : numbers) {
    if (!platform::ScanInt(&value, &number)) {
      return false;
    }
  }
  return numbers[0] < 0 && numbers[1] >= 0 && numbers[2] >= 1 && numbers[3] >= 1;
}

// Quirk "switch-below-two": as long as the device has not locked the switch, any number will do.
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
  FieldVariable(const Variable& variable, const Place& place, const Request& request)
      : variable_(variable),
        field_(*variable.field),
        place_(place),
        request_(request),
        holder_(HolderOf(variable, place)) {}

  unsigned int Serve() {
    if (field_.offer == Offer::kReadOnly) {
      return request_.reads() ? Read() : Judged(false);
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
      // Quirk "valid-words-are-refused": a word that is only validated ends like this at best.
      return Judged(field_.offer != Offer::kKeyword);
    }
    return Read();
  }

 private:
  unsigned int Check() {
    const char* const value = request_.value;
    switch (field_.offer) {
      case Offer::kFlag:
        return Judged(ParseInt(value) == 0 || ParseInt(value) == 1);
      case Offer::kSwitch:
        return Judged(MaySwitch(settings::IntOf(holder_, field_.member), ParseInt(value)));
      case Offer::kKeyword:
        return CheckWord();
      case Offer::kRule:
        return static_cast<unsigned int>(
            validate_RssData(value, settings::TextOf(RuleHolder(), field_.rule)));
      case Offer::kHostAddress:
        return Judged(is_Valid_IP(value) != 0);
      case Offer::kNetmask:
        return Judged(is_Valid_Netmask(value) != 0);
      case Offer::kChannel:
        return Judged(IsChannel(value));
      case Offer::kRoaming:
        return Judged(IsRoaming(value));
      default:
        return KIOAPP_VAR_DONE;
    }
  }

  unsigned int CheckWord() {
    word_code_ = SearchKeyArray(request_.value, field_.words);
    if (word_code_ < 0) {
      return KIOAPP_VAR_UNKNOWN_WORD;
    }
    LogWord(variable_.name, request_.value, word_code_);
    return KIOAPP_VAR_DONE;
  }

  bool IsChannel(const char* value) {
    RssWlan& wlan = rssXmlData.wlan[place_.radio];
    // Quirk "checking-trims-the-list": in the record, even when nothing is to be set.
    trim(wlan.channelList);
    // Quirk "channel-is-not-trimmed": blanks around it are looked for in the list as well.
    return settings::IsListedChannel(wlan, value);
  }

  // The rules of a radio stand beside its fields, all others in the record itself.
  [[nodiscard]] void* RuleHolder() const {
    return variable_.section == SectionId::kRadio ? holder_ : &rssXmlData;
  }

  void Store() {
    if (field_.member.type == settings::Member::Type::kInt) {
      settings::IntOf(Target(), field_.member) = ParseInt(request_.value);
      return;
    }
    platform::CopyText(settings::TextOf(holder_, field_.member), field_.member.size,
                       request_.value);
    if (field_.has_words()) {
      settings::IntOf(holder_, field_.code) = word_code_;
    }
  }

  // Quirk "active-goes-to-the-rule-of-its-value": 0 or 1 becomes the flag of rule 0 or 1, whichever
  // rule was named.
  [[nodiscard]] void* Target() const {
    if (&field_ != &settings::RowOf(settings::kRuleFields, "Active")) {
      return holder_;
    }
    return &rssXmlData.wlan[place_.radio].acRule[ParseInt(request_.value) == 0 ? 0 : 1];
  }

  [[nodiscard]] unsigned int Read() const {
    if (request_.reads_path() && !field_.hides_path) {
      platform::TextBuffer path(request_.value, KIOAPP_VAR_SIZE);
      AppendPath(path, variable_, place_);
    } else if (field_.member.type == settings::Member::Type::kInt) {
      request_.AnswerNumber(settings::IntOf(holder_, field_.member));
    } else {
      request_.Answer(settings::TextOf(holder_, field_.member));
    }
    return KIOAPP_VAR_DONE;
  }

  const Variable& variable_;
  const Field& field_;
  const Place& place_;
  const Request& request_;
  void* const holder_;
  int word_code_ = -1;
};

}  // namespace

unsigned int ServeField(const Variable& variable, const Place& place, const Request& request) {
  return FieldVariable(variable, place, request).Serve();
}

}  // namespace kio::variables
