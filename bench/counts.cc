// Counts of instructions, for callgrind:
//
//     valgrind --tool=callgrind --instr-atstart=no kio_counts SCENARIO
//
// "exchange" runs one accepted exchange of the full document on a device in factory state,
// "exchange-again" the same document a second time; "calls" and "calls-again" make the store calls
// of these exchanges again, with their paths resolved. Only what is named is counted.
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

}  // namespace

int main(int argc, char** argv) {
  const std::string scenario = argc > 1 ? argv[1] : "";
  const bool again = scenario.ends_with("-again");
  const bool is_exchange = scenario.starts_with("exchange");
  if (!is_exchange && !scenario.starts_with("calls")) {
    std::fprintf(stderr, "usage: kio_counts exchange|exchange-again|calls|calls-again\n");
    return 2;
  }
  std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s",
                std::filesystem::temp_directory_path().c_str());
  std::snprintf(daemon_log_header, sizeof(daemon_log_header), "kio_counts_%d", getpid());
  const std::string document = kio::bench::ReadFile(KIO_BENCH_DATA "/full.xml");

  // The first run notes the calls, and brings everything to where it is in a process that has run
  // for a while: symbols bound, log file chosen.
  MemoryStore& store = MemoryStore::Get();
  Prepare(document, again);
  store.recording = true;
  RunExchange(document, false);
  store.recording = false;

  Prepare(document, again);
  if (is_exchange) {
    RunExchange(document, true);
  } else {
    // As before an exchange: a large allocation puts the allocator's small ones in order.
    const std::vector<char> text(document.begin(), document.end());
    CALLGRIND_START_INSTRUMENTATION;
    kio::bench::Replay(store.calls);
    CALLGRIND_STOP_INSTRUMENTATION;
  }
  std::error_code ignored;
  std::filesystem::remove(std::string(daemon_log_path) + "/" + daemon_log_header + "_log.txt",
                          ignored);
  return 0;
}
