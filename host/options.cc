#include "options.h"

#include <getopt.h>

#include <string_view>

#include "listener.h"
#include "node_path.h"
#include "option_values.h"
#include "profile.h"

namespace kiohost {
namespace {

constexpr int kMaxPort = 65535;
constexpr int kMaxLogLevel = 7;

constexpr char kHelp[] =
    R"(Usage: kiohost [OPTION]...
A router's management process in small: keeps the settings in a store and lets the phone app
change them over HTTP (docs/http.md).

  --store FILE       the store; made from the profile when absent (default kiohost.db)
  --profile NAME|FILE  factory settings: a delivered profile or a file of one's own (default
                     dual-band-router; docs/profiles.md)
  --profiles         list the delivered profiles; then exit
  --factory-reset    put the store back to the profile first
  --set NODE=TEXT    write a node of the store first; may be given more than once
  --strict           refuse what the library could not use of --profile and --set, instead of
                     warning of it
  --listen ADDRESS   numeric address to listen on (default 127.0.0.1)
  --port PORT        port to listen on, 0 for any free one (default the store's
                     /zentrolinks/rsshttpport)
  --temp-dir DIR     directory of the result document and the log, kept in the store (default
                     /tmp/kiohost-UID, which is made for you alone)
  --script-dir DIR   directory of uplink.sh and device_resync.sh, kept in the store
  --state-dir DIR    where the scripts write what they would bring up (default the temporary
                     directory)
  --shared-temp-dir  take a temporary and a state directory that other users can write to
  --real-waits       refuse connections after a commit for as long as the app was told to wait
  --name NAME        a further name by which browsers and apps reach the router (default router;
                     its addresses and localhost always count)
  --open             let everybody in without a login: for demonstrations only
  --shell=always     have a shell write the library's documents, too, and not the host itself
  --control [ADDRESS:]PORT
                     a second port that moves the clock, sets the store and more, without a login
                     (docs/control.md); on 127.0.0.1, another loopback address, or with
  --control-anywhere on any address: for test networks only
  --clock=manual     with --control: the clock stands still until it is moved there
  --show-secrets     with --control: passwords and keys stand in the journal
  --record FILE      write each request and its answer to a new file, without passwords and keys
                     (docs/record.md)
  --record-secrets FILE  write these to a file of their own, for --replay-secrets
  --replay FILE      play the requests of a record and tell the first answer that differs; against
                     a router that is started as the other options say, which ends then, or
  --against URL      against this one
  --replay-secrets FILE  with --replay: the passwords and keys of the record. Without it the
                     administrator's password is that of KIO_PASSWORD
  --core-dumps       leave core dumps, which hold the password, to look for a fault
  --log-level N      the library's log: 4 failures, 5 events, 6 actions with whole documents and
                     their passwords, 7 everything (default 5)
  --dump[=NODE]      print the store, or a node and what is below it, as a profile; then exit
  --get NODE         print the text of a node; then exit
  --help, --version

Exit codes: 0 success, 1 the node of --get is absent or an answer of --replay differs, 2 wrong command line, 3 the store cannot be
used, 4 the profile cannot be used, 5 a directory cannot be used, or another process uses it or the
store, 6 cannot listen, 7 the output cannot be written.
)";

enum OptionId {
  kStoreOption = 1,
  kProfileOption,
  kProfilesOption,
  kFactoryResetOption,
  kSetOption,
  kStrictOption,
  kListenOption,
  kPortOption,
  kTempDirOption,
  kScriptDirOption,
  kStateDirOption,
  kSharedTempDirOption,
  kRealWaitsOption,
  kNameOption,
  kOpenOption,
  kShellOption,
  kRecordOption,
  kRecordSecretsOption,
  kReplayOption,
  kReplaySecretsOption,
  kAgainstOption,
  kCoreDumpsOption,
  kControlOption,
  kControlAnywhereOption,
  kClockOption,
  kShowSecretsOption,
  kLogLevelOption,
  kDumpOption,
  kGetOption,
  kHelpOption,
  kVersionOption,
};

constexpr option kOptions[] = {
    {"store", required_argument, nullptr, kStoreOption},
    {"profile", required_argument, nullptr, kProfileOption},
    {"profiles", no_argument, nullptr, kProfilesOption},
    {"set", required_argument, nullptr, kSetOption},
    {"strict", no_argument, nullptr, kStrictOption},
    {"factory-reset", no_argument, nullptr, kFactoryResetOption},
    {"listen", required_argument, nullptr, kListenOption},
    {"port", required_argument, nullptr, kPortOption},
    {"temp-dir", required_argument, nullptr, kTempDirOption},
    {"script-dir", required_argument, nullptr, kScriptDirOption},
    {"state-dir", required_argument, nullptr, kStateDirOption},
    {"shared-temp-dir", no_argument, nullptr, kSharedTempDirOption},
    {"real-waits", no_argument, nullptr, kRealWaitsOption},
    {"name", required_argument, nullptr, kNameOption},
    {"open", no_argument, nullptr, kOpenOption},
    {"shell", required_argument, nullptr, kShellOption},
    {"record", required_argument, nullptr, kRecordOption},
    {"record-secrets", required_argument, nullptr, kRecordSecretsOption},
    {"replay", required_argument, nullptr, kReplayOption},
    {"replay-secrets", required_argument, nullptr, kReplaySecretsOption},
    {"against", required_argument, nullptr, kAgainstOption},
    {"core-dumps", no_argument, nullptr, kCoreDumpsOption},
    {"control", required_argument, nullptr, kControlOption},
    {"control-anywhere", no_argument, nullptr, kControlAnywhereOption},
    {"show-secrets", no_argument, nullptr, kShowSecretsOption},
    {"clock", required_argument, nullptr, kClockOption},
    {"log-level", required_argument, nullptr, kLogLevelOption},
    {"dump", optional_argument, nullptr, kDumpOption},
    {"get", required_argument, nullptr, kGetOption},
    {"help", no_argument, nullptr, kHelpOption},
    {"version", no_argument, nullptr, kVersionOption},
    {nullptr, 0, nullptr, 0},
};

Status ParsePort(Options* options) {
  int port = 0;
  Status status = ParseNumber("--port", optarg, 0, kMaxPort, &port);
  options->port = port;
  return status;
}

// "PORT", "ADDRESS:PORT" or "[ADDRESS]:PORT".
Status ParseControl(Options* options) {
  std::string_view address(optarg);
  const size_t colon = address.rfind(':');
  const char* const port = colon == std::string_view::npos ? optarg : optarg + colon + 1;
  address = colon == std::string_view::npos ? "127.0.0.1" : address.substr(0, colon);
  if (address.starts_with('[') && address.ends_with(']')) {
    address = address.substr(1, address.size() - 2);
  }
  options->control_listen = address;
  return address.empty()
             ? UsageError(std::string("--control takes [ADDRESS:]PORT, not \"") + optarg + "\"")
             : ParseNumber("--control", port, 0, kMaxPort, &options->control_port);
}

Status ParseClock(Options* options) {
  options->manual_clock = std::string_view(optarg) == "manual";
  return options->manual_clock
             ? Status()
             : UsageError(std::string("--clock takes manual, not \"") + optarg + "\"");
}

// Options that go with others.
Status CheckControl(const Options& options) {
  if (options.control_listen.empty()) {
    return options.control_anywhere || options.manual_clock || options.show_secrets
               ? UsageError("--control-anywhere, --clock and --show-secrets go with --control")
               : Status();
  }
  return options.control_anywhere || IsLoopback(options.control_listen)
             ? Status()
             : UsageError(
                   "--control listens on a loopback address only, unless "
                   "--control-anywhere is given, too");
}

Status CheckRecord(const Options& options) {
  if (!options.record_secrets.empty() && options.record.empty()) {
    return UsageError("--record-secrets goes with --record");
  }
  const bool has_more = !options.against.empty() || !options.replay_secrets.empty();
  if (has_more && options.replay.empty()) {
    return UsageError("--against and --replay-secrets go with --replay");
  }
  return options.replay.empty() || options.record.empty()
             ? Status()
             : UsageError("--record and --replay do not go together");
}

Status ParseShell(Options* options) {
  options->always_shell = std::string_view(optarg) == "always";
  return options->always_shell
             ? Status()
             : UsageError(std::string("--shell takes always, not \"") + optarg + "\"");
}

Status ParseGet(Options* options) {
  options->command = Options::Command::kGet;
  options->node = optarg;
  if (!IsNodePath(options->node) && !IsCountPath(options->node)) {
    return UsageError("--get takes a path such as /sys/friendlyname, not \"" + options->node +
                      "\"");
  }
  return {};
}

Status ParseSet(Options* options) {
  Node node;
  const std::string fault = ParseNode(optarg, &node);
  if (!fault.empty()) {
    return UsageError("--set \"" + std::string(optarg) + "\": " + fault);
  }
  options->sets.push_back(std::move(node));
  return {};
}

Status ParseDump(Options* options) {
  options->command = Options::Command::kDump;
  options->node = optarg == nullptr ? "" : optarg;
  if (!options->node.empty() && !IsNodePath(options->node)) {
    return UsageError("--dump takes a path such as /sys, not \"" + options->node + "\"");
  }
  return {};
}

// The member for the text of an option; null for an option without one.
std::string* TextOption(int id, Options* options) {
  switch (id) {
    case kStoreOption:
      return &options->store;
    case kProfileOption:
      return &options->profile;
    case kListenOption:
      return &options->listen;
    case kTempDirOption:
      return &options->temp_dir;
    case kScriptDirOption:
      return &options->script_dir;
    case kStateDirOption:
      return &options->state_dir;
    case kRecordOption:
      return &options->record;
    case kRecordSecretsOption:
      return &options->record_secrets;
    case kReplayOption:
      options->command = Options::Command::kReplay;
      return &options->replay;
    case kReplaySecretsOption:
      return &options->replay_secrets;
    case kAgainstOption:
      return &options->against;
    default:
      return nullptr;
  }
}

Status ParseName(Options* options) {
  options->names.emplace_back(optarg);
  return *optarg == '\0' ? UsageError("--name: an empty text") : Status();
}

Status ParseOption(int id, const char* word, Options* options) {
  if (std::string* text = TextOption(id, options); text != nullptr) {
    *text = optarg;
    return text->empty() ? UsageError(std::string(word) + ": an empty text") : Status();
  }
  switch (id) {
    case kPortOption:
      return ParsePort(options);
    case kLogLevelOption:
      return ParseNumber("--log-level", optarg, 0, kMaxLogLevel, &options->log_level);
    case kGetOption:
      return ParseGet(options);
    case kDumpOption:
      return ParseDump(options);
    case kSetOption:
      return ParseSet(options);
    case kProfilesOption:
      options->command = Options::Command::kProfiles;
      return {};
    case kStrictOption:
      options->strict = true;
      return {};
    case kFactoryResetOption:
      options->factory_reset = true;
      return {};
    case kSharedTempDirOption:
      options->shared_temp_dir = true;
      return {};
    case kRealWaitsOption:
      options->real_waits = true;
      return {};
    case kNameOption:
      return ParseName(options);
    case kOpenOption:
      options->open = true;
      return {};
    case kShellOption:
      return ParseShell(options);
    case kControlOption:
      return ParseControl(options);
    case kControlAnywhereOption:
      options->control_anywhere = true;
      return {};
    case kShowSecretsOption:
      options->show_secrets = true;
      return {};
    case kClockOption:
      return ParseClock(options);
    case kCoreDumpsOption:
      options->core_dumps = true;
      return {};
    case kHelpOption:
      options->command = Options::Command::kHelp;
      return {};
    case kVersionOption:
      options->command = Options::Command::kVersion;
      return {};
    default:
      return UsageError(std::string(word) + ": unknown option or missing argument");
  }
}

}  // namespace

Status ParseOptions(int argc, char** argv, Options* options) {
  opterr = 0;
  optind = 1;
  while (optind < argc) {
    const char* word = argv[optind];
    const int id = getopt_long(argc, argv, "+", kOptions, nullptr);
    if (id == -1) {
      break;
    }
    Status status = ParseOption(id, word, options);
    if (!status.ok()) {
      return status;
    }
  }
  if (optind < argc) {
    return UsageError(std::string("unexpected argument \"") + argv[optind] + "\"");
  }
  const bool reads_only = !options->factory_reset && (options->command == Options::Command::kGet ||
                                                      options->command == Options::Command::kDump);
  if (reads_only && !options->sets.empty()) {
    return UsageError("--set changes the store, which --get and --dump only read");
  }
  Status status = CheckRecord(*options);
  return status.ok() ? CheckControl(*options) : status;
}

const char* HelpText() { return kHelp; }

}  // namespace kiohost
