// The elements of one name in a list, one after the other.
#ifndef KIO_SETTINGS_XML_ITEM_READER_H
#define KIO_SETTINGS_XML_ITEM_READER_H

#include "platform/text.h"
#include "settings/xml/find_element.h"

namespace kio::settings {

// Walks through the elements `key` of a list in the order in which they stand; an element inside
// another one comes after it. All of them together take one pass over the list.
class ItemReader {
 public:
  // The text of `list` has a known end. `key` is not empty and has at most 100 characters.
  ItemReader(const Block& list, platform::TextView key);

  // The content of the next element; null text when there is none, when it is empty, or when its
  // closing tag is missing: the walk ends there.
  Block Next();

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

  [[nodiscard]] Tag FindTag(const char* from) const;
  [[nodiscard]] Form FormOf(const char* tag) const;
  Block Search();

  platform::TextView key_;
  BlockReader reader_;
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
