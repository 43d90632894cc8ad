// One host at a time has a store and a temporary directory.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"
#include "preload.h"

namespace {

using ::testing::HasSubstr;

std::string InUseBy(const HostProcess& host) {
  return "is in use by process " + std::to_string(host.pid()) + "\n";
}

void ExpectInUse(const CommandResult& result, const HostProcess& host) {
  EXPECT_EQ(result.exit_code, 5) << result.errors;
  EXPECT_THAT(result.errors, HasSubstr(InUseBy(host)));
  EXPECT_EQ(result.output, "");
}

std::vector<std::string> ServingWith(const std::string& store, const std::string& temp_dir) {
  return {"--store", store, "--temp-dir", temp_dir, "--script-dir", temp_dir, "--port", "0"};
}

TEST(TwoHostsTest, AStoreIsServedByOne) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const TempDir other;
  ExpectInUse(RunKiohost(ServingWith(host.dir().File("store.db"), other.path())), host);
  // By another name, too.
  std::filesystem::create_symlink(host.dir().File("store.db"), other.File("link.db"));
  ExpectInUse(RunKiohost(ServingWith(other.File("link.db"), other.path())), host);
  EXPECT_EQ(Get(host.port(), "/device").status, 200);
}

TEST(TwoHostsTest, ATemporaryDirectoryIsUsedByOne) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const TempDir other;
  ExpectInUse(RunKiohost(ServingWith(other.File("store.db"), host.dir().path())), host);
  EXPECT_EQ(Get(host.port(), "/device").status, 200);
}

TEST(TwoHostsTest, AServedStoreIsNotResetButRead) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings", With(FactoryDocument(), "DeviceName", "Kept")).status,
            200);
  const std::string store = host.dir().File("store.db");
  const TempDir other;
  std::vector<std::string> serving = ServingWith(store, other.path());
  serving.emplace_back("--factory-reset");
  ExpectInUse(RunKiohost(serving), host);
  ExpectInUse(RunKiohost({"--store", store, "--factory-reset", "--dump"}), host);
  ExpectInUse(RunKiohost({"--store", store, "--factory-reset", "--get", "/sys/friendlyname"}),
              host);
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Kept");
  EXPECT_EQ(RunKiohost({"--store", store, "--dump=/sys/friendlyname"}).output,
            "/sys/friendlyname = Kept\n");
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_EQ(RunKiohost({"--store", store, "--factory-reset", "--get", "/sys/friendlyname"}).output,
            "Home router\n");
}

// The locks go with the process, also when a script of its own outlives it.
TEST(TwoHostsTest, AHostThatWasKilledIsInNobodysWay) {
  HostProcess host;
  host.UseScript("uplink.sh", "#!/bin/sh\necho $$ >\"$KIOHOST_STATE_DIR/script\"\nexec sleep 30\n");
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings",
                 With(FactoryDocument(), "UpLinkConnection", StaticUplink("192.0.2.1")))
                .status,
            200);
  const std::string script = host.dir().File("script");
  ASSERT_TRUE(WaitFor([&script] { return ReadFile(script).ends_with("\n"); }));
  EXPECT_EQ(host.End(SIGKILL), 128 + SIGKILL);
  const pid_t sleeping = std::stoi(ReadFile(script));
  EXPECT_EQ(kill(sleeping, 0), 0) << "the script did not outlive the host";
  host.UseScript("uplink.sh", "#!/bin/sh\n");
  EXPECT_TRUE(host.Start()) << host.Errors();
  kill(sleeping, SIGKILL);
}

// The defaults of a user of the test's own.
class DefaultDirectoryTest : public ::testing::Test {
 protected:
  DefaultDirectoryTest() : preload_(KIO_FAKE_USER, "KIO_TEST_USER", user_) {
    std::filesystem::remove_all(directory_);
  }
  ~DefaultDirectoryTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }

  // The arguments of a host that takes the default.
  std::vector<std::string> Defaults() const {
    return {"--store", dir_.File("store.db"), "--script-dir", dir_.path(), "--port", "0"};
  }

  const TempDir dir_;
  const std::string user_ = std::to_string(1000000 + getpid());
  const std::string directory_ = "/tmp/kiohost-" + user_;
  const Preload preload_;
};

TEST_F(DefaultDirectoryTest, IsMadeForTheUserAloneAndUsedByOne) {
  HostProcess first;
  first.UseTempDirOfTheStore();
  ASSERT_TRUE(first.Start()) << first.Errors();
  EXPECT_EQ(first.Node("/zentrolinks/tempdirecory"), directory_);
  EXPECT_EQ(std::filesystem::status(directory_).permissions(), std::filesystem::perms::owner_all);
  ExpectInUse(RunKiohost(Defaults()), first);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Post(first.port(), "/settings", FactoryDocument()).body, ResultDocument(0, "", 0));
  }
  EXPECT_TRUE(std::filesystem::exists(directory_ + "/rssset_result.xml"));
  EXPECT_EQ(first.End(SIGTERM), 0);
  // After a restart of the machine it is gone, and the store still names it.
  std::filesystem::remove_all(directory_);
  EXPECT_TRUE(first.Start()) << first.Errors();
}

TEST_F(DefaultDirectoryTest, TakesThePlaceOfTheFormerDefault) {
  HostProcess host;
  host.UseTempDirOfTheStore();
  host.UseProfile(ProfileWith({"/zentrolinks/tempdirecory = /tmp"}));
  ASSERT_TRUE(host.Start()) << host.Errors();
  EXPECT_THAT(host.Errors(),
              HasSubstr("the temporary directory is " + directory_ + ", no longer /tmp\n"));
  EXPECT_EQ(host.Node("/zentrolinks/tempdirecory"), directory_);
}

TEST_F(DefaultDirectoryTest, ThatIsALinkIsRefused) {
  const TempDir target;
  std::filesystem::create_directory_symlink(target.path(), directory_);
  const CommandResult result = RunKiohost(Defaults());
  EXPECT_EQ(result.exit_code, 5);
  EXPECT_THAT(result.errors, HasSubstr(directory_ + "\" is no directory; --temp-dir"));
  EXPECT_TRUE(std::filesystem::is_empty(target.path()));
}

}  // namespace
