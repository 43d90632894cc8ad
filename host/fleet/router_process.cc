#include "router_process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <utility>

namespace kiofleet {
namespace {

using kiohost::ExitCode;
using kiohost::Status;

// The rest of a line behind `mark`; empty for another line. The slash at its end is left out.
std::string Behind(const std::string& mark, const std::string& line) {
  std::string rest = line.starts_with(mark) ? line.substr(mark.size()) : "";
  if (rest.ends_with('/')) {
    rest.pop_back();
  }
  return rest;
}

std::string LastLine(const std::string& file) {
  std::ifstream stream(file);
  std::string last;
  for (std::string line; std::getline(stream, line);) {
    last = line;
  }
  return last;
}

// In the new process.
[[noreturn]] void RunProgram(char* const* argv, int output, int errors, pid_t parent,
                             const sigset_t& signals) {
  constexpr int kExecFailed = 127;
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const int nothing = open("/dev/null", O_RDONLY);
  // The fleet may have ended before it was asked to tell.
  if (getppid() == parent && nothing >= 0 && dup2(nothing, STDIN_FILENO) >= 0 &&
      dup2(output, STDOUT_FILENO) >= 0 && dup2(errors, STDERR_FILENO) >= 0) {
    signal(SIGPIPE, SIG_DFL);
    sigprocmask(SIG_SETMASK, &signals, nullptr);
    execv(argv[0], argv);
  }
  _exit(kExecFailed);
}

}  // namespace

RouterProcess::RouterProcess(std::vector<std::string> arguments, std::string log)
    : arguments_(std::move(arguments)), log_(std::move(log)) {}

RouterProcess::~RouterProcess() { CloseOutput(); }

RouterProcess::RouterProcess(RouterProcess&& other) noexcept
    : arguments_(std::move(other.arguments_)),
      log_(std::move(other.log_)),
      pid_(std::exchange(other.pid_, -1)),
      output_(std::exchange(other.output_, -1)),
      log_file_(std::exchange(other.log_file_, -1)),
      wait_status_(other.wait_status_),
      line_(std::move(other.line_)),
      url_(std::move(other.url_)),
      control_url_(std::move(other.control_url_)) {}

Status RouterProcess::Start(const std::string& program, const sigset_t& signals) {
  constexpr mode_t kForThisUser = 0600;
  std::array<int, 2> ends = {-1, -1};
  log_file_ = open(log_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, kForThisUser);
  if (log_file_ < 0) {
    return {ExitCode::kDirectory, "cannot write " + log_ + ": " + std::strerror(errno)};
  }
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    return {ExitCode::kDirectory, std::string("cannot make a pipe: ") + std::strerror(errno)};
  }
  output_ = ends[0];
  fcntl(output_, F_SETFL, O_NONBLOCK);
  std::string first = program;
  std::vector<char*> argv = {first.data()};
  for (std::string& argument : arguments_) {
    argv.push_back(argument.data());
  }
  argv.push_back(nullptr);
  const pid_t parent = getpid();
  pid_ = fork();
  if (pid_ == 0) {
    RunProgram(argv.data(), ends[1], log_file_, parent, signals);
  }
  const int error = errno;
  close(ends[1]);
  return pid_ > 0 ? Status()
                  : Status(ExitCode::kDirectory,
                           std::string("cannot start a process: ") + std::strerror(error));
}

void RouterProcess::ReadOutput() {
  constexpr size_t kPiece = 4096;
  std::array<char, kPiece> piece;
  while (output_ >= 0) {
    const ssize_t length = read(output_, piece.data(), piece.size());
    if (length <= 0) {
      if (length == 0 || errno != EAGAIN) {
        CloseOutput();
      }
      return;
    }
    const std::string_view text(piece.data(), static_cast<size_t>(length));
    // A log that cannot be written, as on a full disk, stops no router.
    static_cast<void>(!write(log_file_, text.data(), text.size()));
    for (const char c : text) {
      if (c == '\n') {
        TakeLine(std::exchange(line_, {}));
      } else if (line_.size() < kPiece) {
        line_ += c;
      }
    }
  }
}

void RouterProcess::TakeLine(const std::string& line) {
  if (url_.empty()) {
    url_ = Behind("listening on ", line);
  }
  if (control_url_.empty()) {
    control_url_ = Behind("control port on ", line);
  }
}

void RouterProcess::NoteEnd(int wait_status) {
  wait_status_ = wait_status;
  pid_ = -1;
  // A program that it has left behind may still hold the other end of the pipe.
  ReadOutput();
  CloseOutput();
}

std::string RouterProcess::HowItEnded() const {
  const std::string how = WIFEXITED(wait_status_)
                              ? "exit code " + std::to_string(WEXITSTATUS(wait_status_))
                              : "signal " + std::to_string(WTERMSIG(wait_status_));
  const std::string last = LastLine(log_);
  return last.empty() ? how : how + ": " + last;
}

void RouterProcess::CloseOutput() {
  for (int* const file : {&output_, &log_file_}) {
    if (*file >= 0) {
      close(std::exchange(*file, -1));
    }
  }
}

}  // namespace kiofleet
