#include "echo_command.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "listener.h"

namespace kiohost {
namespace {

constexpr std::string_view kBeginning = "echo '";
constexpr std::string_view kQuote = "'\\''";

// The characters that CheckTempDir lets a directory have.
constexpr std::string_view kPlainCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+,@%:=";

// The text up to its closing quote, and what follows that; nothing when there is no such quote.
std::optional<std::pair<std::string, std::string_view>> TakeText(std::string_view rest) {
  std::string text;
  for (;;) {
    const size_t quote = rest.find('\'');
    if (quote == std::string_view::npos) {
      return std::nullopt;
    }
    text += rest.substr(0, quote);
    rest.remove_prefix(quote);
    if (!rest.starts_with(kQuote)) {
      return std::pair(std::move(text), rest.substr(1));
    }
    text += '\'';
    rest.remove_prefix(kQuote.size());
  }
}

bool IsPlainPath(std::string_view path) {
  return path.starts_with('/') &&
         path.find_first_not_of(kPlainCharacters) == std::string_view::npos;
}

bool WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(fd, text.data(), text.size());
    if (written < 0 && errno != EINTR) {
      return false;
    }
    text.remove_prefix(written < 0 ? 0 : static_cast<size_t>(written));
  }
  return true;
}

// Empties a file. One that is empty is left alone: some file systems bring one that was cut to the
// disk when it is closed.
bool Empty(int fd, const struct stat& status) {
  return status.st_size == 0 || ftruncate(fd, 0) == 0;
}

}  // namespace

std::optional<EchoCommand> ReadEchoCommand(std::string_view command) {
  if (!command.starts_with(kBeginning)) {
    return std::nullopt;
  }
  auto taken = TakeText(command.substr(kBeginning.size()));
  // An echo may take a text with a hyphen for an option.
  if (!taken || taken->first.starts_with('-')) {
    return std::nullopt;
  }
  for (const auto& [redirection, appends] : {std::pair(std::string_view(" > "), false),  //
                                             std::pair(std::string_view(" >> "), true)}) {
    if (taken->second.starts_with(redirection)) {
      const std::string_view file = taken->second.substr(redirection.size());
      return IsPlainPath(file)
                 ? std::optional(EchoCommand{std::move(taken->first), appends, std::string(file)})
                 : std::nullopt;
    }
  }
  return std::nullopt;
}

std::optional<int> RunEchoCommand(const EchoCommand& command) {
  constexpr mode_t kMode = 0666;
  constexpr int kExitFailure = 1 << 8;
  // Nothing is cut before it is known to be a regular file, and no open waits for the reader of a
  // pipe.
  const int flags = O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const FileDescriptor file(
      open(command.file.c_str(), flags | (command.appends ? O_APPEND : 0), kMode));
  struct stat status = {};
  if (!file.valid() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
      (!command.appends && !Empty(file.get(), status))) {
    return std::nullopt;
  }
  return WriteAll(file.get(), command.text + "\n") ? 0 : kExitFailure;
}

}  // namespace kiohost
