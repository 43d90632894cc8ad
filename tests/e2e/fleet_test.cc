// Many routers at once: what is each one's own, how they end, and that nothing is left.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "host_process.h"
#include "http_client.h"

namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A kiofleet that is killed, if it still runs, when it goes out of scope.
class FleetProcess {
 public:
  explicit FleetProcess(std::vector<std::string> arguments) {
    const std::string program = std::filesystem::path(HostProgram()).parent_path() / "kiofleet";
    arguments.insert(arguments.begin(), program);
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
      argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
      constexpr mode_t kMode = 0600;
      dup2(open(dir_.File("out").c_str(), O_WRONLY | O_CREAT, kMode), STDOUT_FILENO);
      dup2(open(dir_.File("err").c_str(), O_WRONLY | O_CREAT, kMode), STDERR_FILENO);
      signal(SIGHUP, SIG_DFL);  // these tests may have been started to outlive their terminal
      execv(argv[0], argv.data());
      _exit(127);
    }
  }
  ~FleetProcess() {
    if (pid_ > 0) {
      End(SIGKILL);
    }
  }
  FleetProcess(const FleetProcess&) = delete;
  FleetProcess& operator=(const FleetProcess&) = delete;

  // The routers, when they serve.
  json Table() const {
    WaitFor([this] { return ReadFile(dir_.File("out")).ends_with("]\n"); });
    return json::parse(ReadFile(dir_.File("out")), nullptr, /*allow_exceptions=*/false);
  }

  std::string Output() const { return ReadFile(dir_.File("out")); }
  std::string Errors() const { return ReadFile(dir_.File("err")); }

  int End(int signal_number) {
    kill(pid_, signal_number);
    return WaitForEnd();
  }

  // The exit code; 128 and the number of the signal that ended it.
  int WaitForEnd() {
    int status = 0;
    if (!WaitFor([&] { return waitpid(pid_, &status, WNOHANG) != 0; })) {
      kill(pid_, SIGKILL);
      waitpid(pid_, &status, 0);
    }
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

 private:
  TempDir dir_;
  pid_t pid_ = -1;
};

int PortOf(const json& router, const char* member = "url") {
  const std::string url = router[member];
  return std::stoi(url.substr(url.rfind(':') + 1));
}

std::string NodeOf(const json& router, const std::string& node) {
  const CommandResult result = RunKiohost({"--store", router["store"], "--get", node});
  return result.exit_code == 0 ? result.output : "(absent)\n";
}

// One that nobody has waited for yet has ended, too.
bool Runs(const json& router) {
  const std::string stat = ReadFile("/proc/" + router["pid"].dump() + "/stat");
  return !stat.empty() && stat.find(") Z ") == std::string::npos;
}

// KiB that the router shares with no other program; 0 for a sanitized one.
long PrivateMemory(const json& router) {
  const std::string folder = "/proc/" + router["pid"].dump();
  if (ReadFile(folder + "/maps").find("san.so") != std::string::npos) {
    return 0;
  }
  std::istringstream lines(ReadFile(folder + "/smaps_rollup"));
  long memory = 0;
  for (std::string word; lines >> word;) {
    long size = 0;
    if (word.starts_with("Private_") && lines >> size) {
      memory += size;
    }
  }
  return memory;
}

// What the table says of all routers under a name, each once.
std::set<std::string> AllOf(const json& table, const char* name) {
  std::set<std::string> texts;
  for (const json& router : table) {
    texts.insert(router[name].get<std::string>());
  }
  return texts;
}

TEST(FleetTest, EachRouterIsOneOfItsOwnAndAnEndIsTold) {
  FleetProcess fleet({"--profile", "single-band-router", "--name", "Lab", "3", "--", "--open"});
  const json table = fleet.Table();
  ASSERT_EQ(table.size(), 3) << fleet.Errors();
  EXPECT_EQ(AllOf(table, "name"), (std::set<std::string>{"Lab 1", "Lab 2", "Lab 3"}));
  for (const char* const name : {"url", "host", "mac", "store", "log"}) {
    EXPECT_EQ(AllOf(table, name).size(), 3) << name;
  }
  for (const json& router : table) {
    EXPECT_EQ(NodeOf(router, "/sys/friendlyname"), router["name"].get<std::string>() + "\n");
    EXPECT_EQ(NodeOf(router, "/fwupgradeinfo/devicemac"), router["mac"].get<std::string>() + "\n");
    EXPECT_EQ(NodeOf(router, "/sys/modelnumber"), "SB-1200\n");
    EXPECT_EQ(NodeOf(router, "/lan/wireless5:1/wirelessbssid"), "(absent)\n");
    EXPECT_EQ(Get(PortOf(router), "/vars/rss_DeviceName").body, router["name"]);
    // Its name counts in requests.
    EXPECT_EQ(Request(PortOf(router), "GET /device HTTP/1.1\r\nHost: " +
                                          router["host"].get<std::string>() + "\r\n\r\n")
                  .status,
              200);
    EXPECT_LT(PrivateMemory(router), 4096);
  }
  EXPECT_NE(NodeOf(table[0], "/lan/wireless2.4:1/wirelessbssid"),
            NodeOf(table[1], "/lan/wireless2.4:1/wirelessbssid"));

  kill(table[1]["pid"].get<pid_t>(), SIGKILL);
  EXPECT_TRUE(WaitFor([&fleet] { return !fleet.Errors().empty(); }));
  EXPECT_THAT(fleet.Errors(), HasSubstr("kiofleet: Lab 2 (process " + table[1]["pid"].dump() +
                                        ") has ended with signal 9"));
  EXPECT_EQ(Get(PortOf(table[2]), "/device").status, 200);
  EXPECT_EQ(fleet.End(SIGTERM), 1);
  EXPECT_FALSE(Runs(table[0]));
  EXPECT_FALSE(Runs(table[2]));
  const std::filesystem::path store = table[0]["store"].get<std::string>();
  EXPECT_FALSE(std::filesystem::exists(store.parent_path().parent_path()));
}

// A port that is free on the first loopback address of the test below.
std::string FreePort() {
  HostProcess host;
  EXPECT_TRUE(host.Start({"--listen", "127.77.0.1"}));
  return std::to_string(host.port());
}

// Also that of a router that is told the time by it: the others go on by their own.
TEST(FleetTest, EachRouterHasAControlPortOfItsOwn) {
  FleetProcess fleet({"--control", "0", "2", "--", "--open", "--clock=manual"});
  const json table = fleet.Table();
  ASSERT_EQ(table.size(), 2) << fleet.Errors();
  EXPECT_EQ(AllOf(table, "control").size(), 2);
  const int first = PortOf(table[0], "control");
  const int second = PortOf(table[1], "control");
  NoteControlPort(first);
  NoteControlPort(second);
  EXPECT_EQ(Post(first, "/clock", R"({"uptime":7000})").status, 200);
  EXPECT_EQ(Post(second, "/clock", R"({"uptime":9000})").status, 200);
  EXPECT_EQ(Put(second, "/store/sys/friendlyname", R"({"text":"Other"})").status, 200);
  for (const auto& [router, uptime, name] :
       {std::tuple(table[0], 7000, "Router 1"), std::tuple(table[1], 9000, "Other")}) {
    const json device = json::parse(Get(PortOf(router), "/device").body, nullptr, false);
    EXPECT_EQ(device["uptime"], uptime);
    EXPECT_EQ(device["name"], name);
  }
  EXPECT_EQ(fleet.End(SIGTERM), 0);
}

TEST(FleetTest, StoresInADirectoryAreKeptAndAddressesMayBeEachOnesOwn) {
  const TempDir dir;
  const std::string port = FreePort();
  std::vector<std::string> arguments = {"--directory", dir.File("stores"),
                                        "--addresses", "127.77.0.1",
                                        "--port",      port,
                                        "2",           "--",
                                        "--set",       "/sys/friendlyname=Kept"};
  for (const int signal_number : {SIGINT, SIGTERM}) {
    FleetProcess fleet(arguments);
    const json table = fleet.Table();
    ASSERT_EQ(table.size(), 2) << fleet.Errors();
    EXPECT_EQ(AllOf(table, "url"),
              (std::set<std::string>{"http://127.77.0.1:" + port, "http://127.77.0.2:" + port}));
    EXPECT_EQ(NodeOf(table[1], "/sys/friendlyname"), "Kept\n");
    EXPECT_EQ(fleet.End(signal_number), 0);
    EXPECT_THAT(fleet.Errors(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(dir.File("stores/router-2.db")));
    arguments.resize(7);  // without --set
  }
}

TEST(FleetTest, TheRoutersEndWithAFleetThatIsKilled) {
  FleetProcess fleet({"2"});
  const json table = fleet.Table();
  ASSERT_EQ(table.size(), 2) << fleet.Errors();
  EXPECT_EQ(fleet.End(SIGKILL), 128 + SIGKILL);
  EXPECT_TRUE(WaitFor([&table] { return !Runs(table[0]) && !Runs(table[1]); }));
  const std::filesystem::path store = table[0]["store"].get<std::string>();
  std::filesystem::remove_all(store.parent_path().parent_path());
}

struct Mistake {
  std::vector<std::string> arguments;
  int exit_code;
  const char* reason;
};

TEST(FleetTest, WhatCannotBeStartedIsTold) {
  const std::vector<Mistake> mistakes = {
      {{}, 2, "how many routers?"},
      {{"0"}, 2, "from 1 to 1000, not \"0\""},
      {{"2", "3"}, 2, "unexpected argument \"3\""},
      {{"--port", "65535", "2"}, 2, "too few ports"},
      {{"--control", "65535", "2"}, 2, "too few ports"},
      {{"--addresses", "10.0.0.1", "2"}, 2, "begins with 127."},
      {{"--addresses", "127.0.0.1", "2"}, 2, "takes a --port"},
      {{"--addresses", "127.255.255.254", "--port", "8080", "2"}, 2, "too few addresses"},
      {{"--name", "", "2"}, 2, "--name: an empty text"},
      {{"--fast", "2"}, 2, "--fast: unknown option"},
      {{"--profile", "triple-band", "2"}, 4, "cannot read the profile triple-band"},
      {{"--directory", "/proc/none", "2"}, 5, "cannot make the directory /proc/none"},
      {{"2", "--", "--prot"}, 1, "has ended with exit code 2: kiohost: --prot: unknown option"}};
  for (const Mistake& mistake : mistakes) {
    FleetProcess fleet(mistake.arguments);
    EXPECT_EQ(fleet.WaitForEnd(), mistake.exit_code) << mistake.reason;
    EXPECT_THAT(fleet.Errors(), HasSubstr(mistake.reason));
    EXPECT_THAT(fleet.Output(), IsEmpty());
  }
  FleetProcess help({"--help"});
  EXPECT_EQ(help.WaitForEnd(), 0);
  EXPECT_THAT(help.Output(), HasSubstr("--addresses FIRST"));
}

}  // namespace
