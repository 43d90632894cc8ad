#include "mutator.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace kio::fuzz {
namespace {

constexpr std::string_view kTexts[] = {
    "",
    " ",
    "0",
    "1",
    "-1",
    "2",
    "13",
    "14",
    "15",
    "36",
    "64",
    "165",
    "255",
    "256",
    "65535",
    "65536",
    "2147483647",
    "2147483648",
    "-2147483648",
    "4294967296",
    "99999999999999999999",
    "1.0",
    "1.1",
    "0x10",
    "1e9",
    "true",
    "null",
    "AP",
    "Router",
    "Extender",
    "Repeater",
    "Hotspot",
    "AUTO",
    "OPEN",
    "SHARED",
    "TKIP",
    "AES",
    "None",
    "WEP",
    "WPA",
    "WPA2",
    "WPAWPA2",
    "Ethernet",
    "ADSL",
    "VDSL",
    "DSL",
    "WWan802.11",
    "WWanAPN",
    "DHCP",
    "Static",
    "PPPoE",
    "PPPoA",
    "LLC",
    "VcMux",
    "0.0.0.0",
    "255.255.255.0",
    "255.255.255.255",
    "192.168.1.1",
    "127.0.0.1",
    "224.0.0.1",
    "02:00:00:00:00:01",
    "ff:ff:ff:ff:ff:ff",
    "0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF0123456789ABCDEF",
    "12345",
    "1234567890ABC",
    "$lanip",
    "$rssport",
    "$(x)",
    "`x`",
    "'\"\\",
    "&amp;",
    "&lt;",
    "&#65;",
    "&",
    "%41",
    "%",
    "+",
    "../",
    "\xC3\xA9",
    "\xFF",
    "<!-- -->",
    "<![CDATA[<a>]]>",
    "<?xml version=\"1.0\"?>",
    "0,32,1,0,1,a-z,A-Z,0-9",
    "1,14,1",
};

// Capacities of the library's and the host's texts.
constexpr std::size_t kLengths[] = {5,  8,  13, 16, 17,  26,  32,  33,  63,  64,
                                    65, 79, 80, 99, 127, 128, 255, 256, 512, 1023};

constexpr std::string_view kSeparators = "\n\r\t =&,;:/<>\"{}[]";

std::string DrawWord(std::string_view text, Random& random) {
  if (text.empty()) {
    return {};
  }
  const std::size_t from = Draw(random, text.size());
  const std::size_t begin = text.find_last_of(kSeparators, from) + 1;
  return std::string(text.substr(begin, text.find_first_of(kSeparators, from) - begin));
}

std::string DrawText(std::string_view other, Random& random) {
  switch (Draw(random, 8)) {
    case 0: {
      const std::size_t length = kLengths[Draw(random, std::size(kLengths))] + Draw(random, 2);
      return std::string(length, "x0A<&\xE9"[Draw(random, 6)]);
    }
    case 1:
      return std::to_string(random());
    case 2:
      return DrawWord(other, random);
    default:
      return std::string(kTexts[Draw(random, std::size(kTexts))]);
  }
}

// Places in a text: "<name attribute>body</name>".
struct Element {
  std::size_t begin;
  std::size_t name_size;
  std::size_t body;
  std::size_t body_end;
  std::size_t end;

  [[nodiscard]] std::size_t size() const { return end - begin; }
};

std::optional<Element> ElementAt(std::string_view text, std::size_t begin) {
  const std::size_t name = begin + 1;
  const std::size_t name_end = text.find_first_of(" \t\r\n/>", name);
  const std::size_t tag_end = text.find('>', name);
  if (name_end == std::string_view::npos || name_end == name || tag_end == std::string_view::npos) {
    return std::nullopt;
  }
  std::string close = "</";
  close.append(text.substr(name, name_end - name)).append(">");
  const std::size_t body_end = text.find(close, tag_end);
  if (body_end == std::string_view::npos) {
    return std::nullopt;
  }
  return Element{begin, name_end - name, tag_end + 1, body_end, body_end + close.size()};
}

std::optional<Element> DrawElement(std::string_view text, Random& random) {
  if (text.empty()) {
    return std::nullopt;
  }
  constexpr int kMostTries = 4;
  for (int i = 0; i < kMostTries; ++i) {
    const std::size_t begin = text.find('<', Draw(random, text.size()));
    if (begin != std::string_view::npos) {
      if (const std::optional<Element> element = ElementAt(text, begin)) {
        return element;
      }
    }
  }
  return std::nullopt;
}

void SwapParts(std::string& text, std::size_t a, std::size_t a_size, std::size_t b,
               std::size_t b_size) {
  if (b < a) {
    std::swap(a, b);
    std::swap(a_size, b_size);
  }
  if (a + a_size <= b) {
    const std::string first = text.substr(a, a_size);
    const std::string second = text.substr(b, b_size);
    text.replace(b, b_size, first).replace(a, a_size, second);
  }
}

void Rename(std::string& text, const Element& element, const std::string& name) {
  text.replace(element.body_end + 2, element.name_size, name);
  text.replace(element.begin + 1, element.name_size, name);
}

std::string OtherCase(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(), [](char c) {
    return static_cast<char>((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ? c ^ 0x20 : c);
  });
  return name;
}

// What is done to one element alone.
void MutateElement(std::string& input, const Element& element, const std::string& other,
                   Random& random) {
  const std::string name = input.substr(element.begin + 1, element.name_size);
  const std::string whole = input.substr(element.begin, element.size());
  switch (Draw(random, 9)) {
    case 0:
      input.erase(element.begin, element.size());
      break;
    case 1:
      for (std::size_t times = Draw(random, 16) == 0 ? Draw(random, 70) : 1; times > 0; --times) {
        input.insert(element.end, whole);
      }
      break;
    case 2:
      input.insert(element.begin + 1 + element.name_size, " a=\"" + DrawText(other, random) + "\"");
      break;
    case 3:
      input.insert(Draw(random, 2) == 0 ? element.begin : element.body,
                   "<!--" + DrawText(other, random) + "-->");
      break;
    case 4:
      input.replace(element.begin, element.size(), "<!--" + whole + "-->");
      break;
    case 5:
      Rename(input, element, OtherCase(name));
      break;
    case 6:
      Rename(input, element, DrawWord(other, random));
      break;
    case 7:
      input.insert(element.end, "</" + name + ">").insert(element.begin, "<" + name + ">");
      break;
    default:
      input.replace(element.body, element.body_end - element.body, DrawText(other, random));
      break;
  }
}

// What is done to an element with another one of the input or of another input.
void MixElements(std::string& input, const Element& element, const std::string& other,
                 Random& random) {
  if (Draw(random, 3) == 0) {
    if (const std::optional<Element> foreign = DrawElement(other, random)) {
      const std::string whole = other.substr(foreign->begin, foreign->size());
      if (Draw(random, 2) == 0) {
        input.insert(element.body, whole);
      } else {
        input.replace(element.begin, element.size(), whole);
      }
    }
    return;
  }
  const std::optional<Element> second = DrawElement(input, random);
  if (!second) {
    return;
  }
  if (Draw(random, 2) == 0) {
    SwapParts(input, element.begin, element.size(), second->begin, second->size());
  } else {
    input.insert(second->body, input.substr(element.begin, element.size()));
  }
}

void MutateLine(std::string& input, const std::string& other, Random& random) {
  const std::size_t from = Draw(random, input.size());
  const std::size_t begin = input.find_last_of('\n', from) + 1;
  const std::size_t size = std::min(input.find('\n', from), input.size() - 1) + 1 - begin;
  switch (Draw(random, 3)) {
    case 0:
      input.erase(begin, size);
      break;
    case 1:
      input.insert(begin, input.substr(begin, size));
      break;
    default: {
      const std::size_t there = Draw(random, other.size() + 1);
      const std::size_t line = there == 0 ? 0 : other.find_last_of('\n', there - 1) + 1;
      input.insert(begin, other.substr(line, other.find('\n', line) - line) + "\n");
      break;
    }
  }
}

void MutateWord(std::string& input, const std::string& other, Random& random) {
  const std::size_t from = Draw(random, input.size());
  const std::size_t begin = input.find_last_of(kSeparators, from) + 1;
  const std::size_t end = std::min(input.find_first_of(kSeparators, from), input.size());
  if (begin <= end) {
    input.replace(begin, end - begin, DrawText(other, random));
  }
}

}  // namespace

std::size_t Draw(Random& random, std::size_t limit) {
  // The lowest digits of these numbers repeat soon.
  return limit == 0 ? 0 : (random() >> 8U) % limit;
}

void MutateStructure(std::string& input, const std::string& other, Random& random) {
  if (input.empty()) {
    input = DrawText(other, random);
    return;
  }
  const std::optional<Element> element = DrawElement(input, random);
  switch (Draw(random, element ? 8 : 3)) {
    case 0:
      MutateLine(input, other, random);
      break;
    case 1:
    case 2:
      MutateWord(input, other, random);
      break;
    case 3:
    case 4:
      MixElements(input, *element, other, random);
      break;
    default:
      MutateElement(input, *element, other, random);
      break;
  }
}

}  // namespace kio::fuzz
