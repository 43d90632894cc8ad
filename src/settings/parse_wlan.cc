#include "settings/parse_wlan.h"

#include <cstring>

#include "kioapp/settings.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/parse_fields.h"
#include "settings/xml/element_path.h"
#include "settings/xml/required.h"

namespace kio::settings {
namespace {

using platform::TextView;

constexpr TextView kRuleElement = RowOf(SectionId::kRule).element;
// The search for the next rule goes on this far behind the opening tag of the last one.
constexpr int kRuleTagLength = 8;

// The rules of a radio, found by their tags wherever they lie in the block, so that they may stand
// in an element of their own.
class RuleParser {
 public:
  RuleParser(const Block& block, RssWlan& wlan) : rest_(block), reader_(block), wlan_(wlan) {
    JoinPath(path_, wlan.accessControlPath, kRuleElement);
  }

  bool Parse() {
    int count = 0;
    // Quirk "rules-beyond-the-fortieth-unread": they may hold anything.
    while (count < kRuleCapacity && !is_at_end_) {
      RssAcRule& rule = wlan_.acRule[count];
      if (!TakePlainRule(rule)) {
        const Element element = FindElement(rest_, kRuleElement);
        if (!element.has_tag()) {
          break;
        }
        if (!ParseRule(element, rule)) {
          return false;
        }
      }
      ++count;
    }
    wlan_.wlAcRuleNo = count;
    return true;
  }

 private:
  static constexpr std::size_t kFields = std::size(kRuleFields);

  void BeginRule() {
    LogSection(SectionId::kRule, wlan_.accessControlPath);
    platform::LogEntry("prepareXmlBlockData");
  }

  // A rule as apps write it: behind the last one, and nothing but its fields in it. It is the one
  // that a search would find, without the search. Anything else is left as it is.
  bool TakePlainRule(RssAcRule& rule) {
    BlockReader reader = reader_;
    Element elements[kFields];
    if (!reader.Enter(kRuleElement)) {
      return false;
    }
    for (std::size_t i = 0; i < kFields; ++i) {
      elements[i] = reader.TakeNext(kRuleFields[i].element);
      if (!elements[i].is_complete()) {
        return false;
      }
    }
    if (!reader.Leave(kRuleElement)) {
      return false;
    }
    BeginRule();
    std::memcpy(rule.path, path_, sizeof(path_));
    for (std::size_t i = 0; i < kFields; ++i) {
      ParseField(kRuleFields[i], elements[i], &rule);
    }
    GoOnBehind(reader);
    return true;
  }

  // Behind a rule that has been read to its end.
  void GoOnBehind(const BlockReader& reader) {
    reader_ = reader;
    if (rest_.length > 0 && reader.position() - rest_.text >= rest_.length) {
      // A length of 0 would reach beyond the block.
      is_at_end_ = true;
    } else {
      rest_ = rest_.From(reader.position());
    }
  }

  bool ParseRule(const Element& element, RssAcRule& rule) {
    BeginRule();
    if (!element.is_complete()) {
      ReportLostKey(nullptr, kRuleElement);
      return false;
    }
    std::memcpy(rule.path, path_, sizeof(path_));
    BlockReader reader(element.content);
    if (!ParseFields(kRuleFields, Group::kBasic, reader, rule.path, &rule)) {
      return false;
    }
    // Quirk "unclosed-rule-shares-an-end": the search goes on inside this rule, so that the next
    // one is read once more where this one has taken its end.
    rest_ = rest_.From(element.tag + kRuleTagLength);
    // Behind a rule with nothing but its fields in it, the next one may be taken as it comes.
    BlockReader behind(rest_.From(reader.position()));
    if (behind.Leave(kRuleElement)) {
      GoOnBehind(behind);
    }
    return true;
  }

  Block rest_;
  BlockReader reader_;
  bool is_at_end_ = false;
  RssWlan& wlan_;
  decltype(RssAcRule::path) path_ = {};
};

bool ParseAccessControl(const Block& radio_block, RssWlan& wlan) {
  LogSection(SectionId::kAccess, wlan.path);
  const Block block = FindRequiredBlock(wlan.path, radio_block, RowOf(SectionId::kAccess).element,
                                        wlan.accessControlPath);
  BlockReader reader(block);
  if (block.text == nullptr ||
      !ParseFields(kAccessFields, Group::kBasic, reader, wlan.accessControlPath, &wlan)) {
    return false;
  }
  if (wlan.wlAcEnbl != 1) {
    wlan.wlAcRuleNo = 0;
    return true;
  }
  return ParseFields(kAccessFields, Group::kDetail, reader, wlan.accessControlPath, &wlan) &&
         RuleParser(block, wlan).Parse();
}

}  // namespace

bool ParseRadio(const char* parent_path, const Block& device, int radio) {
  LogSection(SectionId::kRadio, parent_path);
  RssWlan& wlan = RadioOf(radio);
  if (wlan.configurable == 0) {
    JoinPath(wlan.accessControlPath, wlan.path, RowOf(SectionId::kAccess).element);
    return true;
  }
  char name_text[32];
  platform::TextBuffer name(name_text);
  RowText(RowOf(SectionId::kRadio).element, radio).AppendTo(name);
  const Block block = FindRequiredBlock(parent_path, device, name.view(), wlan.path);
  if (block.text == nullptr) {
    return false;
  }
  BlockReader reader(block);
  if (IsNotConfigurable(reader)) {
    wlan.configurable = 0;
    return true;
  }
  // Encryption type and channel stand behind the key in a document; one of version 1.0 ends before
  // them.
  if (!ParseFields(kWlanFields, Group::kBasic, reader, wlan.path, &wlan)) {
    return false;
  }
  return IsVersion10() || (ParseFields(kWlanFields, Group::kDetail, reader, wlan.path, &wlan) &&
                           ParseAccessControl(block, wlan));
}

}  // namespace kio::settings
