#include "options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kiohost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

Status Parse(std::vector<std::string> words, Options* options) {
  words.insert(words.begin(), "kiohost");
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  return ParseOptions(static_cast<int>(words.size()), argv.data(), options);
}

TEST(OptionsTest, ARecordIsWrittenOrPlayed) {
  Options options;
  ASSERT_TRUE(Parse({"--record", "r", "--record-secrets", "s"}, &options).ok());
  EXPECT_EQ(options.command, Options::Command::kServe);
  EXPECT_EQ(options.record, "r");
  EXPECT_EQ(options.record_secrets, "s");
  options = {};
  ASSERT_TRUE(
      Parse({"--replay", "r", "--against", "http://a", "--replay-secrets", "s"}, &options).ok());
  EXPECT_EQ(options.command, Options::Command::kReplay);
  EXPECT_EQ(options.replay, "r");
  EXPECT_EQ(options.against, "http://a");
  EXPECT_EQ(options.replay_secrets, "s");
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"--record-secrets", "s"},
                                             {"--against", "http://a"},
                                             {"--replay-secrets", "s"},
                                             {"--record", ""},
                                             {"--record", "r", "--replay", "r"}}) {
    options = {};
    EXPECT_EQ(Parse(words, &options).code(), ExitCode::kUsage) << words[0];
  }
}

TEST(OptionsTest, HaveSafeDefaults) {
  Options options;
  ASSERT_TRUE(Parse({}, &options).ok());
  EXPECT_EQ(options.command, Options::Command::kServe);
  EXPECT_EQ(options.listen, "127.0.0.1");
  EXPECT_EQ(options.port, std::nullopt);
  EXPECT_FALSE(options.real_waits);
  EXPECT_FALSE(options.factory_reset);
  EXPECT_FALSE(options.open);
  EXPECT_FALSE(options.shared_temp_dir);
  EXPECT_FALSE(options.core_dumps);
  EXPECT_EQ(options.control_listen, "");
  EXPECT_FALSE(options.control_anywhere);
  EXPECT_FALSE(options.manual_clock);
  EXPECT_FALSE(options.always_shell);
  EXPECT_FALSE(options.strict);
  EXPECT_THAT(options.sets, IsEmpty());
  EXPECT_THAT(options.names, ElementsAre("router"));
}

TEST(OptionsTest, AControlPortMayHaveAnAddress) {
  struct Row {
    const char* text;
    const char* address;
    int port;
  };
  for (const Row& row : {Row{"9000", "127.0.0.1", 9000}, Row{"127.0.0.9:0", "127.0.0.9", 0},
                         Row{"[::1]:80", "::1", 80}}) {
    Options options;
    ASSERT_TRUE(Parse({"--control", row.text}, &options).ok()) << row.text;
    EXPECT_EQ(options.control_listen, row.address);
    EXPECT_EQ(options.control_port, row.port);
  }
  Options options;
  EXPECT_FALSE(Parse({"--control", "192.0.2.1:80"}, &options).ok());
  EXPECT_TRUE(
      Parse({"--control", "192.0.2.1:80", "--control-anywhere", "--clock=manual"}, &options).ok());
  EXPECT_TRUE(options.manual_clock);
}

TEST(OptionsTest, AreAllUnderstood) {
  Options options;
  ASSERT_TRUE(Parse({"--store",
                     "s.db",
                     "--profile=p",
                     "--factory-reset",
                     "--listen",
                     "::1",
                     "--port",
                     "0",
                     "--temp-dir",
                     "t",
                     "--script-dir",
                     "c",
                     "--state-dir",
                     "d",
                     "--real-waits",
                     "--log-level",
                     "7",
                     "--open",
                     "--name",
                     "kio.lan",
                     "--shared-temp-dir",
                     "--core-dumps",
                     "--shell=always",
                     "--strict",
                     "--set",
                     "/sys/friendlyname = Attic",
                     "--set=/lan/x:2=\" \\x41\""},
                    &options)
                  .ok());
  EXPECT_EQ(options.store, "s.db");
  EXPECT_EQ(options.profile, "p");
  EXPECT_TRUE(options.factory_reset);
  EXPECT_EQ(options.listen, "::1");
  EXPECT_EQ(options.port, 0);
  EXPECT_EQ(options.temp_dir, "t");
  EXPECT_EQ(options.script_dir, "c");
  EXPECT_EQ(options.state_dir, "d");
  EXPECT_TRUE(options.real_waits);
  EXPECT_EQ(options.log_level, 7);
  EXPECT_TRUE(options.open);
  EXPECT_TRUE(options.shared_temp_dir);
  EXPECT_TRUE(options.core_dumps);
  EXPECT_TRUE(options.always_shell);
  EXPECT_TRUE(options.strict);
  EXPECT_THAT(options.sets,
              ElementsAre(Node{"/sys/friendlyname", "Attic"}, Node{"/lan/x:2", " A"}));
  EXPECT_THAT(options.names, ElementsAre("router", "kio.lan"));
}

TEST(OptionsTest, QueriesNameTheirNode) {
  Options get;
  ASSERT_TRUE(Parse({"--get", "/lan/wireless5:1/accesscontrol/acrule#"}, &get).ok());
  EXPECT_EQ(get.command, Options::Command::kGet);
  EXPECT_EQ(get.node, "/lan/wireless5:1/accesscontrol/acrule#");
  Options dump;
  ASSERT_TRUE(Parse({"--dump=/sys"}, &dump).ok());
  EXPECT_EQ(dump.command, Options::Command::kDump);
  EXPECT_EQ(dump.node, "/sys");
}

TEST(OptionsTest, MistakesNameTheirOption) {
  const std::vector<std::vector<std::string>> mistakes = {
      {"--port", "x"},    {"--port", "65536"},     {"--port", "-1"},           {"--port"},
      {"--prot", "1"},    {"--log-level", "8"},    {"--get", "sys"},           {"--dump=sys/"},
      {"--store", ""},    {"--factory-reset=yes"}, {"--port", "80 "},          {"--shell", "never"},
      {"--set", "sys=1"}, {"--set", "/sys/x"},     {"--set", "/sys/x=\"open"}, {"--strict=yes"}};
  for (const std::vector<std::string>& words : mistakes) {
    Options options;
    const Status status = Parse(words, &options);
    EXPECT_EQ(status.code(), ExitCode::kUsage) << words[0];
    EXPECT_THAT(status.reason(), HasSubstr(words[0].substr(0, words[0].find('=')))) << words[0];
  }
}

TEST(OptionsTest, AQueryChangesNothingUnlessItResets) {
  Options options;
  const Status status = Parse({"--set", "/sys/a=1", "--dump"}, &options);
  EXPECT_EQ(status.code(), ExitCode::kUsage);
  EXPECT_THAT(status.reason(), HasSubstr("--set"));
  EXPECT_TRUE(Parse({"--set", "/sys/a=1", "--dump", "--factory-reset"}, &options).ok());
}

TEST(OptionsTest, ThereAreNoOtherArguments) {
  Options options;
  const Status status = Parse({"--real-waits", "extra"}, &options);
  EXPECT_EQ(status.code(), ExitCode::kUsage);
  EXPECT_THAT(status.reason(), HasSubstr("\"extra\""));
}

}  // namespace
}  // namespace kiohost
