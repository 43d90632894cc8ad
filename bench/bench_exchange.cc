// Whole exchanges.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "figures.h"
#include "kioapp/kioapp.h"
#include "memory_store.h"

namespace kio::bench {
namespace {

class Exchange {
 public:
  explicit Exchange(const char* document) : text_(ReadFile(document)) {}

  // Each exchange gets a copy: the library writes a terminator behind the root element.
  void Run() {
    buffer_ = text_;
    if (do_RssXml_Parser(buffer_.data()) != 1) {
      std::fprintf(stderr, "the document is refused: %d %s\n", rssXmlData.setResult,
                   rssXmlData.setMsg);
      std::exit(1);
    }
  }

 private:
  std::string text_;
  std::string buffer_;
};

std::vector<StoreCall> CallsOf(Exchange& exchange) {
  MemoryStore& store = MemoryStore::Get();
  store.calls.clear();
  store.recording = true;
  exchange.Run();
  store.recording = false;
  return store.calls;
}

double Writes(const std::vector<StoreCall>& calls) {
  return static_cast<double>(std::count_if(calls.begin(), calls.end(), IsWrite));
}

void Unchanged(benchmark::State& state, const char* name, const char* document, double writes) {
  Exchange exchange(document);
  StoreFactoryDevice();
  const std::vector<StoreCall> first = CallsOf(exchange);
  const std::vector<StoreCall> again = CallsOf(exchange);
  const Pair pair = MeasurePair(
      state, [&] { exchange.Run(); }, [&] { Replay(again); });
  const std::string prefix = std::string("exchange: ") + name;
  AddFigure({prefix + ", store calls", static_cast<double>(first.size()), "calls"});
  AddFigure({prefix + ", writes", Writes(first), "writes"});
  AddFigure({prefix + " sent again, store calls", static_cast<double>(again.size()), "calls"});
  AddFigure({prefix + " sent again, writes", Writes(again), "writes", Bound::kAtMost, writes});
  AddFigure({prefix + " sent again", pair.first, "ns"});
  AddFigure({prefix + " sent again, time / its store calls", pair.ratio, "x time"});
}

// Runs the real commands, and takes the share of the time that goes elsewhere.
void RealCommands(benchmark::State& state) {
  Exchange exchange(KIO_SAMPLE_DOCUMENTS "/full.xml");
  SetCommands(Commands::kTimed);
  TakeCommandTime();
  std::vector<double> shares;
  std::vector<double> outside;
  for (auto round : state) {
    static_cast<void>(round);
    StoreFactoryDevice();
    const double total = MeanTime(1, [&] { exchange.Run(); }) * 1e-9;
    const CommandTime commands = TakeCommandTime();
    if (commands.count != 6) {
      std::fprintf(stderr, "%d commands in place of 6\n", commands.count);
      std::exit(1);
    }
    shares.push_back((total - commands.seconds) / total);
    outside.push_back((total - commands.seconds) * 1e6);
    state.SetIterationTime(total);
  }
  SetCommands(Commands::kIgnored);
  AddFigure({"exchange: time outside the six commands, us", Median(outside), "us"});
  AddFigure(
      {"exchange: time outside the six commands", Median(shares) * 100, "%", Bound::kAtMost, 1});
}

}  // namespace

void RegisterExchange() {
  RegisterPaired("exchange/small again", [](benchmark::State& state) {
    Unchanged(state, "small document", KIO_SAMPLE_DOCUMENTS "/small.xml", 0);
  });
  // With access control on, the mode of each radio is written in any case.
  RegisterPaired("exchange/full again", [](benchmark::State& state) {
    Unchanged(state, "full document", KIO_SAMPLE_DOCUMENTS "/full.xml", 2);
  });
  RegisterPaired("exchange/real commands", RealCommands);
}

}  // namespace kio::bench
