#include "directories.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "temp_dir.h"

namespace kiohost {
namespace {

using ::testing::HasSubstr;

// A directory below `parent` whose path has `length` characters.
std::string MakeDirectory(const std::string& parent, size_t length) {
  std::string path = parent + "/" + std::string(length - parent.size() - 1, 'd');
  std::filesystem::create_directory(path);
  return path;
}

// The command that appends a message to the result document in `directory`.
std::string MessageCommand(const std::string& message, const std::string& directory) {
  return "echo ' <RssSetMsg>" + message + "</RssSetMsg>' >> " + directory + "/rssset_result.xml";
}

TEST(DirectoriesTest, TheRoomForAMessageIsWhatTheCommandLeaves) {
  const std::string directory = "/tmp/kio.123456";
  const size_t room = MaxMessageLength(directory);
  EXPECT_EQ(MessageCommand(std::string(room, 'm'), directory).size(), 127U);
  EXPECT_EQ(MaxMessageLength(std::string(200, 'd')), 0U);
}

TEST(DirectoriesTest, EveryMessageFitsInAShortDirectory) {
  EXPECT_GE(MaxMessageLength(std::string(21, 'd')), LongestMessageLength());
  EXPECT_LT(MaxMessageLength(std::string(22, 'd')), LongestMessageLength());
}

TEST(DirectoriesTest, ATemporaryDirectoryMustFitTheCommands) {
  const TempDir dir;
  EXPECT_EQ(MaxTempDirLength(), 63U);
  EXPECT_TRUE(CheckTempDir(MakeDirectory(dir.path(), 63)).ok());
  const Status status = CheckTempDir(MakeDirectory(dir.path(), 64));
  EXPECT_EQ(status.code(), ExitCode::kDirectory);
  EXPECT_THAT(status.reason(), HasSubstr("longer than 63"));
}

TEST(DirectoriesTest, TheLongestDirectoryLeavesRoomForLongNumbers) {
  const std::string file = std::string(MaxTempDirLength(), 'd') + "/rssset_result.xml";
  EXPECT_LE(("echo ' <RssSetResult>99999</RssSetResult>' >> " + file).size(), 127U);
  EXPECT_LE(("echo ' <RssGetWaitSec>999</RssGetWaitSec>' >> " + file).size(), 127U);
}

TEST(DirectoriesTest, AScriptDirectoryMustFitTheLibrarysBuffer) {
  const TempDir dir;
  EXPECT_TRUE(CheckScriptDir(MakeDirectory(dir.path(), 63)).ok());
  EXPECT_FALSE(CheckScriptDir(MakeDirectory(dir.path(), 64)).ok());
}

TEST(DirectoriesTest, WhatTheShellWouldInterpretIsRefused) {
  const TempDir dir;
  for (const char* name : {"a b", "a;b", "$a", "a'b", "a\"b", "a*", "a&b", "~"}) {
    std::filesystem::create_directory(dir.File(name));
    const Status status = CheckTempDir(dir.File(name));
    EXPECT_EQ(status.code(), ExitCode::kDirectory) << name;
    EXPECT_THAT(status.reason(), HasSubstr("character")) << name;
    EXPECT_FALSE(CheckScriptDir(dir.File(name)).ok()) << name;
  }
}

TEST(DirectoriesTest, MustExist) {
  const TempDir dir;
  EXPECT_THAT(CheckTempDir(dir.File("none")).reason(), HasSubstr("does not exist"));
  EXPECT_THAT(CheckScriptDir("").reason(), HasSubstr("does not exist"));
  EXPECT_THAT(CheckScriptDir("/dev/null").reason(), HasSubstr("does not exist"));
}

TEST(DirectoriesTest, TheDefaultIsAShortOneOfTheUsers) {
  EXPECT_EQ(DefaultTempDir(), "/tmp/kiohost-" + std::to_string(geteuid()));
  // The name of a user of a machine with very many.
  EXPECT_GE(MaxMessageLength("/tmp/kiohost-9999999"), LongestMessageLength());
}

TEST(DirectoriesTest, TheStoreMayMeanTheDefault) {
  for (const char* text : {"", "/tmp", "/tmp/kiohost-0", "/tmp/kiohost-1000"}) {
    EXPECT_TRUE(MeansDefaultTempDir(text)) << text;
  }
  for (const char* text : {"/tmp/", "/tmp/kiohost", "/tmp/kiohost-", "/tmp/kiohost-1/x",
                           "/var/kiohost-1", "/tmp/x", "tmp"}) {
    EXPECT_FALSE(MeansDefaultTempDir(text)) << text;
  }
}

TEST(PrivateDirectoryTest, IsMadeForTheUserAloneWhateverTheMask) {
  const TempDir dir;
  const std::string made = dir.File("made");
  const mode_t mask = umask(0);
  EXPECT_TRUE(MakePrivateDirectory(made).ok());
  umask(mask);
  EXPECT_EQ(std::filesystem::status(made).permissions(), std::filesystem::perms::owner_all);
  EXPECT_TRUE(MakePrivateDirectory(made).ok()) << "it is there";
  EXPECT_TRUE(CheckPrivate(made, "temporary").ok());
}

TEST(PrivateDirectoryTest, WhatAnotherLeftThereIsRefused) {
  const TempDir dir;
  const std::string target = dir.MakeDirectory("target");
  std::filesystem::create_directory_symlink(target, dir.File("link"));
  EXPECT_THAT(MakePrivateDirectory(dir.File("link")).reason(), HasSubstr("is no directory"));
  std::filesystem::create_symlink(dir.File("nothing"), dir.File("dangling"));
  EXPECT_THAT(MakePrivateDirectory(dir.File("dangling")).reason(), HasSubstr("is no directory"));
  EXPECT_FALSE(std::filesystem::exists(dir.File("nothing")));
  std::filesystem::permissions(
      target, std::filesystem::perms::owner_all | std::filesystem::perms::group_write);
  const Status status = MakePrivateDirectory(target);
  EXPECT_EQ(status.code(), ExitCode::kDirectory);
  EXPECT_THAT(status.reason(), HasSubstr("can be written by other users"));
  EXPECT_THAT(MakePrivateDirectory(dir.File("none/below")).reason(), HasSubstr("cannot be made"));
}

TEST(PrivateDirectoryTest, OneThatOthersCanWriteToIsNone) {
  const TempDir dir;
  const std::string path = dir.MakeDirectory("d");
  const auto check = [&path](mode_t mode) {
    EXPECT_EQ(chmod(path.c_str(), mode), 0);
    return CheckPrivate(path, "state");
  };
  for (const mode_t mode : {0700U, 0755U, 0750U, 01755U}) {
    EXPECT_TRUE(check(mode).ok()) << std::oct << mode;
  }
  for (const mode_t mode : {0770U, 0702U, 0777U, 01777U}) {
    const Status status = check(mode);
    EXPECT_EQ(status.code(), ExitCode::kDirectory) << std::oct << mode;
    EXPECT_THAT(status.reason(), HasSubstr("the state directory \"" + path)) << std::oct << mode;
    EXPECT_THAT(status.reason(), HasSubstr("--shared-temp-dir")) << std::oct << mode;
  }
  EXPECT_FALSE(CheckPrivate(dir.File("none"), "state").ok());
}

}  // namespace
}  // namespace kiohost
