// Batches of variables.
#include "variables/batch.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "../platform/guarded.h"

namespace kio::test {
namespace {

using ::testing::IsEmpty;

// The two variables that take any text.
constexpr const char* kA = "rss_Upl_Dsl_IspName";
constexpr const char* kB = "rss_Upl_Apn_IspName";

std::string Pair(const char* name, const std::string& value) {
  return std::string(name) + "=" + value;
}

class BatchTest : public BatchFixture {
 protected:
  static std::string A() { return rssXmlData.upLink.dsl.ispName; }
  static std::string B() { return rssXmlData.upLink.apn.ispName; }
};

TEST_F(BatchTest, SetsEachPair) {
  const RecordWatch record;
  EXPECT_EQ(Batch("rss_Upl_IP=192.168.1.2&rss_Upl_NetMask=255.255.0.0"), (Answer{0, ""}));
  record.ExpectOnly(
      [](RssXmlData& r) {
        Put(r.upLink.ip, "192.168.1.2");
        Put(r.upLink.netMask, "255.255.0.0");
      },
      "batch");
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
  EXPECT_THAT(Host().Writes(), IsEmpty());
}

TEST_F(BatchTest, RunsOfSeparatorsAndBlanksAreSkipped) {
  for (const char* between : {"&", "&&&  ", "\n", "\r", "\r\n", "&\r\n\t & \r", "\n\n\n"}) {
    EXPECT_EQ(Batch(Pair(kA, "1") + between + Pair(kB, "2")).code, 0U);
    EXPECT_EQ(A(), "1");
    EXPECT_EQ(B(), "2");
    EXPECT_EQ(Batch(between + Pair(kA, "3") + between + Pair(kB, "4") + between).code, 0U);
    EXPECT_EQ(A(), "3");
    EXPECT_EQ(B(), "4");
  }
}

// Blanks alone end no value.
TEST_F(BatchTest, BlanksAndTabsBelongToAValue) {
  EXPECT_EQ(Batch(Pair(kA, "1 ") + Pair(kB, "2")).code, 0U);
  EXPECT_EQ(A(), std::string("1 ") + kB + "=2");
  EXPECT_EQ(Batch(Pair(kA, "a\tb c")).code, 0U);
  EXPECT_EQ(A(), "a\tb c");
}

TEST_F(BatchTest, BlanksAroundNameAndValueAreCut) {
  EXPECT_EQ(Batch(std::string(kA) + " \t = \tv w \t\r\n").code, 0U);
  EXPECT_EQ(A(), "v w");
  EXPECT_EQ(Batch(std::string(" \r\n\t") + kA + "\r\n=v").code, 0U);
  EXPECT_EQ(A(), "v");
}

// A line feed ends the value even before it begins.
TEST_F(BatchTest, LineFeedBehindTheSignMakesAnEmptyValue) {
  EXPECT_EQ(Batch(std::string(kA) + "=\nx=y").code, 2U);
  EXPECT_EQ(A(), "");
}

TEST_F(BatchTest, ValuesMayHoldTheSign) {
  EXPECT_EQ(Batch(Pair(kA, "a=b")).code, 0U);
  EXPECT_EQ(A(), "a=b");
  EXPECT_EQ(Batch(Pair(kA, "=") + "&" + Pair(kB, "==x=")).code, 0U);
  EXPECT_EQ(A(), "=");
  EXPECT_EQ(B(), "==x=");
}

TEST_F(BatchTest, EmptyValues) {
  for (const char* value : {"", "  ", "\t", "&", "  &", "\n", "\r\n", " \t&&"}) {
    Put(rssXmlData.upLink.dsl.ispName, "before");
    EXPECT_EQ(Batch(Pair(kA, value)).code, 0U);
    EXPECT_EQ(A(), "");
  }
  EXPECT_EQ(Batch(Pair(kA, "") + "&" + Pair(kB, "2")).code, 0U);
  EXPECT_EQ(A(), "");
  EXPECT_EQ(B(), "2");
}

TEST_F(BatchTest, NamesReachBackToTheBeginningOfTheirPair) {
  EXPECT_EQ(Batch("x&y=1"), (Answer{2, "x&y"}));
  EXPECT_EQ(Host().commands(), ResultCommands(2, "x&y", 0));
  EXPECT_EQ(Batch(Pair(kA, "1") + "&junk&" + Pair(kB, "2")).code, 2U);
  EXPECT_EQ(Batch("line\nrss_DeviceName=1"), (Answer{2, "line\nrss_DeviceName"}));
}

TEST_F(BatchTest, TrailingTextWithoutTheSignIsIgnored) {
  EXPECT_EQ(Batch(Pair(kA, "1") + "&trailing text"), (Answer{0, ""}));
  EXPECT_EQ(A(), "1");
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
}

TEST_F(BatchTest, NothingToSetIsVerified) {
  for (const char* text : {"", " ", "&&&", "\r\n", "no sign", "& no sign \n"}) {
    const RecordWatch record;
    Host().ClearCommands();
    EXPECT_EQ(Batch(text), (Answer{0, ""}));
    EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
    record.ExpectUnchanged(text);
  }
  Put(rssXmlData.deviceName, "");
  EXPECT_EQ(Batch(""), (Answer{10, "Device/DeviceName"}));
}

TEST_F(BatchTest, EmptyNamesAreRefused) {
  EXPECT_EQ(Batch("=1"), (Answer{2, ""}));
  EXPECT_EQ(Host().commands(), ResultCommands(2, "", 0));
  EXPECT_EQ(Batch("&& =1&" + Pair(kA, "1")), (Answer{2, ""}));
}

TEST_F(BatchTest, SeparatorsAreTheCallers) {
  EXPECT_EQ(Batch(Pair(kA, "1&2") + ";" + Pair(kB, "3"), ';').code, 0U);
  EXPECT_EQ(A(), "1&2");
  EXPECT_EQ(B(), "3");
  EXPECT_EQ(Batch(Pair(kA, "4,") + "," + Pair(kB, ",5"), ',').code, 0U);
  EXPECT_EQ(A(), "4");
  EXPECT_EQ(B(), "");
  EXPECT_EQ(Batch(Pair(kA, "6") + "\n" + Pair(kB, "7&8"), '\n').code, 0U);
  EXPECT_EQ(A(), "6");
  EXPECT_EQ(B(), "7&8");
  EXPECT_EQ(Batch(Pair(kA, "a b") + " " + Pair(kB, "c"), ' ').code, 2U);
  EXPECT_EQ(A(), "a");
}

TEST_F(BatchTest, TheTerminatorSeparatesNothing) {
  EXPECT_EQ(Batch(Pair(kA, "1") + "\n" + Pair(kB, "2") + "\n", '\0').code, 0U);
  EXPECT_EQ(A(), "1");
  EXPECT_EQ(B(), "2");
  EXPECT_EQ(Batch("", '\0').code, 0U);
}

TEST_F(BatchTest, ValuesAreCutAt127Characters) {
  for (const std::size_t length : {126U, 127U, 128U, 129U, 1000U, 50000U}) {
    const std::string value(length, 'v');
    EXPECT_EQ(Batch(Pair(kA, value) + "&" + Pair(kB, "2")).code, 0U);
    EXPECT_EQ(A(), value.substr(0, 127));
    EXPECT_EQ(B(), "2") << "the next pair begins behind the whole value";
    Put(rssXmlData.upLink.apn.ispName, "");
  }
}

TEST_F(BatchTest, NamesAreCutAt31Characters) {
  for (const std::size_t length : {30U, 31U, 32U, 40U, 1000U}) {
    const std::string name(length, 'n');
    Host().ClearCommands();
    EXPECT_EQ(Batch(name + "=1"), (Answer{2, name.substr(0, 31)}));
    EXPECT_EQ(Host().commands(), ResultCommands(2, name.substr(0, 31), 0));
  }
}

// Quirk "names-of-31": what stands behind the cut does not matter.
TEST_F(BatchTest, ANameIsServedByItsFirst31Characters) {
  EXPECT_EQ(Batch("/Device/SafetyVyr/UrlDetectEnbl=1").code, 0U);
  EXPECT_EQ(rssXmlData.safetyVyr.urlDetectEnbl, 1);
  EXPECT_EQ(Batch("/Device/SafetyVyr/UrlDetectEnblAnything=0").code, 0U);
  EXPECT_EQ(rssXmlData.safetyVyr.urlDetectEnbl, 0);
  EXPECT_EQ(Batch("/Device/UpLinkConnection/NetMask=255.0.0.0"),
            (Answer{2, "/Device/UpLinkConnection/NetMas"}));
}

TEST_F(BatchTest, RefusedVariableStopsTheBatch) {
  const RecordWatch record;
  EXPECT_EQ(Batch(Pair(kA, "1") + "&rss_DeviceName=&" + Pair(kB, "2")),
            (Answer{10, "rss_DeviceName"}));
  EXPECT_EQ(Host().commands(), ResultCommands(10, "rss_DeviceName", 0));
  record.ExpectOnly(
      [](RssXmlData& r) {
        Put(r.upLink.dsl.ispName, "1");
        r.setResult = 10;
        Put(r.setMsg, "rss_DeviceName");
      },
      "stopped batch");
  EXPECT_EQ(XmlErrMsg_LostKey, nullptr) << "the end of the batch is not reached";
}

TEST_F(BatchTest, RefusalsHaveTheCodeOfTheVariable) {
  rssXmlData.upLink.configurable = 0;
  const std::vector<std::pair<std::string, unsigned>> refusals = {
      {"rss_Upl_IP=1.2.3.4", 1},
      {"rss_Upl_X=1", 1},
      {"rss_X=1", 2},
      {"rss_Wl2_EncryptionMode=WPA3", 10},
      {"rss_DeviceName=a\tb", 11},
      {"rss_DeviceModel=1", 2},
      {"/Foo/X=1", 2},
      {"rss_Ext_Ssv_SiteNo=1", 2},
      {"rss_Act_X=1", 2}};
  for (const auto& [text, code] : refusals) {
    const std::string name = text.substr(0, text.find('='));
    Host().ClearCommands();
    EXPECT_EQ(Batch(text, '&', 1), (Answer{code, name}));
    EXPECT_EQ(Host().commands(), ResultCommands(static_cast<int>(code), name, 0));
  }
  EXPECT_THAT(Host().Writes(), IsEmpty());
}

TEST_F(BatchTest, NameOutMayBeNull) {
  for (const char* text : {"rss_X=1", "rss_DeviceName=Attic", "", "rss_Wl2_WlEnbl=7"}) {
    Guarded batch{std::string_view(text)};
    do_RssVar_Parser(batch.data(), '&', nullptr, 0);
  }
  EXPECT_STREQ(rssXmlData.deviceName, "Attic");
  EXPECT_EQ(rssXmlData.setResult, 3);
}

TEST_F(BatchTest, FaultOfTheRecordIsTold) {
  EXPECT_EQ(Batch("rss_Wl5_Acl_WlAcEnbl=9"), (Answer{3, "Device/Wireless5/AccessControl/WlEnbl"}));
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Wireless5/AccessControl/WlEnbl", 0))
      << "written once";
}

TEST_F(BatchTest, KeywordsAreSetThroughABatch) {
  EXPECT_EQ(Batch("rss_Wl2_EncryptionMode=wep&rss_Wl2_EncryptionType=open&"
                  "rss_Wl2_EncryptionKey=12345"),
            (Answer{0, ""}));
  EXPECT_STREQ(rssXmlData.wlan[0].encryptionMode, "WEP");
  EXPECT_EQ(rssXmlData.wlan[0].encryptionTypeCode, 1);
}

TEST_F(BatchTest, EachVariableIsTakenInOrder) {
  EXPECT_EQ(Batch("rss_Wl2_Acl_R02_MAC=x&rss_Wl2_Acl_AcRuleNo=3"),
            (Answer{2, "rss_Wl2_Acl_R02_MAC"}));
  EXPECT_EQ(Batch("rss_Wl2_Acl_AcRuleNo=3&rss_Wl2_Acl_R02_MAC=x"), (Answer{0, ""}));
  EXPECT_STREQ(rssXmlData.wlan[0].acRule[2].mac, "x");
}

}  // namespace
}  // namespace kio::test
