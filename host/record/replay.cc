#include "record/replay.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "listener.h"

namespace kiohost {
namespace {

constexpr int kExecFailed = 127;
constexpr int kSignalled = 128;

Status Failed(const char* what) {
  return {ExitCode::kDirectory, std::string(what) + ": " + std::strerror(errno)};
}

// The player stands beside this program, or where the build or a package has put it.
std::filesystem::path Player(const std::filesystem::path& programs) {
  std::error_code error;
  for (const char* place : {"kioctl", "../ctl/kioctl", "../../bin/kioctl"}) {
    if (std::filesystem::exists(programs / place, error)) {
      return programs / place;
    }
  }
  return {};
}

int ExitCodeOf(int wait_status) {
  return WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : kSignalled + WTERMSIG(wait_status);
}

int WaitForEnd(pid_t process) {
  int wait_status = 0;
  while (waitpid(process, &wait_status, 0) < 0 && errno == EINTR) {
  }
  return ExitCodeOf(wait_status);
}

// The exit code of this program for one of the player's.
int OwnExitCode(int code) {
  constexpr int kUnreachable = 4;
  constexpr int kTimeout = 5;
  constexpr int kLocal = 7;
  switch (code) {
    case kUnreachable:
    case kTimeout:
      return static_cast<int>(ExitCode::kNetwork);
    case kLocal:
    case kExecFailed:
      return static_cast<int>(ExitCode::kDirectory);
    default:
      return code;
  }
}

// Ends with its parent, which may have ended already.
void EndWith(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) {
    _exit(kExecFailed);
  }
}

pid_t StartPlayer(const Options& options, const std::string& player, const std::string& router) {
  std::vector<std::string> words = {player, "replay", options.replay, "--router", router};
  if (!options.replay_secrets.empty()) {
    words.insert(words.end(), {"--secrets", options.replay_secrets});
  }
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process == 0) {
    EndWith(parent);
    execv(argv[0], argv.data());
    _exit(kExecFailed);
  }
  return process;
}

// The output of the router, which is read for as long as it runs: it would stop otherwise.
class RouterOutput {
 public:
  explicit RouterOutput(int file) : file_(file) {}

  int file() const { return file_; }

  // Reads what there is. Returns false at the end.
  bool Read() {
    constexpr size_t kPiece = 4096;
    std::array<char, kPiece> piece;
    const ssize_t length = read(file_, piece.data(), piece.size());
    if (length > 0 && !url_) {
      text_.append(piece.data(), static_cast<size_t>(length));
      LookForUrl();
    }
    return length > 0 || (length < 0 && errno == EINTR);
  }

  // Where the router listens, once it does.
  const std::optional<std::string>& url() const { return url_; }

 private:
  void LookForUrl() {
    constexpr std::string_view kMark = "listening on ";
    const size_t mark = ("\n" + text_).find("\n" + std::string(kMark));
    const size_t begin = mark + kMark.size();
    const size_t end = mark == std::string::npos ? mark : text_.find("/\n", begin);
    if (end != std::string::npos) {
      url_ = text_.substr(begin, end - begin);
    }
  }

  int file_;
  std::string text_;
  std::optional<std::string> url_;
};

// Waits for the player while the router goes on.
int PlayBeside(pid_t player, RouterOutput* output) {
  // The header for it is not one for C++ in every system.
  const FileDescriptor end(static_cast<int>(syscall(SYS_pidfd_open, player, 0)));
  std::array<pollfd, 2> waits = {{{end.get(), POLLIN, 0}, {output->file(), POLLIN, 0}}};
  while (end.valid() && waits[0].revents == 0) {
    if (poll(waits.data(), waits.size(), -1) > 0 && waits[1].revents != 0 && !output->Read()) {
      waits[1].fd = -1;  // the router has ended, which the player will find
    }
  }
  return WaitForEnd(player);
}

}  // namespace

Status Replay(Options* options, const std::filesystem::path& programs, int* exit_code) {
  const std::string player = Player(programs);
  if (access(player.c_str(), X_OK) != 0) {
    return {ExitCode::kDirectory, "a record is played by kioctl, which is not beside this program"};
  }
  if (!options->against.empty()) {
    const pid_t process = StartPlayer(*options, player, options->against);
    *exit_code = process > 0 ? OwnExitCode(WaitForEnd(process)) : 0;
    return process > 0 ? Status() : Failed("cannot start kioctl");
  }
  std::array<int, 2> ends = {-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    return Failed("cannot make a pipe");
  }
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  const pid_t parent = getpid();
  const pid_t router = fork();
  if (router == 0) {
    EndWith(parent);
    options->command = Options::Command::kServe;
    return dup2(writing.get(), STDOUT_FILENO) >= 0 ? Status() : Failed("cannot use a pipe");
  }
  writing = FileDescriptor();
  if (router < 0) {
    return Failed("cannot start a process");
  }
  RouterOutput output(reading.get());
  while (!output.url() && output.Read()) {
  }
  if (!output.url()) {
    *exit_code = WaitForEnd(router);
    return {};
  }
  const pid_t process = StartPlayer(*options, player, *output.url());
  const int played = process > 0 ? OwnExitCode(PlayBeside(process, &output)) : 0;
  kill(router, SIGTERM);
  while (output.Read()) {
  }
  const int ended = WaitForEnd(router);
  *exit_code = played != 0 ? played : ended;
  return process > 0 ? Status() : Failed("cannot start kioctl");
}

}  // namespace kiohost
