// The document parser takes elements that stand in their order without a search. Here documents
// with changes of all kinds are read a second time by the exported finders alone, search by search:
// both must tell the same.
#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using Tokens = std::vector<std::string>;

// A radio as an app writes it, in pieces.
Tokens PlainRadio() {
  Tokens tokens;
  const auto add = [&tokens](const char* name, const char* value) {
    tokens.insert(tokens.end(),
                  {std::string("<") + name + ">", value, std::string("</") + name + ">", "\n  "});
  };
  add("Configurable", "1");
  add("WlEnbl", "1");
  add("WlSchedule", "0");
  add("WirelessBSSID", "02:00:00:00:24:01");
  add("WirelessName", "Home");
  add("EncryptionMode", "WPA2");
  add("EncryptionKey", "correct-horse");
  add("EncryptionType", "AES");
  add("Channel", "6");
  tokens.emplace_back("<AccessControl>");
  add("WlAcEnbl", "1");
  add("WlAcMode", "0");
  for (const char* mac : {"02:00:00:00:00:01", "02:00:00:00:00:02", "02:00:00:00:00:03",
                          "02:00:00:00:00:04", "02:00:00:00:00:05", "02:00:00:00:00:06"}) {
    tokens.emplace_back("<AcRule>");
    add("Active", "1");
    add("MAC", mac);
    tokens.emplace_back("</AcRule>");
  }
  tokens.emplace_back("</AccessControl>");
  return tokens;
}

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

void ChangeTokens(Tokens& tokens, std::mt19937& random) {
  const auto draw = [&random](std::size_t limit) { return random() % limit; };
  const std::size_t at = draw(tokens.size());
  const std::size_t other = draw(tokens.size());
  const auto here = tokens.begin() + static_cast<std::ptrdiff_t>(at);
  static const Tokens kExtras = {" ",
                                 "text",
                                 "<!-- x -->",
                                 "<Other>1</Other>",
                                 "<Active>",
                                 "</AcRule>",
                                 "<AcRule/>",
                                 "<AcRule />",
                                 "<Active/>",
                                 "<MAC>",
                                 "<WlEnbl>0</WlEnbl>",
                                 "<",
                                 "</Channel>",
                                 "<AcRule>",
                                 "<List>",
                                 "</List>",
                                 "<MAC />",
                                 "</WlAcMode>",
                                 "&amp;",
                                 "<Channel>11</Channel>"};
  switch (draw(6)) {
    case 0:
      tokens.erase(here);
      break;
    case 1:
      std::swap(tokens[at], tokens[other]);
      break;
    case 2: {
      const std::string copy = tokens[other];
      tokens.insert(here, copy);
      break;
    }
    case 3:
      tokens[at] = tokens[at][0] == '<' ? Upper(tokens[at]) : tokens[at];
      break;
    case 4:
      tokens[at] = kExtras[draw(kExtras.size())];
      break;
    default:
      tokens.insert(here, kExtras[draw(kExtras.size())]);
      break;
  }
}

// The exported readers over one block.
struct ModelBlock {
  char* text = nullptr;
  int length = 0;
  std::string path;

  // What was missing first, as the result document tells it.
  bool Int(const char* key, int& out, std::string& missing) const {
    if (GetXmlKeyIntValue_(text, length, key, &out) == 1) {
      return true;
    }
    missing = path + "/" + key;
    return false;
  }
  template <std::size_t N>
  bool Text(const char* key, char (&out)[N], std::string& missing, int size = N) const {
    if (GetXmlKeyStrValue_(text, length, key, out, size) == 1) {
      return true;
    }
    missing = path + "/" + key;
    return false;
  }
  bool Block(const char* key, ModelBlock& out, std::string& missing) const {
    out.text = FindXmlKeyContain(text, length, key, &out.length);
    out.path = path + "/" + key;
    missing = out.text == nullptr ? key : missing;
    return out.text != nullptr;
  }
};

// Reads the rules as the search for them is described. Returns false when something is missing.
bool ReadRules(const ModelBlock& access, RssWlan& radio, std::string& missing) {
  char* position = access.text;
  int left = access.length;
  int count = 0;
  while (count < 40) {
    char* const header = SearchXmlKeyHeader(position, left, "AcRule");
    if (header == nullptr) {
      break;
    }
    left -= left > 0 ? static_cast<int>(header - position) : 0;
    const ModelBlock rest{header, left, access.path};
    ModelBlock rule;
    RssAcRule& entry = radio.acRule[count];
    if (!rest.Block("AcRule", rule, missing) || !rule.Int("Active", entry.active, missing) ||
        !rule.Text("MAC", entry.mac, missing)) {
      return false;
    }
    ++count;
    position = header + 8;
    left -= left > 0 ? 8 : 0;
  }
  radio.wlAcRuleNo = count;
  return true;
}

bool ReadRadio(const ModelBlock& block, RssWlan& radio, std::string& missing) {
  radio.configurable = 1;
  int configurable = 1;
  if (GetXmlKeyIntValue_(block.text, block.length, "Configurable", &configurable) == 1 &&
      configurable == 0) {
    radio.configurable = 0;
    return true;
  }
  ModelBlock access;
  if (!block.Int("WlEnbl", radio.wlEnbl, missing) ||
      !block.Int("WlSchedule", radio.wlSchedule, missing) ||
      !block.Text("WirelessBSSID", radio.wirelessBssid, missing) ||
      !block.Text("WirelessName", radio.wirelessName, missing) ||
      !block.Text("EncryptionMode", radio.encryptionMode, missing) ||
      !block.Text("EncryptionKey", radio.encryptionKey, missing, 32) ||
      !block.Text("EncryptionType", radio.encryptionType, missing) ||
      !block.Text("Channel", radio.channel, missing) ||
      !block.Block("AccessControl", access, missing) ||
      !access.Int("WlAcEnbl", radio.wlAcEnbl, missing)) {
    return false;
  }
  if (radio.wlAcEnbl != 1) {
    radio.wlAcRuleNo = 0;
    return true;
  }
  return access.Int("WlAcMode", radio.wlAcMode, missing) && ReadRules(access, radio, missing);
}

class ParserModelTest : public SettingsTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
  }

  static void ExpectSameRadio(const RssWlan& expected) {
    RssWlan& read = rssXmlData.wlan[0];
    EXPECT_EQ(read.configurable, expected.configurable);
    if (expected.configurable == 0) {
      return;
    }
    EXPECT_EQ(read.wlEnbl, expected.wlEnbl);
    EXPECT_EQ(read.wlSchedule, expected.wlSchedule);
    EXPECT_EQ(read.wlAcEnbl, expected.wlAcEnbl);
    EXPECT_EQ(read.wlAcRuleNo, expected.wlAcRuleNo);
    // Verification may have trimmed what was read, as far as it came.
    const auto trimmed = [](std::string text) { return std::string(trim(text.data())); };
    EXPECT_EQ(trimmed(read.wirelessBssid), trimmed(expected.wirelessBssid));
    EXPECT_EQ(trimmed(read.wirelessName), trimmed(expected.wirelessName));
    EXPECT_EQ(trimmed(read.encryptionKey), trimmed(expected.encryptionKey));
    EXPECT_EQ(trimmed(read.channel), trimmed(expected.channel));
    for (int i = 0; i < expected.wlAcRuleNo; ++i) {
      EXPECT_EQ(read.acRule[i].active, expected.acRule[i].active) << i;
      EXPECT_EQ(trimmed(read.acRule[i].mac), trimmed(expected.acRule[i].mac)) << i;
      EXPECT_STREQ(read.acRule[i].path, "Device/Wireless2.4/AccessControl/AcRule") << i;
    }
  }
};

TEST_P(ParserModelTest, ReadsWhatSearchesFind) {
  std::mt19937 random(GetParam());
  for (int round = 0; round < 100; ++round) {
    Tokens tokens = PlainRadio();
    for (std::size_t changes = random() % 5; changes > 0; --changes) {
      ChangeTokens(tokens, random);
    }
    std::string markup = "<Wireless2.4>";
    for (const std::string& token : tokens) {
      markup += token;
    }
    markup += "</Wireless2.4>";
    const std::string text = SampleDocument().SetMarkup("Device/Wireless2.4", markup).Text();

    // The text ends where the document's root does.
    std::string cut = text.substr(0, text.rfind("</root>"));
    const ModelBlock whole{cut.data(), 0, "Device"};
    ModelBlock device;
    ModelBlock radio_block;
    std::string missing;
    ASSERT_TRUE(whole.Block("Device", device, missing));
    // The device's own switch is looked for in all of it: the radio's may stand for it and end all
    // reading.
    device.path = "Device";
    int configurable = 1;
    if ((device.Int("Configurable", configurable, missing) && configurable == 0) ||
        !device.Block("Wireless2.4", radio_block, missing)) {
      continue;
    }
    missing.clear();
    RssWlan expected = {};
    const bool is_complete = ReadRadio(radio_block, expected, missing);

    Parse(text);
    SCOPED_TRACE(markup);
    if (is_complete) {
      EXPECT_NE(rssXmlData.setResult, KIOAPP_RESULT_MISSING_ELEMENT) << rssXmlData.setMsg;
      ExpectSameRadio(expected);
    } else {
      EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_MISSING_ELEMENT);
      EXPECT_EQ(rssXmlData.setMsg, missing);
    }
    if (HasFailure()) {
      return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ParserModelTest, ::testing::Range(1U, 41U));

}  // namespace
}  // namespace kio::test
