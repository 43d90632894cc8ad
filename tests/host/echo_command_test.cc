#include "echo_command.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "temp_dir.h"

namespace kiohost {
namespace {

std::string Contents(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

TEST(EchoCommandTest, TheLibrarysLineIsRead) {
  const auto first = ReadEchoCommand("echo '<root>' > /tmp/a-b_c/d.xml");
  ASSERT_TRUE(first.has_value());
  EXPECT_EQ(first->text, "<root>");
  EXPECT_FALSE(first->appends);
  EXPECT_EQ(first->file, "/tmp/a-b_c/d.xml");
  const auto further = ReadEchoCommand("echo ' a'\\''b'\\'''\\''\\n\n$(x)' >> /t");
  ASSERT_TRUE(further.has_value());
  EXPECT_EQ(further->text, " a'b''\\n\n$(x)");
  EXPECT_TRUE(further->appends);
  EXPECT_EQ(further->file, "/t");
  EXPECT_EQ(ReadEchoCommand("echo '' > /t")->text, "");
}

TEST(EchoCommandTest, AnyOtherCommandIsTheShells) {
  for (const char* command : {"",
                              "echo",
                              "echo '",
                              "echo 'a",
                              "echo 'a'",
                              "echo 'a' >",
                              "echo 'a' > ",
                              "echo 'a' >> ",
                              "echo 'a' > t",
                              "echo 'a' > ~/t",
                              "echo 'a' > /t ",
                              "echo 'a' > /t /u",
                              "echo 'a' > /t;true",
                              "echo 'a' > /t && true",
                              "echo 'a' > /$t",
                              "echo 'a' > /`t`",
                              "echo 'a' > /t*",
                              "echo 'a' > /'t'",
                              "echo 'a' > /t\n",
                              "echo 'a' > /t\\u",
                              "echo 'a' > /t#",
                              "echo 'a'> /t",
                              "echo 'a' >/t",
                              "echo 'a'  > /t",
                              "echo 'a' >| /t",
                              "echo 'a' >>> /t",
                              "echo 'a' 2> /t",
                              "echo 'a' < /t",
                              "echo a > /t",
                              "echo \"a\" > /t",
                              "echo  'a' > /t",
                              " echo 'a' > /t",
                              "echo 'a'b > /t",
                              "echo 'a' 'b' > /t",
                              "echo 'a'\\'b > /t",
                              "echo 'a'\\''b > /t",
                              "echo '-n' > /t",
                              "echo '-e' > /t",
                              "/bin/echo 'a' > /t",
                              "rm -f \"/t\""}) {
    EXPECT_FALSE(ReadEchoCommand(command).has_value()) << command;
  }
}

TEST(EchoCommandTest, AFileIsReplacedOrContinued) {
  const TempDir dir;
  const std::string file = dir.File("f");
  EXPECT_EQ(RunEchoCommand({"a longer line", false, file}), 0);
  EXPECT_EQ(RunEchoCommand({"a\\tb", false, file}), 0);
  EXPECT_EQ(RunEchoCommand({"", true, file}), 0);
  EXPECT_EQ(RunEchoCommand({"c", true, file}), 0);
  EXPECT_EQ(Contents(file), "a\\tb\n\nc\n");
}

TEST(EchoCommandTest, ANewFileHasTheRightsThatTheMaskLeaves) {
  const TempDir dir;
  const mode_t before = umask(S_IWGRP | S_IRWXO);
  EXPECT_EQ(RunEchoCommand({"a", true, dir.File("f")}), 0);
  umask(before);
  struct stat status = {};
  ASSERT_EQ(stat(dir.File("f").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, S_IRUSR | S_IWUSR | S_IRGRP);
}

TEST(EchoCommandTest, ALinkLeadsToItsFile) {
  const TempDir dir;
  std::filesystem::create_symlink("target", dir.File("link"));
  EXPECT_EQ(RunEchoCommand({"a", false, dir.File("link")}), 0);
  EXPECT_EQ(Contents(dir.File("target")), "a\n");
}

TEST(EchoCommandTest, WhatIsNoRegularFileIsLeftToTheShell) {
  const TempDir dir;
  const std::string pipe = dir.File("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
  std::filesystem::create_directory(dir.File("directory"));
  for (const char* file : {"pipe", "directory", "absent/f", "."}) {
    EXPECT_EQ(RunEchoCommand({"a", false, dir.File(file)}), std::nullopt) << file;
  }
  EXPECT_EQ(RunEchoCommand({"a", false, "/dev/null"}), std::nullopt);
}

TEST(EchoCommandTest, AFullDiskIsAFailure) {
  const TempDir dir;
  const std::string file = dir.File("f");
  const auto limit = [](rlim_t bytes) {
    rlimit limits = {};
    getrlimit(RLIMIT_FSIZE, &limits);
    limits.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limits);
  };
  const auto before = std::signal(SIGXFSZ, SIG_IGN);
  limit(2);
  const std::optional<int> status = RunEchoCommand({"abc", true, file});
  limit(RLIM_INFINITY);
  std::signal(SIGXFSZ, before);
  EXPECT_EQ(status, 1 << 8);
  EXPECT_EQ(Contents(file), "ab");
}

}  // namespace
}  // namespace kiohost
