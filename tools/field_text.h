// What a field may hold, in words.
#ifndef TOOLS_FIELD_TEXT_H
#define TOOLS_FIELD_TEXT_H

#include <string>

#include "sections.h"

namespace kio::tools {

// For both radios at once: the first one's band in a node or an element becomes "{band}", and the
// index of a rule or a site "{n}".
std::string ForAll(std::string path);

// A list of words in code, or of whatever else, with commas.
std::string Code(const std::string& text);
std::string Joined(const std::vector<std::string>& parts, const std::string& separator);

// "text, 127" or "integer".
std::string TypeOf(const Field& field);

// The words of a field, as a list; empty when any text will do.
std::string WordList(const Field& field);

// What a document may hold there; empty for anything.
std::string RangeOf(const Field& field, const SectionInstance& instance);

}  // namespace kio::tools

#endif  // TOOLS_FIELD_TEXT_H
