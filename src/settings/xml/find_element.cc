#include "settings/xml/find_element.h"

#include <algorithm>
#include <cstring>

#include "settings/xml/equals_fold.h"

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
KIO_INLINE inline bool IsOpeningTag(const char* tag, const char* end, TextView key) {
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

// A key's first and last character, which few other texts have at this distance. What stands around
// them, and between them, is looked at afterwards.
KIO_INLINE inline Pair PairOf(TextView key, char without_key) {
  return key.empty() ? Pair(without_key, without_key, 0)
                     : Pair(key.front(), key.back(), key.size() - 1);
}

// The first opening tag of `key` at or behind `from`, or the first tag of an empty element.
[[gnu::noinline]] OpeningTag FindFarOpeningTag(SearchText& text, const char* from,
                                               TextView full_key) {
  constexpr std::size_t kAround = 4;  // "<" and " />"
  const TextView key = Cut(full_key, kTagLimit - 1);
  const std::size_t before = key.empty() ? 0 : 1;
  const Pair pair = PairOf(key, '<');
  EmptyTags empty;
  const char* content = nullptr;
  const auto accept = [&](const char* hit) KIO_INLINE {
    const char* const tag = hit - before;
    if (*tag != '<' || !EqualsFold(tag + 1, key.data(), key.size())) {
      return false;
    }
    const char* const behind = tag + 1 + key.size();
    const auto room = static_cast<std::size_t>(text.known() - behind);
    // Quirk "plain-tags-only": attributes or blanks in a tag make it another one.
    if (room > 0 && *behind == '>' && key.size() < kTagLimit - 1) {
      content = behind + 1;
      return true;
    }
    const TagForm form = FormOf(behind, room, key.size());
    if (form == TagForm::kCut) {
      content = behind;
      return true;
    }
    empty.Note(form, tag);
    return false;
  };
  do {
    const char* const end = text.HitsEnd(from, key.size() + kAround);
    const char* const hits_end = text.EndWithin(from, end, before + pair.distance());
    const char* const hit = pair.FindFar(from + before, hits_end + before, accept);
    if (hit != nullptr) {
      return {hit - before, content};
    }
    from = std::max(from, end);
  } while (text.Extend());
  // Quirk "opening-tag-first": an empty element counts only where no opening tag follows.
  return {empty.plain != nullptr ? empty.plain : empty.blank, nullptr};
}

// Whether the closing tag of `key` stands at the '<' at `tag`, in a text that ends at `end`.
KIO_INLINE inline bool IsClosingTag(const char* tag, const char* end, TextView key) {
  const std::size_t size = key.size() + 3;
  return static_cast<std::size_t>(end - tag) >= size && tag[1] == '/' && tag[size - 1] == '>' &&
         EqualsFold(tag + 2, key.data(), key.size());
}

// The closing tag of `key` at or behind `from`, or null. A key so long that the tag's text, "</"
// and the key, is cut, has no '>' behind it.
[[gnu::noinline]] const char* FindFarClosingTag(SearchText& text, const char* from,
                                                TextView full_key) {
  constexpr std::size_t kBefore = 2;
  const TextView key = Cut(full_key, kTagLimit - kBefore);
  const std::size_t size = std::min(kBefore + full_key.size() + 1, kTagLimit);
  const Pair pair = PairOf(key, '>');
  const auto accept = [=](const char* hit) KIO_INLINE {
    return hit[-2] == '<' && hit[-1] == '/' && EqualsFold(hit, key.data(), key.size()) &&
           (size == kBefore + key.size() || hit[key.size()] == '>');
  };
  do {
    const char* const end = text.HitsEnd(from, size);
    const char* const hits_end = text.EndWithin(from, end, size - 1);
    const char* const hit = pair.FindFar(from + kBefore, hits_end + kBefore, accept);
    if (hit != nullptr) {
      return hit - kBefore;
    }
    from = std::max(from, end);
  } while (text.Extend());
  return nullptr;
}

Element MakeElement(const Block& block, const char* tag, const char* content, const char* close) {
  return {const_cast<char*>(tag),
          {const_cast<char*>(content), static_cast<int>(close - content), block.text_end}};
}

// The same as FindElement where nothing near tells. `tag` is the opening tag, if it is known.
[[gnu::noinline]] Element FindFarElement(const Block& block, TextView key, OpeningTag tag) {
  SearchText text = block.Search();
  if (tag.content == nullptr) {
    tag = FindFarOpeningTag(text, block.text, key);
    if (tag.content == nullptr) {
      return MakeElement(block, tag.position, tag.position, tag.position);
    }
  }
  const char* const close = FindFarClosingTag(text, tag.content, key);
  if (close == nullptr) {
    return {const_cast<char*>(tag.position), {}};
  }
  return MakeElement(block, tag.position, tag.content, close);
}

// Where `before` stands in [from, end) with the key's name and a '>' behind it; null when it does
// not, and also when only a longer search can tell.
KIO_INLINE inline const char* FindNearName(const char* from, const char* end, char before,
                                           TextView key) {
  const std::size_t size = key.size();
  const Pair pair(before, key[0], 1);
  bool is_same = true;
  const char* const hit =
      pair.FindNear(from, end - size - 1, [=, &is_same](const char* position) KIO_INLINE {
        const Difference difference(position + 1, key.data(), size);
        is_same = difference.IsNone();
        return !difference.IsMoreThanCase() && position[0] == before && position[size + 1] == '>';
      });
  return hit != nullptr && (is_same || EqualsFoldInside(hit + 1, key.data(), size)) ? hit : nullptr;
}

}  // namespace

// Quirk "nesting-unseen": the first tag of the name counts, however deep it stands.
Element FindElement(const Block& block, TextView key) {
  OpeningTag tag;
  if (!key.empty() && key.size() < kTagLimit - 2) {
    const char* const end = block.NearEnd();
    const char* const opening = FindNearName(block.text, end, '<', key);
    if (opening != nullptr) {
      tag = {opening, opening + key.size() + 2};
      const char* const slash = FindNearName(tag.content + 1, end, '/', key);
      if (slash != nullptr && slash[-1] == '<') {
        return MakeElement(block, tag.position, tag.content, slash - 1);
      }
    }
  }
  return FindFarElement(block, key, tag);
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
  return const_cast<char*>(FindFarOpeningTag(text, block.text, key).position);
}

}  // namespace kio::settings
