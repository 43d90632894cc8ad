#include "settings/xml/item_reader.h"

namespace kio::settings {

using platform::TextView;

ItemReader::ItemReader(const Block& list, TextView key)
    : key_(key), end_(list.Search().known()), text_end_(list.text_end), position_(list.text) {}

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
  // Looked for by the key's first and last character; what stands around is looked at afterwards.
  const Pair pair(key_.front(), key_.back(), key_.size() - 1);
  const bool has_room = static_cast<std::size_t>(end_ - from) > key_.size();
  const char* const end = has_room ? end_ - key_.size() : from;
  Form form = Form::kNone;
  const char* const name = pair.FindFar(from, end, [&](const char* hit) KIO_INLINE {
    form = FormOf(hit, from);
    return form != Form::kNone;
  });
  if (name == nullptr) {
    return {};
  }
  return {form == Form::kClosing ? name - 2 : name - 1, form};
}

// The form of the tag whose key may stand at `name`, if the tag begins at or behind `begin`.
ItemReader::Form ItemReader::FormOf(const char* name, const char* begin) const {
  const auto before = name - begin;
  const bool is_closing = before >= 2 && name[-1] == '/' && name[-2] == '<';
  const auto room = static_cast<std::size_t>(end_ - name);
  if ((!is_closing && (before < 1 || name[-1] != '<')) || room <= key_.size() ||
      !EqualsFold(name, key_.data(), key_.size())) {
    return Form::kNone;
  }
  const char* const behind = name + key_.size();
  if (*behind == '>') {
    return is_closing ? Form::kClosing : Form::kOpening;
  }
  const auto goes_on = [=, this](TextView end) {
    return static_cast<std::size_t>(end_ - behind) >= end.size() &&
           TextView(behind, end.size()) == end;
  };
  return !is_closing && (goes_on("/>") || goes_on(" />")) ? Form::kEmpty : Form::kNone;
}

}  // namespace kio::settings
