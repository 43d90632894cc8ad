// Documents in the temporary directory, written element by element.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

constexpr const char* kStart = "<?xml version=\"1.0\" ?><root>";

class TemporaryDocumentTest : public ::testing::Test {
 protected:
  TemporaryDocumentTest() {
    host_.Reset();
    rssXmlData = {};
    SetDirectory("/var/tmp");
    // Whatever was begun is closed.
    write_TmpXmlFile("before.xml", "a", "b", 1);
    host_.ClearCommands();
    host_.ClearCalls();
  }
  ~TemporaryDocumentTest() override { rssXmlData = {}; }

  static void SetDirectory(const std::string& directory) {
    std::snprintf(rssXmlData.tmpPath, sizeof(rssXmlData.tmpPath), "%s", directory.c_str());
  }

  FakeHost& host_ = FakeHost::Get();
};

TEST_F(TemporaryDocumentTest, RunsACommandForEachElement) {
  write_TmpXmlFile("x.xml", "a", "1", 0);
  write_TmpXmlFile("x.xml", "b", "2", 0);
  write_TmpXmlFile("x.xml", "c", "3", 1);
  write_TmpXmlFile("y.xml", "d", "", 1);
  const std::vector<std::string> expected = {
      "echo '<?xml version=\"1.0\" ?><root><a>1</a>' > /var/tmp/x.xml",
      "echo '<b>2</b>' >> /var/tmp/x.xml",
      "echo '<c>3</c></root>' >> /var/tmp/x.xml",
      "echo '<?xml version=\"1.0\" ?><root><d></d></root>' > /var/tmp/y.xml",
  };
  EXPECT_EQ(host_.commands(), expected);
}

TEST_F(TemporaryDocumentTest, ResultFileHasOneElement) {
  EXPECT_EQ(write_ResultXmlFile("r.xml", "result", "0"), 0);
  EXPECT_EQ(write_ResultXmlFile("r.xml", "result", "1"), 0);
  const std::vector<std::string> expected = {
      "echo '<?xml version=\"1.0\" ?><root><result>0</result></root>' > /var/tmp/r.xml",
      "echo '<?xml version=\"1.0\" ?><root><result>1</result></root>' > /var/tmp/r.xml",
  };
  EXPECT_EQ(host_.commands(), expected);
}

// The flag is the closing flag of the call before, whichever its file and its value.
TEST_F(TemporaryDocumentTest, AnyNumberCloses) {
  write_TmpXmlFile("x.xml", "a", "1", -7);
  write_TmpXmlFile("x.xml", "b", "2", 256);
  ASSERT_EQ(host_.commands().size(), 2U);
  EXPECT_EQ(host_.commands()[0],
            std::string("echo '") + kStart + "<a>1</a></root>' > /var/tmp/x.xml");
  EXPECT_EQ(host_.commands()[1],
            std::string("echo '") + kStart + "<b>2</b></root>' > /var/tmp/x.xml");
}

TEST_F(TemporaryDocumentTest, OpenDocumentTakesElementsOfAnyFile) {
  write_TmpXmlFile("x.xml", "a", "1", 0);
  write_ResultXmlFile("y.xml", "b", "2");
  EXPECT_EQ(host_.commands()[1], "echo '<b>2</b></root>' >> /var/tmp/y.xml");
}

TEST_F(TemporaryDocumentTest, WritesTheDocument) {
  const TemporaryDirectory directory;
  SetDirectory(directory.path());
  host_.run_commands = true;
  EXPECT_EQ(write_TmpXmlFile("x.xml", "a", "1", 0), 0);
  EXPECT_EQ(write_TmpXmlFile("x.xml", "b", "2", 1), 0);
  EXPECT_EQ(ReadFile(directory.File("x.xml")),
            "<?xml version=\"1.0\" ?><root><a>1</a>\n<b>2</b></root>\n");
  EXPECT_EQ(write_TmpXmlFile("x.xml", "c", "3", 1), 0);
  EXPECT_EQ(ReadFile(directory.File("x.xml")), "<?xml version=\"1.0\" ?><root><c>3</c></root>\n");
}

TEST_F(TemporaryDocumentTest, ReturnsTheStatusOfTheCommand) {
  host_.system_status = 512;
  EXPECT_EQ(write_TmpXmlFile("x.xml", "a", "1", 0), 512);
  EXPECT_EQ(write_ResultXmlFile("x.xml", "a", "1"), 512);
}

TEST_F(TemporaryDocumentTest, DirectoryIsReadWhenItIsNotKnown) {
  host_.Set("/zentrolinks/tempdirecory", "/tmp/other");
  write_ResultXmlFile("x.xml", "a", "1");
  EXPECT_TRUE(host_.calls().empty());
  SetDirectory("");
  write_ResultXmlFile("x.xml", "a", "1");
  EXPECT_STREQ(rssXmlData.tmpPath, "/tmp/other");
  EXPECT_EQ(host_.commands()[1],
            std::string("echo '") + kStart + "<a>1</a></root>' > /tmp/other/x.xml");
  const std::vector<StoreCall> expected = {
      {StoreCall::Kind::kGetText, "/zentrolinks/tempdirecory", "/tmp/other"}};
  EXPECT_EQ(host_.calls(), expected);
}

TEST_F(TemporaryDocumentTest, LongDirectoryOfTheStoreIsCut) {
  host_.Set("/zentrolinks/tempdirecory", "/" + std::string(500, 'd'));
  SetDirectory("");
  write_ResultXmlFile("x.xml", "a", "1");
  EXPECT_EQ(std::string(rssXmlData.tmpPath), "/" + std::string(126, 'd'));
}

TEST_F(TemporaryDocumentTest, CommandIsCutAt255Characters) {
  for (const std::size_t size : {100U, 150U, 180U, 185U, 190U, 195U, 200U, 215U, 230U, 5000U}) {
    const std::string value(size, 'v');
    host_.ClearCommands();
    write_TmpXmlFile("x.xml", "tag", value.c_str(), 1);
    const std::string whole =
        std::string("echo '") + kStart + "<tag>" + value + "</tag></root>' > /var/tmp/x.xml";
    ASSERT_EQ(host_.commands().size(), 1U);
    EXPECT_EQ(host_.commands()[0], whole.substr(0, 255)) << size;
  }
}

TEST_F(TemporaryDocumentTest, PercentSignsAreOrdinary) {
  write_ResultXmlFile("%s.xml", "%d", "%n%s");
  EXPECT_EQ(host_.commands()[0],
            std::string("echo '") + kStart + "<%d>%n%s</%d></root>' > /var/tmp/%s.xml");
}

TEST_F(TemporaryDocumentTest, LogsTheCommandAtLevelSeven) {
  log_file::Start(7);
  write_ResultXmlFile("x.xml", "a", "1");
  const std::vector<std::string> expected = {"1000:write_TmpXmlFile]echo '" + std::string(kStart) +
                                             "<a>1</a></root>' > /var/tmp/x.xml"};
  EXPECT_EQ(log_file::Lines(), expected);
  log_file::Start(6);
  write_ResultXmlFile("x.xml", "a", "1");
  EXPECT_EQ(log_file::Contents(), "");
}

class HostileValueTest : public TemporaryDocumentTest,
                         public ::testing::WithParamInterface<const char*> {
 protected:
  HostileValueTest() {
    std::filesystem::current_path(directory_.path());
    SetDirectory(".");
    host_.run_commands = true;
  }
  ~HostileValueTest() override { std::filesystem::current_path("/"); }

  TemporaryDirectory directory_;
};

// A quote counts as one character for the cut, however many its escape takes.
TEST_P(HostileValueTest, NothingRunsAtAnyLengthAroundTheCut) {
  const std::string tail = GetParam();
  for (std::size_t size = 0; size <= 255; ++size) {
    const std::string value = std::string(size, 'v') + tail;
    host_.ClearCommands();
    write_ResultXmlFile("d.xml", "t", value.c_str());
    ASSERT_FALSE(FileExists("X")) << value;
    const std::string whole =
        std::string("echo '") + kStart + "<t>" + value + "</t></root>' > ./d.xml";
    if (whole.size() <= 255 && value.find('\\') == std::string::npos) {
      ASSERT_EQ(ReadFile("d.xml"), kStart + ("<t>" + value) + "</t></root>\n");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tails, HostileValueTest,
                         ::testing::Values("'", "''", "';touch X;'", "'$(touch X)'", "'`touch X`'",
                                           "'&touch X&'", "'\ntouch X\n'", "'|touch X",
                                           "''';touch X", "';touch X;echo '", "'\\';touch X;'",
                                           "$(touch X)`touch X`", "\";touch X;\""));

}  // namespace
}  // namespace kio::test
