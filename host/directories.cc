#include "directories.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "result_document.h"
#include "text.h"

namespace kiohost {
namespace {

// A shell command of the library is cut to this many characters.
constexpr size_t kCommandLength = 127;

// The commands that write the result document, without the path that ends each. They leave room for
// codes of up to five digits and waiting times of up to three.
constexpr std::string_view kCommands[] = {
    "echo '<?xml version=\"1.0\" ?>' > ",
    "echo '<root>' >> ",
    "echo ' <RssSetResult>99999</RssSetResult>' >> ",
    "echo ' <RssSetMsg></RssSetMsg>' >> ",
    "echo ' <RssGetWaitSec>999</RssGetWaitSec>' >> ",
    "echo '</root>' >> ",
};
constexpr size_t kMessageCommand = 3;
constexpr std::string_view kLongestMessage =
    "Device/UpLinkConnection/ExtenderSite/ConnRefSiteBSSID";

// The library reads the temporary directory for its log, and the script directory, into 64 bytes.
constexpr size_t kMaxShortPath = 63;

size_t RoomForDirectory(std::string_view command) {
  return kCommandLength - command.size() - std::string_view(kResultFile).size();
}

bool IsPlain(char c) {
  constexpr std::string_view kMarks = "/._-+,@%:=";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         kMarks.find(c) != std::string_view::npos;
}

Status CheckDirectory(const std::string& directory, const std::string& purpose, size_t max_length) {
  const std::string subject = "the " + purpose + " directory \"" + directory + "\" ";
  if (directory.size() > max_length) {
    return {ExitCode::kDirectory,
            subject + "is longer than " + std::to_string(max_length) + " characters"};
  }
  if (!std::all_of(directory.begin(), directory.end(), IsPlain)) {
    return {ExitCode::kDirectory,
            subject + "holds a character other than letters, digits and /._-+,@%:="};
  }
  struct stat info = {};
  if (stat(directory.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
    return {ExitCode::kDirectory, subject + "does not exist"};
  }
  return {};
}

constexpr std::string_view kDefaultTempDir = "/tmp/kiohost-";
constexpr std::string_view kFormerTempDir = "/tmp";

// Why others can write to a directory; an empty text when they cannot.
std::string WhoElseWrites(const struct stat& info) {
  if (info.st_uid != geteuid() && info.st_uid != 0) {
    return "belongs to another user";
  }
  return (info.st_mode & (S_IWGRP | S_IWOTH)) != 0 ? "can be written by other users" : "";
}

}  // namespace

size_t MaxTempDirLength() {
  size_t length = kMaxShortPath;
  for (const std::string_view command : kCommands) {
    length = std::min(length, RoomForDirectory(command));
  }
  return length;
}

size_t MaxMessageLength(const std::string& temp_dir) {
  const size_t room = RoomForDirectory(kCommands[kMessageCommand]);
  return room - std::min(room, temp_dir.size());
}

size_t LongestMessageLength() { return kLongestMessage.size(); }

std::string AbsoluteDirectory(const std::string& directory) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(directory, error);
  return error ? directory : path.string();
}

std::string DefaultTempDir() { return std::string(kDefaultTempDir) + std::to_string(geteuid()); }

bool MeansDefaultTempDir(const std::string& directory) {
  const std::string_view text = directory;
  return text.empty() || text == kFormerTempDir ||
         (text.size() > kDefaultTempDir.size() && text.starts_with(kDefaultTempDir) &&
          std::all_of(text.begin() + kDefaultTempDir.size(), text.end(), IsDigit));
}

Status MakePrivateDirectory(const std::string& directory) {
  const std::string subject = "the temporary directory \"" + directory + "\" ";
  const bool made = mkdir(directory.c_str(), S_IRWXU) == 0;
  if (!made && errno != EEXIST) {
    return {ExitCode::kDirectory, subject + "cannot be made: " + std::strerror(errno)};
  }
  // Somebody else may have made it first, as a link for example.
  struct stat info = {};
  if (lstat(directory.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
    return {ExitCode::kDirectory, subject + "is no directory; --temp-dir names another"};
  }
  const std::string others =
      info.st_uid != geteuid() ? "belongs to another user" : WhoElseWrites(info);
  return others.empty()
             ? Status()
             : Status(ExitCode::kDirectory, subject + others + "; --temp-dir names another");
}

Status CheckPrivate(const std::string& directory, const std::string& purpose) {
  struct stat info = {};
  if (stat(directory.c_str(), &info) != 0) {
    return {ExitCode::kDirectory,
            "the " + purpose + " directory \"" + directory + "\": " + std::strerror(errno)};
  }
  const std::string others = WhoElseWrites(info);
  return others.empty() ? Status()
                        : Status(ExitCode::kDirectory,
                                 "the " + purpose + " directory \"" + directory + "\" " + others +
                                     ", who could plant links there; use one of your own (mode "
                                     "0700), or give --shared-temp-dir to take it as it is");
}

Status CheckStateDir(const std::string& directory) {
  std::error_code error;
  return std::filesystem::is_directory(directory, error)
             ? Status()
             : Status(ExitCode::kDirectory,
                      "the state directory \"" + directory + "\" does not exist");
}

Status CheckTempDir(const std::string& directory) {
  Status status = CheckDirectory(directory, "temporary", MaxTempDirLength());
  if (status.ok() && access(directory.c_str(), W_OK | X_OK) != 0) {
    return {ExitCode::kDirectory, "the temporary directory \"" + directory + "\" is not writable"};
  }
  return status;
}

Status CheckScriptDir(const std::string& directory) {
  return CheckDirectory(directory, "script", kMaxShortPath);
}

}  // namespace kiohost
