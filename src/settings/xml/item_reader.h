// The elements of one name in a list, one after the other.
#ifndef KIO_SETTINGS_XML_ITEM_READER_H
#define KIO_SETTINGS_XML_ITEM_READER_H

#include "platform/inline.h"
#include "platform/text.h"
#include "settings/xml/equals_fold.h"
#include "settings/xml/find_element.h"
#include "settings/xml/scan.h"

namespace kio::settings {

// Walks through the elements `key` of a list in the order in which they stand; an element inside
// another one comes after it. All of them together take one pass over the list.
class ItemReader {
 public:
  // The text of `list` has a known end. `key` is not empty and has at most 100 characters.
  ItemReader(const Block& list, platform::TextView key);

  // The content of the next element; null text when there is none, when it is empty, or when its
  // closing tag is missing: the walk ends there.
  Block Next() {
    const Block item = in_order_ ? TakeNext() : Block{};
    return item.text != nullptr ? item : Search();
  }

  // Where the list ends.
  [[nodiscard]] const char* end() const { return end_; }
  // When the walk has ended: the tag of the empty element that ended it, or the end of the list. A
  // walk that begins behind the first element but before this place ends as this one did.
  [[nodiscard]] const char* position() const { return position_; }
  // Whether the walk has come to the end of the list, and the elements walked through have all its
  // tags, so that no others are in it. False if the caller stopped before.
  [[nodiscard]] bool HasNoOthers() const { return at_end_; }

 private:
  enum class Form { kNone, kOpening, kEmpty, kClosing };
  // A tag of the key.
  struct Tag {
    const char* position = nullptr;
    Form form = Form::kNone;
  };

  // The element that comes next, if it has no tags inside.
  KIO_INLINE Block TakeNext() {
    const char* const tag = FindTagStart(position_, end_, text_end_);
    if (tag == nullptr || !IsTag(tag + 1)) {
      at_end_ = tag == nullptr;
      in_order_ = at_end_;
      return {};
    }
    const char* const content = tag + key_.size() + 2;
    const char* const close = FindTagStart(content, end_, text_end_);
    if (close == nullptr || close == content || end_ - close < 2 || close[1] != '/' ||
        !IsTag(close + 2)) {
      in_order_ = false;
      return {};
    }
    close_ = close;
    position_ = close + key_.size() + 3;
    return {const_cast<char*>(content), static_cast<int>(close - content), text_end_};
  }

  // Whether the key and a '>' stand at `name`.
  [[nodiscard]] KIO_INLINE bool IsTag(const char* name) const {
    return static_cast<std::size_t>(end_ - name) > key_.size() && name[key_.size()] == '>' &&
           EqualsFold(name, key_.data(), key_.size());
  }

  [[nodiscard]] Tag FindTag(const char* from) const;
  [[nodiscard]] Form FormOf(const char* name, const char* begin) const;
  Block Search();

  platform::TextView key_;
  const char* end_;
  const char* text_end_;
  // Where the search for the next element goes on, or where the walk ended; and the closing tag of
  // the last one.
  const char* position_;
  const char* close_ = nullptr;
  // Whether every tag so far belonged to an element that was walked through.
  bool in_order_ = true;
  bool at_end_ = false;
};

}  // namespace kio::settings

#endif
