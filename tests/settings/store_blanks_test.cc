// Blanks at the ends of store texts: they belong to the text, but for the lists of channels.
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

enum class Ends { kKept, kTrimmed };

// A text of the record and its node.
struct StoredText {
  const char* node;
  const char* member;
  std::size_t capacity;
  bool in_every_snapshot;
  Ends ends = Ends::kKept;
};

// A member has no type of its own that could be an argument.
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage)
#define KIO_STORED(node, member, ...) \
  StoredText { node, rssXmlData.member, sizeof(rssXmlData.member), __VA_ARGS__ }

const StoredText kTexts[] = {
    KIO_STORED("/zentrolinks/tempdirecory", tmpPath, true),
    KIO_STORED("/zentrolinks/scriptdirecory", scriptPath, true),
    KIO_STORED("/sys/devicetype", deviceType, true),
    KIO_STORED("/sys/friendlyname_validate", friendlyNameValidate, true),
    KIO_STORED("/sys/user:1/password_validate", passwordValidate, true),
    KIO_STORED("/uplink/hardwaretype", upLink.hardwareType, true),
    KIO_STORED("/uplink/hardwaresupport", upLink.hardwareSupport, true),
    KIO_STORED("/uplink/loginusername_validate", loginUserNameValidate, true),
    KIO_STORED("/uplink/loginpassword_validate", loginPasswordValidate, true),
    KIO_STORED("/lan/wireless2.4:1/channellist", wlan[0].channelList, true, Ends::kTrimmed),
    KIO_STORED("/lan/wireless2.4:1/wirelessname_validate", wlan[0].wirelessNameValidate, true),
    KIO_STORED("/lan/wireless2.4:1/encryptionkey_validate", wlan[0].encryptionKeyValidate, true),
    KIO_STORED("/lan/wireless5:1/channellist", wlan[1].channelList, true, Ends::kTrimmed),
    KIO_STORED("/lan/wireless5:1/wirelessname_validate", wlan[1].wirelessNameValidate, true),
    KIO_STORED("/lan/wireless5:1/encryptionkey_validate", wlan[1].encryptionKeyValidate, true),
    KIO_STORED("/sys/friendlyname", deviceName, false),
    KIO_STORED("/sys/user:1/password", devicePwd, false),
    KIO_STORED("/zentrolinks/easyroaminginfo", easyRoaming, false),
    KIO_STORED("/uplink/conntype", upLink.connType, false),
    KIO_STORED("/uplink/loginusername", upLink.loginUserName, false),
    KIO_STORED("/uplink/loginpassword", upLink.loginPassword, false),
    KIO_STORED("/uplink/ip", upLink.ip, false),
    KIO_STORED("/uplink/netmask", upLink.netMask, false),
    KIO_STORED("/uplink/gateway", upLink.gateway, false),
    KIO_STORED("/uplink/dns", upLink.dns, false),
    KIO_STORED("/uplink/dsl/countryname", upLink.dsl.countryName, false),
    KIO_STORED("/uplink/dsl/ispname", upLink.dsl.ispName, false),
    KIO_STORED("/uplink/apn/countryname", upLink.apn.countryName, false),
    KIO_STORED("/uplink/apn/ispname", upLink.apn.ispName, false),
    KIO_STORED("/uplink/extendersite/connrefsitebssid", upLink.extenderSite.connRefSiteBssid,
               false),
    KIO_STORED("/uplink/extendersite/wirelesstype", upLink.extenderSite.wirelessType, false),
    KIO_STORED("/uplink/extendersite/wirelessname", upLink.extenderSite.wirelessName, false),
    KIO_STORED("/uplink/extendersite/encryptionkey", upLink.extenderSite.encryptionKey, false),
    KIO_STORED("/lan/wireless2.4:1/wirelessbssid", wlan[0].wirelessBssid, false),
    KIO_STORED("/lan/wireless2.4:1/wirelessname", wlan[0].wirelessName, false),
    KIO_STORED("/lan/wireless2.4:1/encryptionmode", wlan[0].encryptionMode, false),
    KIO_STORED("/lan/wireless2.4:1/encryptiontype", wlan[0].encryptionType, false),
    KIO_STORED("/lan/wireless2.4:1/encryptionkey", wlan[0].encryptionKey, false),
    KIO_STORED("/lan/wireless2.4:1/country", wlan[0].country, false),
    KIO_STORED("/lan/wireless2.4:1/channel", wlan[0].channel, false),
    KIO_STORED("/lan/wireless2.4:1/accesscontrol/acrule:1/mac", wlan[0].acRule[1].mac, false),
    KIO_STORED("/lan/wireless5:1/wirelessbssid", wlan[1].wirelessBssid, false),
    KIO_STORED("/lan/wireless5:1/wirelessname", wlan[1].wirelessName, false),
    KIO_STORED("/lan/wireless5:1/encryptionmode", wlan[1].encryptionMode, false),
    KIO_STORED("/lan/wireless5:1/encryptiontype", wlan[1].encryptionType, false),
    KIO_STORED("/lan/wireless5:1/encryptionkey", wlan[1].encryptionKey, false),
    KIO_STORED("/lan/wireless5:1/country", wlan[1].country, false),
    KIO_STORED("/lan/wireless5:1/channel", wlan[1].channel, false),
    KIO_STORED("/lan/wireless5:1/accesscontrol/acrule:1/mac", wlan[1].acRule[1].mac, false),
};
#undef KIO_STORED

class StoreBlanksTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
    Host().Set("/lan/wireless2.4:1/configurable/acrule#", 1);
    Host().Set("/lan/wireless5:1/configurable/acrule#", 1);
  }

  // What the record has of a node that holds `stored`.
  static std::string Loaded(const StoredText& text, const std::string& stored, int full) {
    Host().Set(text.node, stored);
    ClearRecord();
    restore_XmlRssStatus(full);
    return text.member;
  }
};

// Every text that a snapshot reads is in the table: one that is not would show its node's text.
TEST_F(StoreBlanksTest, EveryTextOfASnapshotIsLookedAt) {
  for (const StoredText& text : kTexts) {
    ASSERT_TRUE(Host().Text(text.node).has_value()) << text.node;
    Host().Set(text.node, "");
  }
  ClearRecord();
  restore_XmlRssStatus(1);
  for (const TextMember& member : TextMembers(rssXmlData)) {
    const bool is_path = member.name.find(".path") != std::string::npos ||
                         member.name.find("Path") != std::string::npos;
    EXPECT_TRUE(is_path || std::string(member.text).empty())
        << member.name << " is '" << member.text << "'";
  }
}

TEST_F(StoreBlanksTest, BlanksAtTheEndsStay) {
  const std::vector<std::string> before = {"", " ", "\t", " \t"};
  const std::vector<std::string> behind = {"", " ", "\t", "\t "};
  for (const StoredText& text : kTexts) {
    for (const std::string& first : before) {
      for (const std::string& last : behind) {
        std::string stored = first;
        stored += "a b";
        stored += last;
        const std::string expected = text.ends == Ends::kTrimmed ? "a b" : stored;
        EXPECT_EQ(Loaded(text, stored, 1), expected) << text.node;
        EXPECT_EQ(Loaded(text, stored, 0), text.in_every_snapshot ? expected : "") << text.node;
      }
    }
  }
}

TEST_F(StoreBlanksTest, NothingButBlanks) {
  for (const StoredText& text : kTexts) {
    EXPECT_EQ(Loaded(text, " \t ", 1), text.ends == Ends::kTrimmed ? "" : " \t ") << text.node;
  }
}

// The cut counts the blanks, too.
TEST_F(StoreBlanksTest, BlanksCountForTheCut) {
  for (const StoredText& text : kTexts) {
    const std::string stored = "  " + std::string(text.capacity - 5, 'a') + "   b";
    const std::string cut = stored.substr(0, text.capacity - 1);
    const std::string expected =
        text.ends == Ends::kTrimmed ? std::string(text.capacity - 5, 'a') : cut;
    EXPECT_EQ(Loaded(text, stored, 1), expected) << text.node;
  }
}

// A word with blanks around it is no word of its table.
TEST_F(StoreBlanksTest, WordsWithBlanksHaveNoCode) {
  struct Word {
    const char* node;
    const char* text;
    const int* code;
  };
  const Word words[] = {
      {"/uplink/hardwaretype", "ADSL", &rssXmlData.upLink.hardwareTypeCode},
      {"/uplink/conntype", "PPPoE", &rssXmlData.upLink.connTypeCode},
      {"/uplink/extendersite/wirelesstype", "5", &rssXmlData.upLink.extenderSite.wirelessTypeCode},
      {"/lan/wireless2.4:1/encryptionmode", "WPA2", &rssXmlData.wlan[0].encryptionModeCode},
      {"/lan/wireless2.4:1/encryptiontype", "AES", &rssXmlData.wlan[0].encryptionTypeCode},
      {"/lan/wireless5:1/encryptionmode", "WPA2", &rssXmlData.wlan[1].encryptionModeCode},
      {"/lan/wireless5:1/encryptiontype", "AES", &rssXmlData.wlan[1].encryptionTypeCode},
  };
  for (const Word& word : words) {
    Host().Set(word.node, word.text);
    restore_XmlRssStatus(1);
    EXPECT_GT(*word.code, 0) << word.node;
    for (const std::string& text : {std::string(word.text) + " ", std::string(" ") + word.text}) {
      Host().Set(word.node, text);
      restore_XmlRssStatus(1);
      EXPECT_EQ(*word.code, -1) << word.node;
    }
  }
}

}  // namespace
}  // namespace kio::test
