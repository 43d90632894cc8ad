// The channels that the radios use, from call to call.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

// What was seen stays for the life of the process, so each test runs in a process of its own.
class ChannelUseTest : public ::testing::Test {
 protected:
  ChannelUseTest() { host_.Reset(); }

  template <typename Body>
  static void InNewProcess(Body body) {
    EXPECT_EXIT(
        {
          body();
          std::exit(HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
  }

  // Sets the channels of a radio, "2.4" or "5".
  void Set(const std::string& radio, int configured, int in_use) {
    host_.Set("/lan/wireless" + radio + ":1/channel", configured);
    host_.Set("/lan/wireless" + radio + ":1/channelusing", in_use);
  }
  // The result after the radio's channels were set.
  int After(const std::string& radio, int configured, int in_use) {
    Set(radio, configured, in_use);
    return checkWlanChannelUsing();
  }

  FakeHost& host_ = FakeHost::Get();
};

TEST_F(ChannelUseTest, AutomaticChannelReportsEachMove) {
  for (const char* radio : {"2.4", "5"}) {
    InNewProcess([&] {
      EXPECT_EQ(After(radio, 0, 6), 1);
      EXPECT_EQ(After(radio, 0, 6), 0);
      EXPECT_EQ(After(radio, 0, 11), 1);
      EXPECT_EQ(After(radio, 0, 11), 0);
    });
  }
}

TEST_F(ChannelUseTest, FixedChannelNeverReports) {
  InNewProcess([&] {
    EXPECT_EQ(After("2.4", 6, 6), 0);
    EXPECT_EQ(After("2.4", 6, 11), 0);
    EXPECT_EQ(After("2.4", 1, 11), 0);
  });
}

TEST_F(ChannelUseTest, UnknownChannelsLeaveTheStateAlone) {
  InNewProcess([&] {
    EXPECT_EQ(checkWlanChannelUsing(), 0) << "absent nodes";
    EXPECT_EQ(After("2.4", -1, 6), 0);
    EXPECT_EQ(After("2.4", 0, 0), 0);
    EXPECT_EQ(After("2.4", 0, 6), 1);
    EXPECT_EQ(After("2.4", 0, 0), 0);
    EXPECT_EQ(After("2.4", -1, 11), 0);
    EXPECT_EQ(After("2.4", 9, 0), 0);
    EXPECT_EQ(After("2.4", 0, -3), 0);
    EXPECT_EQ(After("2.4", 0, 6), 0) << "6 is still the last one seen";
  });
}

TEST_F(ChannelUseTest, FixedChannelIsRememberedForAutomaticSelection) {
  InNewProcess([&] {
    EXPECT_EQ(After("5", 36, 40), 0);
    EXPECT_EQ(After("5", 0, 36), 0) << "36 was remembered";
    EXPECT_EQ(After("5", 0, 40), 1);
    EXPECT_EQ(After("5", 44, 40), 0);
    EXPECT_EQ(After("5", 0, 40), 1);
  });
}

TEST_F(ChannelUseTest, RadiosAreSeenApart) {
  InNewProcess([&] {
    Set("2.4", 0, 6);
    Set("5", 0, 36);
    EXPECT_EQ(checkWlanChannelUsing(), 1);
    EXPECT_EQ(checkWlanChannelUsing(), 0);
    EXPECT_EQ(After("5", 0, 40), 1);
    EXPECT_EQ(After("2.4", 0, 40), 1);
    Set("2.4", 0, 1);
    Set("5", 0, 44);
    EXPECT_EQ(checkWlanChannelUsing(), 1) << "both";
    EXPECT_EQ(checkWlanChannelUsing(), 0);
  });
}

TEST_F(ChannelUseTest, LogsMovesAtLevelSeven) {
  InNewProcess([&] {
    log_file::Start(7);
    After("2.4", 0, 6);
    After("2.4", 0, 6);
    After("5", 36, 40);
    After("5", 0, 40);
    const std::vector<std::string> expected = {
        "1000:checkWlanChannelUsing]Wlan_2.4 Channel:0 ChannelUsing:0->6",
        "1000:checkWlanChannelUsing]Wlan_5 Channel:0 ChannelUsing:36->40"};
    EXPECT_EQ(log_file::Lines(), expected);
    log_file::Start(6);
    After("2.4", 0, 7);
    EXPECT_EQ(log_file::Contents(), "");
  });
}

}  // namespace
}  // namespace kio::test
