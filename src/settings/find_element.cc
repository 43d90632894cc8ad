#include "settings/find_element.h"

#include <algorithm>
#include <cstring>

#include "kioapp/xml.h"
#include "platform/log.h"
#include "settings/xml_values.h"

namespace kio::settings {
namespace {

using platform::TextView;

// No tag text is longer.
constexpr std::size_t kTagLimit = 127;

// One form of a tag: what comes before the key, the key, what comes behind it; cut to the limit.
struct TagText {
  TagText(TextView before, TextView full_key, TextView behind)
      : prefix(before),
        key(full_key.data(), std::min(full_key.size(), kTagLimit - before.size())),
        suffix(behind.data(), std::min(behind.size(), kTagLimit - before.size() - key.size())) {}

  [[nodiscard]] std::size_t size() const { return prefix.size() + key.size() + suffix.size(); }
  [[nodiscard]] bool SuffixAt(const SearchText& text, const char* position) const {
    return text.HasAt(position + prefix.size() + key.size(), suffix);
  }

  TextView prefix;
  TextView key;
  TextView suffix;
};

// A tag is looked for by its '<' and the key's first character.
CharacterPair PairOf(TextView key) {
  return key.empty() ? CharacterPair('<', '<', 0) : CharacterPair('<', key[0], 1);
}

// An opening tag, or the tag of an empty element, whose content is null.
struct OpeningTag {
  char* position = nullptr;
  char* content = nullptr;
};

OpeningTag FindOpeningTag(const Block& block, TextView key) {
  const TagText open("<", key, ">");
  const TagText empty("<", key, "/>");
  const TagText empty_blank("<", key, " />");
  const CharacterPair pair = PairOf(open.key);
  SearchText text = block.Search();
  char* first_empty = nullptr;
  char* first_empty_blank = nullptr;
  for (const char* hit = text.Find(block.text, pair); hit != nullptr;
       hit = text.Find(hit + 1, pair)) {
    if (!text.HasAt(hit + 1, open.key)) {
      continue;
    }
    char* const position = block.text + (hit - block.text);
    if (open.SuffixAt(text, hit)) {
      return {position, position + open.size()};
    }
    if (first_empty == nullptr && empty.SuffixAt(text, hit)) {
      first_empty = position;
    } else if (first_empty_blank == nullptr && empty_blank.SuffixAt(text, hit)) {
      first_empty_blank = position;
    }
  }
  return {first_empty != nullptr ? first_empty : first_empty_blank, nullptr};
}

// The closing tag of `key`, or null. It is looked for by its first and its last character, which
// tells it from all tags of other lengths.
const char* FindClosingTag(const Block& block, TextView key) {
  const TagText close("</", key, ">");
  const char last = close.suffix.empty() ? close.key.back() : close.suffix.back();
  const CharacterPair pair('<', last, close.size() - 1);
  SearchText text = block.Search();
  for (const char* hit = text.Find(block.text, pair); hit != nullptr;
       hit = text.Find(hit + 1, pair)) {
    if (text.HasAt(hit, close.prefix) && text.HasAt(hit + close.prefix.size(), close.key) &&
        close.SuffixAt(text, hit)) {
      return hit;
    }
  }
  return nullptr;
}

}  // namespace

SearchText Block::Search() const {
  if (text_end == nullptr) {
    return {text, length > 0 ? static_cast<std::size_t>(length) : SearchText::kNoLimit};
  }
  const auto rest = static_cast<std::size_t>(text_end - text);
  return {text, length > 0 ? std::min(static_cast<std::size_t>(length), rest) : rest, text_end};
}

Block Block::From(char* position) const {
  return {position, length > 0 ? length - static_cast<int>(position - text) : length, text_end};
}

Element FindElement(const Block& block, TextView key) {
  const OpeningTag tag = FindOpeningTag(block, key);
  Element element{tag.position, {tag.position, 0, block.text_end}};
  if (tag.content != nullptr) {
    const char* close = nullptr;
    // A block that ends right behind the tag holds no closing tag; a length of 0 would reach on.
    const Block rest = block.From(tag.content);
    if (block.length <= 0 || rest.length > 0) {
      close = FindClosingTag(rest, key);
    }
    element.content = close == nullptr ? Block{}
                                       : Block{tag.content, static_cast<int>(close - tag.content),
                                               block.text_end};
  }
  return element;
}

char* FindTag(const Block& block, TextView key) { return FindOpeningTag(block, key).position; }

void JoinPath(char (&path)[128], const char* parent, TextView key) {
  platform::TextBuffer buffer(path);
  if (parent != nullptr && parent[0] != '\0') {
    buffer.Append(parent).Append('/');
  }
  buffer.Append(key);
}

Block TakeRequiredBlock(const char* parent_path, const Element& element, TextView key,
                        char (&path)[128]) {
  platform::LogEntry("prepareXmlBlockData");
  if (!element.is_complete()) {
    ReportLostKey(nullptr, key);
    return {};
  }
  JoinPath(path, parent_path, key);
  return element.content;
}

Block FindRequiredBlock(const char* parent_path, const Block& block, TextView key,
                        char (&path)[128]) {
  const Element element = block.text != nullptr ? FindElement(block, key) : Element{};
  return TakeRequiredBlock(parent_path, element, key, path);
}

}  // namespace kio::settings

using kio::settings::Block;
using kio::settings::Element;

char* FindXmlKeyContain_(char* text, int len, const char* key, int* outLen, int headerOnly) {
  if (text == nullptr || key == nullptr) {
    return nullptr;
  }
  const Block block{text, len, nullptr};
  const Element element = headerOnly != 0 ? Element{kio::settings::FindTag(block, key), {}}
                                          : kio::settings::FindElement(block, key);
  if (headerOnly != 0 && element.has_tag()) {
    return element.tag;
  }
  if (outLen != nullptr) {
    *outLen = element.is_complete() ? element.content.length : 0;
  }
  return element.content.text;
}

char* FindXmlKeyContain(char* text, int len, const char* key, int* outLen) {
  return FindXmlKeyContain_(text, len, key, outLen, 0);
}

char* SearchXmlKeyHeader(char* text, int len, const char* key) {
  return FindXmlKeyContain_(text, len, key, nullptr, 1);
}

char* prepareXmlBlockData(const char* parentPath, char* text, int len, const char* key,
                          char* outPath, int* outLen) {
  if (key == nullptr) {
    return nullptr;
  }
  char path[128];
  const Block found = kio::settings::FindRequiredBlock(parentPath, {text, len, nullptr}, key, path);
  if (found.text != nullptr) {
    kio::platform::CopyText(outPath, sizeof(path), path);
  }
  if (outLen != nullptr) {
    *outLen = found.length;
  }
  return found.text;
}
