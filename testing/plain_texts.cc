#include "testing/plain_texts.h"

#include <cctype>
#include <cstddef>
#include <cstring>
#include <iterator>

namespace kio::test {
namespace {

const std::string kNothing(1, '\0');

// A character of a text; a terminator at its end and behind it.
char At(const std::string& text, std::size_t position) {
  return position < text.size() ? text[position] : '\0';
}

int DigitValue(char digit) {
  return digit >= '0' && digit <= '9' ? digit - '0'
                                      : std::tolower(static_cast<unsigned char>(digit)) - 87;
}

struct Entity {
  const char* name;  // behind the '&'
  char character;
};

constexpr Entity kDecoded[] = {
    {"nbsp;", ' '}, {"lt;", '<'},  {"gt;", '>'},  {"amp;", '&'}, {"quot;", '"'}, {"apos;", '\''},
    {"#160;", ' '}, {"#60;", '<'}, {"#62;", '>'}, {"#38;", '&'}, {"#34;", '"'},  {"#39;", '\''},
};

constexpr Entity kEncoded[] = {
    {"quot;", '"'}, {"amp;", '&'}, {"#39;", '\''}, {"lt;", '<'}, {"gt;", '>'},
};

}  // namespace

int PlainWildcardCmp(const std::string& subject, const std::string& pattern, int n) {
  for (int i = 0;; ++i) {
    const char character = At(subject, static_cast<std::size_t>(i));
    const char wanted = At(pattern, static_cast<std::size_t>(i));
    if ((character == '\0' && wanted == '\0') || i >= n || wanted == '*') {
      return 0;
    }
    if (character != wanted && wanted != '?') {
      return static_cast<signed char>(character) - static_cast<signed char>(wanted);
    }
  }
}

std::string PlainHtmlDecode(const std::string& source, int n) {
  if (n < 1) {
    return kNothing;
  }
  std::string written;
  for (std::size_t i = 0; written.size() < static_cast<std::size_t>(n); ++i) {
    const char character = At(source, i);
    if (character == '%' && At(source, i + 1) != '\0' && At(source, i + 2) != '\0') {
      written += static_cast<char>(DigitValue(source[i + 1]) * 16 | DigitValue(source[i + 2]));
      i += 2;
    } else {
      written += character == '+' ? ' ' : character;
      if (character == '\0') {
        break;
      }
    }
  }
  return written;
}

std::string PlainHtmlEncode(const std::string& source, int n) {
  if (n < 1) {
    return kNothing;
  }
  constexpr char kDigits[] = "0123456789ABCDEF";
  constexpr char kCopied[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._";
  std::string written;
  int left = n;
  for (std::size_t i = 0; left > 0; ++i) {
    const char character = At(source, i);
    --left;
    if (character == '\0') {
      written += character;
      break;
    }
    if (character == ' ') {
      written += '+';
    } else if (std::strchr(kCopied, character) != nullptr) {
      written += character;
    } else {
      const auto byte = static_cast<unsigned char>(character);
      written += '%';
      written += kDigits[byte / 16];
      if (left <= 1) {
        break;
      }
      left -= 2;
      written += kDigits[byte % 16];
    }
  }
  return written;
}

std::string PlainXmlDecode(const std::string& source, int n) {
  if (n < 1) {
    return kNothing;
  }
  std::string written;
  for (std::size_t i = 0; i < static_cast<std::size_t>(n);) {
    const char character = At(source, i++);
    written += character;
    if (character == '\0') {
      break;
    }
    if (character == '&') {
      for (std::size_t entity = std::size(kDecoded); entity-- > 0;) {
        const std::string name = kDecoded[entity].name;
        if (source.compare(i, name.size(), name) == 0) {
          written.back() = kDecoded[entity].character;
          i += name.size();
          break;
        }
      }
    }
  }
  return written;
}

std::string PlainXmlEncode(const std::string& source, int n) {
  if (n < 1) {
    return kNothing;
  }
  std::string written;
  for (const char character : source + '\0') {
    std::string code(1, character);
    for (const Entity& entity : kEncoded) {
      if (entity.character == character) {
        code = std::string("&") + entity.name;
      }
    }
    written += code;
    if (written.size() >= static_cast<std::size_t>(n)) {
      written.resize(static_cast<std::size_t>(n));
      break;
    }
  }
  return written;
}

}  // namespace kio::test
