// Making a page of docs/ from its text in tools/pages and what the library says.
#ifndef TOOLS_PAGE_H
#define TOOLS_PAGE_H

#include <optional>
#include <string>

namespace kio::tools {

// The page `name` ("store"). Each line of its text that begins with "@@" is replaced: by the table
// that it names, or by the file whose path below `source_dir` it gives ("@@file host/x.xml"). Null,
// with the reason in `error`, when something is missing.
std::optional<std::string> MakePage(const std::string& source_dir, const std::string& name,
                                    std::string* error);

}  // namespace kio::tools

#endif  // TOOLS_PAGE_H
