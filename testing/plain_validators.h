// Plain models of the library's validators, which the library is compared with.
#ifndef KIO_TESTING_PLAIN_VALIDATORS_H
#define KIO_TESTING_PLAIN_VALIDATORS_H

#include <string>

namespace kio::test {

bool PlainIsIp(const std::string& text);
bool PlainIsNetmask(const std::string& text);
bool PlainIsIpCheckMask(const std::string& mask, const std::string& a, const std::string& b);
bool PlainIsWpaPskKey(const std::string& key);
bool PlainIsWepKey(const std::string& key, int n);

// validate_RssData.
int PlainValidate(const std::string& value, const std::string& rule);

}  // namespace kio::test

#endif
