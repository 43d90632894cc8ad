// Moves of the radios to other channels, as the host notes them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host_clock.h"
#include "host_process.h"
#include "http_client.h"
#include "store.h"

namespace {

constexpr std::chrono::seconds kSecond(1);

TEST(ChannelTest, MovesAreNotedWithinASecond) {
  HostProcess host;
  HostClock clock(&host);
  host.UseProfile(
      ProfileWith({"/lan/wireless2.4:1/channel = 0", "/lan/wireless2.4:1/channelusing = 6",
                   "/lan/wireless5:1/channel = 36", "/lan/wireless5:1/channelusing = 36"}));
  ASSERT_TRUE(clock.Start());
  ASSERT_TRUE(host.WaitForOutput("event the 2.4 GHz radio moved to channel 6\n"));
  // What the radios' drivers do.
  kiohost::Store store;
  ASSERT_TRUE(store.Open(host.dir().File("store.db"), kiohost::Store::Mode::kExisting).ok());
  ASSERT_TRUE(store.Set("/lan/wireless5:1/channelusing", "40"));
  ASSERT_TRUE(store.Set("/lan/wireless2.4:1/channelusing", "11"));
  ASSERT_TRUE(clock.Advance(kSecond));
  // The thread that looks at the channels may come a moment after the clock.
  EXPECT_TRUE(host.WaitForOutput("event the 2.4 GHz radio moved to channel 11\n"));
  ASSERT_TRUE(store.Set("/lan/wireless5:1/channel", "0"));
  ASSERT_TRUE(clock.Advance(kSecond));
  EXPECT_TRUE(host.WaitForOutput("event the 5 GHz radio moved to channel 40\n"));
  // The host waits for requests all the while.
  const auto device = nlohmann::json::parse(Get(host.port(), "/device").body);
  std::vector<std::string> events;
  for (const auto& event : device["events"]) {
    events.push_back(event["text"]);
    EXPECT_LE(event["uptime"].get<long>(), device["uptime"].get<long>());
  }
  EXPECT_EQ(events, (std::vector<std::string>{"the 2.4 GHz radio moved to channel 6",
                                              "the 2.4 GHz radio moved to channel 11",
                                              "the 5 GHz radio moved to channel 40"}));
}

TEST(ChannelTest, AStoredTextForgesNoLineOfTheOutput) {
  HostProcess host;
  host.UseProfile(
      ProfileWith({"/lan/wireless2.4:1/channel = 0",
                   R"(/lan/wireless2.4:1/channelusing = "6\x0alogin 6.6.6.6\x1b[2J")"}));
  ASSERT_TRUE(host.Start());
  ASSERT_TRUE(host.WaitForOutput("channel 6"));
  EXPECT_TRUE(
      host.WaitForOutput("event the 2.4 GHz radio moved to channel 6\\nlogin 6.6.6.6\\x1b[2J\n"))
      << host.Output();
}

}  // namespace
