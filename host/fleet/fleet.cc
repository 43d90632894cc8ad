#include "fleet.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <utility>

#include "nodes.h"
#include "printable_text.h"
#include "profile_list.h"

namespace kiofleet {
namespace {

using kiohost::FindNode;
using kiohost::Json;

constexpr int kNoLimit = -1;

// An address that is given to no device of a maker. `kind` tells the radios from the router.
std::string MacAddress(int number, unsigned int kind) {
  constexpr unsigned int kByte = 256;
  const auto value = static_cast<unsigned int>(number);
  char text[sizeof "02:4B:00:00:00:00"];
  std::snprintf(text, sizeof text, "02:4B:00:%02X:%02X:%02X", value / kByte % kByte, value % kByte,
                kind % kByte);
  return text;
}

constexpr unsigned int kDevice = 1;

// The nodes that hold addresses, and what tells them apart.
constexpr std::pair<const char*, unsigned int> kAddressNodes[] = {
    {"/fwupgradeinfo/devicemac", kDevice},
    {"/lan/wireless2.4:1/wirelessbssid", 2},
    {"/lan/wireless5:1/wirelessbssid", 5}};

constexpr char kProfileFile[] = "router.profile";

// A name that counts in the Host header of a request.
std::string HostName(int number) { return "router-" + std::to_string(number); }

Status DirectoryError(const std::string& directory, const std::string& reason) {
  return {ExitCode::kDirectory, "cannot make the directory " + directory + ": " + reason};
}

// A directory for this user alone. With a long one the messages of a router would not fit.
Status MakeTemporary(std::filesystem::path* directory) {
  constexpr size_t kLongest = 12;
  const char* const root = getenv("TMPDIR");
  const bool is_short = root != nullptr && root[0] == '/' && std::strlen(root) < kLongest;
  std::string name = std::string(is_short ? root : "/tmp") + "/f.XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    return DirectoryError(name, std::strerror(errno));
  }
  *directory = name;
  return {};
}

Status MakeDirectory(const std::filesystem::path& directory) {
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  return error ? DirectoryError(directory, error.message()) : Status();
}

}  // namespace

Fleet::Fleet(FleetOptions options, std::filesystem::path program)
    : options_(std::move(options)), program_(std::move(program)) {
  sigset_t signals = {};
  sigemptyset(&signals);
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGCHLD}) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    // Started with SIGHUP ignored, as nohup does, it goes on ignoring it.
    if (number != SIGHUP || action.sa_handler != SIG_IGN) {
      sigaddset(&signals, number);
    }
  }
  sigprocmask(SIG_BLOCK, &signals, &signals_before_);
  signals_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
}

Fleet::~Fleet() {
  Stop();
  if (!directory_.empty()) {
    std::error_code error;
    std::filesystem::remove_all(directory_, error);
  }
  close(signals_);
}

Status Fleet::Run() {
  Status status = Prepare();
  if (status.ok()) {
    status = Start();
  }
  while (status.ok() && !AllServe()) {
    if (!Wait(kNoLimit)) {
      return {};
    }
    if (one_ended_) {
      return {kRouterEnded, "not all routers could be started"};
    }
  }
  if (!status.ok()) {
    return status;
  }
  if (std::fputs(kiohost::JsonText(Table()).c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    return {ExitCode::kOutput, std::string("cannot write the output: ") + std::strerror(errno)};
  }
  while (Running() > 0 && Wait(kNoLimit)) {
  }
  Stop();
  return one_ended_ ? Status(kRouterEnded, "not all routers ran until the end") : Status();
}

Status Fleet::Prepare() {
  std::string profile;
  Status status =
      kiohost::FindProfile(options_.profile, program_.parent_path() / "profiles", &profile);
  if (status.ok()) {
    status = kiohost::ReadProfile(profile, &nodes_);
  }
  if (status.ok()) {
    status = MakeTemporary(&directory_);
  }
  profile = std::filesystem::absolute(profile);
  for (int number = 1; number <= options_.count && status.ok(); ++number) {
    status = MakeRouter(number, profile);
  }
  return status;
}

Status Fleet::MakeRouter(int number, const std::string& profile) {
  const std::string digits = std::to_string(number);
  const std::string name = options_.name + " " + digits;
  const std::filesystem::path own = directory_ / digits;
  const std::filesystem::path stores =
      options_.directory.empty() ? own : std::filesystem::absolute(options_.directory);
  const std::filesystem::path store = stores / (HostName(number) + ".db");
  Status status = MakeDirectory(own);
  if (status.ok()) {
    status = MakeDirectory(stores);
  }
  if (!status.ok()) {
    return status;
  }
  std::ofstream file(own / kProfileFile);
  file << "# " << name << " of a fleet\ninclude " << profile << "\n"
       << kiohost::FormatProfile(OwnNodes(number, name));
  file.close();
  if (!file) {
    return {ExitCode::kDirectory, "cannot write to the directory " + own.string()};
  }
  routers_.push_back({.name = name,
                      .host = HostName(number),
                      .mac = MacAddress(number, kDevice),
                      .store = store,
                      .process = RouterProcess(Arguments(number, own, store), own / "router.log")});
  return {};
}

// What a router's profile has beside that of the fleet.
std::vector<kiohost::Node> Fleet::OwnNodes(int number, const std::string& name) const {
  std::vector<kiohost::Node> own = {{kiohost::kNameNode, name}};
  for (const auto& [path, kind] : kAddressNodes) {
    // A radio that the device does not have gets none.
    if (FindNode(nodes_, path) != nullptr) {
      own.push_back({path, MacAddress(number, kind)});
    }
  }
  return own;
}

std::vector<std::string> Fleet::Arguments(int number, const std::filesystem::path& own,
                                          const std::filesystem::path& store) const {
  const int next = number - 1;
  const std::string address =
      options_.address ? AddressText(*options_.address + static_cast<uint32_t>(next)) : "127.0.0.1";
  const bool same_port = options_.port == 0 || options_.address;
  std::vector<std::string> arguments = {
      "--store",    store,
      "--profile",  own / kProfileFile,
      "--temp-dir", own,
      "--listen",   address,
      "--port",     std::to_string(same_port ? options_.port : options_.port + next),
      "--name",     HostName(number)};
  if (options_.control) {
    const int port = *options_.control == 0 ? 0 : *options_.control + next;
    arguments.insert(arguments.end(), {"--control", address + ":" + std::to_string(port)});
  }
  arguments.insert(arguments.end(), options_.for_kiohost.begin(), options_.for_kiohost.end());
  return arguments;
}

Status Fleet::Start() {
  Status status;
  for (Router& router : routers_) {
    if (status.ok()) {
      status = router.process.Start(program_, signals_before_);
    }
  }
  return status;
}

bool Fleet::Wait(int milliseconds) {
  std::vector<pollfd> files = {{.fd = signals_, .events = POLLIN, .revents = 0}};
  for (const Router& router : routers_) {
    files.push_back({.fd = router.process.output(), .events = POLLIN, .revents = 0});
  }
  if (poll(files.data(), files.size(), milliseconds) < 0) {
    return true;
  }
  for (size_t i = 0; i < routers_.size(); ++i) {
    if (files[i + 1].revents != 0) {
      routers_[i].process.ReadOutput();
    }
  }
  return ReadSignals();
}

bool Fleet::ReadSignals() {
  signalfd_siginfo signal = {};
  bool goes_on = true;
  while (read(signals_, &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal)) {
    if (signal.ssi_signo != SIGCHLD) {
      goes_on = false;
    }
  }
  ReapRouters();
  return goes_on;
}

void Fleet::ReapRouters() {
  int status = 0;
  for (pid_t pid = waitpid(-1, &status, WNOHANG); pid > 0; pid = waitpid(-1, &status, WNOHANG)) {
    const auto router = std::find_if(routers_.begin(), routers_.end(), [pid](const Router& other) {
      return other.process.pid() == pid;
    });
    if (router == routers_.end()) {
      continue;
    }
    router->process.NoteEnd(status);
    if (!stops_) {
      one_ended_ = true;
      kiohost::PrintLine(stderr, "kiofleet: " + router->name + " (process " + std::to_string(pid) +
                                     ") has ended with " + router->process.HowItEnded());
    }
  }
}

bool Fleet::AllServe() const {
  return std::all_of(routers_.begin(), routers_.end(), [this](const Router& router) {
    return !router.process.url().empty() &&
           (!options_.control || !router.process.control_url().empty());
  });
}

size_t Fleet::Running() const {
  return static_cast<size_t>(
      std::count_if(routers_.begin(), routers_.end(),
                    [](const Router& router) { return router.process.runs(); }));
}

Json Fleet::Table() const {
  Json table = Json::array();
  for (const Router& router : routers_) {
    Json row = {{"name", router.name},         {"url", router.process.url()},
                {"host", router.host},         {"mac", router.mac},
                {"pid", router.process.pid()}, {"store", router.store.string()},
                {"log", router.process.log()}};
    if (options_.control) {
      row["control"] = router.process.control_url();
    }
    table.push_back(std::move(row));
  }
  return table;
}

void Fleet::Stop() {
  stops_ = true;
  // A router ends within two seconds of its own.
  constexpr auto kPatience = std::chrono::seconds(10);
  const auto end = std::chrono::steady_clock::now() + kPatience;
  for (const Router& router : routers_) {
    if (router.process.runs()) {
      kill(router.process.pid(), SIGTERM);
    }
  }
  bool killed = false;
  while (Running() > 0) {
    constexpr int kLook = 1000;
    Wait(kLook);
    if (!killed && std::chrono::steady_clock::now() > end) {
      killed = true;
      for (const Router& router : routers_) {
        if (router.process.runs()) {
          kill(router.process.pid(), SIGKILL);
        }
      }
    }
  }
}

}  // namespace kiofleet
