// The command line: errors, exit codes, queries, factory settings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"
#include "preload.h"

namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

// The arguments of a host that would serve in `dir`.
std::vector<std::string> Serving(const TempDir& dir, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments = {
      "--store",      dir.File("store.db"), "--temp-dir", dir.path(),
      "--script-dir", dir.path(),           "--port",     "0"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

void ExpectFailure(const std::vector<std::string>& arguments, int exit_code,
                   const std::string& reason) {
  const CommandResult result = RunKiohost(arguments);
  EXPECT_EQ(result.exit_code, exit_code) << result.errors;
  EXPECT_THAT(result.errors, StartsWith("kiohost: "));
  EXPECT_THAT(result.errors, HasSubstr(reason));
  EXPECT_EQ(result.output, "");
}

TEST(CommandLineTest, HelpAndVersion) {
  const CommandResult help = RunKiohost({"--help"});
  EXPECT_EQ(help.exit_code, 0);
  EXPECT_THAT(help.output, HasSubstr("--factory-reset"));
  const CommandResult version = RunKiohost({"--version"});
  EXPECT_EQ(version.exit_code, 0);
  EXPECT_THAT(version.output,
              MatchesRegex("kiohost, libkioapp [^ ]+, settings document format 1\\.1\n"));
}

TEST(CommandLineTest, AMistakeIsExplained) {
  ExpectFailure({"--prot", "80"}, 2, "--prot: unknown option");
  ExpectFailure({"--port", "80x"}, 2, "\"80x\"");
  ExpectFailure({"serve"}, 2, "\"serve\"");
  ExpectFailure({"a\nkiohost: b\x1b"}, 2, R"("a\nkiohost: b\x1b")");
}

TEST(CommandLineTest, AStoreThatCannotBeUsedIsNamed) {
  const TempDir dir;
  ExpectFailure({"--store", dir.File("none/store.db")}, 3, "none/store.db");
  ExpectFailure({"--store", dir.path()}, 3, dir.path());
  WriteFile(dir.File("text"), std::string(5000, 'x'));
  ExpectFailure({"--store", dir.File("text")}, 3, "not a database");
  EXPECT_EQ(ReadFile(dir.File("text")), std::string(5000, 'x'));
  ExpectFailure({"--store", dir.File("none.db"), "--dump"}, 3, "none.db");
  EXPECT_FALSE(std::filesystem::exists(dir.File("none.db")));
}

TEST(CommandLineTest, WithoutTheListOfVariablesNothingIsServed) {
  const TempDir dir;
  const char* const program = getenv("KIO_E2E_HOST");
  const std::string before = program != nullptr ? program : "";
  std::filesystem::copy_file(HostProgram(), dir.File("kiohost"));
  WriteFile(dir.File("one.profile"), "/sys/friendlyname = Den\n");
  setenv("KIO_E2E_HOST", dir.File("kiohost").c_str(), 1);
  ExpectFailure(Serving(dir, {"--profile", dir.File("one.profile")}), 5,
                "cannot read " + dir.File("variables.json"));
  if (program != nullptr) {
    setenv("KIO_E2E_HOST", before.c_str(), 1);
  } else {
    unsetenv("KIO_E2E_HOST");
  }
}

TEST(CommandLineTest, ABrokenProfileLineIsNamedAndTheStoreIsAsBefore) {
  const TempDir dir;
  const std::string good = dir.File("good.profile");
  const std::string broken = dir.File("broken.profile");
  WriteFile(good, "/sys/a = 1\n");
  WriteFile(broken, "# one\n/sys/a = 2\nthis is no node\n");
  const std::vector<std::string> dump = {"--store", dir.File("store.db"), "--dump"};
  EXPECT_EQ(
      RunKiohost({"--store", dir.File("store.db"), "--profile", good, "--factory-reset", "--dump"})
          .output,
      "/sys/a = 1\n");
  ExpectFailure({"--store", dir.File("store.db"), "--profile", broken, "--factory-reset"}, 4,
                broken + ": line 3: ");
  ExpectFailure({"--store", dir.File("store.db"), "--profile", dir.File("none"), "--factory-reset"},
                4, dir.File("none"));
  EXPECT_EQ(RunKiohost(dump).output, "/sys/a = 1\n");
}

TEST(CommandLineTest, AProfileWithAnInstanceBeyondTheLibrarysReachIsRefused) {
  const TempDir dir;
  WriteFile(dir.File("p"),
            "/sys/a = 1\n/lan/wireless5:1/accesscontrol/acrule:2000000000/mac = x\n");
  ExpectFailure({"--store", dir.File("s.db"), "--profile", dir.File("p"), "--factory-reset"}, 4,
                dir.File("p") + ": line 2: ");
}

TEST(CommandLineTest, DirectoriesThatCannotBeUsedAreNamed) {
  const TempDir dir;
  ExpectFailure(Serving(dir, {"--temp-dir", dir.File("none")}), 5, "does not exist");
  ExpectFailure(Serving(dir, {"--script-dir", dir.File("none")}), 5, "does not exist");
  ExpectFailure(Serving(dir, {"--state-dir", dir.File("none")}), 5, "does not exist");
  const std::string long_name = dir.File(std::string(60, 'd'));
  dir.MakeDirectory(std::string(60, 'd'));
  ExpectFailure(Serving(dir, {"--temp-dir", long_name}), 5, "longer than 63");
  ExpectFailure(Serving(dir, {"--script-dir", long_name}), 5, "longer than 63");
  const std::string shell = dir.File("a;b");
  dir.MakeDirectory("a;b");
  ExpectFailure(Serving(dir, {"--temp-dir", shell}), 5, "character");
}

TEST(CommandLineTest, DirectoriesThatOthersCanWriteToAreRefused) {
  const TempDir dir;
  const std::string shared = dir.MakeDirectory("shared");
  constexpr auto kSticky = std::filesystem::perms::sticky_bit;
  constexpr auto kOwner = std::filesystem::perms::owner_all;
  for (const auto others :
       {std::filesystem::perms::group_write, std::filesystem::perms::others_write,
        kSticky | std::filesystem::perms::group_all | std::filesystem::perms::others_all}) {
    std::filesystem::permissions(shared, kOwner | others);
    ExpectFailure(Serving(dir, {"--temp-dir", shared}), 5,
                  "the temporary directory \"" + shared + "\" can be written by other users");
    ExpectFailure(Serving(dir, {"--state-dir", shared}), 5,
                  "the state directory \"" + shared + "\" can be written by other users");
  }
  // The result document could be anywhere by now, had it been written.
  EXPECT_TRUE(std::filesystem::is_empty(shared));
  ExpectFailure(Serving(dir, {"--temp-dir", "/tmp"}), 5, "--shared-temp-dir");
  HostProcess host;
  EXPECT_TRUE(host.Start({"--temp-dir", shared, "--state-dir", shared, "--shared-temp-dir"}));
  EXPECT_EQ(Post(host.port(), "/settings", FactoryDocument()).status, 200);
}

TEST(CommandLineTest, APortInUseIsSaid) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const TempDir dir;
  ExpectFailure(Serving(dir, {"--port", std::to_string(host.port())}), 6, "Address already in use");
}

TEST(CommandLineTest, ASystemWithoutAThreadIsSaid) {
  const TempDir dir;
  const Preload no_thread(KIO_NO_THREAD, "KIO_TEST_NONE", "");
  ExpectFailure(Serving(dir), 6, "the thread of the sockets could not be started: Resource");
}

TEST(CommandLineTest, AnAddressThatIsNoneIsSaid) {
  const TempDir dir;
  ExpectFailure(Serving(dir, {"--listen", "router.example"}), 6, "not a numeric address");
}

TEST(CommandLineTest, ThePortIsTheStoresUnlessGiven) {
  HostProcess other;
  ASSERT_TRUE(other.Start());
  const TempDir dir;
  const std::vector<std::string> arguments = {
      "--store",  dir.File("store.db"), "--temp-dir", dir.path(),   "--script-dir",
      dir.path(), "--factory-reset",    "--profile",  dir.File("p")};
  WriteFile(dir.File("p"), ProfileWith({"/zentrolinks/rsshttpport = none"}));
  ExpectFailure(arguments, 6, "/zentrolinks/rsshttpport holds \"none\"");
  const std::string taken = std::to_string(other.port());
  WriteFile(dir.File("p"), ProfileWith({"/zentrolinks/rsshttpport = " + taken}));
  ExpectFailure(arguments, 6, "cannot listen on 127.0.0.1:" + taken);
}

TEST(CommandLineTest, AFactoryResetBringsBackTheProfile) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string factory = host.Dump();
  EXPECT_EQ(Post(host.port(), "/settings", With(FactoryDocument(), "DeviceName", "Changed")).status,
            200);
  EXPECT_EQ(host.End(SIGINT), 0);
  EXPECT_NE(host.Dump(), factory);
  ASSERT_TRUE(host.Start({"--factory-reset"}));
  EXPECT_EQ(host.Dump(), factory);
}

TEST(CommandLineTest, QueriesReadTheStore) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(host.Node("/SYS/FriendlyName"), "Home router");
  EXPECT_EQ(host.Node("/lan/wireless5:1/accesscontrol/acrule#"), "1");
  EXPECT_EQ(host.Node("/lan/wireless2.4:1/accesscontrol/acrule#"), "(absent)");
  EXPECT_EQ(RunKiohost({"--store", host.dir().File("store.db"), "--get", "/none"}).exit_code, 1);
  EXPECT_EQ(RunKiohost({"--store", host.dir().File("store.db"), "--dump=/safetyvyr"}).output,
            "/safetyvyr/safetynotifyenbl = 0\n/safetyvyr/safetyvyrenbl = 1\n"
            "/safetyvyr/toolrecommendenbl = 0\n/safetyvyr/urldetectenbl = 1\n");
}

TEST(CommandLineTest, OutputThatCannotBeWrittenIsAFailure) {
  const TempDir dir;
  const std::string errors = dir.File("errors");
  const std::string arguments = " --factory-reset --store " + dir.File("s.db") + " >/dev/full 2>";
  for (const char* const query : {"--dump", "--get /sys/friendlyname", "--help", "--version"}) {
    std::string command = HostProgram();
    command.append(" ").append(query).append(arguments).append(errors);
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status)) << query;
    EXPECT_EQ(WEXITSTATUS(status), 7) << query;
    EXPECT_EQ(ReadFile(errors), "kiohost: cannot write the output: No space left on device\n");
  }
}

TEST(CommandLineTest, ADumpIsAProfile) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const TempDir dir;
  const std::string dump = host.Dump();
  WriteFile(dir.File("p"), dump);
  EXPECT_EQ(RunKiohost({"--store", dir.File("s.db"), "--profile", dir.File("p"), "--factory-reset",
                        "--dump"})
                .output,
            dump);
}

// Puts the working directory back at the end of its scope.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) { std::filesystem::current_path(path); }
  ~WorkingDirectory() { std::filesystem::current_path(before_); }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  const std::filesystem::path before_ = std::filesystem::current_path();
};

TEST(CommandLineTest, RelativeDirectoriesAreStoredForHostsThatAreStartedElsewhere) {
  HostProcess host;
  host.dir().MakeDirectory("t");
  {
    const WorkingDirectory here(host.dir().path());
    ASSERT_TRUE(host.Start({"--temp-dir", "t", "--script-dir", "scripts"}));
  }
  EXPECT_EQ(host.Node("/zentrolinks/tempdirecory"), host.dir().File("t"));
  EXPECT_EQ(host.Node("/zentrolinks/scriptdirecory"), host.dir().File("scripts"));
  EXPECT_EQ(Post(host.port(), "/settings", FactoryDocument()).status, 200);
  EXPECT_TRUE(std::filesystem::exists(host.dir().File("t/rssset_result.xml")));
}

TEST(CommandLineTest, ALongTemporaryDirectoryIsWarnedOf) {
  HostProcess host;
  const std::string longer = host.dir().File("directory");
  host.dir().MakeDirectory("directory");
  ASSERT_TRUE(host.Start({"--temp-dir", longer}));
  // Of the 74 characters that both have.
  EXPECT_THAT(ReadFile(host.dir().File("err")),
              HasSubstr("of more than " + std::to_string(74 - longer.size()) + " characters"));
}

}  // namespace
