#include "link_forecast.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kioapp/platform.h>

#include <fstream>

#include "neighbours.h"
#include "temp_dir.h"

namespace kiohost {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::vector<Node> kDevice = {
    {"/lan/wireless2.4:1/encryptionmode", "WPA2"},
    {"/lan/wireless2.4:1/wirelessname", "HomeNet"},
    {"/lan/wireless2.4:1/wlenbl", "1"},
    {"/lan/wireless5:1/encryptionmode", "OPEN"},
    {"/lan/wireless5:1/wirelessname", "HomeNet-5G"},
    {"/lan/wireless5:1/wlenbl", "0"},
    {"/runtime/easyroaming/connstainfo/sta:1/ifname", "wl1.1"},
    {"/runtime/easyroaming/connstainfo/sta:1/mac", "02:00:5E:00:00:05"},
    {"/runtime/zentrolinks/lanip", "192.168.1.1"},
    {"/sys/routerenbl", "1"},
    {"/uplink/conntype", "Static"},
    {"/uplink/ip", "192.0.2.10"},
};

constexpr unsigned int kBothRadios = KIOAPP_SYNC_WLAN | KIOAPP_SYNC_WLAN_5G;

LinkForecast Forecast(const LinkEnds& ends, unsigned int actions) {
  return ForecastLink(ends, kDevice, kDevice, actions);
}

TEST(LinkForecastTest, AClientOnTheRouterItselfKeepsItsLink) {
  for (const char* address : {"127.0.0.1", "127.3.2.1", "::1"}) {
    const LinkForecast link = Forecast({address, address, ""}, ~0U);
    EXPECT_EQ(link.by, "host");
    EXPECT_FALSE(link.drops);
    EXPECT_THAT(link.assumed, IsEmpty());
  }
}

TEST(LinkForecastTest, AClientOfTheLanMayBeAtARadioThatRestarts) {
  const LinkEnds ends = {"192.168.1.23", "192.168.1.1", ""};
  const LinkForecast link = Forecast(ends, KIOAPP_SYNC_WLAN_5G | KIOAPP_SYNC_WAN);
  EXPECT_EQ(link.by, "lan");
  EXPECT_TRUE(link.drops);
  EXPECT_THAT(link.assumed, Contains(HasSubstr("may be at a radio that restarts")));
  ASSERT_EQ(link.rejoin.size(), 1U);
  EXPECT_EQ(link.rejoin[0].band, "5");
  EXPECT_EQ(link.rejoin[0].name, "HomeNet-5G");
  EXPECT_EQ(link.rejoin[0].encryption, "OPEN");
  EXPECT_FALSE(link.rejoin[0].on);
  EXPECT_EQ(Forecast(ends, kBothRadios).rejoin.size(), 2U);
  const LinkForecast stays = Forecast(ends, KIOAPP_SYNC_WAN | KIOAPP_SYNC_DEVICE);
  EXPECT_FALSE(stays.drops);
  EXPECT_THAT(stays.rejoin, IsEmpty());
}

TEST(LinkForecastTest, AListedStationIsAtItsRadio) {
  const LinkEnds ends = {"192.168.1.23", "192.168.1.1", "02:00:5e:00:00:05"};
  const LinkForecast stays = Forecast(ends, KIOAPP_SYNC_WLAN);
  EXPECT_EQ(stays.by, "radio 5");
  EXPECT_FALSE(stays.drops);
  const LinkForecast drops = Forecast(ends, kBothRadios);
  EXPECT_TRUE(drops.drops);
  ASSERT_EQ(drops.rejoin.size(), 1U);
  EXPECT_EQ(drops.rejoin[0].band, "5");
  EXPECT_EQ(Forecast({"192.168.1.23", "", "02:00:5e:00:00:06"}, 0).by, "lan");
}

TEST(LinkForecastTest, ARadioIsRejoinedAsItIsAfterwards) {
  std::vector<Node> after = kDevice;
  after[0].text = "WPA3";
  after[1].text = "Sofa";
  const LinkForecast link =
      ForecastLink({"192.168.1.23", "", ""}, kDevice, after, KIOAPP_SYNC_WLAN);
  ASSERT_EQ(link.rejoin.size(), 1U);
  EXPECT_EQ(link.rejoin[0].name, "Sofa");
  EXPECT_EQ(link.rejoin[0].encryption, "WPA3");
}

TEST(LinkForecastTest, AnUplinkThatIsBroughtUpAnewDropsWhoComesByIt) {
  const LinkForecast known = Forecast({"192.168.1.99", "192.0.2.10", ""}, KIOAPP_SYNC_WAN);
  EXPECT_EQ(known.by, "uplink");
  EXPECT_TRUE(known.drops);
  EXPECT_THAT(known.assumed, IsEmpty());
  EXPECT_THAT(known.known, Contains(HasSubstr("192.0.2.10")));
  const LinkForecast assumed = Forecast({"203.0.113.5", "10.0.0.1", ""}, kBothRadios);
  EXPECT_EQ(assumed.by, "uplink");
  EXPECT_FALSE(assumed.drops);
  EXPECT_THAT(assumed.assumed, Not(IsEmpty()));
}

TEST(LinkForecastTest, AnotherRouterModeChangesTheLan) {
  std::vector<Node> after = kDevice;
  after[9].text = "0";
  const LinkEnds ends = {"fe80::1", "fe80::2", ""};
  EXPECT_TRUE(ForecastLink(ends, kDevice, after, KIOAPP_SYNC_DEVICE).drops);
  EXPECT_FALSE(ForecastLink(ends, kDevice, kDevice, KIOAPP_SYNC_DEVICE).drops);
}

TEST(NeighboursTest, ReadsTheTableOfTheKernel) {
  const TempDir dir;
  std::ofstream(dir.File("arp"))
      << "IP address       HW type     Flags       HW address            Mask     Device\n"
         "192.168.1.23     0x1         0x2         02:00:5e:00:00:05     *        br0\n"
         "192.168.1.24     0x1         0x0         00:00:00:00:00:00     *        br0\n";
  EXPECT_EQ(MacOf("192.168.1.23", dir.File("arp")), "02:00:5e:00:00:05");
  EXPECT_EQ(MacOf("192.168.1.24", dir.File("arp")), "");
  EXPECT_EQ(MacOf("192.168.1.2", dir.File("arp")), "");
  EXPECT_EQ(MacOf("192.168.1.23", dir.File("nothing")), "");
}

}  // namespace
}  // namespace kiohost
