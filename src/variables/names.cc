// Variable names and document paths: two spellings of one setting.

#include <array>

#include "kioapp/text.h"
#include "kioapp/variables.h"
#include "platform/text.h"
#include "settings/sections.h"

namespace kio::variables {
namespace {

using platform::TextBuffer;
using platform::TextView;
using settings::SectionId;

constexpr TextView kNamePrefix = "rss_";
constexpr const char* kBlanks = " \t\r\n";
// Stands in a part for the two characters of an index.
constexpr TextView kIndex = "??";

// A path or name, or a part of one, built from a section's row.
class Part {
 public:
  consteval Part& Append(TextView text) {
    for (const char character : text) {
      text_[size_++] = character;
    }
    return *this;
  }
  // One of a row's texts, with `word` for '*'.
  consteval Part& AppendRow(TextView text, TextView word) {
    for (const char character : text) {
      Append(character == '*' ? word : TextView(&character, 1));
    }
    return *this;
  }

  [[nodiscard]] constexpr TextView view() const { return {text_.data(), size_}; }

 private:
  std::array<char, 36> text_ = {};
  unsigned char size_ = 0;
};

struct Spelling {
  Part path;
  Part name;
  // Whether paths and names begin with it. Otherwise it may follow the last beginning before it in
  // the list.
  bool begins = true;

  [[nodiscard]] constexpr TextView Of(bool as_path) const {
    return as_path ? path.view() : name.view();
  }
};
// Names and paths that are converted although they have no variables.
constexpr TextView kBareNames[][2] = {{"/APCloningInfo/", "Ext_Apc_"},
                                      {"/SafetyVyrInfo/", "Ext_Vyr_"},
                                      {"/DslIspList/", "Ext_Dsl_"},
                                      {"/ApnIspList/", "Ext_Apn_"}};

// All spellings in the order in which they are tried.
class SpellingList {
 public:
  consteval SpellingList() {
    for (const settings::Section& row : settings::kSections) {
      if (row.id != SectionId::kDevice && settings::IsTopmost(row)) {
        for (int radio = 0; radio < (row.of_radio ? settings::kRadioCount : 1); ++radio) {
          AddSection(row, settings::kRadioWords[radio]);
        }
      }
    }
    for (const auto& [path, name] : kBareNames) {
      Add({Part().Append(path), Part().Append(name), true});
    }
    // Quirk "device-takes-every-prefix": the rest of a path becomes the name, even when it looks
    // like a name of another section.
    Add({Part().Append("/").Append(Element(SectionId::kDevice)).Append("/"), {}, true});
  }

  [[nodiscard]] constexpr const Spelling* begin() const { return rows_.data(); }
  [[nodiscard]] constexpr const Spelling* end() const { return rows_.data() + size_; }

 private:
  static consteval TextView Element(SectionId section) { return settings::RowOf(section).element; }

  consteval void Add(const Spelling& spelling) { rows_[size_++] = spelling; }

  consteval void AddSection(const settings::Section& row, TextView word) {
    Part path;
    if (row.parent != row.id) {
      path.Append("/").Append(Element(row.parent));
    }
    path.Append("/").AppendRow(row.element, word).Append("/");
    Add({path, Part().AppendRow(row.name, {word.data(), 1}), true});
    AddPartsBelow(row.id, {}, {});
  }

  consteval void AddPartsBelow(SectionId parent, const Part& path, const Part& name) {
    for (const settings::Section& row : settings::kSections) {
      if (row.parent != parent || row.id == parent) {
        continue;
      }
      if (row.first_instance == 0) {
        Spelling part = {path, name, false};
        part.path.Append(row.element).Append("/");
        part.name.Append(row.name);
        AddPartsBelow(row.id, part.path, part.name);
        Add(part);
        continue;
      }
      Spelling count = {path, name, false};
      count.path.Append(row.list).Append(row.element);
      Spelling instance = count;
      instance.path.Append(":").Append(kIndex).Append("/");
      instance.name.Append(row.name);
      Add(instance);
      count.path.Append("#");
      count.name.Append(row.element).Append("No");
      Add(count);
    }
  }

  std::array<Spelling, 24> rows_ = {};
  std::size_t size_ = 0;
};

constexpr SpellingList kSpellings;

// Whether an index in one spelling has its counterpart in the other, and each path begins with a
// slash, if there is no part before it.
consteval bool AreConvertible() {
  for (const Spelling& spelling : kSpellings) {
    const TextView path = spelling.path.view();
    const bool has_index = path.find(kIndex) != TextView::npos;
    if (has_index != (spelling.name.view().find(kIndex) != TextView::npos) ||
        (spelling.begins && !path.starts_with('/'))) {
      return false;
    }
  }
  return true;
}
static_assert(AreConvertible());

bool StartsWith(const char* text, TextView prefix) {
  return std::strncmp(text, prefix.data(), prefix.size()) == 0;
}

// The spelling that a text begins with; null when there is none.
const Spelling* FindBeginning(const char* text, bool from_path) {
  for (const Spelling& spelling : kSpellings) {
    if (spelling.begins && StartsWith(text, spelling.Of(from_path))) {
      return &spelling;
    }
  }
  return nullptr;
}

// The part that follows a beginning, or null.
const Spelling* FindPart(const Spelling* beginning, const char* text, bool from_path) {
  for (const Spelling* part = beginning + 1; part != kSpellings.end() && !part->begins; ++part) {
    const TextView from = part->Of(from_path);
    if (strnWildcardCmp(text, from.data(), static_cast<int>(from.size())) == 0) {
      return part;
    }
  }
  return nullptr;
}

// What is left of a text behind its first `count` characters.
const char* Behind(const char* text, std::size_t count) { return text + strnlen(text, count); }

void AppendPart(TextBuffer& result, TextView to, TextView from, const char* text) {
  const std::size_t to_index = to.find(kIndex);
  const std::size_t from_index = from.find(kIndex);
  if (to_index == TextView::npos) {
    result.Append(to);
    return;
  }
  // Quirk "index-is-any-two": the two characters are copied, digits or not; at the end of a name
  // there may be fewer.
  const char* const index = Behind(text, from_index);
  result.Append(TextView(to.data(), to_index))
      .Append(TextView(index, strnlen(index, kIndex.size())));
  to.remove_prefix(to_index + kIndex.size());
  result.Append(to);
}

bool IsBlank(char character) { return std::strchr(kBlanks, character) != nullptr; }

// Appends the path of a name, or the name of a path. Returns false when there is none.
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
  const Spelling* const beginning = *text == '\0' ? nullptr : FindBeginning(text, !to_path);
  if (beginning == nullptr) {
    return false;
  }
  result.Append(beginning->Of(to_path));
  text += beginning->Of(!to_path).size();
  if (*text == '\0') {
    return true;
  }
  if (const Spelling* const part = FindPart(beginning, text, !to_path)) {
    AppendPart(result, part->Of(to_path), part->Of(!to_path), text);
    text = Behind(text, part->Of(!to_path).size());
  }
  if (!to_path && std::strchr(text, '/') != nullptr) {
    return false;
  }
  result.Append(text);
  // The first character is none.
  while (IsBlank(result.view().back())) {
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
  // Built in another buffer, as the text may be the result of the call before.
  char result[sizeof(kio::variables::g_result)];
  kio::platform::TextBuffer buffer(result);
  if (!kio::variables::Convert(text, toPath != 0, buffer)) {
    kio::variables::g_result[0] = '\0';
    return nullptr;
  }
  kio::platform::CopyText(kio::variables::g_result, buffer.view());
  return kio::variables::g_result;
}
