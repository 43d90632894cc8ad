// A settings document as a text: where its elements stand. The library's own search finds them, so
// they are those that a device reads.
#ifndef CTL_DOCUMENT_TEXT_H
#define CTL_DOCUMENT_TEXT_H

#include <optional>
#include <string>
#include <vector>

namespace kioctl {

// A part of a text.
struct Span {
  size_t begin = 0;
  size_t length = 0;
};

struct Place {
  int line = 1;
  int column = 1;
};

Place PlaceOf(const std::string& text, size_t offset);

// The content of an element in a block; of the whole text without one.
std::optional<Span> FindContent(const std::string& text, const std::optional<Span>& block,
                                const std::string& name);

// The contents of all elements of a path such as "Device/Wireless2.4/AccessControl/AcRule/MAC", in
// the order of the text: those of a rule are many. Of others there is one, or none.
std::vector<Span> FindAll(const std::string& text, const std::string& path);

// A tag as it is written.
struct Tag {
  enum class Kind { kOpen, kClose, kEmpty };
  Kind kind = Kind::kOpen;
  std::string name;
  std::string path;  // by the tags around it, without the root
  Span span;         // from '<' to '>'
  bool is_plain = true;
};

// The tags below the root, without comments and instructions.
std::vector<Tag> TagsOf(const std::string& text);

// A text as the content of an element.
std::string EncodeEntities(const std::string& text);

// A change of a text.
struct Edit {
  Span span;
  std::string text;
};

// The changes of its tags, in the order of the text, that give an element another name and plain
// tags. `tag` is its first one.
std::vector<Edit> TagEdits(const std::string& text, const Tag& tag, const std::string& name);

// The same as one change of the whole element.
Edit Renamed(const std::string& text, const Tag& tag, const std::string& name);

std::string Apply(const std::string& text, const Edit& edit);

}  // namespace kioctl

#endif  // CTL_DOCUMENT_TEXT_H
