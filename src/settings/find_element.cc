#include "settings/find_element.h"

#include <algorithm>
#include <cstring>

#include "kioapp/xml.h"
#include "platform/log.h"
#include "settings/xml_values.h"

namespace kio::settings {
namespace {

using platform::TextView;

// No tag text is longer: what stands before the key, the key and what stands behind it are cut to
// it.
// Quirk "tags-of-127": keys that differ behind the cut are one.
constexpr std::size_t kTagLimit = 127;

TextView Cut(TextView text, std::size_t size) { return {text.data(), std::min(text.size(), size)}; }

// What a text of `room` characters holds behind the '<' and the `key_size` characters of a key,
// when it is not the '>' of an opening tag.
enum class TagForm {
  kNone,
  kCut,  // an opening tag whose text ends with the key
  kEmpty,
  kEmptyBlank
};

[[gnu::noinline]] TagForm FormOf(const char* behind, std::size_t room, std::size_t key_size) {
  const auto goes_on = [=](TextView end) {
    const TextView rest = Cut(end, kTagLimit - 1 - key_size);
    return rest.size() <= room && TextView(behind, rest.size()) == rest;
  };
  if (key_size >= kTagLimit - 1) {
    return TagForm::kCut;
  }
  if (goes_on("/>")) {
    return TagForm::kEmpty;
  }
  return goes_on(" />") ? TagForm::kEmptyBlank : TagForm::kNone;
}

// An opening tag, or the tag of an empty element, whose content is null.
struct OpeningTag {
  const char* position = nullptr;
  const char* content = nullptr;
};

// Whether the opening tag of `key` stands at the '<' at `tag`, in a text that ends at `end`.
[[gnu::always_inline]] inline bool IsOpeningTag(const char* tag, const char* end, TextView key) {
  const std::size_t size = key.size() + 2;
  return static_cast<std::size_t>(end - tag) >= size && tag[size - 1] == '>' &&
         EqualsFold(tag + 1, key.data(), key.size());
}

// The tags of empty elements that a search for an opening tag came across.
struct EmptyTags {
  void Note(TagForm form, const char* tag) {
    if (form == TagForm::kEmpty && plain == nullptr) {
      plain = tag;
    } else if (form == TagForm::kEmptyBlank && blank == nullptr) {
      blank = tag;
    }
  }

  const char* plain = nullptr;
  const char* blank = nullptr;
};

[[gnu::always_inline]] inline OpeningTag SearchOpeningTag(SearchText& text, const char* from,
                                                          TextView key) {
  constexpr std::size_t kAround = 4;  // "<" and " />"
  // Looked for by its '<' and the key's first character.
  const PairSearch<false, true> pair('<', key.empty() ? '<' : key[0], key.empty() ? 0 : 1);
  EmptyTags empty;
  do {
    const char* const end = text.HitsEnd(from, key.size() + kAround);
    while (const char* const hit = pair.Find(from, end, text.readable())) {
      from = hit + 1;
      const auto room = static_cast<std::size_t>(text.known() - from);
      if (room < key.size() || !EqualsFold(from, key.data(), key.size())) {
        continue;
      }
      const char* const behind = from + key.size();
      if (room > key.size() && *behind == '>' && key.size() < kTagLimit - 1) {
        return {hit, behind + 1};
      }
      const TagForm form = FormOf(behind, room - key.size(), key.size());
      if (form == TagForm::kCut) {
        return {hit, behind};
      }
      empty.Note(form, hit);
    }
    from = std::max(from, end);
  } while (text.Extend());
  // Quirk "opening-tag-first": an empty element counts only where no opening tag follows.
  return {empty.plain != nullptr ? empty.plain : empty.blank, nullptr};
}

[[gnu::always_inline]] inline OpeningTag FindOpeningTag(SearchText& text, const char* from,
                                                        TextView key) {
  // Elements are mostly asked for in the order in which they stand.
  const char* const first = FindTagStart(from, text.known(), text.readable());
  if (first != nullptr && key.size() < kTagLimit - 1 && IsOpeningTag(first, text.known(), key)) {
    return {first, first + key.size() + 2};
  }
  return SearchOpeningTag(text, first != nullptr ? first : from, Cut(key, kTagLimit - 1));
}

// Whether the closing tag of `key` stands at the '<' at `tag`, in a text that ends at `end`.
[[gnu::always_inline]] inline bool IsClosingTag(const char* tag, const char* end, TextView key) {
  const std::size_t size = key.size() + 3;
  return static_cast<std::size_t>(end - tag) >= size && tag[1] == '/' && tag[size - 1] == '>' &&
         EqualsFold(tag + 2, key.data(), key.size());
}

// The closing tag of `key` at or behind `from`, or null.
[[gnu::noinline]] const char* FindFarClosingTag(SearchText& text, const char* from, TextView key) {
  // Looked for by the key's first and last character, which few other texts have at this distance.
  // The characters around are looked at afterwards.
  constexpr std::size_t kBefore = 2;
  const PairSearch<true, true> pair(key.empty() ? '>' : key.front(), key.empty() ? '>' : key.back(),
                                    key.empty() ? 0 : key.size() - 1);
  do {
    const char* const end = text.HitsEnd(from, key.size() + kBefore + 1);
    if (static_cast<std::size_t>(end - from) > kBefore) {
      const char* position = from + kBefore;
      while (const char* const hit = pair.Find(position, end, text.readable())) {
        if (hit[-2] == '<' && IsClosingTag(hit - kBefore, text.known(), key)) {
          return hit - kBefore;
        }
        position = hit + 1;
      }
      from = end - kBefore;
    }
  } while (text.Extend());
  return nullptr;
}

[[gnu::always_inline]] inline const char* FindClosingTag(SearchText& text, const char* begin,
                                                         TextView key) {
  const char* from = begin;
  // Most elements have no elements of their own, or few, and end within a few tags.
  constexpr int kNearTags = 6;
  for (int i = 0; i < kNearTags; ++i) {
    const char* const tag = FindTagStart(from, text.known(), text.readable());
    if (tag == nullptr) {
      break;
    }
    if (IsClosingTag(tag, text.known(), key)) {
      return tag;
    }
    from = tag + 1;
  }
  // What was not known to be a closing tag at the end of the known text is looked at again.
  return FindFarClosingTag(text, from > begin ? from - 1 : from, key);
}

// The closing tag of a key so long that the tag's text, "</" and the key, is cut.
[[gnu::noinline]] const char* FindCutClosingTag(SearchText& text, const char* from,
                                                TextView full_key) {
  const TextView key = Cut(full_key, kTagLimit - 2);
  const PairSearch<false, false> pair('<', '/', 1);
  do {
    const char* const end = text.HitsEnd(from, kTagLimit);
    while (const char* const hit = pair.Find(from, end, text.readable())) {
      from = hit + 1;
      if (static_cast<std::size_t>(text.known() - hit) >= kTagLimit &&
          EqualsFold(hit + 2, key.data(), key.size())) {
        return hit;
      }
    }
    from = std::max(from, end);
  } while (text.Extend());
  return nullptr;
}

}  // namespace

Element FindElement(const Block& block, TextView key) {
  SearchText text = block.Search();
  const OpeningTag tag = FindOpeningTag(text, block.text, key);
  char* const position = const_cast<char*>(tag.position);
  if (tag.content == nullptr) {
    return {position, {position, 0, block.text_end}};
  }
  const char* const close = key.size() + 3 <= kTagLimit ? FindClosingTag(text, tag.content, key)
                                                        : FindCutClosingTag(text, tag.content, key);
  if (close == nullptr) {
    return {position, {}};
  }
  return {position,
          {const_cast<char*>(tag.content), static_cast<int>(close - tag.content), block.text_end}};
}

Element BlockReader::Find(TextView key) {
  const Element next = next_ != nullptr ? TakeNext(key) : Element{};
  return next.is_complete() ? next : FindElement(block_, key);
}

BlockReader::BlockReader(const Block& block) : block_(block) {
  if (block.text_end != nullptr) {
    const SearchText text = block.Search();
    next_ = block.text;
    end_ = text.known();
  }
}

const char* BlockReader::NextTag() const { return FindTagStart(next_, end_, block_.text_end); }

Element BlockReader::TakeNext(TextView key) {
  const char* const tag = NextTag();
  const std::size_t size = key.size();
  if (tag == nullptr || !IsOpeningTag(tag, end_, key)) {
    return {};
  }
  const char* const content = tag + size + 2;
  const char* const close = FindTagStart(content, end_, block_.text_end);
  if (close == nullptr || !IsClosingTag(close, end_, key)) {
    return {};
  }
  next_ = close + size + 3;
  return {const_cast<char*>(tag),
          {const_cast<char*>(content), static_cast<int>(close - content), block_.text_end}};
}

bool BlockReader::Enter(TextView key) {
  const char* const tag = NextTag();
  if (tag == nullptr || !IsOpeningTag(tag, end_, key)) {
    return false;
  }
  next_ = tag + key.size() + 2;
  return true;
}

bool BlockReader::Leave(TextView key) {
  const char* const tag = NextTag();
  if (tag == nullptr || !IsClosingTag(tag, end_, key)) {
    return false;
  }
  next_ = tag + key.size() + 3;
  return true;
}

char* FindTag(const Block& block, TextView key) {
  SearchText text = block.Search();
  return const_cast<char*>(FindOpeningTag(text, block.text, key).position);
}

void JoinPath(char (&path)[128], const char* parent, TextView key) {
  platform::TextBuffer buffer(path);
  if (parent != nullptr && parent[0] != '\0') {
    buffer.Append(parent).Append('/');
  }
  buffer.Append(key);
}

Block FindRequiredBlock(const char* parent_path, const Block& block, TextView key,
                        char (&path)[128]) {
  platform::LogEntry("prepareXmlBlockData");
  const Element element = block.text != nullptr ? FindElement(block, key) : Element{};
  if (!element.is_complete()) {
    ReportLostKey(nullptr, key);
    return {};
  }
  JoinPath(path, parent_path, key);
  return element.content;
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
