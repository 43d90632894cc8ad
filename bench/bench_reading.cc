// Reading every leaf of a document: the library against other XML parsers, against plain searches,
// and against itself on documents of other sizes.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "figures.h"
#include "toolkit_reader.h"
#include "tree_readers.h"

namespace kio::bench {
namespace {

using TreeReader = bool (*)(const char* document, std::size_t size, Settings& out);

const std::string& FullDocument() {
  static const std::string document = ReadFile(KIO_SAMPLE_DOCUMENTS "/full.xml");
  return document;
}

Settings g_settings;

// The finders take a writable text and never change it.
void ReadBy(const Toolkit& toolkit, const std::string& document) {
  g_settings.radios[0].rule_count = 0;
  g_settings.radios[1].rule_count = 0;
  ReadByToolkit(toolkit, const_cast<char*>(document.data()), g_settings);
  benchmark::ClobberMemory();
}

void ReadBy(TreeReader reader, const std::string& document) {
  g_settings.radios[0].rule_count = 0;
  g_settings.radios[1].rule_count = 0;
  if (!reader(document.data(), document.size(), g_settings)) {
    std::fprintf(stderr, "a parser refuses the document\n");
    std::exit(1);
  }
  benchmark::ClobberMemory();
}

Settings ReadOnce(const auto& reader, const std::string& document) {
  std::memset(&g_settings, 0, sizeof(g_settings));
  ReadBy(reader, document);
  return g_settings;
}

bool SameRules(const Radio& a, const Radio& b) {
  return a.rule_count == b.rule_count &&
         std::equal(a.rules, a.rules + a.rule_count, b.rules, [](const Rule& x, const Rule& y) {
           return x.active == y.active && std::strcmp(x.mac, y.mac) == 0;
         });
}

bool SameRadio(const Radio& a, const Radio& b) {
  return a.configurable == b.configurable && a.enabled == b.enabled && a.schedule == b.schedule &&
         std::strcmp(a.bssid, b.bssid) == 0 && std::strcmp(a.name, b.name) == 0 &&
         std::strcmp(a.mode, b.mode) == 0 && std::strcmp(a.key, b.key) == 0 &&
         std::strcmp(a.type, b.type) == 0 && std::strcmp(a.channel, b.channel) == 0 &&
         a.access_enabled == b.access_enabled && a.access_mode == b.access_mode && SameRules(a, b);
}

bool SameUplink(const Settings& a, const Settings& b) {
  return a.uplink_configurable == b.uplink_configurable &&
         std::strcmp(a.hardware_type, b.hardware_type) == 0 &&
         std::strcmp(a.connection_type, b.connection_type) == 0 &&
         std::strcmp(a.login_name, b.login_name) == 0 &&
         std::strcmp(a.login_password, b.login_password) == 0 &&
         std::strcmp(a.country, b.country) == 0 && std::strcmp(a.provider, b.provider) == 0;
}

bool SameSettings(const Settings& a, const Settings& b) {
  return a.major == b.major && a.minor == b.minor && a.configurable == b.configurable &&
         std::strcmp(a.device_name, b.device_name) == 0 &&
         std::strcmp(a.device_password, b.device_password) == 0 &&
         a.router_enabled == b.router_enabled && std::strcmp(a.roaming, b.roaming) == 0 &&
         std::equal(std::begin(a.safety), std::end(a.safety), b.safety) && SameUplink(a, b) &&
         SameRadio(a.radios[0], b.radios[0]) && SameRadio(a.radios[1], b.radios[1]);
}

// The times compare only when all readers read the same values.
void CheckReader(const char* name, const auto& reader) {
  const Settings expected = ReadOnce(kLibraryToolkit, FullDocument());
  if (expected.radios[1].rule_count != kRuleCapacity || expected.safety[2] != 1) {
    std::fprintf(stderr, "the full document is not full\n");
    std::exit(1);
  }
  if (!SameSettings(ReadOnce(reader, FullDocument()), expected)) {
    std::fprintf(stderr, "%s reads different values\n", name);
    std::exit(1);
  }
}

void CompareWithTree(benchmark::State& state, const char* name, TreeReader parser, double limit) {
  const std::string& document = FullDocument();
  const Pair pair = MeasurePair(
      state, [&] { ReadBy(kLibraryToolkit, document); }, [&] { ReadBy(parser, document); });
  AddFigure({std::string("leaves: ") + name + ", ns of the first", pair.first, "ns"});
  AddFigure({std::string("leaves: ") + name, pair.ratio, "x time",
             limit > 0 ? Bound::kAtMost : Bound::kNone, limit});
}

void CompareWithPlainSearch(benchmark::State& state) {
  const std::string& document = FullDocument();
  const Pair pair = MeasurePair(
      state, [&] { ReadBy(kPlainToolkit, document); }, [&] { ReadBy(kLibraryToolkit, document); });
  AddFigure({"leaves: plain search / library", pair.ratio, "x time", Bound::kAtLeast, 20});
}

// A document of about `size` bytes: the full one with rules added to its second radio, or removed
// from it.
std::string DocumentOfSize(std::size_t size) {
  std::string document = FullDocument();
  const std::size_t end = document.rfind("   </AccessControl>");
  const std::size_t begin = document.rfind("    <AcRule>", end);
  const std::string rule = document.substr(begin, end - begin);
  while (document.size() > size) {
    document.erase(document.rfind("    <AcRule>"), rule.size());
  }
  while (document.size() + rule.size() <= size) {
    document.insert(begin, rule);
  }
  return document;
}

// Reads both leaves of every rule of a document, however many rules there are. Returns the number
// of rules with an address.
int ReadAllRules(const Toolkit& toolkit, const std::string& document) {
  char* const text = const_cast<char*>(document.data());
  int count = 0;
  int length = 0;
  char path[128];
  char* const root = toolkit.find(text, 0, "root", &length);
  char* const device = toolkit.find_block("", root, length, "Device", path, &length);
  char* const device_end = device + length;
  for (const char* radio : {"Wireless2.4", "Wireless5"}) {
    char* block = toolkit.find_block("Device", device, static_cast<int>(device_end - device), radio,
                                     path, &length);
    block = toolkit.find_block(path, block, length, "AccessControl", path, &length);
    char* const end = block + length;
    while (block < end) {
      char* const tag = toolkit.find_header(block, static_cast<int>(end - block), "AcRule");
      if (tag == nullptr) {
        break;
      }
      char* const rule =
          toolkit.find_block(path, tag, static_cast<int>(end - tag), "AcRule", path, &length);
      int active = 0;
      char mac[18];
      toolkit.read_int(rule, length, path, "Active", &active);
      count += toolkit.read_text(rule, length, path, "MAC", mac, sizeof(mac));
      block = tag + 8;
    }
  }
  benchmark::DoNotOptimize(count);
  return count;
}

void Growth(benchmark::State& state) {
  const std::string small = DocumentOfSize(std::size_t{8} * 1024);
  const std::string large = DocumentOfSize(std::size_t{64} * 1024);
  const Pair pair = MeasurePair(
      state, [&] { ReadAllRules(kLibraryToolkit, large); },
      [&] { ReadAllRules(kLibraryToolkit, small); });
  const double small_rate = static_cast<double>(small.size()) / pair.second;
  const double large_rate = static_cast<double>(large.size()) / pair.first;
  AddFigure({"leaves: bytes per ns at 8 KiB", small_rate, "B/ns"});
  AddFigure({"leaves: bytes per ns at 64 KiB", large_rate, "B/ns"});
  AddFigure({"leaves: cost per byte, 64 KiB / 8 KiB",
             pair.ratio * static_cast<double>(small.size()) / static_cast<double>(large.size()),
             "x", Bound::kAtMost, 1.2});
}

}  // namespace

void RegisterReading() {
  CheckReader("the plain search", kPlainToolkit);
  CheckReader("pugixml", ReadByPugixml);
  CheckReader("rapidxml", ReadByRapidxml);
  CheckReader("expat", ReadByExpat);
  const auto compare = [](const char* name, TreeReader parser, double limit) {
    RegisterPaired(std::string("leaves/") + name,
                   [=](benchmark::State& state) { CompareWithTree(state, name, parser, limit); });
  };
  compare("library / pugixml", ReadByPugixml, 1.0);
  compare("library / rapidxml", ReadByRapidxml, 0);
  compare("library / expat", ReadByExpat, 0);
  RegisterPaired("leaves/plain / library", CompareWithPlainSearch);
  RegisterPaired("leaves/growth", Growth);
}

}  // namespace kio::bench
