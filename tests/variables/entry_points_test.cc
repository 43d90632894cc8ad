// The functions that fix the mode of a call.
#include <gmock/gmock.h>

#include <cstring>
#include <string>

#include "../platform/guarded.h"
#include "support/guarded_text.h"
#include "testing/heap_chars.h"
#include "variables/variables.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

class EntryPointTest : public VariableTest {};

TEST_F(EntryPointTest, GetReadsValueOrPath) {
  const Guarded buffer(128);
  EXPECT_EQ(get_RssVar("rss_Upl_IP", buffer.data(), 0), 0);
  EXPECT_STREQ(buffer.data(), "10.0.0.2");
  EXPECT_EQ(get_RssVar("rss_Upl_IP", buffer.data(), 1), 0);
  EXPECT_STREQ(buffer.data(), "/uplink/IP");
  EXPECT_EQ(get_RssVar("rss_Upl_IP", buffer.data(), -7), 0);
  EXPECT_STREQ(buffer.data(), "/uplink/IP");
  EXPECT_EQ(get_RssVar("/Device/UpLinkConnection/IP", buffer.data(), 0), 0);
  EXPECT_STREQ(buffer.data(), "10.0.0.2");
}

TEST_F(EntryPointTest, FailedGetLeavesTheBufferEmpty) {
  for (const char* name : {"rss_Unknown", "rss_Upl_X", "rss_", "rss_Ext_Ssv_S00_BSSID"}) {
    for (const int want_path : {0, 1}) {
      const Guarded buffer(128);
      std::memcpy(buffer.data(), "before", 7);
      EXPECT_EQ(get_RssVar(name, buffer.data(), want_path), 2) << name;
      EXPECT_STREQ(buffer.data(), "") << name;
    }
  }
  EXPECT_EQ(get_RssVar("rss_DeviceName", nullptr, 0), 2);
  HeapChars<128> buffer("before");
  EXPECT_EQ(get_RssVar(nullptr, buffer, 0), 2);
}

TEST_F(EntryPointTest, GetLogsItsAnswer) {
  log_file::Start(7);
  HeapChars<128> buffer("before");
  get_RssVar("rss_DeviceName", buffer, 0);
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("1000:setget_RssVar]Name='rss_DeviceName',Val='before', Act=1",
                          "1000:get_RssVar]'rss_DeviceName'='Kitchen', ret=0"));
  log_file::Start(7);
  get_RssVar("rss_Unknown", buffer, 1);
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("1000:setget_RssVar]Name='rss_Unknown',Val='Kitchen', Act=257",
                          "1000:get_RssVar]'rss_Unknown'='', ret=2"));
}

TEST_F(EntryPointTest, NullTextsAreLogged) {
  log_file::Start(7);
  EXPECT_EQ(get_RssVar(nullptr, nullptr, 0), 2);
  EXPECT_EQ(log_file::Lines().back(), "1000:get_RssVar]'(null)'='(null)', ret=2");
  log_file::Start(7);
  EXPECT_EQ(validate_RssVar2(nullptr), KIOAPP_VAR_MALFORMED);
  EXPECT_THAT(log_file::Lines(), ElementsAre("1000:validate_RssVar2]Invalid data='(null)'"));
}

TEST_F(EntryPointTest, GetTextReturnsTheValue) {
  EXPECT_STREQ(getRssVar("rss_DeviceName"), "Kitchen");
  EXPECT_STREQ(getRssVar("/Device/UpLinkConnection/IP"), "10.0.0.2");
  EXPECT_STREQ(getRssVar("rss_Ver_major"), "1");
  Put(rssXmlData.deviceName, "");
  EXPECT_STREQ(getRssVar("rss_DeviceName"), "") << "an empty value is no error";
  EXPECT_EQ(getRssVar("rss_Upl_IP"), getRssVar("rss_DeviceName")) << "one buffer serves all";
}

TEST_F(EntryPointTest, GetTextSaysError) {
  for (const char* name : {"rss_Unknown", "", "rss_", "rss_Upl_X", "/Foo/X", "rss_Act_Unknown",
                           "rss_Wl2_Acl_R40_MAC"}) {
    const GuardedText guarded(name);
    EXPECT_STREQ(getRssVar(guarded.get()), "**ERROR**") << name;
    EXPECT_STREQ(getRssVar("rss_DeviceName"), "Kitchen");
  }
  EXPECT_STREQ(getRssVar(nullptr), "**ERROR**");
}

TEST_F(EntryPointTest, GetTextHoldsTheLongestValue) {
  Put(rssXmlData.deviceName, std::string(127, 'n'));
  EXPECT_STREQ(getRssVar("rss_DeviceName"), std::string(127, 'n').c_str());
  Host().Set("/sys/modelnumber", std::string(3000, 'm'));
  EXPECT_STREQ(getRssVar("rss_DeviceModel"), std::string(127, 'm').c_str());
  EXPECT_STREQ(getRssVar("rss_DeviceName"), std::string(127, 'n').c_str());
}

TEST_F(EntryPointTest, GetTextLogsItsAnswer) {
  log_file::Start(7);
  getRssVar("rss_DeviceName");
  EXPECT_THAT(log_file::Lines(),
              ElementsAre(StartsWith("1000:setget_RssVar]Name='rss_DeviceName',Val='"),
                          "1000:getRssVar]'rss_DeviceName'='Kitchen', ret=0"));
  log_file::Start(7);
  getRssVar("rss_Upl_X");
  EXPECT_THAT(log_file::Lines(),
              ElementsAre(StartsWith("1000:setget_RssVar]Name='rss_Upl_X',Val='"),
                          "1000:getRssVar]'rss_Upl_X'='**ERROR**', ret=2"));
}

TEST_F(EntryPointTest, SetWrites) {
  const RecordWatch record;
  HeapChars<128> value("Attic");
  EXPECT_EQ(set_RssVar("rss_DeviceName", value), 0U);
  record.ExpectOnly([](RssXmlData& r) { Put(r.deviceName, "Attic"); }, "set");
  EXPECT_STREQ(value, "Attic");
  value[0] = '\0';
  EXPECT_EQ(set_RssVar("rss_DeviceName", value), 10U);
  EXPECT_EQ(set_RssVar("rss_DeviceModel", value), 2U);
  EXPECT_EQ(set_RssVar("rss_DeviceName", nullptr), 2U);
  EXPECT_EQ(set_RssVar(nullptr, value), 2U);
  rssXmlData.upLink.configurable = 0;
  EXPECT_EQ(set_RssVar("rss_Upl_IP", value), 1U);
  EXPECT_EQ(set_RssVar("rss_Upl_NoSuchName", value), 1U);
  EXPECT_EQ(set_RssVar("rss_Upl_", value), 1U);
  EXPECT_TRUE(Host().calls().empty());
}

TEST_F(EntryPointTest, SetLogsTheCallAlone) {
  log_file::Start(7);
  HeapChars<128> value("Attic");
  set_RssVar("rss_DeviceName", value);
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("1000:setget_RssVar]Name='rss_DeviceName',Val='Attic', Act=512"));
}

TEST_F(EntryPointTest, ValidateChecksOnly) {
  const RecordWatch record;
  HeapChars<128> good("192.168.7.1");
  HeapChars<128> bad("192.168.7.0");
  HeapChars<128> word("wpa2");
  EXPECT_EQ(validate_RssVar("rss_Upl_IP", good), 0);
  EXPECT_EQ(validate_RssVar("rss_Upl_IP", bad), 2);
  EXPECT_EQ(validate_RssVar("rss_Wl2_EncryptionMode", word), 2);
  EXPECT_EQ(validate_RssVar("rss_Wl2_EncryptionMode", bad), 10);
  EXPECT_EQ(validate_RssVar("rss_Upl_Configurable", good), 2);
  EXPECT_EQ(validate_RssVar("rss_Unknown", good), 2);
  rssXmlData.upLink.configurable = 0;
  EXPECT_EQ(validate_RssVar("rss_Upl_IP", good), 0) << "a check needs no configurable section";
  rssXmlData.upLink.configurable = 1;
  record.ExpectUnchanged("validate");
}

TEST_F(EntryPointTest, ValidateLogsBeforeAndAfter) {
  log_file::Start(7);
  HeapChars<128> value;
  validate_RssVar("rss_DeviceName", value);
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("1000:validate_RssVar]'rss_DeviceName'=''",
                          "1000:setget_RssVar]Name='rss_DeviceName',Val='', Act=1024",
                          "1000:validate_RssVar]ret=10"));
}

// validate_RssVar2 on a text of exactly its own memory.
int ValidatePair(const std::string& text) {
  const Guarded guarded{std::string_view(text)};
  return validate_RssVar2(guarded.data());
}

TEST_F(EntryPointTest, ValidatePairSplitsAtTheFirstEqualsSign) {
  EXPECT_EQ(ValidatePair("rss_DeviceName=Attic"), 0);
  EXPECT_EQ(ValidatePair("rss_DeviceName="), 10);
  EXPECT_EQ(ValidatePair("rss_Upl_IP=1.2.3.4"), 0);
  EXPECT_EQ(ValidatePair("rss_Upl_IP=1.2.3"), 2);
  EXPECT_EQ(ValidatePair("rss_Upl_ConnType=static"), 2);
  EXPECT_EQ(ValidatePair("rss_Upl_ConnType=none"), 10);
  EXPECT_EQ(ValidatePair("/Device/DeviceName=Attic"), 0);
  EXPECT_EQ(ValidatePair("=Attic"), 2);
  EXPECT_EQ(ValidatePair("="), 2);
  EXPECT_EQ(ValidatePair("rss_Unknown=1"), 2);
  Put(rssXmlData.friendlyNameValidate, "0,3,3,0,1,a-b,=");
  EXPECT_EQ(ValidatePair("rss_DeviceName=a=b"), 0) << "the value may hold the sign";
  EXPECT_EQ(ValidatePair("rss_DeviceName= ab"), 11) << "blanks of the value stay";
  EXPECT_EQ(ValidatePair("rss_DeviceName =a=b"), 2) << "blanks of the name stay";
}

TEST_F(EntryPointTest, ValidatePairWithoutTheSignIsMalformed) {
  for (const char* text : {"", "rss_DeviceName", "rss_DeviceName:Attic", "x"}) {
    EXPECT_EQ(ValidatePair(text), 3) << text;
  }
}

TEST_F(EntryPointTest, ValidatePairTakesNamesOfThirtyOneCharacters) {
  EXPECT_EQ(ValidatePair("rss_" + std::string(27, 'n') + "=1"), 2);
  EXPECT_EQ(ValidatePair("rss_" + std::string(28, 'n') + "=1"), 3);
  EXPECT_EQ(ValidatePair("rss_" + std::string(36, 'n') + "=1"), 3);
  EXPECT_EQ(ValidatePair(std::string(5000, 'n') + "=1"), 3);
  // 31 characters before the sign, and served.
  EXPECT_EQ(ValidatePair("/Device/SafetyVyr/UrlDetectEnbl=1"), 0);
  EXPECT_EQ(ValidatePair("/Device/SafetyVyr/UrlDetectEnbl=2"), 2);
  // 32.
  EXPECT_EQ(ValidatePair("/Device/UpLinkConnection/NetMask=255.0.0.0"), 3);
}

TEST_F(EntryPointTest, ValidatePairLogsOnlyWhatHasNoSign) {
  log_file::Start(7);
  ValidatePair("%s%n");
  EXPECT_THAT(log_file::Lines(), ElementsAre("1000:validate_RssVar2]Invalid data='%s%n'"));
  log_file::Start(7);
  ValidatePair(std::string(32, 'n') + "=1");
  EXPECT_EQ(log_file::Contents(), "");
  ValidatePair("rss_X=1");
  EXPECT_THAT(log_file::Lines(), ElementsAre("1000:validate_RssVar]'rss_X'='1'",
                                             "1000:setget_RssVar]Name='rss_X',Val='1', Act=1024",
                                             "1000:validate_RssVar]ret=2"));
}

// A text that cannot be written is as good as any other where the check has nothing to write.
TEST_F(EntryPointTest, ValidatePairWritesOnlyWhatTheCheckChanges) {
  const GuardedText good("rss_Upl_IP=1.2.3.4");
  const GuardedText bad("rss_Upl_IP=1.2.3");
  const GuardedText none("rss_DeviceName=");
  EXPECT_EQ(validate_RssVar2(good.get()), 0);
  EXPECT_EQ(validate_RssVar2(bad.get()), 2);
  EXPECT_EQ(validate_RssVar2(none.get()), 10);
  HeapChars word("rss_Upl_ConnType=static");
  EXPECT_EQ(validate_RssVar2(word), 2);
  EXPECT_STREQ(word, "rss_Upl_ConnType=Static");
}

TEST_F(EntryPointTest, ValidatePairBoundsNoValue) {
  Put(rssXmlData.friendlyNameValidate, "2");
  EXPECT_EQ(ValidatePair("rss_DeviceName=" + std::string(5000, 'v')), 0);
  Put(rssXmlData.friendlyNameValidate, "0,200,1");
  EXPECT_EQ(ValidatePair("rss_DeviceName=" + std::string(200, 'v')), 0);
  EXPECT_EQ(ValidatePair("rss_DeviceName=" + std::string(201, 'v')), 10);
}

TEST_F(EntryPointTest, CommitIsThatOfAnExchange) {
  Host().Set("/zentrolinks/scriptdirecory", "/etc/scripts");
  restore_XmlRssStatus(0);
  rssXmlData.exeflag = 0;
  rssXmlData.pre_exeflag = KIOAPP_SYNC_WAN;
  EXPECT_EQ(do_RssVar_Commit(), 0U);
  EXPECT_THAT(Host().commands(), ElementsAre("/etc/scripts/uplink.sh"));
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
}

}  // namespace
}  // namespace kio::test
