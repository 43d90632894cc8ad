// Finding elements by their tags in the raw text.
#ifndef KIO_SETTINGS_XML_FIND_ELEMENT_H
#define KIO_SETTINGS_XML_FIND_ELEMENT_H

#include <cstddef>

#include "platform/text.h"
#include "settings/xml/scan.h"

namespace kio::settings {

// A stretch of a document to search in: mostly the content of an element.
struct Block {
  char* text = nullptr;
  // In characters; 0 or less means up to the end of the text.
  // Quirk "empty-block-reaches-on": so the block of an empty element covers all that follows it.
  int length = 0;
  // Where the text is known to end; null when its terminator has to be looked for.
  const char* text_end = nullptr;

  [[nodiscard]] SearchText Search() const {
    if (text_end == nullptr) {
      // Most elements stand within so many characters.
      constexpr std::size_t kFirstStep = 192;
      return SearchText(text, length > 0 ? static_cast<std::size_t>(length) : SearchText::kNoLimit,
                        kFirstStep);
    }
    return SearchText(length > 0 && length < text_end - text ? text + length : text_end);
  }
  // The same block from `position` on.
  [[nodiscard]] Block From(char* position) const {
    return {position, length > 0 ? length - static_cast<int>(position - text) : length, text_end};
  }
};

// What a search for an element found.
struct Element {
  char* tag = nullptr;  // the opening tag, or the tag of an empty element
  Block content;        // null text when the closing tag is missing; the tag itself, with length 0,
                        // for an empty element

  [[nodiscard]] bool has_tag() const { return tag != nullptr; }
  [[nodiscard]] bool is_complete() const { return content.text != nullptr; }
};

// Finds the first element `key` of a block: <key>...</key> before <key/>, and that before <key />,
// wherever they lie. Tags are compared ignoring case, their first 127 characters alone. Where the
// tag alone is wanted, the content that is returned means nothing.
enum class Wanted { kElement, kTag };
Element FindElement(const Block& block, platform::TextView key, Wanted wanted = Wanted::kElement);

// The tag of that element alone, or null.
inline char* FindTag(const Block& block, platform::TextView key) {
  return FindElement(block, key, Wanted::kTag).tag;
}

// Finds the elements of one block, one after the other, each key at most once.
//
// Elements that stand in the order in which they are asked for, side by side and without elements
// of their own, are found without a search: every tag before them is known to belong to another
// key.
class BlockReader {
 public:
  explicit BlockReader(const Block& block);

  [[nodiscard]] const Block& block() const { return block_; }
  // Whether no other tag follows those that were found in their order.
  [[nodiscard]] bool IsAtEnd() const { return NextTag() == nullptr; }
  // Behind the elements that were found in their order; null when the end of the text is not known.
  [[nodiscard]] char* position() const { return const_cast<char*>(next_); }

  // As FindElement.
  Element Find(platform::TextView key);

  // The element `key` if it comes next, else an incomplete one.
  Element TakeNext(platform::TextView key);
  // Goes into the element `key` if it comes next, and out of it if its closing tag does.
  bool Enter(platform::TextView key);
  bool Leave(platform::TextView key);

 private:
  [[nodiscard]] const char* NextTag() const { return FindTagStart(next_, end_); }

  // Goes to `position`, unless it is null. Returns whether it is not.
  bool GoTo(const char* position);

  Block block_;
  const char* next_ = nullptr;
  const char* end_ = nullptr;
};

}  // namespace kio::settings

#endif
