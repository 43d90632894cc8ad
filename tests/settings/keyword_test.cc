// The keyword tables and the lookup in them.
#include <cctype>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "testing/heap_chars.h"

namespace kio::test {
namespace {

struct Table {
  const char* name;
  const char* const* words;
  std::vector<std::string> expected;
};

std::vector<Table> Tables() {
  return {
      {"DeviceType", DeviceTypeArray, {"AP", "Router", "Extender", "Repeater", "Hotspot"}},
      {"WlanEncrypType", WlanEncrypTypeArray, {"AUTO", "OPEN", "SHARED", "TKIP", "AES", ""}},
      {"WlanEncrypMode", WlanEncrypModeArray, {"None", "WEP", "WPA", "WPAWPA2", "WPA2"}},
      {"ConnType", ConnTypeArray, {"DHCP", "Static", "PPPoE", "PPPoA"}},
      {"HardwareType",
       HardwareTypeArray,
       {"Ethernet", "ADSL", "VDSL", "WWan802.11", "WWanAPN", "DSL"}},
      {"WirelessType", WirelessTypeArray, {"2.4", "5"}},
      {"ADslEncapMode", ADslEncapModeArray, {"LLC", "VcMux"}},
  };
}

std::string Swapped(std::string text) {
  for (char& c : text) {
    const auto code = static_cast<unsigned char>(c);
    c = static_cast<char>(std::isupper(code) != 0 ? std::tolower(code) : std::toupper(code));
  }
  return text;
}

int Look(const std::string& word, const char* const* table, std::string* after) {
  HeapChars<64> buffer;
  std::snprintf(buffer, buffer.size(), "%s", word.c_str());
  const int code = SearchKeyArray(buffer, table);
  *after = buffer;
  return code;
}

TEST(KeywordTest, TablesHoldTheirWordsAndTheTerminator) {
  for (const Table& table : Tables()) {
    for (std::size_t i = 0; i < table.expected.size(); ++i) {
      EXPECT_EQ(table.words[i], table.expected[i]) << table.name << " " << i;
    }
    const char* end = table.words[table.expected.size()];
    EXPECT_EQ(std::string_view(end, 3), std::string_view("\0_\0", 3)) << table.name;
  }
}

TEST(KeywordTest, EveryWordIsFoundAndRewrittenInTheTablesSpelling) {
  for (const Table& table : Tables()) {
    for (std::size_t i = 0; i < table.expected.size(); ++i) {
      for (const std::string& word : {table.expected[i], Swapped(table.expected[i])}) {
        std::string after;
        EXPECT_EQ(Look(word, table.words, &after), static_cast<int>(i)) << table.name << word;
        EXPECT_EQ(after, table.expected[i]);
      }
    }
  }
}

TEST(KeywordTest, UnknownWordsStayAsTheyAre) {
  for (const Table& table : Tables()) {
    for (const char* word : {"WPA3", "_", " AES", "AES ", "2.", "ethernet2", "Pppo"}) {
      std::string after;
      EXPECT_EQ(Look(word, table.words, &after), -1) << table.name << word;
      EXPECT_EQ(after, word);
    }
  }
}

TEST(KeywordTest, EmptyWordIsAnEntryOfOneTableOnly) {
  for (const Table& table : Tables()) {
    std::string after = "x";
    const bool has_empty_word = table.words == WlanEncrypTypeArray;
    EXPECT_EQ(Look("", table.words, &after), has_empty_word ? 5 : -1) << table.name;
    EXPECT_EQ(after, "");
  }
}

TEST(KeywordTest, LongerSpellingsAreTold) {
  std::string after;
  EXPECT_EQ(Look("wpa2", WlanEncrypModeArray, &after), 4);
  EXPECT_EQ(after, "WPA2");
  EXPECT_EQ(Look("aes", WlanEncrypTypeArray, &after), 4);
  EXPECT_EQ(after, "AES");
}

}  // namespace
}  // namespace kio::test
