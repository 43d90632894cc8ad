// Texts of all kinds: valid, nearly valid, and hostile.
#ifndef KIO_DIFFERENTIAL_TEXTS_H
#define KIO_DIFFERENTIAL_TEXTS_H

#include <string>
#include <string_view>

#include "random.h"

namespace kio::differential {

using Maker = std::string (*)(Random& random);

// Values of a device, mostly valid.
std::string Switch(Random& random);       // 0 or 1
std::string WideSwitch(Random& random);   // 0 to 3, mostly 0 or 1
std::string SmallNumber(Random& random);  // 0 to 9
std::string Name(Random& random);
std::string Password(Random& random);
std::string Mac(Random& random);
std::string Address(Random& random);
std::string Netmask(Random& random);
std::string Channel(Random& random);
std::string ChannelList(Random& random);
std::string Country(Random& random);
std::string Rule(Random& random);  // for validate_RssData
std::string DeviceType(Random& random);
std::string Hardware(Random& random);
std::string HardwareList(Random& random);
std::string Connection(Random& random);
std::string EncryptionMode(Random& random);
std::string EncryptionType(Random& random);
std::string Encapsulation(Random& random);
std::string RadioWord(Random& random);
std::string WirelessKey(Random& random);  // good for WPA or WEP, or nearly so
std::string Roaming(Random& random);
std::string Vpi(Random& random);
std::string Vci(Random& random);
std::string Directory(Random& random);
std::string FirmwareFile(Random& random);
std::string FetchTemplate(Random& random);
std::string AnyAddress(Random& random);  // a URL, at times with `$lanip` and `$rssport`

// A decimal number or nearly one, often at the end of a range.
std::string Number(Random& random);
// Anything: of a length around one of the library's limits, or with characters that mean something
// to a shell, to XML, to printf or to URLs. At most 4095 characters.
std::string Odd(Random& random);
// The same, cut to `limit` characters.
std::string Odd(Random& random, std::size_t limit);
// A length at or around one of the library's limits.
int Length(Random& random);
// `length` letters and digits.
std::string Letters(Random& random, int length);
// `length` characters of a set.
std::string CharactersOf(Random& random, std::string_view set, int length);

// The text with a few changes: bytes changed, stretches removed or repeated, cases changed.
std::string Mutated(Random& random, std::string text, int changes);
// The text with letters in random case.
std::string MixedCase(Random& random, std::string text);
// The text with the five special characters of XML encoded.
std::string XmlEncoded(std::string_view text);

}  // namespace kio::differential

#endif
