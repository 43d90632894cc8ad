#include "directories.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace kiohost {
namespace {

// A shell command of the library holds this many characters, the rest is cut.
constexpr size_t kCommandLength = 127;

// The commands that write the result document, with numbers of two digits (no code and no waiting
// time is longer) and without the path that ends each.
constexpr std::string_view kCommands[] = {
    "echo '<?xml version=\"1.0\" ?>' > ",
    "echo '<root>' >> ",
    "echo ' <RssSetResult>21</RssSetResult>' >> ",
    "echo ' <RssSetMsg></RssSetMsg>' >> ",
    "echo ' <RssGetWaitSec>48</RssGetWaitSec>' >> ",
    "echo '</root>' >> ",
};
constexpr size_t kMessageCommand = 3;
constexpr std::string_view kResultFile = "/rssset_result.xml";
constexpr std::string_view kLongestMessage =
    "Device/UpLinkConnection/ExtenderSite/ConnRefSiteBSSID";

// The library's log takes the same directory through a buffer of 64 bytes, as it does the one of
// the scripts.
constexpr size_t kMaxShortPath = 63;

size_t RoomForDirectory(std::string_view command) {
  return kCommandLength - command.size() - kResultFile.size();
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
