// What a batch leaves behind: the store, the result document, the log.
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "variables/batch.h"

namespace kio::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class BatchResultTest : public BatchFixture {};

TEST_F(BatchResultTest, AppliedBatchTellsTheSecondsToWait) {
  EXPECT_EQ(Batch("rss_DeviceName=Attic&rss_Wl2_WirelessName=Attic-2", '&', 1), (Answer{0, ""}));
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Attic");
  EXPECT_EQ(Host().Text("/lan/wireless2.4:1/wirelessname"), "Attic-2");
  EXPECT_EQ(rssXmlData.exeflag, 4 | 16 | 32);
  EXPECT_EQ(rssXmlData.exeWaitSec, 15);
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 15));
}

TEST_F(BatchResultTest, AnyNonZeroApplies) {
  EXPECT_EQ(Batch("rss_DeviceName=Attic", '&', -1), (Answer{0, ""}));
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Attic");
}

TEST_F(BatchResultTest, AppliedBatchMovesUncommittedActions) {
  rssXmlData.exeflag = 8;
  EXPECT_EQ(Batch("rss_DeviceName=Attic", '&', 1).code, 0U);
  EXPECT_EQ(rssXmlData.pre_exeflag, 8);
  EXPECT_EQ(rssXmlData.exeflag, 48);
}

TEST_F(BatchResultTest, BatchThatIsNotAppliedLeavesStoreAndActions) {
  rssXmlData.exeflag = 8;
  rssXmlData.exeWaitSec = 77;
  EXPECT_EQ(Batch("rss_DeviceName=Attic"), (Answer{0, ""}));
  EXPECT_EQ(Host().commands(), ResultCommands(0, "", 0));
  EXPECT_EQ(rssXmlData.exeflag, 8);
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
  EXPECT_EQ(rssXmlData.exeWaitSec, 77);
  EXPECT_THAT(Host().Writes(), IsEmpty());
}

TEST_F(BatchResultTest, RefusedApplicationIsToldOnce) {
  Host().Set("/lan/wireless5:1/wlenbl", 3);
  rssXmlData.exeflag = 8;
  EXPECT_EQ(Batch("rss_DeviceName=Attic", '&', 1), (Answer{3, "Device/Wireless5/WlEnbl"}));
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Wireless5/WlEnbl", 0));
  EXPECT_EQ(rssXmlData.exeflag, 8);
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "Attic") << "written before the refusal";
}

TEST_F(BatchResultTest, FaultyRecordIsNotApplied) {
  EXPECT_EQ(Batch("rss_DeviceName=Attic&rss_Wl2_WlSchedule=9", '&', 1),
            (Answer{3, "Device/Wireless2.4/WlSchedule"}));
  EXPECT_THAT(Host().Writes(), IsEmpty());
  EXPECT_EQ(Host().commands(), ResultCommands(3, "Device/Wireless2.4/WlSchedule", 0));
}

TEST_F(BatchResultTest, RefusedVariableIsNotApplied) {
  EXPECT_EQ(Batch("rss_DeviceName=Attic&rss_X=1", '&', 1), (Answer{2, "rss_X"}));
  EXPECT_THAT(Host().Writes(), IsEmpty());
}

TEST_F(BatchResultTest, NoFreshSnapshotIsTaken) {
  Put(rssXmlData.deviceName, "of the record");
  Host().Set("/sys/friendlyname", "of the store");
  EXPECT_EQ(Batch("rss_Vyr_UrlDetectEnbl=1").code, 0U);
  EXPECT_STREQ(rssXmlData.deviceName, "of the record");
}

TEST_F(BatchResultTest, LostKeysAreReportedAsByTheDocumentParser) {
  EXPECT_EQ(Batch("").code, 0U);
  ASSERT_NE(XmlErrMsg_LostKey, nullptr);
  Host().ClearCommands();
  XmlErrMsg_LostKey("Device", "DeviceName");
  EXPECT_EQ(Host().commands(), ResultCommands(2, "Device/DeviceName", 0));
}

TEST_F(BatchResultTest, TextAndResultAreLogged) {
  log_file::Start(7);
  Batch("rss_DeviceName=%s%n");
  const std::string log = log_file::Contents();
  EXPECT_EQ(log.find("1000: 1000:do_RssVar_Parser]\n"
                     "1000: ---- Received Rss Var Data Begin ----\n"
                     "rss_DeviceName=%s%n\n"
                     "---- Received Rss Var Data End ----\n"),
            0U);
  EXPECT_THAT(log, ::testing::EndsWith("done, ret=0\n"));
  EXPECT_THAT(log_file::Lines(), Contains("done, ret=0"));

  log_file::Start(6);
  Batch("rss_DeviceName=Attic");
  EXPECT_THAT(log_file::Contents(), HasSubstr("---- Received Rss Var Data Begin ----\n"));
  EXPECT_THAT(log_file::Contents(), Not(HasSubstr("do_RssVar_Parser")));
  EXPECT_THAT(log_file::Contents(), Not(HasSubstr("done, ret=0")));
}

TEST_F(BatchResultTest, ResultOfAFaultIsLogged) {
  log_file::Start(7);
  Batch("rss_Wl2_WlSchedule=9");
  EXPECT_THAT(log_file::Lines(), Contains("done, ret=3"));
}

TEST_F(BatchResultTest, RefusedVariableEndsTheLog) {
  log_file::Start(7);
  Batch("rss_X=1");
  EXPECT_THAT(log_file::Contents(), Not(HasSubstr("RSSXML_BGN")));
  EXPECT_THAT(log_file::Contents(), Not(HasSubstr("done, ret=")));
  EXPECT_THAT(log_file::Lines(), Contains("Rss SetResult=2, SetMsg='rss_X', GetWaitSec=0"));
}

// Batches whose result document is written by the real shell.
class HostileBatchTest : public BatchFixture, public ::testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    BatchFixture::SetUp();
    std::filesystem::create_directory(directory_.File("results"));
    Put(rssXmlData.tmpPath, "results");
    Host().run_commands = true;
    before_ = std::filesystem::current_path();
    std::filesystem::current_path(directory_.path());
  }

  void TearDown() override { std::filesystem::current_path(before_); }

  [[nodiscard]] std::string Document() const {
    return ReadFile(directory_.File("results/rssset_result.xml"));
  }

  // Nothing but the result document was made.
  void ExpectNoOtherFile() const {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory_.path())) {
      files.push_back(std::filesystem::relative(entry.path(), directory_.path()).string());
    }
    std::sort(files.begin(), files.end());
    EXPECT_EQ(files, (std::vector<std::string>{"results", "results/rssset_result.xml"}));
  }

  TemporaryDirectory directory_;
  std::filesystem::path before_;
};

TEST_P(HostileBatchTest, NamesStandInTheDocumentAsThemselves) {
  const std::string name = GetParam();
  ASSERT_LE(name.size(), 31U);
  EXPECT_EQ(Batch(name + "=1"), (Answer{2, name}));
  EXPECT_EQ(Document(), ResultDocument(2, name, 0));
  ExpectNoOtherFile();
  Put(rssXmlData.friendlyNameValidate, "2");
  EXPECT_EQ(Batch("rss_DeviceName=Attic&" + name + "=" + name, '\n', 1).code, 0U)
      << "as part of a value";
  ExpectNoOtherFile();
}

TEST_P(HostileBatchTest, ValuesReachNoCommand) {
  const std::string value = GetParam();
  EXPECT_EQ(Batch("rss_Upl_Dsl_IspName=" + value, '\n').code, 0U);
  EXPECT_EQ(rssXmlData.upLink.dsl.ispName, value);
  EXPECT_EQ(Document(), ResultDocument(0, "", 0));
  EXPECT_EQ(Batch("rss_Upl_IP=" + value, '\n'), (Answer{2, "rss_Upl_IP"}));
  EXPECT_EQ(Document(), ResultDocument(2, "rss_Upl_IP", 0));
  for (const std::string& command : Host().commands()) {
    EXPECT_EQ(command.find("touch"), std::string::npos) << command;
  }
  ExpectNoOtherFile();
}

// A name that is cut inside its harm.
TEST_P(HostileBatchTest, LongNamesRunNothing) {
  for (std::size_t length = 0; length <= 40; ++length) {
    const std::string name = std::string(length, 'n') + GetParam() + "'''''''''";
    EXPECT_EQ(Batch(name + "=1"), (Answer{2, name.substr(0, 31)})) << name;
    EXPECT_EQ(Document(), ResultDocument(2, name.substr(0, 31), 0)) << name;
    ExpectNoOtherFile();
  }
}

INSTANTIATE_TEST_SUITE_P(Texts, HostileBatchTest,
                         ::testing::Values("rss_';touch X;'", "$(touch X)", "'$(touch X)'",
                                           "`touch X`", "'`touch X`'", "\";touch X;\"", "'", "''",
                                           "rss_'&touch X&'", "'|touch X|'", "%s%n%d%x", "%%n",
                                           "rss_x>X", "'>X'", "#'#"));

}  // namespace
}  // namespace kio::test
