// What a field may hold, in words.
#ifndef TOOLS_FIELD_TEXT_H
#define TOOLS_FIELD_TEXT_H

#include <string>

#include "sections.h"

namespace kio::tools {

// A node or an element of the 2.4 GHz radio, written for both radios and all indexes: "2.4" becomes
// "{band}", and the index of a rule or a site becomes "{n}".
std::string WithPlaceholders(std::string path);

// The text in backquotes; the parts that are not empty, with separators between them.
std::string Code(const std::string& text);
std::string Joined(const std::vector<std::string>& parts, const std::string& separator);

// "text, 127" or "integer".
std::string TypeOf(const Field& field);

// The words that a field may hold, with commas; empty when it has no such list.
std::string WordList(const Field& field);

// The node with the rule that a field obeys.
std::string RuleNode(const Field& field, const SectionInstance& instance);

// What a document may hold in the field; empty when that is anything.
std::string RangeOf(const Field& field, const SectionInstance& instance);

}  // namespace kio::tools

#endif  // TOOLS_FIELD_TEXT_H
