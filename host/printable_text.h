// Text that is to be printed. Part of it may come from a client, a firmware server or the store.
#ifndef HOST_PRINTABLE_TEXT_H
#define HOST_PRINTABLE_TEXT_H

#include <cstdio>
#include <string>
#include <string_view>

namespace kiohost {

// The text with control characters as \n, \r, \t or \xHH, a backslash as \\, and each byte that is
// not well-formed UTF-8 as \xHH. It forges no line, changes no terminal, and can be read back.
std::string PrintableText(std::string_view text);

// Prints the printable form of a text as one line. All messages of the host go through here. The
// output of --get, --dump and the like is printed as it is.
void PrintLine(std::FILE* stream, std::string_view text);

// The same on standard error, behind the program's name.
void PrintError(std::string_view text);

}  // namespace kiohost

#endif  // HOST_PRINTABLE_TEXT_H
