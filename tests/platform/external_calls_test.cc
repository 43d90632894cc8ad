#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "kioapp/platform.h"
#include "sandbox.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ExternalCallsTest : public SandboxTest {
 protected:
  ExternalCallsTest() { host_.Set("/zentrolinks/scriptdirecory", "/opt/scripts"); }
};

TEST_F(ExternalCallsTest, SecondsOfEachAction) {
  const std::vector<std::pair<int, int>> seconds = {{1, 20}, {4, 10},   {8, 10},  {16, 5}, {32, 6},
                                                    {64, 3}, {128, 50}, {256, 1}, {512, 1}};
  log_file::Start(7);
  for (const auto& [id, expected] : seconds) {
    EXPECT_EQ(get_ExternalCall_UseSec(id), expected) << id;
  }
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(ExternalCallsTest, UnknownIdsNeedNoTimeAndAreLogged) {
  for (const int id : {0, 2, 3, 17, 1023, 1024, -1, INT_MIN, INT_MAX}) {
    log_file::Start(4);
    EXPECT_EQ(get_ExternalCall_UseSec(id), 0) << id;
    EXPECT_THAT(log_file::Lines(),
                ElementsAre("[get_ExternalCall_UseSec]Unknow sync_id=" + std::to_string(id)));
    log_file::Start(3);
    EXPECT_EQ(get_ExternalCall_UseSec(id), 0) << id;
    EXPECT_EQ(log_file::Contents(), "");
  }
}

TEST_F(ExternalCallsTest, EachActionLogsItsName) {
  const std::vector<std::pair<unsigned int, std::string>> names = {
      {4, "WlanResync"},      {8, "Wlan5gResync"}, {16, "DeviceResync"},   {32, "CfgSaveToFlash"},
      {64, "WlanSiteSurvey"}, {128, "FwUpgrade"},  {256, "UpdateStaRssi"}, {512, "DeauthSta"}};
  for (const auto& [bit, name] : names) {
    log_file::Start(6);
    EXPECT_EQ(exe_ExternalCall(bit), 0U);
    EXPECT_EQ(log_file::Contents(), "1000: [exe_ExternalCall," + name + "]\n");
    log_file::Start(5);
    EXPECT_EQ(exe_ExternalCall(bit), 0U);
    EXPECT_EQ(log_file::Contents(), "");
  }
}

TEST_F(ExternalCallsTest, WanResyncDoesNotEndItsLogLine) {
  log_file::Start(6);
  EXPECT_EQ(exe_ExternalCall(1 | 4), 0U);
  EXPECT_EQ(log_file::Contents(),
            "1000: [exe_ExternalCall,WanResync][exe_ExternalCall,WlanResync]\n");
}

TEST_F(ExternalCallsTest, NothingForAnEmptyMask) {
  log_file::Start(7);
  EXPECT_EQ(exe_ExternalCall(0), 0U);
  EXPECT_THAT(host_.commands(), IsEmpty());
  EXPECT_THAT(host_.Writes(), IsEmpty());
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(ExternalCallsTest, BitsWithoutAnActionAreIgnored) {
  log_file::Start(7);
  EXPECT_EQ(exe_ExternalCall(2U | 0xFFFFFC00U), 0U);
  EXPECT_THAT(host_.commands(), IsEmpty());
  EXPECT_THAT(host_.Writes(), IsEmpty());
  EXPECT_EQ(log_file::Contents(), "");
}

TEST_F(ExternalCallsTest, ScriptsRunInOrder) {
  EXPECT_EQ(exe_ExternalCall(1 | 16), 0U);
  EXPECT_THAT(host_.commands(),
              ElementsAre("/opt/scripts/uplink.sh", "/opt/scripts/device_resync.sh"));
}

TEST_F(ExternalCallsTest, WholeMaskRunsInAscendingOrder) {
  host_.Set("/runtime/easyroaming/deauthsta/ifname", "wl0");
  host_.Set("/runtime/easyroaming/deauthsta/mac", "02:00:00:00:00:01");
  sandbox_.interfaces["wl1"] = 1;
  log_file::Start(6);
  EXPECT_EQ(exe_ExternalCall(0xFFFFFFFF), 0U);
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("[exe_ExternalCall,WanResync][exe_ExternalCall,WlanResync]",
                          "[exe_ExternalCall,Wlan5gResync]", "[exe_ExternalCall,DeviceResync]",
                          "[exe_ExternalCall,CfgSaveToFlash]", "[exe_ExternalCall,WlanSiteSurvey]",
                          "[exe_ExternalCall,FwUpgrade]", "[exe_ExternalCall,UpdateStaRssi]",
                          "[exe_ExternalCall,DeauthSta]"));
  EXPECT_THAT(host_.commands(),
              ElementsAre("/opt/scripts/uplink.sh", "/opt/scripts/device_resync.sh",
                          "wlctl -i wl1 staassoclist > /var/tmp_assoc",
                          "wlctl -i wl0 deauthenticate 02:00:00:00:00:01"));
}

TEST_F(ExternalCallsTest, EachActionRunsOnlyItsOwnCommand) {
  for (const unsigned int bit : {4U, 8U, 32U, 64U, 128U, 256U}) {
    EXPECT_EQ(exe_ExternalCall(bit), 0U);
    EXPECT_THAT(host_.commands(), IsEmpty()) << bit;
    EXPECT_THAT(host_.Writes(), IsEmpty()) << bit;
  }
}

TEST_F(ExternalCallsTest, ScriptDirectoryIsReadAtEachCall) {
  exe_ExternalCall(1);
  host_.Set("/zentrolinks/scriptdirecory", "/tmp/other");
  exe_ExternalCall(1);
  host_.Delete("/zentrolinks/scriptdirecory");
  exe_ExternalCall(1);
  EXPECT_THAT(host_.commands(),
              ElementsAre("/opt/scripts/uplink.sh", "/tmp/other/uplink.sh", "/uplink.sh"));
}

TEST_F(ExternalCallsTest, ScriptDirectoryIsCutAt63Characters) {
  host_.Set("/zentrolinks/scriptdirecory", std::string(4000, 's'));
  exe_ExternalCall(1 | 16);
  EXPECT_THAT(host_.commands(), ElementsAre(std::string(63, 's') + "/uplink.sh",
                                            std::string(63, 's') + "/device_resync.sh"));
}

TEST_F(ExternalCallsTest, FailingCommandsAreNotReported) {
  host_.system_status = -1;
  log_file::Start(4);
  EXPECT_EQ(exe_ExternalCall(1 | 16 | 256 | 512), 0U);
  EXPECT_EQ(log_file::Contents(), "");
  EXPECT_EQ(host_.commands().size(), 3U);
}

}  // namespace
}  // namespace kio::test
