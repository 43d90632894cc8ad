// The grammar of the documents, from the library's rows.
#ifndef CTL_SCHEMA_H
#define CTL_SCHEMA_H

#include <string>

namespace kioctl {

// A RELAX NG grammar of the settings documents of a version ("1.0" or "1.1"), or of the firmware
// list. It tells what grammar can: the names and places of elements, words and ranges of numbers.
// Elements may come in any order; those that only some devices need may be missing.
std::string SchemaAsRelaxNg(const std::string& version, bool firmware_list);

// The rows themselves.
std::string SchemaAsJson(const std::string& version, bool firmware_list);

}  // namespace kioctl

#endif  // CTL_SCHEMA_H
