#include "fleet_options.h"

#include <arpa/inet.h>
#include <getopt.h>

#include <algorithm>
#include <cstring>

#include "option_values.h"

namespace kiofleet {
namespace {

using kiohost::ParseNumber;
using kiohost::UsageError;

constexpr int kMaxPort = 65535;
constexpr int kMostRouters = 1000;

constexpr char kHelp[] =
    R"(Usage: kiofleet [OPTION]... N [-- KIOHOST-OPTION...]
Starts N virtual routers (kiohost), each with a store, a name, MAC addresses and a port of its own.
Prints them as a JSON array when all of them serve, and tells when one ends. SIGTERM, SIGINT and
SIGHUP stop all of them; nothing is left behind.

  --profile NAME|FILE  factory settings of all (default dual-band-router)
  --directory DIR    keep the stores there, for a next time (default: they are removed at the end)
  --port PORT        port of the first router, the next ones have the next ports; 0 for any free
                     ones (default 0)
  --addresses FIRST  a loopback address for each router, from this one on, such as 127.1.0.1; all
                     have the same port, which --port must tell
  --control PORT     a control port for each router, as with --port
  --name NAME        what the routers are called; a number is added (default Router)
  --help, --version

What stands behind -- goes to each kiohost, such as: -- --open --set /uplink/ip=192.0.2.9

Exit codes: 0 stopped, 1 a router ended by itself, 2 wrong command line, 4 the profile cannot be
used, 5 a directory cannot be used, 7 the output cannot be written.
)";

enum OptionId {
  kProfileOption = 1,
  kDirectoryOption,
  kPortOption,
  kAddressesOption,
  kControlOption,
  kNameOption,
  kHelpOption,
  kVersionOption,
};

constexpr option kOptions[] = {
    {"profile", required_argument, nullptr, kProfileOption},
    {"directory", required_argument, nullptr, kDirectoryOption},
    {"port", required_argument, nullptr, kPortOption},
    {"addresses", required_argument, nullptr, kAddressesOption},
    {"control", required_argument, nullptr, kControlOption},
    {"name", required_argument, nullptr, kNameOption},
    {"help", no_argument, nullptr, kHelpOption},
    {"version", no_argument, nullptr, kVersionOption},
    {nullptr, 0, nullptr, 0},
};

Status ParseText(const char* word, std::string* text) {
  *text = optarg;
  return text->empty() ? UsageError(std::string(word) + ": an empty text") : Status();
}

Status ParseAddress(FleetOptions* options) {
  constexpr uint32_t kLoopback = 127;
  constexpr uint32_t kFirstByte = 24;
  in_addr address = {};
  if (inet_pton(AF_INET, optarg, &address) != 1 ||
      ntohl(address.s_addr) >> kFirstByte != kLoopback) {
    return UsageError(std::string("--addresses takes an address that begins with 127., not \"") +
                      optarg + "\"");
  }
  options->address = ntohl(address.s_addr);
  return {};
}

Status ParseOption(int id, const char* word, FleetOptions* options) {
  switch (id) {
    case kProfileOption:
      return ParseText(word, &options->profile);
    case kDirectoryOption:
      return ParseText(word, &options->directory);
    case kNameOption:
      return ParseText(word, &options->name);
    case kPortOption:
      return ParseNumber("--port", optarg, 0, kMaxPort, &options->port);
    case kControlOption:
      return ParseNumber("--control", optarg, 0, kMaxPort, &options->control.emplace());
    case kAddressesOption:
      return ParseAddress(options);
    case kHelpOption:
      options->command = FleetOptions::Command::kHelp;
      return {};
    case kVersionOption:
      options->command = FleetOptions::Command::kVersion;
      return {};
    default:
      return UsageError(std::string(word) + ": unknown option or missing argument");
  }
}

// Whether there is a port, or an address, for each router.
Status CheckRanges(const FleetOptions& options) {
  constexpr uint32_t kLastLoopback = 0x7ffffffe;
  const int last = options.count - 1;
  if (options.address) {
    if (options.port == 0) {
      return UsageError("--addresses takes a --port, which all routers have");
    }
    if (*options.address > kLastLoopback - static_cast<uint32_t>(last)) {
      return UsageError("there are too few addresses from --addresses on");
    }
  }
  if ((!options.address && options.port > kMaxPort - last) ||
      options.control.value_or(0) > kMaxPort - last) {
    return UsageError("there are too few ports from the first one on");
  }
  return {};
}

}  // namespace

Status ParseFleetOptions(int argc, char** argv, FleetOptions* options) {
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
  if (options->command != FleetOptions::Command::kServe) {
    return {};
  }
  if (optind == argc) {
    return UsageError("how many routers?");
  }
  Status status =
      ParseNumber("the number of routers", argv[optind], 1, kMostRouters, &options->count);
  if (!status.ok()) {
    return status;
  }
  ++optind;
  if (optind < argc && std::strcmp(argv[optind], "--") != 0) {
    return UsageError(std::string("unexpected argument \"") + argv[optind] +
                      "\"; options stand before the number, those of kiohost behind --");
  }
  options->for_kiohost.assign(argv + std::min(optind + 1, argc), argv + argc);
  return CheckRanges(*options);
}

const char* FleetHelp() { return kHelp; }

std::string AddressText(uint32_t address) {
  char text[INET_ADDRSTRLEN];
  const in_addr network = {.s_addr = htonl(address)};
  return inet_ntop(AF_INET, &network, text, sizeof text);
}

}  // namespace kiofleet
