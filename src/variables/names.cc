// Variable names and document paths: two spellings of one setting.

#include "kioapp/text.h"
#include "kioapp/variables.h"
#include "platform/text.h"

namespace kio::variables {
namespace {

using platform::TextBuffer;
using platform::TextView;

constexpr TextView kNamePrefix = "rss_";
constexpr const char* kBlanks = " \t\r\n";
// In a sub-rule: the two characters of an index. (The tables write "?\?/" for what would be read as
// a trigraph.)
constexpr TextView kIndex = "??";

struct Spelling {
  TextView path;
  TextView name;

  [[nodiscard]] constexpr TextView Of(bool as_path) const { return as_path ? path : name; }
};

constexpr int kMaxSubRules = 3;

struct Section {
  Spelling prefix;
  Spelling sub_rules[kMaxSubRules] = {};
};

// Sections and sub-rules are tried in this order. The last section takes whatever is left.
constexpr Section kSections[] = {
    {{"/specVersion/", "Ver_"}},
    {{"/Device/UpLinkConnection/", "Upl_"},
     {{"DSL/", "Dsl_"}, {"APN/", "Apn_"}, {"ExtenderSite/", "Ets_"}}},
    {{"/Device/Wireless2.4/", "Wl2_"},
     {{"AccessControl/WlAcLists/AcRule:?\?/", "Acl_R??_"},
      {"AccessControl/WlAcLists/AcRule#", "Acl_AcRuleNo"},
      {"AccessControl/", "Acl_"}}},
    {{"/Device/Wireless5/", "Wl5_"},
     {{"AccessControl/WlAcLists/AcRule:?\?/", "Acl_R??_"},
      {"AccessControl/WlAcLists/AcRule#", "Acl_AcRuleNo"},
      {"AccessControl/", "Acl_"}}},
    {{"/Device/SafetyVyr/", "Vyr_"}},
    {{"/FwUpgradeInfo/", "Ext_Fwu_"}},
    {{"/WirelessSiteSurvey/", "Ext_Ssv_"}, {{"Site:?\?/", "S??_"}, {"Site#", "SiteNo"}}},
    {{"/APCloningInfo/", "Ext_Apc_"}},
    {{"/SafetyVyrInfo/", "Ext_Vyr_"}},
    {{"/DslIspList/", "Ext_Dsl_"}},
    {{"/ApnIspList/", "Ext_Apn_"}},
    // Quirk "device-takes-every-prefix": what follows may begin like a name of another section.
    {{"/Device/", ""}},
};

bool StartsWith(const char* text, TextView prefix) {
  return std::strncmp(text, prefix.data(), prefix.size()) == 0;
}

const Section* FindSection(const char* text, bool from_path) {
  for (const Section& section : kSections) {
    if (StartsWith(text, section.prefix.Of(from_path))) {
      return &section;
    }
  }
  return nullptr;
}

const Spelling* FindSubRule(const Section& section, const char* text, bool from_path) {
  for (const Spelling& rule : section.sub_rules) {
    const TextView from = rule.Of(from_path);
    if (!from.empty() && strnWildcardCmp(text, from.data(), static_cast<int>(from.size())) == 0) {
      return &rule;
    }
  }
  return nullptr;
}

// What is left of a text behind its first `count` characters.
const char* Behind(const char* text, std::size_t count) { return text + strnlen(text, count); }

void AppendSubRule(TextBuffer& result, TextView to, TextView from, const char* text) {
  const std::size_t to_index = to.find(kIndex);
  const std::size_t from_index = from.find(kIndex);
  if (to_index == TextView::npos || from_index == TextView::npos) {
    result.Append(to);
    return;
  }
  // Quirk "index-is-any-two": what stands there is copied, digits or not, and near the end of a
  // name fewer than two.
  const char* const index = Behind(text, from_index);
  result.Append(TextView(to.data(), to_index))
      .Append(TextView(index, strnlen(index, kIndex.size())));
  to.remove_prefix(to_index + kIndex.size());
  result.Append(to);
}

bool IsBlank(char character) { return std::strchr(kBlanks, character) != nullptr; }

// Appends what the text is called on the other side. Returns false when it has no other name.
bool Convert(const char* text, bool to_path, TextBuffer& result) {
  if (to_path) {
    if (!StartsWith(text, kNamePrefix)) {
      return false;
    }
    text += kNamePrefix.size();
  } else {
    result.Append(kNamePrefix);
  }
  text += std::strspn(text, kBlanks);
  const Section* const section = *text == '\0' ? nullptr : FindSection(text, !to_path);
  if (section == nullptr) {
    return false;
  }
  result.Append(section->prefix.Of(to_path));
  text += section->prefix.Of(!to_path).size();
  if (*text == '\0') {
    return true;
  }
  if (const Spelling* const rule = FindSubRule(*section, text, !to_path)) {
    AppendSubRule(result, rule->Of(to_path), rule->Of(!to_path), text);
    text = Behind(text, rule->Of(!to_path).size());
  }
  if (!to_path && std::strchr(text, '/') != nullptr) {
    return false;
  }
  result.Append(text);
  while (result.size() > 0 && IsBlank(result.view().back())) {
    result.Truncate(result.size() - 1);
  }
  return true;
}

char g_result[KIOAPP_VAR_SIZE];

}  // namespace
}  // namespace kio::variables

char* cvtRss_XmlPathVsVarName(const char* text, int toPath) {
  if (text == nullptr) {
    return nullptr;
  }
  // Built aside, so that a result may be converted back.
  char result[sizeof(kio::variables::g_result)];
  kio::platform::TextBuffer buffer(result);
  if (!kio::variables::Convert(text, toPath != 0, buffer)) {
    kio::variables::g_result[0] = '\0';
    return nullptr;
  }
  kio::platform::CopyText(kio::variables::g_result, buffer.view());
  return kio::variables::g_result;
}
