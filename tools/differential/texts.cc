#include "texts.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace kio::differential {
namespace {

constexpr std::string_view kLetters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

std::string Word(Random& random, std::initializer_list<const char*> words) {
  return *(words.begin() + random.Below(static_cast<int>(words.size())));
}

// Whether to make a value that is rare on devices.
bool IsRare(Random& random) { return random.OneIn(60); }

}  // namespace

std::string CharactersOf(Random& random, std::string_view set, int length) {
  std::string text;
  for (int i = 0; i < length; ++i) {
    text += set[static_cast<std::size_t>(random.Below(static_cast<int>(set.size())))];
  }
  return text;
}

std::string Letters(Random& random, int length) { return CharactersOf(random, kLetters, length); }

std::string Switch(Random& random) { return Word(random, {"0", "1"}); }

std::string WideSwitch(Random& random) {
  return IsRare(random) || random.OneIn(20) ? Word(random, {"2", "3"}) : Switch(random);
}

std::string SmallNumber(Random& random) { return std::to_string(random.Below(10)); }

std::string Name(Random& random) {
  if (IsRare(random)) {
    return Letters(random, random.Between(30, 66));
  }
  return random.Chance(50) ? Word(random, {"Kitchen", "Attic", "Home", "Home-5", "My Router"})
                           : Letters(random, random.Between(1, 31));
}

std::string Password(Random& random) {
  if (IsRare(random)) {
    return Letters(random, random.Between(1, 130));
  }
  return random.Chance(50) ? Word(random, {"secret12", "line-pass", "p&w<ord>", "it's \"so\""})
                           : Letters(random, random.Between(4, 32));
}

std::string Mac(Random& random) {
  std::string mac = "02:00:00:00:00:";
  if (random.OneIn(3)) {
    mac = "00:1A:2B:3C:4D:";
  }
  return mac + CharactersOf(random, "0123456789ABCDEFabcdef", 2);
}

std::string Address(Random& random) {
  if (!IsRare(random)) {
    return Word(random, {"10.0.0.2", "192.168.1.1", "10.0.0.1", "8.8.8.8", "172.16.0.9"});
  }
  std::string address;
  for (const int limit : {230, 257, 257, 257}) {
    address += (address.empty() ? "" : ".") + std::to_string(random.Below(limit));
  }
  return address;
}

std::string Netmask(Random& random) {
  if (IsRare(random)) {
    return Word(random, {"255.0.255.0", "255.255.255.1", "0.0.0.1", "255.255.255"});
  }
  return Word(random, {"255.255.255.0", "255.255.0.0", "255.255.255.252", "0.0.0.0",
                       "255.255.255.255", "255.255.254.0", "128.0.0.0"});
}

std::string Channel(Random& random) {
  if (IsRare(random)) {
    return random.OneIn(2) ? Word(random, {"1000", "06", "14", "1,6", " 6"})
                           : std::to_string(random.Below(200));
  }
  return Word(random, {"0", "1", "6", "11", "36", "40", "100"});
}

std::string ChannelList(Random& random) {
  if (IsRare(random)) {
    return random.OneIn(2) ? CharactersOf(random, "0123456789,", random.Between(120, 130))
                           : Word(random, {"1,6", "", "6", "0,1,2,3,4,5,6,7,8,9,10,11,12,13"});
  }
  return Word(random, {"0,1,6,11,36,40,100", " 0,1,6,11,36,40,100\t", "100,40,36,11,6,1,0"});
}

std::string Country(Random& random) {
  return IsRare(random) ? "" : Word(random, {"NO", "SE", "DE", "Norway"});
}

std::string Rule(Random& random) {
  if (random.OneIn(6)) {
    return CharactersOf(random, "0,1,2,a-z9.\\-<& ", random.Between(0, 40));
  }
  return Word(random, {"0,32,1", "0,32,4", "0,64,0", "0,64,1", "0,63,8", "0,31,1", "0,63,0", "",
                       "0", "0,63,1,0,1,0-9,a-z,A-Z,-", "0,63,1,0,0,&lt;,&gt;,&amp;",
                       "0,127,0,1,0,\\,,\\\\", "1,100,1", "1,32767,32", "2,1,2",
                       "0,63,0,0,1,0-9,a-z,A-Z,_, ,!", "1,14,1.5", "0,5"});
}

std::string DeviceType(Random& random) {
  return Word(random, {"Router", "AP", "Extender", "Repeater", "Hotspot", "router", "Toaster"});
}

std::string Hardware(Random& random) {
  return Word(random, {"Ethernet", "Ethernet", "ADSL", "VDSL", "WWan802.11", "WWan802.11",
                       "WWanAPN", "DSL", "ethernet"});
}

std::string HardwareList(Random& random) {
  return IsRare(random) ? Word(random, {"Ethernet", "VDSL", "ethernet,wwan802.11", ""})
                        : "Ethernet,ADSL,VDSL,WWan802.11,WWanAPN,DSL";
}

std::string Connection(Random& random) {
  return Word(random, {"DHCP", "Static", "PPPoE", "PPPoA", "DHCP", "pppoe", "STATIC"});
}

std::string EncryptionMode(Random& random) {
  return Word(random, {"WPA2", "WPA2", "WPAWPA2", "WPA", "WEP", "None", "none", "wpa2"});
}

std::string EncryptionType(Random& random) {
  return Word(random, {"AES", "AES", "AUTO", "AUTO", "TKIP", "OPEN", "SHARED", "", "aes"});
}

std::string Encapsulation(Random& random) { return Word(random, {"LLC", "VcMux", "llc", "VCMUX"}); }

std::string RadioWord(Random& random) { return Word(random, {"2.4", "5"}); }

std::string WirelessKey(Random& random) {
  if (!random.OneIn(20)) {
    return Word(random, {"home-key-24", "home-key-50", "upstream-key", "12345", "ABCDE01234",
                         "thirteen-char", "0123456789ABCDEF0123456789", ""});
  }
  constexpr int kLengths[] = {0, 5, 5, 10, 13, 13, 26, 7, 8, 12, 20, 31, 63, 64, 65};
  const int length = random.Of(kLengths);
  switch (random.Below(3)) {
    case 0:
      return CharactersOf(random, "0123456789ABCDEF", length);
    case 1:
      return CharactersOf(random, "0123456789ABCDEFabcG", length);
    default:
      return Letters(random, length);
  }
}

std::string Roaming(Random& random) {
  if (random.Chance(40)) {
    return Word(random, {"roam-1", "", "-70 5 3 1", "-1 0 1 1"});
  }
  std::string text;
  for (int i = random.Between(3, 5); i > 0; --i) {
    text += std::to_string(random.Between(-3, 4)) + " ";
  }
  return text;
}

std::string Vpi(Random& random) {
  return std::to_string(IsRare(random) ? random.Between(-1, 10) : random.Below(9));
}

std::string Vci(Random& random) {
  return IsRare(random) ? Word(random, {"0", "31", "32768", "-1"})
                        : Word(random, {"32", "33", "35", "32767", "1000"});
}

std::string Directory(Random& random) {
  if (random.Chance(75)) {
    return Word(random, {"/var/tmp", "/tmp", "/etc/scripts", "/tmp/kio"});
  }
  return "/" + (random.OneIn(2) ? Letters(random, random.Between(1, 140))
                                : Odd(random, static_cast<std::size_t>(random.Between(1, 140))));
}

std::string FirmwareFile(Random& random) {
  if (random.OneIn(5)) {
    return Odd(random, 140);
  }
  return Word(random, {"AB12_FW1.0.2.bin", "AB12_FW1.0.8.bin", "AB12", "X_FW2", "a_b_FW3.1", "_",
                       "AB12_FW1.0.2.bin.old", "model"});
}

std::string FetchTemplate(Random& random) {
  if (random.OneIn(6)) {
    return CharactersOf(random, "$urlsavefn\"'\\ -`;", random.Between(1, 60));
  }
  return Word(random,
              {"wget -O \"$savefn\" \"$url\"", "wget -O '$savefn' '$url'", "wget -O $savefn $url",
               "curl -o \\$savefn \"$url\"", "fetch $url", "get \"$savefn\"$savefn '$url'", "",
               " wget -q -O \"$savefn\" $url ", "get '\\$savefn' \"\\$url\" \\$url",
               "a \\\"$savefn\\\" '\"$url\"'", "\"quoted get\" '$savefn' \"$url"});
}

std::string AnyAddress(Random& random) {
  return random.Chance(70) ? Word(random, {"http://$lanip:$rssport/", "http://$lanip/x?$lanip",
                                           "$rssport$rssport", "/a", "$lani$lanip", ""})
                           : Odd(random, 300);
}

std::string Number(Random& random) {
  if (random.OneIn(3)) {
    return std::to_string(random.Between(-5, 300));
  }
  return Word(random, {"0",           "1",
                       "2",           "3",
                       "-1",          "+1",
                       " 1",          "1 ",
                       "\t2",         "1x",
                       "x",           "",
                       "00",          "01",
                       "0x1",         "255",
                       "256",         "257",
                       "-128",        "127",
                       "128",         "2147483647",
                       "2147483648",  "-2147483648",
                       "-2147483649", "99999999999999999999",
                       "1e1",         "123456789",
                       "1234567890",  "0000000001",
                       "1.5",         "-0",
                       "\n1",         "nan",
                       "inf"});
}

int Length(Random& random) {
  constexpr int kLimits[] = {1, 8, 16, 18, 32, 64, 128, 256};
  switch (random.Below(6)) {
    case 0:
    case 1:
      return random.Below(12);
    case 2:
      return random.Below(140);
    case 3:
    case 4:
      return std::max(0, random.Of(kLimits) + random.Between(-3, 2));
    default:
      return random.OneIn(12) ? random.Between(500, 4095) : random.Below(600);
  }
}

std::string Odd(Random& random) {
  const int length = Length(random);
  switch (random.Below(9)) {
    case 0:
      return Letters(random, length);
    case 1:
      return CharactersOf(random, "'\"`$\\;&|<>() \t\n*?#~", length);
    case 2: {
      constexpr const char* kPieces[] = {"&amp;", "&lt;",  "&gt;",  "&quot;", "&apos;", "&nbsp;",
                                         "&#60;", "&#34;", "&#39;", "&#160;", "&#62;",  "&#38;",
                                         "&l",    "&",     "&lt",   "&AMP;",  "a",      "bc"};
      std::string text;
      while (static_cast<int>(text.size()) < length) {
        text += random.Of(kPieces);
      }
      return text.substr(0, static_cast<std::size_t>(length));
    }
    case 3:
      return CharactersOf(random, "%snd41+20F.*", length);
    case 4:
      return "$(reboot)`x`'; rm -rf / #" + Letters(random, length / 2);
    case 5: {
      std::string text;
      for (int i = 0; i < length; ++i) {
        text += static_cast<char>(random.Between(1, 255));
      }
      return text;
    }
    case 6:
      return CharactersOf(random, " \t\r\n", random.Below(4)) + Letters(random, length) +
             CharactersOf(random, " \t\r\n", random.Below(4));
    case 7:
      return random.OneIn(2) ? "<" + Letters(random, 3) + ">" + Letters(random, length) + "</"
                             : CharactersOf(random, "<>/=_:.,#-", length);
    default:
      return Number(random);
  }
}

std::string Odd(Random& random, std::size_t limit) { return Odd(random).substr(0, limit); }

std::string Mutated(Random& random, std::string text, int changes) {
  for (; changes > 0; --changes) {
    const auto size = static_cast<int>(text.size());
    const auto place = static_cast<std::size_t>(random.Below(size + 1));
    const auto length = static_cast<std::size_t>(random.Below(1 << random.Below(8)));
    switch (random.Below(8)) {
      case 0:
        if (place < text.size()) {
          text[place] = static_cast<char>(random.Between(1, 255));
        }
        break;
      case 1:
        text.insert(place, CharactersOf(random, "<>/&;,:= -0129aZ\\\n'\"", 1));
        break;
      case 2:
        text.erase(place, length);
        break;
      case 3:
        text.insert(static_cast<std::size_t>(random.Below(size + 1)), text.substr(place, length));
        break;
      case 4:
        if (place < text.size()) {
          text[place] = static_cast<char>(text[place] ^ 0x20);
        }
        break;
      case 5:
        if (place < text.size()) {
          text.erase(place, 1);
        }
        break;
      case 6:
        text.insert(place, Odd(random, 40));
        break;
      default:
        if (random.OneIn(6)) {
          text.resize(place);
        }
        break;
    }
  }
  std::erase(text, '\0');
  return text;
}

std::string MixedCase(Random& random, std::string text) {
  for (char& character : text) {
    if (std::isalpha(static_cast<unsigned char>(character)) != 0 && random.OneIn(2)) {
      character = static_cast<char>(character ^ 0x20);
    }
  }
  return text;
}

std::string XmlEncoded(std::string_view text) {
  std::string encoded;
  for (const char character : text) {
    switch (character) {
      case '&':
        encoded += "&amp;";
        break;
      case '<':
        encoded += "&lt;";
        break;
      case '>':
        encoded += "&gt;";
        break;
      case '"':
        encoded += "&quot;";
        break;
      case '\'':
        encoded += "&#39;";
        break;
      default:
        encoded += character;
        break;
    }
  }
  return encoded;
}

}  // namespace kio::differential
