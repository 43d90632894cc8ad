// kiohost: a small management process of a router, around libkioapp.
#include <kioapp/kioapp.h>
#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "command.h"
#include "core_dumps.h"
#include "directories.h"
#include "file_lock.h"
#include "host.h"
#include "host_clock.h"
#include "options.h"
#include "printable_text.h"
#include "profile.h"
#include "profile_list.h"
#include "record/recorder.h"
#include "record/replay.h"
#include "signals.h"
#include "start_settings.h"
#include "store.h"
#include "store_api.h"
#include "variable_list.h"

namespace kiohost {
namespace {

constexpr char kTempDirNode[] = "/zentrolinks/tempdirecory";
constexpr char kScriptDirNode[] = "/zentrolinks/scriptdirecory";
constexpr char kPortNode[] = "/zentrolinks/rsshttpport";

std::filesystem::path Program() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

std::filesystem::path ProfileDirectory() { return Program().parent_path() / "profiles"; }

int Report(const Status& status) {
  if (!status.ok()) {
    PrintError(status.reason());
  }
  return static_cast<int>(status.code());
}

// Opens the store and fills it with factory settings if need be. It is locked for this process,
// unless the command only reads.
Status OpenStore(const Options& options, Store* store, FileLock* lock) {
  const bool query = options.command != Options::Command::kServe && !options.factory_reset;
  Status status = store->Open(options.store, query ? Store::Mode::kExisting : Store::Mode::kCreate);
  if (!status.ok() || query) {
    return status;
  }
  // The lock stands beside the file itself, even when a link leads to it.
  std::error_code error;
  const std::filesystem::path file = std::filesystem::canonical(options.store, error);
  if (error) {
    return {ExitCode::kStore, "cannot find the store " + options.store + ": " + error.message()};
  }
  status = lock->Take(file.string() + "-lock", "the store " + options.store);
  return status.ok() ? ApplyStartSettings(options, ProfileDirectory(), store) : status;
}

// Prints the output that was asked for. Output that is cut, as on a full disk, is a failure.
Status Print(const std::string& text) {
  if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
    return {ExitCode::kOutput, std::string("cannot write the output: ") + std::strerror(errno)};
  }
  return {};
}

int PrintNode(const Options& options, Store* store) {
  const std::optional<std::string> text = store->Get(options.node);
  return text ? Report(Print(*text + "\n")) : static_cast<int>(ExitCode::kNodeAbsent);
}

Status WriteNode(Store* store, const char* path, const std::string& text) {
  if (store->Get(path) == text) {
    return {};
  }
  StoreTransaction transaction(store);
  if (transaction.begun().ok()) {
    store->Set(path, text);
  }
  return transaction.begun().ok() ? transaction.Commit() : transaction.begun();
}

// Finds the temporary directory. The default one is made if it does not exist.
Status FindTempDir(const Options& options, Store* store, std::string* temp_dir) {
  if (!options.temp_dir.empty()) {
    *temp_dir = AbsoluteDirectory(options.temp_dir);
    return {};
  }
  const std::string stored = store->Get(kTempDirNode).value_or("");
  if (!MeansDefaultTempDir(stored)) {
    *temp_dir = stored;
    return {};
  }
  *temp_dir = DefaultTempDir();
  Status status = MakePrivateDirectory(*temp_dir);
  if (status.ok() && !stored.empty() && stored != *temp_dir) {
    PrintError("the temporary directory is " + *temp_dir + ", no longer " + stored);
  }
  return status;
}

// Checks the temporary directory and keeps other hosts away from it.
Status TakeTempDir(const Options& options, const std::string& temp_dir, FileLock* lock) {
  Status status = CheckTempDir(temp_dir);
  if (status.ok() && !options.shared_temp_dir) {
    status = CheckPrivate(temp_dir, "temporary");
  }
  if (status.ok()) {
    status = lock->Take(temp_dir + "/kiohost.lock", "the temporary directory \"" + temp_dir + "\"");
  }
  if (status.ok() && MaxMessageLength(temp_dir) < LongestMessageLength()) {
    PrintError("warning: with the temporary directory \"" + temp_dir +
               "\" a result message of more than " + std::to_string(MaxMessageLength(temp_dir)) +
               " characters cannot be written, and its exchange fails; the longest has " +
               std::to_string(LongestMessageLength()));
  }
  return status;
}

// Chooses the directories that the library reads from the store, and writes them there.
Status ChooseDirectories(const Options& options, Store* store, FileLock* lock,
                         std::string* temp_dir) {
  std::string script_dir = options.script_dir.empty() ? store->Get(kScriptDirNode).value_or("")
                                                      : AbsoluteDirectory(options.script_dir);
  if (script_dir.empty()) {
    script_dir = Program().parent_path() / "scripts";
  }
  Status status = FindTempDir(options, store, temp_dir);
  if (status.ok()) {
    status = CheckScriptDir(script_dir);
  }
  if (status.ok()) {
    status = TakeTempDir(options, *temp_dir, lock);
  }
  if (status.ok()) {
    status = WriteNode(store, kTempDirNode, *temp_dir);
  }
  return status.ok() ? WriteNode(store, kScriptDirNode, script_dir) : status;
}

Status ChoosePort(const Options& options, Store* store, int* port) {
  constexpr int kMaxPort = 65535;
  if (options.port) {
    *port = *options.port;
    return {};
  }
  const std::string text = store->Get(kPortNode).value_or("");
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, *port);
  if (error != std::errc() || stop != end || *port < 1 || *port > kMaxPort) {
    return {ExitCode::kNetwork, std::string("the node ") + kPortNode + " holds \"" + text +
                                    "\", which is no port; give --port"};
  }
  return {};
}

// Sets the variables by which the scripts find the store and the directory for their output.
Status ExportEnvironment(const Options& options, const std::string& temp_dir) {
  const std::filesystem::path state_dir = options.state_dir.empty() ? temp_dir : options.state_dir;
  Status status = CheckStateDir(state_dir);
  if (status.ok() && !options.shared_temp_dir) {
    status = CheckPrivate(state_dir, "state");
  }
  if (!status.ok()) {
    return status;
  }
  setenv("KIOHOST_PROGRAM", Program().c_str(), 1);
  setenv("KIOHOST_STORE", std::filesystem::absolute(options.store).c_str(), 1);
  setenv("KIOHOST_STATE_DIR", std::filesystem::absolute(state_dir).c_str(), 1);
  return {};
}

// What the control port takes. The clock is the host's own from now on.
Status PrepareControl(const Options& options, Store* store, Store* reader,
                      Host::Settings* settings) {
  if (options.control_anywhere) {
    PrintError(
        "WARNING: --control-anywhere: there is no login on the control port. Whoever reaches it "
        "reads and changes everything.");
  }
  Bench::Settings bench;
  bench.port = {options.control_listen, options.control_port,
                Program().parent_path() / "control-openapi.json", options.names};
  bench.show_secrets = options.show_secrets;
  bench.write_profile = [options, store](const std::string& name) {
    // The directories are those of this host, not of the profile.
    const std::string temp_dir = store->Get(kTempDirNode).value_or("");
    const std::string script_dir = store->Get(kScriptDirNode).value_or("");
    Options reset = options;
    reset.factory_reset = true;
    reset.profile = name.empty() ? options.profile : name;
    Status status = ApplyStartSettings(reset, ProfileDirectory(), store);
    if (status.ok()) {
      status = WriteNode(store, kTempDirNode, temp_dir);
    }
    return status.ok() ? WriteNode(store, kScriptDirNode, script_dir) : status;
  };
  settings->control = std::move(bench);
  if (!TheClock().Own()) {
    return {ExitCode::kNetwork, "the system has no descriptor left"};
  }
  if (options.manual_clock) {
    TheClock().SetRate(0);
  }
  return reader->Open(options.store, Store::Mode::kExisting);
}

// The record of the session; null without one.
Status PrepareRecord(const Options& options, Store* reader, const Catalogue& catalogue,
                     std::unique_ptr<Recorder>* recorder) {
  if (options.record.empty()) {
    return {};
  }
  *recorder = std::make_unique<Recorder>(reader, *catalogue);
  return (*recorder)->Open(options.record, options.record_secrets);
}

Status Serve(const Options& options, Store* store) {
  Host::Settings settings;
  settings.listen = options.listen;
  settings.real_waits = options.real_waits;
  settings.open = options.open;
  settings.names = options.names;
  settings.openapi = Program().parent_path() / "openapi.json";
  FileLock lock;
  Status status = ReadCatalogue(Program().parent_path() / "variables.json", &settings.catalogue);
  if (status.ok()) {
    status = ChoosePort(options, store, &settings.port);
  }
  if (status.ok()) {
    status = ChooseDirectories(options, store, &lock, &settings.temp_dir);
  }
  if (status.ok()) {
    status = ExportEnvironment(options, settings.temp_dir);
  }
  if (!status.ok()) {
    return status;
  }
  settings.state_dir = options.state_dir.empty() ? settings.temp_dir : options.state_dir;
  if (!InstallSignals()) {
    return {ExitCode::kNetwork, "the signal handlers could not be installed"};
  }
  std::snprintf(daemon_log_header, sizeof daemon_log_header, "kiohost");
  daemon_log_level = options.log_level;
  AlwaysRunShell(options.always_shell);
  BindStore(store);
  if (options.open) {
    PrintError(
        "WARNING: --open: there is no login. Whoever reaches this port reads and changes all "
        "settings.");
  }
  Store reader;
  Store control_reader;
  status = reader.Open(options.store, Store::Mode::kExisting);
  std::unique_ptr<Recorder> recorder;
  if (status.ok()) {
    status = PrepareRecord(options, &reader, settings.catalogue, &recorder);
    settings.recorder = recorder.get();
  }
  if (status.ok() && !options.control_listen.empty()) {
    status = PrepareControl(options, store, &control_reader, &settings);
  }
  if (!status.ok()) {
    return status;
  }
  Host host(store, &reader, &control_reader, settings);
  host.RunOverdueActions();
  status = host.Start();
  if (status.ok()) {
    status = host.Run();
  }
  EndLeftProcesses();
  BindStore(nullptr);
  return status;
}

int Main(int argc, char** argv) {
  Options options;
  const Status parsed = ParseOptions(argc, argv, &options);
  if (!parsed.ok()) {
    return Report(parsed);
  }
  if (options.command == Options::Command::kHelp) {
    return Report(Print(HelpText()));
  }
  if (options.command == Options::Command::kProfiles) {
    return Report(Print(ProfileList(ProfileDirectory())));
  }
  if (options.command == Options::Command::kVersion) {
    return Report(Print(std::string("kiohost, libkioapp ") + starterLibVersion() +
                        ", settings document format " + rssSpecVersion() + "\n"));
  }
  if (options.command == Options::Command::kReplay) {
    int exit_code = 0;
    const Status played = Replay(&options, Program().parent_path(), &exit_code);
    if (!played.ok()) {
      return Report(played);
    }
    if (options.command == Options::Command::kReplay) {
      return exit_code;
    }
  }
  if (!options.core_dumps && !ForbidCoreDumps()) {
    PrintError("warning: the system does not let core dumps be forbidden");
  }
  // The store holds passwords, and the library's log may.
  umask(S_IRWXG | S_IRWXO);
  Store store;
  FileLock lock;
  const Status opened = OpenStore(options, &store, &lock);
  if (!opened.ok()) {
    return Report(opened);
  }
  switch (options.command) {
    case Options::Command::kGet:
      return PrintNode(options, &store);
    case Options::Command::kDump:
      return Report(Print(FormatProfile(store.List(options.node))));
    default:
      // Each line of the output can be read as soon as it is printed.
      std::setvbuf(stdout, nullptr, _IOLBF, 0);
      return Report(Serve(options, &store));
  }
}

}  // namespace
}  // namespace kiohost

int main(int argc, char** argv) { return kiohost::Main(argc, argv); }
