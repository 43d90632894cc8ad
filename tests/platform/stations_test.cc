#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/socket.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "kioapp/platform.h"
#include "sandbox.h"

namespace kio::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kList = "/runtime/easyroaming/connstainfo";
constexpr const char* kDriverAnswer = "/var/tmp_assoc";
constexpr unsigned int kUpdate = KIOAPP_SYNC_UPDATE_STA_RSSI;
constexpr unsigned int kDeauth = KIOAPP_SYNC_DEAUTH_STA;

StoreCall SetText(const std::string& path, const std::string& value) {
  return {StoreCall::Kind::kSetText, path, value};
}
StoreCall SetInt(const std::string& path, int value) {
  return {StoreCall::Kind::kSetInt, path, std::to_string(value)};
}
StoreCall DeleteList() { return {StoreCall::Kind::kDelete, kList, ""}; }

std::string Node(int station, const std::string& name) {
  return kList + ("/sta:" + std::to_string(station)) + "/" + name;
}

class StationsTest : public SandboxTest {
 protected:
  StationsTest() {
    // The number of listed stations outlives a test.
    exe_ExternalCall(kUpdate);
    host_.Reset();
    sandbox_.Reset();
    host_.on_command = [this](const std::string& command) {
      sandbox_.Remove(kDriverAnswer);
      for (const auto& [interface, answer] : answers_) {
        if (command == "wlctl -i " + interface + " staassoclist > /var/tmp_assoc") {
          sandbox_.Create(kDriverAnswer, answer);
        }
      }
    };
  }

  // Brings an interface up and lets the driver answer for it.
  void Answer(const std::string& interface, const std::string& answer) {
    sandbox_.interfaces[interface] = IFF_UP | IFF_BROADCAST;
    answers_[interface] = answer;
  }
  // The stations listed after one update with this answer, "IFNAME MAC RSSI".
  std::vector<std::string> Listed(const std::string& answer) {
    Answer("wl0", answer);
    exe_ExternalCall(kUpdate);
    std::vector<std::string> stations;
    for (int i = 1; host_.Text(Node(i, "ifname")).has_value(); ++i) {
      stations.push_back(host_.Text(Node(i, "ifname")).value() + " " +
                         host_.Text(Node(i, "mac")).value_or("?") + " " +
                         host_.Text(Node(i, "rssi")).value_or("?"));
    }
    return stations;
  }

  std::map<std::string, std::string> answers_;
};

TEST_F(StationsTest, EveryInterfaceIsAskedInOrder) {
  EXPECT_EQ(exe_ExternalCall(kUpdate), 0U);
  EXPECT_THAT(sandbox_.probed,
              ElementsAre("wl0", "wl0.1", "wl0.2", "wl0.3", "wl1", "wl1.1", "wl1.2", "wl1.3"));
  EXPECT_THAT(sandbox_.sockets,
              ElementsAre(std::to_string(AF_INET) + " " + std::to_string(SOCK_DGRAM)));
  EXPECT_THAT(host_.commands(), IsEmpty());
  EXPECT_THAT(host_.Writes(), IsEmpty());
}

TEST_F(StationsTest, OnlyInterfacesThatAreUp) {
  sandbox_.interfaces = {{"wl0", IFF_UP},
                         {"wl0.1", IFF_BROADCAST},
                         {"wl1.2", IFF_UP | IFF_RUNNING},
                         {"wl2", IFF_UP},
                         {"wl1.4", IFF_UP}};
  exe_ExternalCall(kUpdate);
  EXPECT_THAT(host_.commands(), ElementsAre("wlctl -i wl0 staassoclist > /var/tmp_assoc",
                                            "wlctl -i wl1.2 staassoclist > /var/tmp_assoc"));
}

TEST_F(StationsTest, StationsAreNumberedAcrossInterfaces) {
  Answer("wl0", "assoclist 02:00:00:00:00:01 -40\nassoclist 02:00:00:00:00:02 -71\n");
  Answer("wl1.2", "assoclist 02:00:00:00:00:03 -55\n");
  EXPECT_EQ(exe_ExternalCall(kUpdate), 0U);
  EXPECT_THAT(
      host_.Writes(),
      ElementsAre(SetText(Node(1, "ifname"), "wl0"), SetText(Node(1, "mac"), "02:00:00:00:00:01"),
                  SetInt(Node(1, "rssi"), -40), SetText(Node(2, "ifname"), "wl0"),
                  SetText(Node(2, "mac"), "02:00:00:00:00:02"), SetInt(Node(2, "rssi"), -71),
                  SetText(Node(3, "ifname"), "wl1.2"), SetText(Node(3, "mac"), "02:00:00:00:00:03"),
                  SetInt(Node(3, "rssi"), -55)));
}

TEST_F(StationsTest, SecondRunReplacesTheFirst) {
  EXPECT_THAT(Listed("assoclist A -1\nassoclist B -2\n"), ElementsAre("wl0 A -1", "wl0 B -2"));
  host_.ClearCalls();
  EXPECT_THAT(Listed("assoclist B -3\n"), ElementsAre("wl0 B -3"));
  EXPECT_THAT(host_.Writes(),
              ElementsAre(DeleteList(), SetText(Node(1, "ifname"), "wl0"),
                          SetText(Node(1, "mac"), "B"), SetInt(Node(1, "rssi"), -3)));
}

TEST_F(StationsTest, RunWithoutStationsLeavesNothingToDelete) {
  Listed("assoclist A -1\n");
  host_.ClearCalls();
  EXPECT_THAT(Listed(""), IsEmpty());
  EXPECT_THAT(host_.Writes(), ElementsAre(DeleteList()));
  host_.ClearCalls();
  EXPECT_THAT(Listed(""), IsEmpty());
  EXPECT_THAT(host_.Writes(), IsEmpty());
}

TEST_F(StationsTest, LinesThatMatch) {
  const std::vector<std::pair<std::string, std::string>> lines = {
      {"assoclist 02:AA -40\n", "wl0 02:AA -40"},
      {"assoclist 02:AA -40", "wl0 02:AA -40"},  // the last line may lack its end
      {"assoclist\t 02:AA \t -40 \r\n", "wl0 02:AA -40"},
      {"assoclist02:AA -40\n", "wl0 02:AA -40"},  // a blank of the pattern may stand for none
      {"assoclist 02:AA +40\n", "wl0 02:AA 40"},
      {"assoclist 02:AA -40 dBm\n", "wl0 02:AA -40"},
      {"assoclist 02:AA -40dBm\n", "wl0 02:AA -40"},
      {"assoclist 02:AA 99999999999\n", "wl0 02:AA 2147483647"},
      {"assoclist 02:AA -99999999999\n", "wl0 02:AA -2147483648"},
      {"assoclist " + std::string(200, 'm') + " -40\n", "wl0 " + std::string(200, 'm') + " -40"},
  };
  for (const auto& [line, station] : lines) {
    EXPECT_THAT(Listed(line), ElementsAre(station)) << line;
  }
}

TEST_F(StationsTest, OtherLinesAreSkipped) {
  for (const std::string line :
       {"\n", "assoclist\n", "assoclist \n", "assoclist 02:AA\n", "assoclist 02:AA x\n",
        "assoclist 02:AA -\n", "assoclis 02:AA -40\n", "Assoclist 02:AA -40\n",
        " assoclist 02:AA -40\n", "wl: not up\n", "02:AA -40\n"}) {
    EXPECT_THAT(Listed(line + "assoclist B -2\n"), ElementsAre("wl0 B -2")) << line;
  }
  for (const std::string line : {"", "assoclist", "assoclist 02:AA", "assoclist 02:AA -"}) {
    EXPECT_THAT(Listed(line), IsEmpty()) << line;
  }
}

TEST_F(StationsTest, LinesAreReadUpTo255Characters) {
  // 255 characters hold the whole station; what follows is a line of its own.
  const std::string padding(255 - std::string("assoclist A -1").size(), ' ');
  EXPECT_THAT(Listed("assoclist A -1" + padding + "assoclist B -2\n"),
              ElementsAre("wl0 A -1", "wl0 B -2"));
  EXPECT_THAT(Listed("assoclist A -1" + padding + " assoclist B -2\n"), ElementsAre("wl0 A -1"));
  // A station that the cut divides does not match.
  EXPECT_THAT(Listed("assoclist " + std::string(245, 'm') + " -40\nassoclist C -3\n"),
              ElementsAre("wl0 C -3"));
}

TEST_F(StationsTest, AnyAnswerIsRead) {
  using namespace std::string_literals;
  EXPECT_THAT(Listed("assoclist A -1\0 junk\nassoclist B -2\n"s),
              ElementsAre("wl0 A -1", "wl0 B -2"));
  std::string bytes;
  for (int i = 0; i < 100000; ++i) {
    bytes.push_back(static_cast<char>(i * 7919 >> 3));
  }
  EXPECT_THAT(Listed(bytes + "\nassoclist Z -9\n"), ElementsAre("wl0 Z -9"));
  std::string many;
  for (int i = 1; i <= 300; ++i) {
    many += "assoclist M" + std::to_string(i) + " " + std::to_string(-i) + "\n";
  }
  const std::vector<std::string> stations = Listed(many);
  ASSERT_EQ(stations.size(), 300U);
  EXPECT_EQ(stations.front(), "wl0 M1 -1");
  EXPECT_EQ(stations.back(), "wl0 M300 -300");
}

TEST_F(StationsTest, SignalsAndShortReadsLoseNothing) {
  host_.on_command = [this](const std::string&) {
    sandbox_.Create(kDriverAnswer, "assoclist A -1\nassoclist B -2\n");
    sandbox_.slow_files = true;
  };
  const std::vector<std::string> stations = Listed("");
  sandbox_.slow_files = false;
  EXPECT_THAT(stations, ElementsAre("wl0 A -1", "wl0 B -2"));
}

TEST_F(StationsTest, InterfaceWithoutAnAnswerIsSkipped) {
  Answer("wl0", "assoclist A -1\n");
  sandbox_.interfaces["wl0.1"] = IFF_UP;  // its command leaves no file
  Answer("wl1", "assoclist B -2\n");
  exe_ExternalCall(kUpdate);
  EXPECT_EQ(host_.Text(Node(1, "mac")), "A");
  EXPECT_EQ(host_.Text(Node(2, "mac")), "B");
  EXPECT_EQ(host_.Text(Node(2, "ifname")), "wl1");
  EXPECT_FALSE(host_.Text(Node(3, "mac")).has_value());
}

TEST_F(StationsTest, WithoutASocketNoInterfaceIsUp) {
  sandbox_.socket_fails = true;
  EXPECT_THAT(Listed("assoclist A -1\n"), IsEmpty());
  EXPECT_THAT(host_.commands(), IsEmpty());
}

TEST_F(StationsTest, EveryDescriptorIsClosed) {
  const auto open_files = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = open_files();
  Answer("wl0.3", "assoclist A -1\n");
  exe_ExternalCall(kUpdate);
  EXPECT_EQ(host_.Text(Node(1, "mac")), "A");
  EXPECT_EQ(open_files(), before);
}

TEST_F(StationsTest, CommandRunsInARealShell) {
  // The shell, a driver tool on the path, and the answer's file in place of the one below /var.
  const TemporaryDirectory tools;
  std::ofstream(tools.File("wlctl")) << "#!/bin/sh\necho \"assoclist $1/$2/$3/$# -33\"\n";
  std::filesystem::permissions(tools.File("wlctl"), std::filesystem::perms::owner_all);
  host_.on_command = [&](std::string command) {
    command.replace(command.find(kDriverAnswer), std::string(kDriverAnswer).size(),
                    sandbox_.PathOf(kDriverAnswer));
    command.insert(0, "PATH='" + tools.path() + "':$PATH; ");
    host_.on_command = nullptr;
    host_.run_commands = true;
    EXPECT_EQ(host_.RunCommand(command.c_str()), 0);
    host_.run_commands = false;
  };
  EXPECT_THAT(Listed(""), ElementsAre("wl0 -i/wl0/staassoclist/3 -33"));
}

// Marker files.

TEST_F(StationsTest, MarkerFileOnlyClearsTheList) {
  for (const std::string marker : {"/var/wlmngr_init_0", "/var/wlmngr_init_1"}) {
    EXPECT_THAT(Listed("assoclist A -1\n"), ElementsAre("wl0 A -1"));
    host_.ClearCalls();
    host_.ClearCommands();
    sandbox_.probed.clear();
    sandbox_.Create(marker);
    log_file::Start(6);
    EXPECT_EQ(exe_ExternalCall(kUpdate | kDeauth), 0U);
    EXPECT_THAT(host_.Writes(), ElementsAre(DeleteList())) << marker;
    EXPECT_THAT(host_.commands(), IsEmpty()) << marker;
    EXPECT_THAT(sandbox_.probed, IsEmpty()) << marker;
    EXPECT_THAT(sandbox_.system_log, IsEmpty()) << marker;
    sandbox_.Remove(marker);
  }
}

TEST_F(StationsTest, MarkerFileStopsDeauth) {
  host_.Set("/runtime/easyroaming/deauthsta/ifname", "wl1");
  sandbox_.Create("/var/wlmngr_init_1");
  log_file::Start(6);
  EXPECT_EQ(exe_ExternalCall(kUpdate | kDeauth), 0U);
  // The action of the same mask is not begun.
  EXPECT_THAT(log_file::Lines(), ElementsAre("[exe_ExternalCall,UpdateStaRssi]"));
  log_file::Start(6);
  EXPECT_EQ(exe_ExternalCall(kDeauth), 0U);
  EXPECT_THAT(log_file::Lines(), ElementsAre("[exe_ExternalCall,DeauthSta]"));
  EXPECT_THAT(host_.commands(), IsEmpty());
  EXPECT_THAT(sandbox_.system_log, IsEmpty());
}

TEST_F(StationsTest, MarkerFilesDoNotStopTheOtherActions) {
  sandbox_.Create("/var/wlmngr_init_0");
  exe_ExternalCall(1 | 16 | kUpdate);
  EXPECT_THAT(host_.commands(), ElementsAre("/uplink.sh", "/device_resync.sh"));
}

TEST_F(StationsTest, MarkerThatAppearsStopsTheRemainingInterfaces) {
  host_.on_command = [this](const std::string&) {
    sandbox_.Create(kDriverAnswer, "assoclist A -1\n");
    sandbox_.Create("/var/wlmngr_init_1");
  };
  sandbox_.interfaces = {{"wl0", IFF_UP}, {"wl0.1", IFF_UP}, {"wl1", IFF_UP}};
  log_file::Start(6);
  exe_ExternalCall(kUpdate | kDeauth);
  EXPECT_THAT(host_.commands(), ElementsAre("wlctl -i wl0 staassoclist > /var/tmp_assoc"));
  EXPECT_EQ(host_.Text(Node(1, "mac")), "A");
  EXPECT_THAT(log_file::Lines(),
              ElementsAre("[exe_ExternalCall,UpdateStaRssi]", "[exe_ExternalCall,DeauthSta]"));
}

// Disconnecting.

TEST_F(StationsTest, DeauthTellsTheSystemLogAndTheDriver) {
  host_.Set("/runtime/easyroaming/deauthsta/ifname", "wl0.1");
  host_.Set("/runtime/easyroaming/deauthsta/mac", "02:00:00:00:00:0a");
  EXPECT_EQ(exe_ExternalCall(kDeauth), 0U);
  EXPECT_THAT(sandbox_.system_log, ElementsAre("6 monitor: Deauth STA wl0.1 02:00:00:00:00:0a"));
  EXPECT_THAT(host_.commands(), ElementsAre("wlctl -i wl0.1 deauthenticate 02:00:00:00:00:0a"));
  EXPECT_THAT(host_.Writes(), IsEmpty());
  EXPECT_THAT(sandbox_.sockets, IsEmpty());
}

TEST_F(StationsTest, DeauthCutsLongTexts) {
  host_.Set("/runtime/easyroaming/deauthsta/ifname", std::string(4000, 'i'));
  host_.Set("/runtime/easyroaming/deauthsta/mac", std::string(4000, 'm'));
  exe_ExternalCall(kDeauth);
  EXPECT_THAT(host_.commands(), ElementsAre("wlctl -i " + std::string(15, 'i') +
                                            " deauthenticate " + std::string(19, 'm')));
}

TEST_F(StationsTest, DeauthWithAbsentNodes) {
  exe_ExternalCall(kDeauth);
  EXPECT_THAT(sandbox_.system_log, ElementsAre("6 monitor: Deauth STA  "));
  EXPECT_THAT(host_.commands(), ElementsAre("wlctl -i  deauthenticate "));
}

}  // namespace
}  // namespace kio::test
