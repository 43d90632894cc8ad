// MD5 without the library, for any thread.
#ifndef HOST_MD5_TEXT_H
#define HOST_MD5_TEXT_H

#include <string>
#include <string_view>

namespace kiohost {

// The digest in hexadecimal digits of lower case.
std::string Md5Text(std::string_view text);

}  // namespace kiohost

#endif  // HOST_MD5_TEXT_H
