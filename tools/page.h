// Making a page of docs/ from its text in tools/pages and what the library says.
#ifndef TOOLS_PAGE_H
#define TOOLS_PAGE_H

#include <optional>
#include <string>

namespace kio::tools {

// Makes a page, such as "store". Each line of its text that begins with "@@" names a table, or a
// file below `source_dir` ("@@file host/x.xml"), and is replaced by that. Returns null, with the
// reason in `error`, when something is missing. "known_nodes.inc" is the table of nodes of the
// host, which has no such text.
std::optional<std::string> MakePage(const std::string& source_dir, const std::string& name,
                                    std::string* error);

}  // namespace kio::tools

#endif  // TOOLS_PAGE_H
