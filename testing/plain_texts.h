// Plain models of the library's comparison by wildcards and of its coders, which the library is
// compared with.
#ifndef KIO_TESTING_PLAIN_TEXTS_H
#define KIO_TESTING_PLAIN_TEXTS_H

#include <string>

namespace kio::test {

// strnWildcardCmp.
int PlainWildcardCmp(const std::string& subject, const std::string& pattern, int n);

// All that a coder writes, its terminator included, where it writes one.
std::string PlainHtmlDecode(const std::string& source, int n);
std::string PlainHtmlEncode(const std::string& source, int n);
std::string PlainXmlDecode(const std::string& source, int n);
std::string PlainXmlEncode(const std::string& source, int n);

}  // namespace kio::test

#endif
