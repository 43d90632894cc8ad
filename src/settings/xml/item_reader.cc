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
  Tag tag = FindTag(position_);
  while (tag.form == Form::kClosing) {
    tag = FindTag(tag.position + 1);
  }
  // Quirk "empty-item-ends-the-list": an empty element counts where it stands, and not only where
  // no opening tag follows.
  if (tag.form != Form::kOpening) {
    position_ = tag.form == Form::kEmpty ? tag.position : end_;
    return {};
  }
  const char* const content = tag.position + key_.size() + 2;
  position_ = content;
  // Of an element inside the last one, the closing tag is the same.
  if (close_ == nullptr || content > close_) {
    Tag next = FindTag(content);
    position_ = next.position;
    while (next.form == Form::kOpening || next.form == Form::kEmpty) {
      next = FindTag(next.position + 1);
    }
    if (next.form == Form::kNone) {
      // No element behind this one is closed either.
      position_ = end_;
      return {};
    }
    close_ = next.position;
  }
  if (content == close_) {
    position_ = tag.position;
    return {};
  }
  return {const_cast<char*>(content), static_cast<int>(close_ - content), text_end_};
}

// The first tag of the key at or behind `from`: by the first and the last character of the key,
// behind a '<' or a '/'.
ItemReader::Tag ItemReader::FindTag(const char* from) const {
  Tag found;
  const Pattern pattern = {key_.front(), 1, key_.back(), key_.size(), '<', true};
  const char* const hit = SearchText(end_).Find(from, pattern, 0, [&](const char* before) {
    const char* const tag = *before == '/' && before != from ? before - 1 : before;
    found = {tag, *tag == '<' ? FormOf(tag) : Form::kNone};
    return found.form != Form::kNone;
  });
  return hit != nullptr ? found : Tag{};
}

// The form of the tag of the key that may stand at the '<' at `tag`.
ItemReader::Form ItemReader::FormOf(const char* tag) const {
  if (BehindClosingTag(tag, end_, key_) != nullptr) {
    return Form::kClosing;
  }
  if (BehindOpeningTag(tag, end_, key_) != nullptr) {
    return Form::kOpening;
  }
  return EmptyTagAt(tag, end_, key_) != EmptyTag::kNone ? Form::kEmpty : Form::kNone;
}

}  // namespace kio::settings
