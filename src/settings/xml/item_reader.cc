#include "settings/xml/item_reader.h"

#include "settings/xml/scan.h"
#include "settings/xml/tag.h"

namespace kio::settings {

using platform::TextView;

ItemReader::ItemReader(const Block& list, TextView key)
    : key_(key),
      reader_(list),
      end_(list.Search().known()),
      text_end_(list.text_end),
      position_(list.text) {}

Block ItemReader::Next() {
  if (in_order_) {
    const Element item = reader_.TakeNext(key_);
    if (item.content.length > 0) {
      close_ = item.content.text + item.content.length;
      position_ = reader_.position();
      return item.content;
    }
    at_end_ = reader_.IsAtEnd();
    in_order_ = at_end_;
  }
  return Search();
}

Block ItemReader::Search() {
  Tag tag;
  do {
    tag = FindTag(tag.position != nullptr ? tag.position + 1 : position_);
  } while (tag.form == Form::kClosing);
  // Quirk "empty-item-ends-the-list": an empty element counts where it stands, and not only where
  // no opening tag follows.
  if (tag.form != Form::kOpening) {
    position_ = tag.form == Form::kEmpty ? tag.position : end_;
    return {};
  }
  const char* const content = tag.position + key_.size() + 2;
  // Of an element inside the last one, the closing tag is the same.
  const char* inner = nullptr;
  if (close_ == nullptr || content > close_) {
    Tag next = FindTag(content);
    if (next.form != Form::kClosing) {
      inner = next.position;
    }
    while (next.form != Form::kClosing) {
      if (next.form == Form::kNone) {
        // No element behind this one is closed either.
        position_ = end_;
        return {};
      }
      next = FindTag(next.position + 1);
    }
    close_ = next.position;
    position_ = inner != nullptr ? inner : close_;
  } else {
    position_ = content;
  }
  if (content == close_) {
    position_ = tag.position;
    return {};
  }
  return {const_cast<char*>(content), static_cast<int>(close_ - content), text_end_};
}

// The first tag of the key at or behind `from`.
ItemReader::Tag ItemReader::FindTag(const char* from) const {
  Tag found;
  const auto accept = [&](const char* tag) {
    found = {tag, FormOf(tag)};
    return found.form != Form::kNone;
  };
#if defined(__SSE2__) || defined(__aarch64__)
  // By the first and the last character of the key, behind a '<' or a '/'.
  const auto reach = static_cast<std::ptrdiff_t>(key_.size());
  if (end_ - from > reach) {
    const Pattern pattern = {key_.front(), 1, key_.back(), key_.size(), '\0'};
    const char* const hit = FindPattern(from, end_ - reach, pattern, [&](const char* before) {
      return *before == '<' ? accept(before)
                            : *before == '/' && before > from && accept(before - 1);
    });
    return hit != nullptr ? found : Tag{};
  }
#else
  constexpr std::ptrdiff_t kShortest = 3;  // "<k>"
  for (const char* tag = from; end_ - tag >= kShortest; ++tag) {
    tag = FindTagStart(tag, end_ - kShortest + 1);
    if (tag == nullptr) {
      break;
    }
    if (AreAlike(tag[1] == '/' ? tag[2] : tag[1], key_.front()) && accept(tag)) {
      return found;
    }
  }
#endif
  return {};
}

// The form of the tag of the key that may stand at the '<' at `tag`.
ItemReader::Form ItemReader::FormOf(const char* tag) const {
  if (*tag != '<') {
    return Form::kNone;
  }
  if (BehindClosingTag(tag, end_, key_) != nullptr) {
    return Form::kClosing;
  }
  if (BehindOpeningTag(tag, end_, key_) != nullptr) {
    return Form::kOpening;
  }
  return EmptyTagAt(tag, end_, key_) != EmptyTag::kNone ? Form::kEmpty : Form::kNone;
}

}  // namespace kio::settings
