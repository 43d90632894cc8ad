#include "platform/xml_coding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "coder.h"
#include "guarded.h"
#include "kioapp/text.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

using namespace std::string_literals;

const std::vector<std::pair<std::string, char>> kEntities = {
    {"nbsp;", ' '}, {"lt;", '<'},  {"gt;", '>'},  {"amp;", '&'}, {"quot;", '"'}, {"apos;", '\''},
    {"#160;", ' '}, {"#60;", '<'}, {"#62;", '>'}, {"#38;", '&'}, {"#34;", '"'},  {"#39;", '\''}};

// The characters that decoding writes, a terminator included, one by one.
std::string DecodedStepByStep(std::string_view src, int n) {
  std::string out;
  std::size_t position = 0;
  for (int count = 0; count < n; ++count) {
    if (position == src.size()) {
      out.push_back('\0');
      break;
    }
    out.push_back(src[position++]);
    if (out.back() != '&') {
      continue;
    }
    for (const auto& [name, character] : kEntities) {
      if (src.substr(position, name.size()) == name) {
        out.back() = character;
        position += name.size();
        count += static_cast<int>(name.size());
        break;
      }
    }
  }
  return out;
}

std::string EncodedStepByStep(std::string_view src, int n) {
  std::string out;
  for (const char character : src) {
    switch (character) {
      case '"':
        out += "&quot;";
        break;
      case '&':
        out += "&amp;";
        break;
      case '\'':
        out += "&#39;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      default:
        out.push_back(character);
    }
  }
  out.push_back('\0');
  return out.substr(0, static_cast<std::size_t>(n));
}

// Texts full of entities, whole, broken and nested.
std::vector<std::string> RandomTexts() {
  const std::vector<std::string> pieces = {
      "&",   "&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&nbsp;", "&#160;", "&#39;",
      "&#3", "#39;",  "amp;", "a",    ";",      "<",      "&LT;",   "&ltt;",  "\xC3\xA4"};
  std::mt19937 random(20240607);
  std::vector<std::string> texts;
  for (int i = 0; i < 300; ++i) {
    std::string text;
    for (std::size_t count = random() % 8; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    texts.push_back(text);
  }
  return texts;
}

TEST(XmlCoding, NullAndLimits) {
  for (const Coder coder : {strncpy_XmlDecode, strncpy_XmlEncode}) {
    EXPECT_EQ(coder(nullptr, "a", 5), nullptr);
    EXPECT_EQ(coder(nullptr, nullptr, 0), nullptr);
    HeapChars<4> text("xyz");
    EXPECT_EQ(coder(text, nullptr, 5), text.array());
    EXPECT_STREQ(text, "");
    for (const int n : {0, -1, INT_MIN}) {
      EXPECT_EQ(Written(coder, "abc", n, 3), "\0~~"s);
    }
    EXPECT_EQ(Written(coder, "", 1, 2), "\0~"s);
    EXPECT_EQ(Written(coder, "abc", INT_MAX, 4), "abc\0"s);
  }
}

TEST(XmlDecode, EveryEntity) {
  for (const auto& [name, character] : kEntities) {
    EXPECT_EQ(Text(strncpy_XmlDecode, std::string("[&").append(name).append("]")),
              (std::string{'[', character, ']'}))
        << name;
    // Nothing shorter is one, nor the same in upper case.
    std::string cut = name.substr(0, name.size() - 1);
    cut.insert(cut.begin(), '&');
    EXPECT_EQ(Text(strncpy_XmlDecode, cut), cut);
    EXPECT_EQ(Text(strncpy_XmlDecode, cut + "x;"), cut + "x;");
  }
  EXPECT_EQ(Text(strncpy_XmlDecode, "&LT;&Amp;&NBSP;"), "&LT;&Amp;&NBSP;");
}

TEST(XmlDecode, Samples) {
  EXPECT_EQ(Text(strncpy_XmlDecode, "&lt;a&gt;&#39;&nbsp;&x;"), "<a>' &x;");
  EXPECT_EQ(Text(strncpy_XmlDecode, "&&amp;&"), "&&&");
  EXPECT_EQ(Text(strncpy_XmlDecode, "&#0;&#x3c;&copy;&;"), "&#0;&#x3c;&copy;&;");
  EXPECT_EQ(Text(strncpy_XmlDecode, "& lt;"), "& lt;");
}

TEST(XmlDecode, NonBreakingSpaceDecodesToSpace) {
  EXPECT_EQ(Text(strncpy_XmlDecode, "a&nbsp;b&#160;c"), "a b c");
}

TEST(XmlDecode, DecodedTextIsNotDecodedAgain) {
  EXPECT_EQ(Text(strncpy_XmlDecode, "&amp;lt;"), "&lt;");
  EXPECT_EQ(Text(strncpy_XmlDecode, "&#38;#39;"), "&#39;");
}

TEST(XmlDecode, LimitCountsTheCharactersOfTheSource) {
  EXPECT_EQ(Written(strncpy_XmlDecode, "&lt;abc", 4, 2), "<~");
  EXPECT_EQ(Written(strncpy_XmlDecode, "&lt;abc", 5, 3), "<a~");
  EXPECT_EQ(Written(strncpy_XmlDecode, "&lt;abc", 7, 5), "<abc~");
  EXPECT_EQ(Written(strncpy_XmlDecode, "&lt;abc", 8, 6), "<abc\0~"s);
}

TEST(XmlDecode, EntityThatRunsPastTheLimitIsDecoded) {
  for (int n = 2; n <= 6; ++n) {
    EXPECT_EQ(Written(strncpy_XmlDecode, "a&amp;bc", n, 3), "a&~") << n;
    EXPECT_EQ(Written(strncpy_XmlDecode, "a&nbsp;bc", n, 3), "a ~") << n;
  }
  EXPECT_EQ(Written(strncpy_XmlDecode, "a&lt;", 2, 3), "a<~");
  EXPECT_EQ(Written(strncpy_XmlDecode, "a&lt;", 5, 3), "a<~");
  EXPECT_EQ(Written(strncpy_XmlDecode, "a&lt;", 6, 3), "a<\0"s);
}

TEST(XmlDecode, EveryLimit) {
  for (const std::string& text : RandomTexts()) {
    for (int n = 1; n <= static_cast<int>(text.size()) + 2; ++n) {
      const std::string expected = DecodedStepByStep(text, n);
      ASSERT_EQ(Written(strncpy_XmlDecode, text, n, expected.size()), expected) << text << " " << n;
      ASSERT_EQ(Written(strncpy_XmlDecode, text, n, expected.size() + 1), expected + "~")
          << text << " " << n;
    }
  }
}

TEST(XmlDecode, UnterminatedSourceIsReadToTheLimitOnly) {
  // Without an '&' near the limit, nothing behind an entity's length beyond it is looked at.
  const Guarded src(20 + 5, 'x');
  const Guarded dst(20);
  strncpy_XmlDecode(dst.data(), src.data(), 20);
  EXPECT_EQ(dst.Bytes(), std::string(20, 'x'));
}

TEST(XmlDecode, WorksInPlace) {
  HeapChars text("a&lt;b&gt;c&amp;");
  EXPECT_STREQ(strncpy_XmlDecode(text, text, 64), "a<b>c&");
}

TEST(XmlDecode, BoundedFormStaysInsideItsText) {
  const auto decoded = [](std::string_view text) {
    const Guarded src(text.size());
    text.copy(src.data(), text.size());
    const Guarded dst(text.size(), '~');
    const std::size_t size =
        platform::DecodeXml(dst.data(), platform::TextView(src.data(), text.size()));
    const std::string bytes = dst.Bytes();
    EXPECT_EQ(bytes.substr(size), std::string(bytes.size() - size, '~'));  // no terminator
    return bytes.substr(0, size);
  };
  EXPECT_EQ(decoded(""), "");
  EXPECT_EQ(decoded("plain"), "plain");
  EXPECT_EQ(decoded("a&lt;b"), "a<b");
  EXPECT_EQ(decoded("a&lt;"), "a<");
  EXPECT_EQ(decoded("a&lt"), "a&lt");  // cut by the end, so it stays as it is
  EXPECT_EQ(decoded("a&l"), "a&l");
  EXPECT_EQ(decoded("a&"), "a&");
  for (const std::string& text : RandomTexts()) {
    for (std::size_t size = 0; size <= text.size(); ++size) {
      std::string expected = DecodedStepByStep(text.substr(0, size), static_cast<int>(size) + 1);
      expected.pop_back();  // the terminator
      ASSERT_EQ(decoded(std::string_view(text).substr(0, size)), expected) << text << " " << size;
    }
  }
}

TEST(XmlDecode, BoundedFormLooksPastTheLimitWithinItsText) {
  HeapChars<8> dst;
  EXPECT_EQ(platform::DecodeXml(dst, "a&lt;b", 2), 2U);
  EXPECT_EQ(std::string(dst, 2), "a<");
  EXPECT_EQ(platform::DecodeXml(dst, "a&lt", 2), 2U);
  EXPECT_EQ(std::string(dst, 2), "a&");
  EXPECT_EQ(platform::DecodeXml(dst, "a&lt;b", 0), 0U);
}

TEST(XmlEncode, Samples) {
  EXPECT_EQ(Text(strncpy_XmlEncode, "<a href='x'>"), "&lt;a href=&#39;x&#39;&gt;");
  EXPECT_EQ(Text(strncpy_XmlEncode, "\"&'<>"), "&quot;&amp;&#39;&lt;&gt;");
  EXPECT_EQ(Text(strncpy_XmlEncode, "&amp;"), "&amp;amp;");
  EXPECT_EQ(Text(strncpy_XmlEncode, "plain \x01\xFF"), "plain \x01\xFF");
}

TEST(XmlEncode, LimitCutsAnEntityShort) {
  EXPECT_EQ(Written(strncpy_XmlEncode, "a<b", 2, 3), "a&~");
  EXPECT_EQ(Written(strncpy_XmlEncode, "a<b", 3, 4), "a&l~");
  EXPECT_EQ(Written(strncpy_XmlEncode, "a<b", 5, 6), "a&lt;~");
  EXPECT_EQ(Written(strncpy_XmlEncode, "a<b", 6, 7), "a&lt;b~");
  EXPECT_EQ(Written(strncpy_XmlEncode, "a<b", 7, 8), "a&lt;b\0~"s);
}

TEST(XmlEncode, EveryLimit) {
  for (const std::string& text : RandomTexts()) {
    const int longest = static_cast<int>(EncodedStepByStep(text, INT_MAX).size());
    for (int n = 1; n <= longest + 2; ++n) {
      const std::string expected = EncodedStepByStep(text, n);
      ASSERT_EQ(Written(strncpy_XmlEncode, text, n, expected.size()), expected) << text << " " << n;
      ASSERT_EQ(Written(strncpy_XmlEncode, text, n, expected.size() + 1), expected + "~")
          << text << " " << n;
    }
  }
}

TEST(XmlCoding, EveryByteComesBack) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string text = {'<', static_cast<char>(byte), '>'};
    EXPECT_EQ(Text(strncpy_XmlDecode, Text(strncpy_XmlEncode, text)), text) << byte;
  }
}

}  // namespace
}  // namespace kio::test
