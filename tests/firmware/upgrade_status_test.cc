// The status document, the status machine and the log of the steps.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "upgrade_fixture.h"

namespace kio::test {
namespace {

class UpgradeStatusTest : public UpgradeTest {
 protected:
  [[nodiscard]] std::string Echo(const std::string& text, bool first = false) const {
    return "echo '" + std::string(first ? "<?xml version=\"1.0\" ?><root>" : "") + text + "' " +
           (first ? ">" : ">>") + " " + Path("rsscheckfw.xml");
  }
};

// What does not go with the status: a closed document with the fault, and then the usual one.
TEST_F(UpgradeStatusTest, UnknownActionsAtStatusZero) {
  for (const char action : {'2', '3', '4', '5', 'x', '/', ':', '<', '&', '\\'}) {
    EXPECT_TRUE(Act(action).empty());
    const std::vector<std::string> expected = {
        Echo("<erractmsg>Status=0, Act=" + std::string(1, static_cast<char>(action)) +
                 "</erractmsg>",
             true),
        Echo("<result>-3</result></root>"), Echo("<result>0</result></root>", true)};
    EXPECT_EQ(Echoes(), expected);
    EXPECT_EQ(Status(), Document("<result>0</result>"));
  }
}

TEST_F(UpgradeStatusTest, ActionsThatAreNoCharacters) {
  Act(0);
  EXPECT_EQ(Echoes()[0], Echo("<erractmsg>Status=0, Act=</erractmsg>", true));
  Act(256 + '1');
  EXPECT_EQ(Echoes()[0], Echo("<erractmsg>Status=0, Act=1</erractmsg>", true));
  Act(-1);
  EXPECT_EQ(Echoes()[0], Echo("<erractmsg>Status=0, Act=\xFF</erractmsg>", true));
}

TEST_F(UpgradeStatusTest, QuoteStaysInItsQuotes) {
  std::string first;
  host_.on_command = [&](const std::string& command) {
    host_.run_commands = true;
    if (command.find("<result>0") != std::string::npos) {
      first = Status();
    }
  };
  Act('\'');
  EXPECT_EQ(Echoes()[0], Echo("<erractmsg>Status=0, Act='\\''</erractmsg>", true));
  EXPECT_EQ(first,
            "<?xml version=\"1.0\" ?><root><erractmsg>Status=0, Act='</erractmsg>\n"
            "<result>-3</result></root>\n");
  EXPECT_EQ(Status(), Document("<result>0</result>"));
}

TEST_F(UpgradeStatusTest, AnyCharacterLeavesAWholeDocument) {
  for (int action = -300; action < 300; ++action) {
    if (action != '0' && action != '1') {
      Act(action);
      ASSERT_EQ(Status(), Document("<result>0</result>")) << action;
    }
  }
}

// Every action at every status but 3, at which each is the same.
TEST_F(UpgradeStatusTest, ActionsGoWithTheStatus) {
  const auto refused = [&](int action) {
    Act(action);
    return Echoes()[0].find("<erractmsg>") != std::string::npos;
  };
  // -1: no list.
  Act('1');
  for (const char action : {'1', '2', '4'}) {
    EXPECT_TRUE(refused(action)) << "-1";
    EXPECT_EQ(Status(), Document("<result>-1</result>"));
  }
  EXPECT_FALSE(refused('9'));
  Act('0');
  // 1: none newer.
  server_[Address("/AB12/AB12.xml")] = FirmwareList("");
  Act('1');
  for (const char action : {'1', '2', '4'}) {
    EXPECT_TRUE(refused(action)) << "1";
    EXPECT_EQ(Echoes()[0], Echo("<erractmsg>Status=1, Act=" +
                                    std::string(1, static_cast<char>(action)) + "</erractmsg>",
                                true));
    EXPECT_EQ(Status(), Document("<result>1</result>"));
  }
  EXPECT_FALSE(refused('9'));
  Act('0');
  // 2: found.
  GoToFound();
  for (const char action : {'1', '4'}) {
    EXPECT_TRUE(refused(action)) << "2";
    EXPECT_EQ(Status(), Found(2));
  }
  EXPECT_FALSE(refused('9'));
  Act('0');
  // 4: downloaded.
  GoToDownloaded();
  for (const char action : {'1', '2'}) {
    EXPECT_TRUE(refused(action)) << "4";
    EXPECT_EQ(Status(), Found(4));
  }
  EXPECT_FALSE(refused('9'));
  // 5: announced.
  Act('4');
  for (const char action : {'1', '2', '4'}) {
    EXPECT_TRUE(refused(action)) << "5";
    EXPECT_EQ(Status(), Found(5));
  }
  EXPECT_FALSE(refused('9'));
}

TEST_F(UpgradeStatusTest, UnknownActionWithAFoundFile) {
  GoToFound();
  Act('1');
  const std::vector<std::string> expected = {
      Echo("<erractmsg>Status=2, Act=1</erractmsg>", true), Echo("<result>-3</result></root>"),
      Echo("<fwsize>0</fwsize>", true), Echo("<fwver>1.0.8</fwver>"),
      Echo("<result>2</result></root>")};
  EXPECT_EQ(Echoes(), expected);
}

struct NamedVersion {
  const char* address;
  const char* version;
};

class VersionTest : public UpgradeStatusTest, public ::testing::WithParamInterface<NamedVersion> {};

TEST_P(VersionTest, IsThatOfTheFileName) {
  GoToFound();
  host_.Set("/fwupgradeinfo/newfw/fileurl", GetParam().address);
  Act('9');
  EXPECT_EQ(Status(), Document("<fwsize>0</fwsize>\n<fwver>" + std::string(GetParam().version) +
                               "</fwver>\n<result>2</result>"));
}

INSTANTIATE_TEST_SUITE_P(
    Addresses, VersionTest,
    ::testing::Values(
        NamedVersion{"http://h/fw/AB12_FW1.0.8_0312.bin", "1.0.8"},
        NamedVersion{"http://h/AB12_FW2.bin", "2."}, NamedVersion{"http://h/AB12_FW10", "10"},
        NamedVersion{"http://h/AB12_FW", ""}, NamedVersion{"http://h/AB12_FWx1", ""},
        NamedVersion{"http://h/AB12_fw1.0", ""}, NamedVersion{"http://h/AB12_F1.0", ""},
        NamedVersion{"http://h/AB_12_FW1.0", ""},  // the first "_" counts
        NamedVersion{"http://h/AB12.bin", ""}, NamedVersion{"http://h/_FW1.0.8-2", "1.0.8"},
        NamedVersion{"http://h/a_b/AB12_FW3.1", "3.1"},
        NamedVersion{"http://h/AB12_FW1.2?x=/y_FW9", "1.2"},
        NamedVersion{"http://h/AB12?x_FW9", ""}, NamedVersion{"http://h_FW1/AB12", ""},
        NamedVersion{"http://h/a_FW1/", ""}, NamedVersion{"", ""}, NamedVersion{"a_FW4.5", "4.5"},
        NamedVersion{"http://h/A_FW...", "..."}, NamedVersion{"http://h/A_FW1'; touch X", "1"}));

struct Size {
  std::uintmax_t bytes;
  const char* text;
};

class SizeTest : public UpgradeStatusTest, public ::testing::WithParamInterface<Size> {};

TEST_P(SizeTest, IsWritten) {
  GoToFound();
  WriteFile(Path("upld.bin"), "");
  std::filesystem::resize_file(Path("upld.bin"), GetParam().bytes);
  Act('9');
  EXPECT_EQ(Status(), Found(2, "", GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Sizes, SizeTest,
                         ::testing::Values(Size{0, "0"}, Size{1, "1"}, Size{999, "999"},
                                           Size{1000, "0.98 K"}, Size{1024, "1.00 K"},
                                           Size{512000, "500.00 K"}, Size{1023999, "1000.00 K"},
                                           Size{1023990, "999.99 K"}, Size{1024000, "0.98 M"},
                                           Size{1048576, "1.00 M"}, Size{2621440, "2.50 M"},
                                           Size{20000000, "19.07 M"}, Size{20000002, "0"},
                                           Size{20000001, "19.07 M"},  // in single precision
                                           Size{5000000000, "0"}));

TEST_F(UpgradeStatusTest, MissingImageHasNoSize) {
  GoToFound();
  Act('9');
  EXPECT_EQ(Status(), Found(2));
}

TEST_F(UpgradeStatusTest, LogOfEachStep) {
  const std::string name = "1000:do_FwUpgradeAction]";
  const auto log_of = [&](int action) {
    log_file::Start(7);
    Act(action);
    std::vector<std::string> lines;
    for (const std::string& line : log_file::Lines()) {
      if (line.compare(0, name.size(), name) == 0) {
        lines.push_back(line.substr(name.size()));
      }
    }
    log_file::Start(3);
    return lines;
  };
  const std::string done = "rsscheckfw.xml done";
  using Lines = std::vector<std::string>;
  EXPECT_EQ(log_of('9'), (Lines{"", done}));
  EXPECT_EQ(log_of('x'), (Lines{"", "===FWUPGRADE_ACT_UNKNOW===,act='x',120",
                                "rsscheckfw.xml wrong act=x", done}));
  EXPECT_EQ(log_of('0'),
            (Lines{"", "===FWUPGRADE_ACT_INIT===",
                   "cmd=rm -f \"" + Path("rsscheckfw.xml") + "\" \"" + Path("upld.bin") + "\" \"" +
                       Path("rssfwnotes.xml") + "\" \"" + Path("rssfwtmp.txt") + "\"",
                   done}));
  server_[Address("/AB12/AB12.xml")] = FirmwareList(Entry(MacList({"*"}), "fw/AB12_FW1.0.8_0312"));
  EXPECT_EQ(log_of('1'),
            (Lines{"", "===FWUPGRADE_ACT_SEARCH===",
                   "cmd=wget -O \"" + Path("AB12.xml") + "\" \"" + Address("/AB12/AB12.xml") + "\"",
                   "cmd=wget -O \"" + Path("rssfwnotes.xml") + "\" \"" +
                       Address("/fw/AB12_FW1.0.8_0312.txt") + "\" &",
                   done}));
  EXPECT_EQ(log_of('2'), (Lines{"", "===FWUPGRADE_ACT_DOWNLOAD===",
                                "cmd=wget -O \"" + Path("upld.bin") + "\" \"" +
                                    Address("/fw/AB12_FW1.0.8_0312.bin") + "\" &",
                                done}));
  processes_ = "root grep " + Tag();
  const Lines progress = {
      "", "===FWUPGRADE_BINGETTING===",
      "cmd=echo `ps aux |grep \"" + Tag() + "\"` > \"" + Path("rssfwtmp.txt") + "\"",
      "==BGN==' " + Tag() + "'", done};
  EXPECT_EQ(log_of('9'), progress);
  EXPECT_EQ(log_of('4'), (Lines{"", "===FWUPGRADE_ACT_UPGRADE===", done}));
}

TEST_F(UpgradeStatusTest, LogHoldsTheListOfProcesses) {
  GoToDownloading();
  processes_ = "root wget grep";
  log_file::Start(7);
  Act('9');
  EXPECT_NE(log_file::Contents().find("==BGN==' " + Tag() + "'\nroot wget grep\n==END==\n"),
            std::string::npos);
}

}  // namespace
}  // namespace kio::test
