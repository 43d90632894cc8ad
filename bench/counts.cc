// Counts of instructions, for callgrind:
//
//     valgrind --tool=callgrind --instr-atstart=no kio_counts SCENARIO [SIZE]
//
// "exchange" runs one accepted exchange of the full document on a device in factory state,
// "exchange-again" the same document a second time; "calls" and "calls-again" make the store calls
// of these exchanges again, with their paths resolved. "wrong-key" checks a wrong key, "host-share"
// reads what that check reads from the host and the system, and "digest" takes a digest. The
// scenarios with a size (kGrowths below) show how the cost grows with a text. The preparation of a
// scenario is not counted.
#include <unistd.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "figures.h"
#include "kioapp/kioapp.h"
#include "memory_store.h"

namespace {

using kio::bench::MemoryStore;

void RunExchange(const std::string& document, bool counted) {
  std::string text = document;
  if (counted) {
    CALLGRIND_START_INSTRUMENTATION;
  }
  const int result = do_RssXml_Parser(text.data());
  if (counted) {
    CALLGRIND_STOP_INSTRUMENTATION;
  }
  if (result != 1) {
    std::fprintf(stderr, "the document is refused: %d %s\n", rssXmlData.setResult,
                 rssXmlData.setMsg);
    std::exit(1);
  }
}

// Brings the store into the state before the counted exchange.
void Prepare(const std::string& document, bool again) {
  kio::bench::StoreFactoryDevice();
  if (again) {
    RunExchange(document, false);
  }
}

std::string Repeated(std::size_t count, const std::string& text) {
  std::string all;
  all.reserve(count * text.size());
  for (std::size_t i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

// As much of a repeated text as a size holds.
std::string Filled(std::size_t size, const std::string& text) {
  return Repeated(size / text.size(), text);
}

constexpr std::size_t kKibibyte = 1024;
constexpr std::size_t kMebibyte = kKibibyte * kKibibyte;

int RunBatch(char* text) { return do_RssVar_Parser(text, '&', nullptr, 0); }

int RunList(char* text) { return do_FwXml_Parser(text, nullptr, nullptr); }

std::string FirmwareList(const std::string& entries) {
  return "<root><specVersion><major>1</major><minor>0</minor></specVersion><FirmwareList>" +
         entries + "</FirmwareList></root>";
}

struct Growth {
  const char* name;
  std::string (*text)(std::size_t size);
  int (*run)(char* text);
  int result;
};

const Growth kGrowths[] = {
    // A batch of SIZE KiB, its pairs parted by separators or by line ends.
    {"batch", [](std::size_t size) { return Filled(size * kKibibyte, "rss_DeviceName=a&"); },
     RunBatch, 0},
    {"batch-lines", [](std::size_t size) { return Filled(size * kKibibyte, "rss_DeviceName=a\n"); },
     RunBatch, 0},
    // SIZE entries with empty lists, which reach into the mebibyte of items behind them.
    {"list-empty",
     [](std::size_t size) {
       return FirmwareList(Repeated(size, "<Firmware><MacList></MacList><MatchList/></Firmware>") +
                           Filled(kMebibyte, "<MACs><Start>FF</Start><End>FF</End></MACs>"));
     },
     RunList, KIOAPP_FW_LIST_NO_MATCH},
    // The same before as many ranges that share what stands a mebibyte behind them.
    {"list-ranges",
     [](std::size_t size) {
       return FirmwareList(Repeated(size, "<Firmware><MacList></MacList></Firmware>") +
                           Repeated(size, "<MACs>") + Filled(kMebibyte, "<Star></Star>") +
                           "<Start>FF</Start><End>FF</End></MACs>");
     },
     RunList, KIOAPP_FW_LIST_NO_MATCH},
    // SIZE entries that share a list which stands a mebibyte behind them.
    {"list-entries",
     [](std::size_t size) {
       return FirmwareList(Repeated(size, "<Firmware>") + Filled(kMebibyte, "<MacLis></MacLis>") +
                           "<MacList><MAC>FF</MAC></MacList></Firmware>");
     },
     RunList, KIOAPP_FW_LIST_NO_MATCH},
};

const Growth* FindGrowth(const std::string& name) {
  for (const Growth& growth : kGrowths) {
    if (name == growth.name) {
      return &growth;
    }
  }
  return nullptr;
}

void CountGrowth(const Growth& growth, std::size_t size) {
  kio::bench::StoreFactoryDevice();
  MemoryStore::Get().nodes["/fwupgradeinfo/devicemac"] = "00:1A:2B:3C:4D:5E";
  const std::string text = growth.text(size);
  // The first run is not counted: it binds symbols and chooses the log file.
  for (const bool counted : {false, true}) {
    init_RssVar();
    std::string copy = text;
    if (counted) {
      CALLGRIND_START_INSTRUMENTATION;
    }
    const int result = growth.run(copy.data());
    CALLGRIND_STOP_INSTRUMENTATION;
    if (result != growth.result) {
      std::fprintf(stderr, "%s: the result is %d\n", growth.name, result);
      std::exit(1);
    }
  }
}

// The exchange of the full document, or its store calls.
void CountExchange(const std::string& scenario) {
  const bool again = scenario.ends_with("-again");
  const std::string document = kio::bench::ReadFile(KIO_SAMPLE_DOCUMENTS "/full.xml");

  // The first run notes the calls. It also binds symbols and chooses the log file, which happens
  // only once in a process.
  MemoryStore& store = MemoryStore::Get();
  Prepare(document, again);
  store.recording = true;
  RunExchange(document, false);
  store.recording = false;

  Prepare(document, again);
  if (scenario.starts_with("exchange")) {
    RunExchange(document, true);
  } else {
    // RunExchange copies the document before it counts. So large an allocation has the allocator
    // merge its small free blocks; the calls must find them merged too.
    const std::vector<char> text(document.begin(), document.end());
    CALLGRIND_START_INSTRUMENTATION;
    kio::bench::Replay(store.calls);
    CALLGRIND_STOP_INSTRUMENTATION;
  }
}

// As long as the source of a key usually is: slot, address, "admin" and a password.
constexpr char kSource[] = "1234567192.168.100.123adminHome-Router-12345!!";

void CheckWrongKey() {
  const int result =
      starter_auth_check("kioAppKey= 0123456789abcdef0123456789abcdef", "192.168.100.123", "");
  if (result != -1) {
    std::fprintf(stderr, "a wrong key is good\n");
    std::exit(1);
  }
}

void AskHost() {
  char password[4096];
  xget_str(password, "%s", "/sys/user:1/password");
  static_cast<void>(sys_uptime_seconds());
}

void TakeDigest() {
  unsigned char digest[16];
  MD5Digest(kSource, sizeof(kSource) - 1, digest);
}

// A step of the login.
struct LoginStep {
  const char* name;
  void (*run)();
};

constexpr LoginStep kLoginSteps[] = {
    {"wrong-key", CheckWrongKey}, {"host-share", AskHost}, {"digest", TakeDigest}};

const LoginStep* FindLoginStep(const std::string& name) {
  for (const LoginStep& step : kLoginSteps) {
    if (name == step.name) {
      return &step;
    }
  }
  return nullptr;
}

void CountLoginStep(const LoginStep& step) {
  kio::bench::StoreFactoryDevice();
  xset_str("Home-Router-12345!!", "%s", "/sys/user:1/password");
  // The first run is not counted: it binds the symbols.
  step.run();
  CALLGRIND_START_INSTRUMENTATION;
  step.run();
  CALLGRIND_STOP_INSTRUMENTATION;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string scenario = argc > 1 ? argv[1] : "";
  const Growth* const growth = argc == 3 ? FindGrowth(scenario) : nullptr;
  const LoginStep* const step = argc == 2 ? FindLoginStep(scenario) : nullptr;
  const bool is_exchange = scenario == "exchange" || scenario == "exchange-again" ||
                           scenario == "calls" || scenario == "calls-again";
  if (growth == nullptr && step == nullptr && (argc != 2 || !is_exchange)) {
    std::fprintf(stderr,
                 "usage: kio_counts exchange|exchange-again|calls|calls-again\n"
                 "       kio_counts wrong-key|host-share|digest\n"
                 "       kio_counts batch|batch-lines|list-empty|list-ranges|list-entries SIZE\n");
    return 2;
  }
  std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s",
                std::filesystem::temp_directory_path().c_str());
  std::snprintf(daemon_log_header, sizeof(daemon_log_header), "kio_counts_%d", getpid());
  if (growth != nullptr) {
    CountGrowth(*growth, std::strtoul(argv[2], nullptr, 10));
  } else if (step != nullptr) {
    CountLoginStep(*step);
  } else {
    CountExchange(scenario);
  }
  std::error_code ignored;
  std::filesystem::remove(std::string(daemon_log_path) + "/" + daemon_log_header + "_log.txt",
                          ignored);
  return 0;
}
