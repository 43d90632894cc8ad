// Downloads of a firmware upgrade that fail, hang, or are there when the host goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <vector>

#include "firmware_server.h"
#include "host_process.h"
#include "http_client.h"
#include "silent_server.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kNoList[] = "<?xml version=\"1.0\" ?><root><result>-1</result></root>\n";
constexpr char kSearched[] = "firmware search failed: ";

// Without any limit of its own.
constexpr char kPatientCommand[] = "wget -q -O \"$savefn\" \"$url\"";

class DownloadTest : public ::testing::Test {
 protected:
  ~DownloadTest() override { unsetenv("http_proxy"); }

  // Starts the host with a download command (empty: the delivered one) and the server that it
  // fetches from.
  void StartHost(const std::string& proxy, const std::string& command,
                 const std::vector<std::string>& nodes = {}) {
    setenv("http_proxy", proxy.c_str(), 1);
    std::vector<std::string> lines = nodes;
    if (!command.empty()) {
      lines.push_back("/fwupgradeinfo/urlgetcmd = " + command);
    }
    host_.UseProfile(ProfileWith(lines));
    ASSERT_TRUE(host_.Start());
  }

  std::string Act(char action) const {
    return Post(host_.port(), std::string("/firmware/") + action, "").body;
  }

  std::vector<std::string> Events() const {
    std::vector<std::string> texts;
    const auto device = nlohmann::json::parse(Get(host_.port(), "/device").body);
    for (const auto& event : device["events"]) {
      texts.push_back(event["text"]);
    }
    return texts;
  }

  HostProcess host_;
};

// The delivered command, which no other host's profile replaces.
std::string DeliveredCommand() {
  const std::string profile = ProfileWith({});
  const std::string mark = "/fwupgradeinfo/urlgetcmd = ";
  const size_t begin = profile.find(mark) + mark.size();
  return profile.substr(begin, profile.find('\n', begin) - begin);
}

// The same with another number in the place of a limit.
std::string DeliveredCommandWith(const std::string& limit, const std::string& other) {
  std::string command = DeliveredCommand();
  const size_t at = command.find(limit);
  EXPECT_NE(at, std::string::npos) << command;
  return at == std::string::npos ? command : command.replace(at, limit.size(), other);
}

// The processes whose command lines hold a text.
size_t CountProcesses(const std::string& text) {
  size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    count += ReadFile(entry.path() / "cmdline").find(text) != std::string::npos ? 1 : 0;
  }
  return count;
}

TEST_F(DownloadTest, AStopEndsASearchAtASilentServer) {
  for (const int signal_number : {SIGTERM, SIGINT, SIGHUP}) {
    SilentServer server;
    HostProcess host;
    setenv("http_proxy", server.Proxy().c_str(), 1);
    host.UseProfile(ProfileWith({std::string("/fwupgradeinfo/urlgetcmd = ") + kPatientCommand}));
    ASSERT_TRUE(host.Start());
    Connection client(host.port());
    ASSERT_TRUE(client.Send(PostRequest("/firmware/1", "")));
    ASSERT_TRUE(server.WaitForClient());
    EXPECT_EQ(host.End(signal_number), 0);
    EXPECT_TRUE(server.WaitForClientToLeave());
    EXPECT_EQ(CountProcesses(host.dir().path()), 0U);
    EXPECT_THAT(host.Output(),
                HasSubstr("event firmware search failed: the download command failed: killed by "
                          "signal 15 as the host stopped\n"));
  }
}

TEST_F(DownloadTest, AStopEndsADownloadThatDoesNotListen) {
  SilentServer server;
  StartHost(server.Proxy(), std::string("trap '' TERM; ") + kPatientCommand);
  Connection client(host_.port());
  ASSERT_TRUE(client.Send(PostRequest("/firmware/1", "")));
  ASSERT_TRUE(server.WaitForClient());
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_TRUE(server.WaitForClientToLeave());
  EXPECT_EQ(CountProcesses(host_.dir().path()), 0U);
}

TEST_F(DownloadTest, AStopEndsADownloadInTheBackground) {
  FirmwareServer server;
  server.Put("/DR2400/DR2400.xml", ListWith("/fw/DR2400_FW1.0.8.bin", "/fw/notes.xml"));
  server.Put("/fw/notes.xml", "<notes>faster</notes>\n");
  server.Put("/fw/DR2400_FW1.0.8.bin", MakeImage(100000));
  ASSERT_TRUE(server.Start(1000));
  StartHost(server.Proxy(), "");
  EXPECT_THAT(Act('1'), HasSubstr("<result>2</result>"));
  EXPECT_THAT(Act('2'), HasSubstr("<result>3</result>"));
  const std::string image = host_.dir().File("upld.bin");
  ASSERT_TRUE(WaitFor([&image] { return CountProcesses(image) > 0; }));
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(CountProcesses(image), 0U);
}

// The limits of the delivered command end a download that nobody else ends. These tests have
// shorter ones of the same kind.
TEST_F(DownloadTest, ASilentDownloadDoesNotOutliveAKilledHostForLong) {
  SilentServer server;
  StartHost(server.Proxy(), DeliveredCommandWith(" -T 10 ", " -T 3 "));
  Connection client(host_.port());
  ASSERT_TRUE(client.Send(PostRequest("/firmware/1", "")));
  ASSERT_TRUE(server.WaitForClient());
  EXPECT_GT(CountProcesses(host_.dir().File("DR2400.xml")), 0U);
  EXPECT_EQ(host_.End(SIGKILL), 128 + SIGKILL);
  EXPECT_TRUE(server.WaitForClientToLeave());
}

TEST_F(DownloadTest, ASilentServerIsGivenUp) {
  SilentServer server;
  StartHost(server.Proxy(), DeliveredCommandWith(" -T 10 ", " -T 1 "));
  EXPECT_EQ(Act('1'), kNoList);
  EXPECT_THAT(Events(),
              ElementsAre(std::string(kSearched) + "the download command failed: exit status 4"));
}

TEST_F(DownloadTest, AServerThatDripsIsGivenUp) {
  SilentServer server;
  StartHost(server.Proxy(), DeliveredCommandWith(" 300 ", " 1 "));
  Connection client(host_.port());
  ASSERT_TRUE(client.Send(PostRequest("/firmware/1", "")));
  ASSERT_TRUE(server.WaitForClient());
  server.Drip();
  EXPECT_EQ(client.Read().body, kNoList);
  EXPECT_THAT(Events(),
              ElementsAre(std::string(kSearched) + "the download command failed: exit status 124"));
}

TEST_F(DownloadTest, AFailedSearchTellsWhy) {
  FirmwareServer server;
  ASSERT_TRUE(server.Start(0));
  StartHost(server.Proxy(), "");
  EXPECT_EQ(Act('1'), kNoList);
  std::vector<std::string> events = {std::string(kSearched) +
                                     "the download command failed: exit status 8"};
  EXPECT_EQ(Events(), events) << "the server has no list";

  // Only a search searches.
  EXPECT_EQ(Act('1'), kNoList);
  EXPECT_EQ(Act('9'), kNoList);
  EXPECT_EQ(Events(), events);

  server.Put("/DR2400/DR2400.xml", "no list at all\n");
  Act('0');
  EXPECT_EQ(Act('1'), kNoList);
  events.push_back(std::string(kSearched) + "the list is not valid");
  EXPECT_EQ(Events(), events);
  EXPECT_THAT(host_.Output(), HasSubstr("event firmware search failed: the list is not valid\n"));
}

TEST_F(DownloadTest, ASearchThatFindsNothingHasNotFailed) {
  FirmwareServer server;
  server.Put("/DR2400/DR2400.xml", ListWith("/fw/DR2400_FW1.0.2_0101.bin", "/fw/notes.xml"));
  ASSERT_TRUE(server.Start(0));
  StartHost(server.Proxy(), "");
  EXPECT_THAT(Act('1'), HasSubstr("<result>1</result>"));
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(DownloadTest, AServerThatIsNotThere) {
  StartHost("http://127.0.0.1:1", "");
  EXPECT_EQ(Act('1'), kNoList);
  EXPECT_THAT(Events(),
              ElementsAre(std::string(kSearched) + "the download command failed: exit status 4"));
}

TEST_F(DownloadTest, ACommandThatIsNotThere) {
  StartHost("http://127.0.0.1:1", "no-such-program \"$savefn\" \"$url\"");
  EXPECT_EQ(Act('1'), kNoList);
  EXPECT_THAT(Events(), ElementsAre(std::string(kSearched) + "the download command failed: exit "
                                                             "status 127 (not found)"));
}

TEST_F(DownloadTest, ACommandThatIsTooLong) {
  std::string command = "wget -O \"$savefn\"";
  for (int i = 0; i < 50; ++i) {
    command += "$url";
  }
  StartHost("http://127.0.0.1:1", command,
            {"/fwupgradeinfo/currfwfilename = " + std::string(60, 'M') + "_FW1.0.bin"});
  EXPECT_EQ(Act('1'), kNoList);
  EXPECT_THAT(Events(), ElementsAre(std::string(kSearched) + "the download command is too long"));
}

}  // namespace
