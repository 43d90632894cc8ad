// The CRC of an image against zlib's, and a firmware list against a tree parser.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <rapidxml/rapidxml.hpp>
#include <vector>

#include "figures.h"
#include "kioapp/firmware.h"
#include "kioapp/text.h"
#include "memory_store.h"

namespace kio::bench {
namespace {

constexpr const char* kMac = "00:1A:2B:3C:4D:5E";
constexpr const char* kRunning = "AB12_FW1.0.2_0101.bin";

using ZlibCrc = unsigned long (*)(unsigned long, const unsigned char*, unsigned int);

// Looked up by dlsym: the linker would take the library's crc32, which has the same name.
ZlibCrc FindZlibCrc() {
  void* const zlib = dlopen(KIO_ZLIB, RTLD_NOW | RTLD_LOCAL);
  const auto function = zlib != nullptr ? reinterpret_cast<ZlibCrc>(dlsym(zlib, "crc32")) : nullptr;
  if (function == nullptr) {
    std::fprintf(stderr, "cannot find zlib's crc32\n");
    std::exit(1);
  }
  return function;
}

void Crc(benchmark::State& state) {
  constexpr unsigned int kSize = 8U << 20;
  const ZlibCrc zlib = FindZlibCrc();
  std::vector<unsigned char> image(kSize);
  std::mt19937 random(1);
  for (unsigned char& byte : image) {
    byte = static_cast<unsigned char>(random());
  }
  if (crc32(0, image.data(), kSize) != zlib(0, image.data(), kSize)) {
    std::fprintf(stderr, "the CRCs differ\n");
    std::exit(1);
  }
  const Pair pair = MeasurePair(
      state, [&] { benchmark::DoNotOptimize(crc32(0, image.data(), kSize)); },
      [&] { benchmark::DoNotOptimize(zlib(0, image.data(), kSize)); });
  AddFigure({"firmware: CRC of 8 MiB, bytes per ns", kSize / pair.first, "B/ns"});
  AddFigure({"firmware: CRC of 8 MiB, library / zlib", pair.ratio, "x time", Bound::kAtMost, 0.9});
}

// A list whose last entry fits, by its last MAC.
std::string MakeList(int entries, int macs) {
  std::string list =
      "<?xml version=\"1.0\"?>\n<root>\n <specVersion>\n  <major>1</major>\n  <minor>0</minor>\n"
      " </specVersion>\n <FirmwareList>\n";
  char text[256];
  for (int entry = 0; entry < entries; ++entry) {
    list += "  <Firmware>\n   <MacList>\n";
    for (int mac = 0; mac < macs; ++mac) {
      const bool fits = entry == entries - 1 && mac == macs - 1;
      std::snprintf(text, sizeof(text), "    <MAC>00:1A:2B:%02X:%02X:FF</MAC>\n", entry, mac);
      list += fits ? std::string("    <MAC>") + kMac + "</MAC>\n" : text;
    }
    std::snprintf(text, sizeof(text),
                  "   </MacList>\n   <MatchList>\n    <Match>AB12_FW1.0.?_*</Match>\n"
                  "   </MatchList>\n   <FwURL>/fw/AB12_FW1.0.8_%d.bin</FwURL>\n"
                  "   <NotesURL>/fw/AB12_FW1.0.8_%d.txt</NotesURL>\n  </Firmware>\n",
                  entry, entry);
    list += text;
  }
  return list + " </FirmwareList>\n</root>\n";
}

char g_file_url[128];

// Both parsers write into their text, so each gets a copy.
std::vector<char> g_copy;

char* CopyOf(const std::string& list) {
  g_copy.assign(list.c_str(), list.c_str() + list.size() + 1);
  return g_copy.data();
}

int ParseByLibrary(const std::string& list) {
  return do_FwXml_Parser(CopyOf(list), g_file_url, nullptr);
}

using Node = rapidxml::xml_node<>*;

// rapidxml has written a terminator behind each value.
bool FitsAny(Node container, const char* item, const char* own) {
  for (Node node = container->first_node(item); node != nullptr; node = node->next_sibling(item)) {
    if (strWildcardCmp(own, node->value()) == 0) {
      return true;
    }
  }
  return false;
}

bool IsInAnyRange(Node container) {
  for (Node node = container->first_node("MACs"); node != nullptr;
       node = node->next_sibling("MACs")) {
    const Node start = node->first_node("Start");
    const Node end = node->first_node("End");
    if (start != nullptr && end != nullptr && strWildcardCmp(kMac, start->value()) >= 0 &&
        strWildcardCmp(kMac, end->value()) <= 0) {
      return true;
    }
  }
  return false;
}

bool EntryFits(Node entry) {
  const Node macs = entry->first_node("MacList");
  if (macs != nullptr && !FitsAny(macs, "MAC", kMac) && !IsInAnyRange(macs)) {
    return false;
  }
  const Node names = entry->first_node("MatchList");
  return names != nullptr ? FitsAny(names, "Match", kRunning) : macs != nullptr;
}

int ParseByRapidxml(const std::string& list) {
  rapidxml::xml_document<> tree;
  tree.parse<0>(CopyOf(list));
  const Node root = tree.first_node("root");
  const Node entries = root != nullptr ? root->first_node("FirmwareList") : nullptr;
  if (entries == nullptr) {
    return KIOAPP_FW_LIST_ERROR;
  }
  for (Node entry = entries->first_node("Firmware"); entry != nullptr;
       entry = entry->next_sibling("Firmware")) {
    if (EntryFits(entry)) {
      std::snprintf(g_file_url, sizeof(g_file_url), "%s%s", get_FwServerWebSite(),
                    entry->first_node("FwURL")->value());
      return KIOAPP_FW_LIST_MATCH;
    }
  }
  return KIOAPP_FW_LIST_NO_MATCH;
}

void StoreRouter() {
  MemoryStore::Get().nodes["/fwupgradeinfo/devicemac"] = kMac;
  MemoryStore::Get().nodes["/fwupgradeinfo/currfwfilename"] = kRunning;
}

void List(benchmark::State& state) {
  StoreRouter();
  const std::string list = MakeList(100, 20);
  const int found = ParseByLibrary(list);
  const std::string url = g_file_url;
  if (found != KIOAPP_FW_LIST_MATCH || ParseByRapidxml(list) != found || url != g_file_url) {
    std::fprintf(stderr, "the lists read differently\n");
    std::exit(1);
  }
  const Pair pair = MeasurePair(
      state, [&] { ParseByLibrary(list); }, [&] { ParseByRapidxml(list); });
  AddFigure({"firmware: list of 100 x 20, ns", pair.first, "ns"});
  AddFigure({"firmware: list of 100 x 20, library / rapidxml", pair.ratio, "x time", Bound::kAtMost,
             0.9});
}

void ListGrowth(benchmark::State& state) {
  StoreRouter();
  const std::string small = MakeList(100, 20);
  const std::string large = MakeList(100, 100);
  const Pair pair = MeasurePair(
      state, [&] { ParseByLibrary(large); }, [&] { ParseByLibrary(small); });
  AddFigure({"firmware: cost per byte, 100 items / 20 items",
             pair.ratio * static_cast<double>(small.size()) / static_cast<double>(large.size()),
             "x", Bound::kAtMost, 1.2});
}

}  // namespace

void RegisterFirmware() {
  RegisterPaired("firmware/crc", Crc);
  RegisterPaired("firmware/list", List);
  RegisterPaired("firmware/list growth", ListGrowth);
}

}  // namespace kio::bench
