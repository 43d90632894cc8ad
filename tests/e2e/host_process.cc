#include "host_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "http_client.h"

std::string HostProgram() {
  const char* const other = getenv("KIO_E2E_HOST");
  return other != nullptr ? other : KIOHOST_PROGRAM;
}

namespace {

pid_t Spawn(const std::vector<std::string>& arguments, const std::string& output_file,
            const std::string& error_file) {
  std::vector<char*> argv;
  std::string program = HostProgram();
  argv.push_back(program.data());
  std::vector<std::string> words = arguments;
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  const pid_t pid = fork();
  if (pid == 0) {
    constexpr mode_t kMode = 0600;
    constexpr int kExecFailed = 127;
    const int output = open(output_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, kMode);
    const int errors = open(error_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, kMode);
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    signal(SIGHUP, SIG_DFL);  // these tests may have been started to outlive their terminal
    execv(argv[0], argv.data());
    _exit(kExecFailed);
  }
  return pid;
}

// Returns -1, and kills the process, when it does not end in time.
int WaitForExit(pid_t pid) {
  constexpr int kSignalBase = 128;
  int status = 0;
  if (!WaitFor([&] { return waitpid(pid, &status, WNOHANG) != 0; })) {
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
}

// The number after `mark`, 0 when there is none.
int NumberAfter(const std::string& text, const std::string& mark) {
  const size_t at = text.rfind(mark);
  return at == std::string::npos
             ? 0
             : static_cast<int>(std::strtol(text.c_str() + at + mark.size(), nullptr, 10));
}

}  // namespace

void WriteFile(const std::string& file, const std::string& content) {
  std::ofstream(file, std::ios::binary) << content;
}

std::string ReadFile(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

std::string ProfileWith(const std::vector<std::string>& lines) {
  std::map<std::string, std::string> nodes;
  const auto add = [&nodes](const std::string& line) {
    if (!line.empty() && line[0] == '/') {
      nodes[line.substr(0, line.find(' '))] = line;
    }
  };
  std::istringstream factory(ReadFile(KIO_HOST_DIR "/profiles/dual-band-router.profile"));
  for (std::string line; std::getline(factory, line);) {
    add(line);
  }
  for (const std::string& line : lines) {
    add(line);
  }
  std::string profile;
  for (const auto& [path, line] : nodes) {
    profile += line + "\n";
  }
  return profile;
}

CommandResult RunKiohost(const std::vector<std::string>& arguments) {
  const TempDir dir;
  CommandResult result;
  result.exit_code = WaitForExit(Spawn(arguments, dir.File("out"), dir.File("err")));
  result.output = ReadFile(dir.File("out"));
  result.errors = ReadFile(dir.File("err"));
  return result;
}

HostProcess::HostProcess()
    : arguments_({"--store", dir_.File("store.db"), "--temp-dir", dir_.path(), "--script-dir",
                  dir_.File("scripts"), "--port", "0"}) {
  std::filesystem::copy(KIO_HOST_DIR "/scripts", dir_.File("scripts"));
}

HostProcess::~HostProcess() {
  if (pid_ > 0) {
    End(SIGKILL);
  }
}

void HostProcess::UseProfile(const std::string& profile) {
  WriteFile(dir_.File("test.profile"), profile);
  arguments_.insert(arguments_.end(), {"--profile", dir_.File("test.profile")});
}

void HostProcess::UseTempDirOfTheStore() {
  const auto option = std::find(arguments_.begin(), arguments_.end(), "--temp-dir");
  arguments_.erase(option, option + 2);
}

void HostProcess::UseScript(const std::string& name, const std::string& script) {
  WriteFile(dir_.File("scripts/" + name), script);
}

bool HostProcess::Start(const std::vector<std::string>& more_arguments) {
  std::vector<std::string> arguments = {"--open"};
  arguments.insert(arguments.end(), more_arguments.begin(), more_arguments.end());
  return StartClosed(arguments);
}

bool HostProcess::StartClosed(const std::vector<std::string>& more_arguments) {
  std::vector<std::string> arguments = arguments_;
  arguments.insert(arguments.end(), more_arguments.begin(), more_arguments.end());
  // What an earlier run said must not be taken for this one's.
  WriteFile(dir_.File("out"), "");
  pid_ = Spawn(arguments, dir_.File("out"), dir_.File("err"));
  const bool listens = WaitForOutput("/\n");
  port_ = NumberAfter(Output(), ":");
  control_port_ = NumberAfter(Output(), "control port on http://127.0.0.1:");
  NoteControlPort(control_port_);
  return listens && port_ > 0;
}

int HostProcess::End(int signal_number) {
  kill(pid_, signal_number);
  return WaitForEnd();
}

int HostProcess::WaitForEnd() {
  const int code = WaitForExit(pid_);
  pid_ = -1;
  return code;
}

std::string HostProcess::Output() const { return ReadFile(dir_.File("out")); }

std::string HostProcess::Errors() const { return ReadFile(dir_.File("err")); }

bool HostProcess::WaitForOutput(const std::string& text) const {
  return WaitFor([&] { return Output().find(text) != std::string::npos; });
}

long HostProcess::ProcessorTime() const {
  constexpr int kUserTimeColumn = 14;
  constexpr long kPerSecond = 1000;
  std::istringstream stat(ReadFile("/proc/" + std::to_string(pid_) + "/stat"));
  std::string word;
  for (int column = 1; column < kUserTimeColumn; ++column) {
    stat >> word;
  }
  long user = 0;
  long system = 0;
  stat >> user >> system;
  return (user + system) * kPerSecond / sysconf(_SC_CLK_TCK);
}

bool HostProcess::IsSanitized() const {
  return ReadFile("/proc/" + std::to_string(pid_) + "/maps").find("san.so") != std::string::npos;
}

long HostProcess::PrivateMemory() const {
  constexpr long kBytesPerKiB = 1024;
  std::istringstream statm(ReadFile("/proc/" + std::to_string(pid_) + "/statm"));
  long size = 0;
  long resident = 0;
  long shared = 0;
  statm >> size >> resident >> shared;
  return (resident - shared) * (sysconf(_SC_PAGESIZE) / kBytesPerKiB);
}

size_t HostProcess::Descriptors() const {
  const std::filesystem::directory_iterator open("/proc/" + std::to_string(pid_) + "/fd");
  return static_cast<size_t>(std::distance(begin(open), end(open)));
}

std::string HostProcess::Dump() const {
  std::istringstream all(RunKiohost({"--store", dir_.File("store.db"), "--dump"}).output);
  std::string dump;
  for (std::string line; std::getline(all, line);) {
    if (line.find("direcory = ") == std::string::npos) {
      dump += line + "\n";
    }
  }
  return dump;
}

std::string HostProcess::Node(const std::string& path) const {
  const CommandResult result = RunKiohost({"--store", dir_.File("store.db"), "--get", path});
  return result.exit_code == 0 ? result.output.substr(0, result.output.size() - 1) : "(absent)";
}
