#include "platform/exported_data.h"

#include <cstddef>
#include <cstring>

#include "kioapp/log.h"
#include "kioapp/xml.h"

namespace {

// What each of the data begins with until the library is loaded. A copy in the executable begins
// with it too: the loader has copied the library's bytes by then. Nothing of the host's does.
constexpr unsigned kMark = 0x91E36BB5;

// The storage of one of them.
template <typename Data>
union Marked {
  unsigned mark;
  Data data;
};

}  // namespace

extern "C" {
// Hidden names of their own: the exported ones may be bound elsewhere.
constinit Marked<RssXmlData> g_own_record = {kMark};
constinit Marked<FwXmlData> g_own_firmware = {kMark};
constinit Marked<kio::LostKeyHandler> g_own_lost_key_handler = {kMark};
constinit Marked<ClientAuthInfo*> g_own_clients = {kMark};
constinit Marked<ClientAuthInfo*> g_own_current_client = {kMark};
constinit Marked<char[80]> g_own_digest_text = {kMark};
constinit Marked<char[64]> g_own_log_path = {kMark};
constinit Marked<char[32]> g_own_log_header = {kMark};
constinit Marked<int> g_own_log_level = {kMark};
constinit Marked<int> g_own_log_file_size = {kMark};

extern RssXmlData rssXmlData [[gnu::alias("g_own_record")]];
extern FwXmlData fwXmlData [[gnu::alias("g_own_firmware")]];
extern kio::LostKeyHandler XmlErrMsg_LostKey [[gnu::alias("g_own_lost_key_handler")]];
extern ClientAuthInfo* clientauthinfo [[gnu::alias("g_own_clients")]];
extern ClientAuthInfo* cur_authinfo [[gnu::alias("g_own_current_client")]];
extern char string[80] [[gnu::alias("g_own_digest_text")]];
extern char daemon_log_path[64] [[gnu::alias("g_own_log_path")]];
extern char daemon_log_header[32] [[gnu::alias("g_own_log_header")]];
extern int daemon_log_level [[gnu::alias("g_own_log_level")]];
extern int daemon_log_file_size_k [[gnu::alias("g_own_log_file_size")]];

// Written below and nowhere else.
extern void* g_places[kio::kDataCount] __asm__("kio_exported_data");
constinit void* g_places[kio::kDataCount] = {
    &g_own_record,         &g_own_firmware,     &g_own_lost_key_handler, &g_own_clients,
    &g_own_current_client, &g_own_digest_text,  &g_own_log_path,         &g_own_log_header,
    &g_own_log_level,      &g_own_log_file_size};
}

namespace {

// Where the dynamic linker found the exported names.
void* const kBound[kio::kDataCount] = {
    &rssXmlData, &fwXmlData,       &XmlErrMsg_LostKey, &clientauthinfo,   &cur_authinfo,
    &string,     &daemon_log_path, &daemon_log_header, &daemon_log_level, &daemon_log_file_size_k};

// Reads no byte behind the first one that differs: what the host has there may be one byte.
bool BeginsWithMark(const void* data) {
  const unsigned mark = kMark;
  const auto* const expected = reinterpret_cast<const volatile unsigned char*>(&mark);
  const auto* const found = static_cast<const volatile unsigned char*>(data);
  for (std::size_t i = 0; i < sizeof(mark); ++i) {
    if (found[i] != expected[i]) {
      return false;
    }
  }
  return true;
}

// Before any constructor without a priority: those may call the library.
[[gnu::constructor(101)]] void ChooseExportedData() {
  for (int i = 0; i < kio::kDataCount; ++i) {
    if (BeginsWithMark(kBound[i])) {
      g_places[i] = kBound[i];
    }
    std::memset(g_places[i], 0, sizeof(kMark));
  }
  // Not by the accessors: to those the table is constant.
  *static_cast<int*>(g_places[kio::kDataLogLevel]) = 5;
  *static_cast<int*>(g_places[kio::kDataLogFileSize]) = 250;
}

}  // namespace
