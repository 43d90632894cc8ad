#include "settings/xml/find_element.h"

#include <algorithm>

#include "settings/xml/tag.h"

namespace kio::settings {
namespace {

using platform::TextView;

// An opening tag, or the tag of an empty element, whose content is null.
struct OpeningTag {
  const char* position = nullptr;
  const char* content = nullptr;
};

// The opening tag of `key` at `tag`, which may be null; without content when it is none.
OpeningTag TagAt(const char* tag, const char* end, TextView key) {
  return {tag, tag != nullptr ? BehindOpeningTag(tag, end, key) : nullptr};
}

// A tag by the first and the last character but one of its key, or of what the tag's cut leaves of
// it. Many keys end alike. The key stands behind `mark`, the `index`th character of the tag.
KIO_INLINE inline Pattern PatternOf(char mark, std::size_t index, TextView key) {
  const std::size_t size = std::min(key.size(), kTagLimit - 1 - index);
  const std::size_t last = std::max<std::size_t>(size, 2) - 1;
  return size == 0 ? Pattern{mark, 0, mark, 0, mark}
                   : Pattern{key.front(), 1, key[last - 1], last, mark};
}

// The characters of a tag that may have to be looked at, the longest form of an empty one included.
std::size_t ReachOf(TextView key) { return key.size() + TextView("< />").size(); }

// The first tags of empty elements of a key, in either form.
struct EmptyTags {
  const char* plain = nullptr;
  const char* blank = nullptr;

  // Notes the one at `tag`, if there is one. Kept out of the search's loop: there are few.
  [[gnu::noinline, gnu::cold]] void Note(const char* tag, const char* end, TextView key) {
    const EmptyTag form = EmptyTagAt(tag, end, key);
    const char*& first = form == EmptyTag::kPlain ? plain : blank;
    first = form != EmptyTag::kNone && first == nullptr ? tag : first;
  }
};

// The first opening tag of `key` at or behind `from`, or the first tag of an empty element.
KIO_INLINE inline OpeningTag FindOpeningTag(SearchText& text, const char* from, TextView key) {
  EmptyTags empty;
  const char* content = nullptr;
  const char* const tag =
      text.Find(from, PatternOf('<', 0, key), ReachOf(key), [&](const char* hit) KIO_INLINE {
        if (*hit != '<') {
          return false;
        }
        content = BehindOpeningTag(hit, text.known(), key);
        if (content == nullptr) {
          empty.Note(hit, text.known(), key);
        }
        return content != nullptr;
      });
  if (tag != nullptr) {
    return {tag, content};
  }
  // Quirk "opening-tag-first": an empty element counts only where no opening tag follows.
  return {empty.plain != nullptr ? empty.plain : empty.blank, nullptr};
}

// The closing tag of `key` at or behind `from`, or null. Most elements hold a text alone: the next
// tag is then the one. Otherwise it is looked for by its slash, which is rarer than its '<'.
const char* FindClosingTag(SearchText& text, const char* from, TextView key) {
  const char* const next = FindTagStart(from, text.known());
  if (next != nullptr && BehindClosingTag(next, text.known(), key) != nullptr) {
    return next;
  }
  const char* const slash =
      text.Find(from + 1, PatternOf('/', 1, key), ReachOf(key), [&](const char* hit) KIO_INLINE {
        return *hit == '/' && hit[-1] == '<' &&
               BehindClosingTag(hit - 1, text.known(), key) != nullptr;
      });
  return slash != nullptr ? slash - 1 : nullptr;
}

Element MakeElement(const Block& block, const char* tag, const char* content, const char* close) {
  return {const_cast<char*>(tag),
          {const_cast<char*>(content), static_cast<int>(close - content), block.text_end}};
}

}  // namespace

// Quirk "nesting-unseen": the first tag of the name counts, however deep it stands.
Element FindElement(const Block& block, TextView key, Wanted wanted) {
  SearchText text = block.Search();
  const OpeningTag tag = FindOpeningTag(text, block.text, key);
  if (tag.content == nullptr || wanted == Wanted::kTag) {
    return MakeElement(block, tag.position, tag.position, tag.position);
  }
  const char* const close = FindClosingTag(text, tag.content, key);
  if (close == nullptr) {
    return {const_cast<char*>(tag.position), {}};
  }
  return MakeElement(block, tag.position, tag.content, close);
}

BlockReader::BlockReader(const Block& block) : block_(block) {
  if (block.text_end != nullptr) {
    next_ = block.text;
    end_ = block.Search().known();
  }
}

Element BlockReader::Find(TextView key) {
  const Element next = next_ != nullptr ? TakeNext(key) : Element{};
  return next.is_complete() ? next : FindElement(block_, key);
}

Element BlockReader::TakeNext(TextView key) {
  const OpeningTag tag = TagAt(NextTag(), end_, key);
  const char* const close = tag.content != nullptr ? FindTagStart(tag.content, end_) : nullptr;
  const char* const behind = close != nullptr ? BehindClosingTag(close, end_, key) : nullptr;
  return GoTo(behind) ? MakeElement(block_, tag.position, tag.content, close) : Element{};
}

bool BlockReader::Enter(TextView key) { return GoTo(TagAt(NextTag(), end_, key).content); }

bool BlockReader::Leave(TextView key) {
  const char* const tag = NextTag();
  return GoTo(tag != nullptr ? BehindClosingTag(tag, end_, key) : nullptr);
}

bool BlockReader::GoTo(const char* position) {
  next_ = position != nullptr ? position : next_;
  return position != nullptr;
}

}  // namespace kio::settings
