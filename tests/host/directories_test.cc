#include "directories.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace kiohost
