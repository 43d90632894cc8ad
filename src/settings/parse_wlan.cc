// Reading the radios of a settings document.

#include "kioapp/settings.h"
#include "platform/log.h"
#include "settings/field_tables.h"
#include "settings/parse_fields.h"
#include "settings/xml_values.h"

namespace kio::settings {
namespace {

using platform::TextView;

constexpr TextView kRuleElement = "AcRule";
// The search for the next rule goes on this far behind the opening tag of the last one.
constexpr int kRuleTagLength = 8;

bool ParseRule(const char* parent_path, const Element& element, RssAcRule& rule) {
  LogSection("do_RssAcRule_Parser", parent_path);
  const Block block = TakeRequiredBlock(parent_path, element, kRuleElement, rule.path);
  return block.text != nullptr && ParseFields(kRuleFields, Group::kBasic, block, rule.path, &rule);
}

// Rules are found by their tags wherever they lie in the block, so they may stand in an element of
// their own.
bool ParseRules(const Block& block, RssWlan& wlan) {
  int count = 0;
  Block rest = block;
  while (count < kRuleCapacity) {
    const Element element = FindElement(rest, kRuleElement);
    if (!element.has_tag()) {
      break;
    }
    if (!ParseRule(wlan.accessControlPath, element, wlan.acRule[count])) {
      return false;
    }
    ++count;
    rest = rest.From(element.tag + kRuleTagLength);
  }
  wlan.wlAcRuleNo = count;
  return true;
}

bool ParseAccessControl(const Block& radio_block, RssWlan& wlan) {
  LogSection("do_RssAccessCtl_Parser", wlan.path);
  const Block block =
      FindRequiredBlock(wlan.path, radio_block, "AccessControl", wlan.accessControlPath);
  if (block.text == nullptr ||
      !ParseFields(kAccessFields, Group::kBasic, block, wlan.accessControlPath, &wlan)) {
    return false;
  }
  if (wlan.wlAcEnbl != 1) {
    wlan.wlAcRuleNo = 0;
    return true;
  }
  return ParseFields(kAccessFields, Group::kDetail, block, wlan.accessControlPath, &wlan) &&
         ParseRules(block, wlan);
}

}  // namespace

bool ParseRadio(const char* parent_path, const Block& device, int radio) {
  LogSection("do_RssWireless_Parser", parent_path);
  RssWlan& wlan = rssXmlData.wlan[radio];
  if (wlan.configurable == 0) {
    JoinPath(wlan.accessControlPath, wlan.path, "AccessControl");
    return true;
  }
  char name_text[32];
  platform::TextBuffer name(name_text);
  name.Append("Wireless").Append(RadioWord(radio));
  const Block block = FindRequiredBlock(parent_path, device, name.view(), wlan.path);
  if (block.text == nullptr) {
    return false;
  }
  if (IsLeftAlone(block)) {
    wlan.configurable = 0;
    return true;
  }
  // The table has the encryption type and the channel among the basic fields; a document has them
  // behind the key, and one of version 1.0 ends before them.
  if (!ParseFields(kWlanFields, Group::kBasic, block, wlan.path, &wlan)) {
    return false;
  }
  return IsVersion10() || (ParseFields(kWlanFields, Group::kDetail, block, wlan.path, &wlan) &&
                           ParseAccessControl(block, wlan));
}

}  // namespace kio::settings
