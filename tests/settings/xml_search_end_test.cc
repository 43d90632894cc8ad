// The ends of searches: the last position at which a hit can lie, wherever the text begins and
// ends. Texts and needles lie at the very end of what the process may read.
#include <cstring>
#include <string>
#include <vector>

#include "../platform/guarded.h"
#include "kioapp/kioapp.h"
#include "settings/found.h"
#include "settings/xml/find_element.h"
#include "settings/xml/item_reader.h"
#include "support/exchange.h"

namespace kio::test {
namespace {

using settings::Block;

// A text whose terminator is the last byte that may be read. There is one at a time.
class TextAtTheEnd {
 public:
  explicit TextAtTheEnd(const std::string& text)
      : text_(Memory().data() + kSize - text.size() - 1) {
    std::memcpy(text_, text.c_str(), text.size() + 1);
  }

  [[nodiscard]] char* get() const { return text_; }

 private:
  static constexpr std::size_t kSize = 8192;

  static const Guarded& Memory() {
    static const Guarded memory(kSize);
    return memory;
  }

  char* text_;
};

// Every size up to several blocks, and those around the places where a search learns of more text.
std::vector<std::size_t> Sizes() {
  std::vector<std::size_t> sizes;
  for (std::size_t size = 0; size <= 720; ++size) {
    sizes.push_back(size);
  }
  for (const std::size_t middle : {1152U, 1344U, 2688U, 2880U, 4096U, 5760U, 5952U, 6976U}) {
    for (std::size_t size = middle - 24; size <= middle + 24; ++size) {
      sizes.push_back(size);
    }
  }
  return sizes;
}

class EndTest : public ::testing::TestWithParam<bool> {
 protected:
  // Whether what surrounds the hit is like it.
  static char Filler() { return GetParam() ? 'q' : '.'; }
};

TEST_P(EndTest, NeedleAtTheEnd) {
  for (const std::size_t needle_size :
       {1U, 2U, 3U, 5U, 8U, 9U, 16U, 17U, 40U, 191U, 192U, 193U, 194U, 400U}) {
    const std::string needle = std::string(needle_size - 1, 'q') + "Z";
    const Guarded guarded_needle(needle);
    for (const std::size_t before : Sizes()) {
      const std::string text = std::string(before, Filler()) + needle;
      const TextAtTheEnd whole(text);
      ASSERT_EQ(strstri(whole.get(), guarded_needle.data()), whole.get() + before)
          << before << " " << needle_size;
      const TextAtTheEnd cut(text.substr(0, text.size() - 1));
      ASSERT_EQ(strstri(cut.get(), guarded_needle.data()), nullptr) << before << " " << needle_size;
    }
  }
}

// Not the last position alone.
TEST_P(EndTest, NeedleNearTheEnd) {
  const std::string needle = "qqZ";
  for (std::size_t before = 180; before < 720; ++before) {
    for (const std::size_t behind : {1U, 2U, 3U, 15U, 16U, 17U, 63U, 64U, 65U}) {
      const TextAtTheEnd text(std::string(before, Filler()) + needle +
                              std::string(behind, Filler()));
      ASSERT_EQ(strstri(text.get(), needle.c_str()), text.get() + before)
          << before << " " << behind;
    }
  }
}

enum class End {
  kTerminator,  // the search has to look for it
  kLength,      // it is told; more text follows
  kKnown,       // it is known
};

// Finds `key` in `text` and expects it at `tag` with `content` characters; without its last
// character, nothing is found.
void ExpectLast(const std::string& text, const std::string& key, long tag, int content) {
  for (const End end : {End::kTerminator, End::kLength, End::kKnown}) {
    for (const std::size_t lost : {0U, 1U}) {
      const std::string searched = text.substr(0, text.size() - lost);
      const TextAtTheEnd guarded(end == End::kLength ? text + ">" : searched);
      const auto length = end == End::kLength ? static_cast<int>(searched.size()) : 0;
      const char* const text_end = end == End::kKnown ? guarded.get() + searched.size() : nullptr;
      const Block block{guarded.get(), length, text_end};
      const settings::Element element = settings::FindElement(block, key);
      const Found found{element.tag == nullptr ? -1 : element.tag - guarded.get(),
                        element.is_complete() ? element.content.length : kUntouched};
      const bool has_close = content > 0;
      const Found cut{has_close ? tag : -1, kUntouched};
      ASSERT_EQ(found, lost == 0 ? (Found{tag, content}) : cut)
          << "end " << static_cast<int>(end) << ", lost " << lost << ": " << searched;
      const char* const header = settings::FindTag(block, key);
      ASSERT_EQ(header == nullptr ? -1 : header - guarded.get(), lost == 0 ? tag : cut.offset)
          << "end " << static_cast<int>(end) << ", lost " << lost << ": " << searched;
    }
  }
}

TEST_P(EndTest, EmptyElementAtTheEnd) {
  for (const char* const key : {"K", "qZ", "Channel"}) {
    for (const std::size_t before : Sizes()) {
      const std::string text = std::string(before, Filler()) + "<" + key;
      const auto tag = static_cast<long>(before);
      ExpectLast(text + "/>", key, tag, 0);
      ExpectLast(text + " />", key, tag, 0);
      if (HasFatalFailure()) {
        return;
      }
    }
  }
}

TEST_P(EndTest, ClosingTagAtTheEnd) {
  for (const char* const key : {"qZ", "Channel"}) {
    for (const std::size_t before : {0U, 300U}) {
      for (const std::size_t inside : Sizes()) {
        if (inside > 0) {
          const std::string text = std::string(before, Filler()) + "<" + key + ">" +
                                   std::string(inside, Filler()) + "</" + key + ">";
          ExpectLast(text, key, static_cast<long>(before), static_cast<int>(inside));
          if (HasFatalFailure()) {
            return;
          }
        }
      }
    }
  }
}

// The opening tag alone.
TEST_P(EndTest, OpeningTagAtTheEnd) {
  for (const char* const key : {"K", "qZ", "Channel"}) {
    for (const std::size_t before : Sizes()) {
      const std::string text = std::string(before, Filler()) + "<" + key + ">";
      const auto size = static_cast<int>(text.size());
      const TextAtTheEnd whole(text);
      ASSERT_EQ(SearchXmlKeyHeader(whole.get(), 0, key), whole.get() + before) << before;
      ASSERT_EQ(SearchXmlKeyHeader(whole.get(), size, key), whole.get() + before) << before;
      const TextAtTheEnd longer(text + ">");
      ASSERT_EQ(SearchXmlKeyHeader(longer.get(), size, key), longer.get() + before) << before;
      ASSERT_EQ(SearchXmlKeyHeader(longer.get(), size - 1, key), nullptr) << before;
      const TextAtTheEnd cut(text.substr(0, text.size() - 1));
      ASSERT_EQ(SearchXmlKeyHeader(cut.get(), 0, key), nullptr) << before;
    }
  }
}

// Reads the items of a list that ends with one, or with an item that has lost its last characters.
void ExpectItem(const std::string& text, std::size_t lost, bool bounded) {
  const std::string searched = text.substr(0, text.size() - lost);
  const TextAtTheEnd guarded(bounded ? text + ">" : searched);
  const char* const text_end = guarded.get() + (bounded ? text.size() + 1 : searched.size());
  settings::ItemReader items(
      {guarded.get(), bounded ? static_cast<int>(searched.size()) : 0, text_end}, "qz");
  const Block item = items.Next();
  ASSERT_EQ(item.text == nullptr, lost == 1) << text << " " << bounded;
  if (lost == 0) {
    ASSERT_EQ(item.text - guarded.get(), static_cast<long>(text.size()) - 6) << text;
    ASSERT_EQ(item.length, 1) << text;
    ASSERT_EQ(items.Next().text, nullptr) << text;
  }
}

// The items of a list, of which the last one ends it. `before` makes the reader search for them.
TEST_P(EndTest, ItemAtTheEndOfAList) {
  for (const std::string before : {"", "<x>"}) {
    for (const std::size_t size : Sizes()) {
      const std::string text = before + std::string(size, Filler()) + "<qZ>v</qZ>";
      for (const std::size_t lost : {0U, 1U}) {
        ASSERT_NO_FATAL_FAILURE(ExpectItem(text, lost, false));
        ASSERT_NO_FATAL_FAILURE(ExpectItem(text, lost, true));
      }
    }
  }
}

// The elements of a block whose end is known, in their order: the last tag ends the text.
TEST_P(EndTest, LastElementOfABlock) {
  for (std::size_t size = 0; size < 200; ++size) {
    const std::string text = "<a>1</a>" + std::string(size, Filler()) + "<qZ>v</qZ>";
    for (const std::size_t lost : {0U, 1U}) {
      const TextAtTheEnd guarded(text.substr(0, text.size() - lost));
      settings::BlockReader reader({guarded.get(), 0, guarded.get() + text.size() - lost});
      ASSERT_TRUE(reader.Find("a").is_complete());
      const settings::Element element = reader.TakeNext("qz");
      ASSERT_EQ(element.is_complete(), lost == 0) << size;
      if (lost == 0) {
        ASSERT_EQ(element.tag - guarded.get(), static_cast<long>(size) + 8);
        ASSERT_EQ(reader.position() - guarded.get(), static_cast<long>(text.size()));
      }
    }
  }
}

// A block that ends before its text does: what lies behind it belongs to others.
TEST_P(EndTest, ElementsBehindABlock) {
  for (std::size_t size = 0; size < 70; ++size) {
    const std::string text = "<a>1</a>" + std::string(size, Filler()) + "<qZ>v</qZ><c></c>";
    const TextAtTheEnd memory(text);
    const std::size_t whole = size + 18;
    for (std::size_t length = 8; length <= text.size(); ++length) {
      const Block block{memory.get(), static_cast<int>(length), memory.get() + text.size()};
      settings::BlockReader reader(block);
      ASSERT_TRUE(reader.Find("a").is_complete());
      ASSERT_EQ(settings::BlockReader(reader).TakeNext("qz").is_complete(), length >= whole);
      ASSERT_EQ(reader.Enter("qz"), length >= size + 12) << size << " " << length;
      ASSERT_EQ(reader.Leave("qz"), length >= whole) << size << " " << length;
      settings::ItemReader items(block, "qz");
      ASSERT_EQ(items.Next().text != nullptr, length >= whole) << size << " " << length;
      if (length > 8) {
        const Block items_alone{memory.get() + 8, block.length - 8, block.text_end};
        settings::ItemReader in_order(items_alone, "qz");
        ASSERT_EQ(in_order.Next().text != nullptr, length >= whole) << size << " " << length;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Fillers, EndTest, ::testing::Bool(),
                         [](const ::testing::TestParamInfo<bool>& surroundings) {
                           return surroundings.param ? "AmongTheLike" : "AmongOthers";
                         });

// Nothing behind the text is read, not even a terminator.
TEST(TagStartTest, EveryTextAndPosition) {
  for (std::size_t size = 0; size < 70; ++size) {
    const Guarded text(size, '.');
    const char* const end = text.data() + size;
    ASSERT_EQ(settings::FindTagStart(text.data(), end), nullptr) << size;
    for (std::size_t tag = 0; tag < size; ++tag) {
      text.data()[tag] = '<';
      ASSERT_EQ(settings::FindTagStart(text.data(), end), text.data() + tag) << size << " " << tag;
      text.data()[tag] = '.';
    }
  }
}

}  // namespace
}  // namespace kio::test
