// A firmware upgrade from the search to the partition, with a real server and real tools.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "firmware_server.h"
#include "host_clock.h"
#include "host_process.h"
#include "http_client.h"
#include "store.h"

namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr char kFile[] = "DR2400_FW1.0.8_0312.bin";

std::string Document(const std::string& elements) {
  return "<?xml version=\"1.0\" ?><root>" + elements + "</root>\n";
}

// The content of an element of a status document.
std::string ElementOf(const std::string& document, const std::string& name) {
  const size_t begin = document.find("<" + name + ">");
  const size_t end = document.find("</" + name + ">");
  return begin == std::string::npos || end == std::string::npos
             ? "(absent)"
             : document.substr(begin + name.size() + 2, end - begin - name.size() - 2);
}

// Which tools the host finds.
struct Tools {
  const char* name;
  bool busybox_wget;
  bool busybox_ps;
  bool delivered_command;
};

class FirmwareTest : public ::testing::Test {
 protected:
  // The environment is the test's own process's, which the host inherits.
  ~FirmwareTest() override {
    unsetenv("http_proxy");
    setenv("PATH", path_.c_str(), 1);
  }

  // Puts BusyBox's tools before the others.
  void UseBusyBox(const std::vector<std::string>& tools) {
    for (const std::string& tool : tools) {
      std::filesystem::create_symlink("/bin/busybox", tools_.File(tool));
    }
    setenv("PATH", (tools_.path() + ":" + path_).c_str(), 1);
  }

  // Starts the server with the image, and the host with a download command of its own unless the
  // delivered one is asked for: others on this machine may fetch firmware as well, and the list of
  // processes shows them.
  void StartBoth(const std::string& image, int bytes_per_second, const std::string& options = "",
                 const std::vector<std::string>& nodes = {}) {
    server_.Put("/DR2400/DR2400.xml",
                ListWith("/fw/" + std::string(kFile) + "?build=7", "/fw/notes.xml"));
    server_.Put("/fw/" + std::string(kFile), image);
    server_.Put("/fw/notes.xml", "<notes>faster</notes>\n");
    ASSERT_TRUE(server_.Start(bytes_per_second));
    StartHost(options, nodes);
  }

  void StartHost(const std::string& options = "", const std::vector<std::string>& nodes = {}) {
    setenv("http_proxy", server_.Proxy().c_str(), 1);
    std::string agent = "k" + std::to_string(getpid()) + "0000000";
    agent.resize(8);
    std::vector<std::string> lines;
    if (!delivered_command_) {
      lines.push_back("/fwupgradeinfo/urlgetcmd = wget -U" + agent + " -q " + options +
                      "-O \"$savefn\" \"$url\"");
    }
    lines.insert(lines.end(), nodes.begin(), nodes.end());
    host_.UseProfile(ProfileWith(lines));
    ASSERT_TRUE(held_clock_ ? clock_.Start() : host_.Start());
  }

  // The status document after an action.
  std::string Act(char action) {
    const HttpResponse answer = Post(host_.port(), std::string("/firmware/") + action, "");
    EXPECT_EQ(answer.status, 200) << answer.body;
    EXPECT_EQ(answer.Header("Content-Type"), "application/xml");
    EXPECT_EQ(Get(host_.port(), "/firmware").body, answer.body) << "the last one once more";
    return answer.body;
  }
  std::string Result(char action) { return ElementOf(Act(action), "result"); }

  // Asks for the progress until the image is there; the results on the way, each once in a row.
  std::vector<std::string> WaitForDownload() {
    std::vector<std::string> results;
    const auto is_there = [this, &results] {
      const std::string result = Result('9');
      if (results.empty() || results.back() != result) {
        results.push_back(result);
      }
      return results.back() != "3";
    };
    EXPECT_TRUE(WaitFor(is_there, std::chrono::milliseconds(50)));
    return results;
  }

  // Goes all the way to the announcement.
  void UpgradeWith(const std::string& image) {
    StartBoth(image, 0);
    ASSERT_EQ(Result('0'), "0");
    ASSERT_EQ(Result('1'), "2");
    ASSERT_EQ(Result('2'), "3");
    ASSERT_EQ(WaitForDownload().back(), "4");
    ASSERT_EQ(Result('4'), "5");
  }

  std::vector<std::string> Events() const {
    std::vector<std::string> texts;
    const auto device = nlohmann::json::parse(Get(host_.port(), "/device").body);
    for (const auto& event : device["events"]) {
      texts.push_back(event["text"]);
    }
    return texts;
  }

  std::string Partition() const { return host_.dir().File("firmware.partition"); }

  const std::string path_ = getenv("PATH");
  TempDir tools_;
  FirmwareServer server_;
  HostProcess host_;
  HostClock clock_ = HostClock(&host_);
  bool delivered_command_ = false;
  bool held_clock_ = false;
};

// The progress check takes the order of process ids for that of time, so none may wrap around
// meanwhile: those that are left before that are used up when they are few.
void LeaveRoomForProcessIds() {
  constexpr long kRoom = 8000;
  const long most = std::stol(ReadFile("/proc/sys/kernel/pid_max"));
  pid_t child = 0;
  do {
    child = fork();
    if (child == 0) {
      _exit(0);
    }
    ASSERT_GT(child, 0);
    waitpid(child, nullptr, 0);
  } while (child > most - kRoom);
}

class UpgradeTest : public FirmwareTest, public ::testing::WithParamInterface<Tools> {};

// The image takes some three seconds to come, during which the progress is 3.
TEST_P(UpgradeTest, FromTheSearchToThePartition) {
  if (GetParam().busybox_wget) {
    UseBusyBox({"wget"});
  }
  if (GetParam().busybox_ps) {
    UseBusyBox({"ps", "grep"});
  }
  delivered_command_ = GetParam().delivered_command;
  const std::string image = MakeImage(600000);
  ASSERT_EQ(image.size(), 600064U);
  LeaveRoomForProcessIds();
  StartBoth(image, 200000);

  EXPECT_EQ(Get(host_.port(), "/firmware").status, 404);
  EXPECT_EQ(Act('0'), Document("<result>0</result>"));
  EXPECT_EQ(Act('1'), Document("<fwsize>0</fwsize>\n<fwver>1.0.8</fwver>\n<result>2</result>"));
  EXPECT_EQ(host_.Node("/fwupgradeinfo/newfw/fileurl"),
            "http://firmware.kioapp.example/fw/" + std::string(kFile) + "?build=7");
  EXPECT_EQ(host_.Node("/fwupgradeinfo/newfw/notesurl"),
            "http://firmware.kioapp.example/fw/notes.xml");

  EXPECT_EQ(Result('2'), "3");
  EXPECT_EQ(WaitForDownload(), (std::vector<std::string>{"3", "4"}));
  EXPECT_EQ(ReadFile(host_.dir().File("upld.bin")), image);
  EXPECT_EQ(ReadFile(host_.dir().File("rssfwnotes.xml")), "<notes>faster</notes>\n");

  EXPECT_EQ(Act('4'), Document("<time>50</time>\n<fwsize>586.00 K</fwsize>\n<fwver>1.0.8</fwver>\n"
                               "<result>5</result>"));
  ASSERT_TRUE(host_.WaitForOutput("event firmware"));
  EXPECT_THAT(host_.Output(), HasSubstr("action FwUpgrade: "));
  EXPECT_EQ(Events(), (std::vector<std::string>{"firmware written: " + std::string(kFile) +
                                                ", 600064 bytes"}));
  EXPECT_EQ(ReadFile(Partition()), image);

  // The router runs the new firmware now.
  EXPECT_EQ(host_.Node("/fwupgradeinfo/currfwfilename"), kFile);
  EXPECT_EQ(Act('0'), Document("<result>0</result>"));
  EXPECT_EQ(host_.Node("/fwupgradeinfo/newfw/fileurl"), "(absent)");
  EXPECT_FALSE(std::filesystem::exists(host_.dir().File("upld.bin")));
  EXPECT_EQ(Act('1'), Document("<result>1</result>"));
  EXPECT_EQ(host_.End(SIGTERM), 0);
}

INSTANTIATE_TEST_SUITE_P(Tools, UpgradeTest,
                         ::testing::Values(Tools{"GnuWgetProcpsPs", false, false, false},
                                           Tools{"GnuWgetBusyBoxPs", false, true, false},
                                           Tools{"BusyBoxWgetProcpsPs", true, false, false},
                                           Tools{"BusyBoxWgetBusyBoxPs", true, true, false},
                                           Tools{"DeliveredCommandProcpsPs", false, false, true},
                                           Tools{"DeliveredCommandBusyBoxPs", false, true, true}),
                         [](const auto& tools) { return std::string(tools.param.name); });

TEST_F(FirmwareTest, BadHeaderIsRefused) {
  std::string image = MakeImage(5000);
  image[40] = static_cast<char>(image[40] ^ 1);
  UpgradeWith(image);
  ASSERT_TRUE(host_.WaitForOutput("event firmware"));
  EXPECT_EQ(Events(), (std::vector<std::string>{"firmware refused: *** Warning: \"" +
                                                host_.dir().File("upld.bin") +
                                                "\" has bad header checksum!"}));
  EXPECT_FALSE(std::filesystem::exists(Partition()));
  EXPECT_EQ(host_.Node("/fwupgradeinfo/currfwfilename"), "DR2400_FW1.0.2_0101.bin");
}

TEST_F(FirmwareTest, BadDataIsRefusedAndThePartitionStays) {
  std::string image = MakeImage(5000);
  image[4000] = static_cast<char>(image[4000] ^ 0x80);
  WriteFile(Partition(), "the firmware before");
  UpgradeWith(image);
  ASSERT_TRUE(host_.WaitForOutput("event firmware"));
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"firmware refused: *** Warning: \"" +
                                      host_.dir().File("upld.bin") + "\" has corrupted data!"}));
  EXPECT_EQ(ReadFile(Partition()), "the firmware before");
}

TEST_F(FirmwareTest, AStoreThatAnotherWritesKeepsTheNameOfTheFirmwareBefore) {
  const std::string image = MakeImage(5000);
  held_clock_ = true;  // the host waits in vain for the store
  StartBoth(image, 0);
  Act('0');
  Act('1');
  Act('2');
  ASSERT_EQ(WaitForDownload().back(), "4");
  kiohost::Store other;
  ASSERT_TRUE(other.Open(host_.dir().File("store.db"), kiohost::Store::Mode::kExisting).ok());
  ASSERT_TRUE(other.Begin().ok());
  EXPECT_EQ(Result('4'), "5");
  ASSERT_TRUE(host_.WaitForOutput("event firmware"));
  other.Rollback();
  EXPECT_EQ(Events(),
            (std::vector<std::string>{
                "firmware written: " + std::string(kFile) +
                ", 5064 bytes; the store could not be written and names the one before"}));
  EXPECT_EQ(ReadFile(Partition()), image);
  EXPECT_EQ(host_.Node("/fwupgradeinfo/currfwfilename"), "DR2400_FW1.0.2_0101.bin");
}

TEST_F(FirmwareTest, ImageCutAfterTheDownloadIsRefused) {
  StartBoth(MakeImage(5000), 0);
  Act('0');
  Act('1');
  Act('2');
  ASSERT_EQ(WaitForDownload().back(), "4");
  std::filesystem::resize_file(host_.dir().File("upld.bin"), 10);
  EXPECT_EQ(ElementOf(Act('4'), "fwsize"), "10");
  ASSERT_TRUE(host_.WaitForOutput("event firmware"));
  EXPECT_EQ(Events(),
            (std::vector<std::string>{"firmware refused: Bad size: \"" +
                                      host_.dir().File("upld.bin") + "\" is no valid image"}));
}

TEST_F(FirmwareTest, ServerWithoutAListGivesMinusOne) {
  ASSERT_TRUE(server_.Start(0));
  StartHost();
  EXPECT_EQ(Act('1'), Document("<result>-1</result>"));
  EXPECT_EQ(Act('1'), Document("<result>-1</result>"));
  EXPECT_EQ(Act('0'), Document("<result>0</result>"));
}

// The list as someone between the server and the router may have changed it.
class HostileListTest : public FirmwareTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(HostileListTest, RunsNothing) {
  ASSERT_TRUE(server_.Start(0));
  StartHost("-t 1 ");
  const std::string touched = host_.dir().File("touched");
  std::string text = GetParam();
  // The name of the file may have an X itself.
  for (size_t at = text.find('X'); at != std::string::npos; at = text.find('X', at)) {
    text.replace(at, 1, touched);
    at += touched.size();
  }
  server_.Put("/DR2400/DR2400.xml", ListWith("/" + text, "/" + text));
  EXPECT_EQ(Result('0'), "0");
  EXPECT_EQ(Result('1'), "2");
  EXPECT_EQ(Result('2'), "3");
  EXPECT_EQ(WaitForDownload().back(), "4");
  EXPECT_EQ(Result('4'), "5");
  EXPECT_FALSE(std::filesystem::exists(touched)) << text;
  ASSERT_TRUE(host_.WaitForOutput("event firmware"));
  EXPECT_THAT(Events(), Contains(StartsWith("firmware refused: ")));
  EXPECT_EQ(host_.End(SIGTERM), 0);
}

INSTANTIATE_TEST_SUITE_P(Texts, HostileListTest,
                         ::testing::Values("\"; touch X; \"", "$(touch X)", "`touch X`",
                                           "\\\"; touch X; \\\"", "\n touch X\n", "'; touch X; '",
                                           "\" & touch X & \"", "\\$(touch X)\\`touch X\\`"));

TEST_F(FirmwareTest, LongAddressIsCut) {
  ASSERT_TRUE(server_.Start(0));
  StartHost("-t 1 ");
  server_.Put("/DR2400/DR2400.xml", ListWith("/" + std::string(3500, 'u'), "/n"));
  EXPECT_EQ(Result('1'), "2");
  EXPECT_EQ(host_.Node("/fwupgradeinfo/newfw/fileurl").size(), 127U);
  server_.Put("/DR2400/DR2400.xml", ListWith("/" + std::string(10000, 'u'), "/n"));
  EXPECT_EQ(Result('0'), "0");
  EXPECT_EQ(Result('1'), "-1") << "more than 4096 bytes: the list has no end";
}

TEST_F(FirmwareTest, RequestsThatAreNoActions) {
  ASSERT_TRUE(server_.Start(0));
  StartHost();
  EXPECT_EQ(Get(host_.port(), "/firmware").status, 404) << "before the first action";
  EXPECT_EQ(Post(host_.port(), "/firmware/10", "").status, 400);
  EXPECT_EQ(Post(host_.port(), "/firmware/", "").status, 404);
  EXPECT_EQ(Get(host_.port(), "/firmware/1").status, 405);
  EXPECT_EQ(Post(host_.port(), "/firmware", "").status, 405);
  // Unknown to the library: the document of the fault is replaced at once.
  for (const char* const action : {"3", "x", "%27", "%22", "%60", "%24", "%0A", "%FF", "%3C"}) {
    const HttpResponse answer = Post(host_.port(), std::string("/firmware/") + action, "");
    EXPECT_EQ(answer.body, Document("<result>0</result>")) << action;
  }
  EXPECT_THAT(Events(), IsEmpty());
}

// With real waits the router is away while it writes.
TEST_F(FirmwareTest, WritesTheImageWhenTheHostStops) {
  UpgradeWith(MakeImage(5000));
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_THAT(host_.Output(), HasSubstr("event firmware written: "));
  EXPECT_TRUE(std::filesystem::exists(Partition()));
}

}  // namespace
