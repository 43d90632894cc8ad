#include "platform/exported_data.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "kioapp/log.h"
#include "kioapp/xml.h"
#include "platform/marked_data.h"

extern "C" {
constinit kio::Marked<RssXmlData> g_own_record = {kio::kMark};
constinit kio::Marked<kio::LostKeyHandler> g_own_lost_key_handler = {kio::kMark};
constinit kio::Marked<char[64]> g_own_log_path = {kio::kMark};
constinit kio::Marked<char[32]> g_own_log_header = {kio::kMark};
constinit kio::Marked<int> g_own_log_level = {kio::kMark};
constinit kio::Marked<int> g_own_log_file_size = {kio::kMark};

extern RssXmlData rssXmlData [[gnu::alias("g_own_record")]];
extern kio::LostKeyHandler XmlErrMsg_LostKey [[gnu::alias("g_own_lost_key_handler")]];
[[gnu::alias("g_own_log_path")]] extern char daemon_log_path[64];
[[gnu::alias("g_own_log_header")]] extern char daemon_log_header[32];
extern int daemon_log_level [[gnu::alias("g_own_log_level")]];
extern int daemon_log_file_size_k [[gnu::alias("g_own_log_file_size")]];

extern void* g_places[kio::kDataCount] __asm__("kio_exported_data");
constinit void* g_places[kio::kDataCount] = {&g_own_record,    &g_own_lost_key_handler,
                                             &g_own_log_path,  &g_own_log_header,
                                             &g_own_log_level, &g_own_log_file_size};
}

namespace {

void* const kBound[kio::kDataCount] = {&rssXmlData,       &XmlErrMsg_LostKey,
                                       &daemon_log_path,  &daemon_log_header,
                                       &daemon_log_level, &daemon_log_file_size_k};

// Reads no byte behind the first one that differs: what the host has there may be one byte.
bool BeginsWithMark(const void* data) {
  constexpr auto kExpected =
      std::bit_cast<std::array<unsigned char, sizeof(kio::kMark)>>(kio::kMark);
  const auto* const found = static_cast<const volatile unsigned char*>(data);
  for (std::size_t i = 0; i < sizeof(kio::kMark); ++i) {
    if (found[i] != kExpected[i]) {
      return false;
    }
  }
  return true;
}

// Before any constructor without a priority: those may call the library.
[[gnu::constructor(101)]] void ChooseExportedData() {
  kio::ChooseData(g_places, kBound, kio::kDataCount);
  // Not by the accessors: to those the table is constant.
  *static_cast<int*>(g_places[kio::kDataLogLevel]) = 5;
  *static_cast<int*>(g_places[kio::kDataLogFileSize]) = 250;
}

}  // namespace

void kio::ChooseData(void** places, void* const* bound, int count) {
  for (int i = 0; i < count; ++i) {
    if (BeginsWithMark(bound[i])) {
      places[i] = bound[i];
    }
    std::memset(places[i], 0, sizeof(kMark));
  }
}
