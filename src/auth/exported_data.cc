#include "auth/exported_data.h"

#include "platform/marked_data.h"

extern "C" {
constinit kio::Marked<ClientAuthInfo*> g_own_clients = {kio::kMark};
constinit kio::Marked<ClientAuthInfo*> g_own_current_client = {kio::kMark};
constinit kio::Marked<char[80]> g_own_digest_text = {kio::kMark};

extern ClientAuthInfo* clientauthinfo [[gnu::alias("g_own_clients")]];
extern ClientAuthInfo* cur_authinfo [[gnu::alias("g_own_current_client")]];
[[gnu::alias("g_own_digest_text")]] extern char string[80];

extern void* g_auth_places[kio::kAuthDataCount] __asm__("kio_exported_auth_data");
constinit void* g_auth_places[kio::kAuthDataCount] = {&g_own_clients, &g_own_current_client,
                                                      &g_own_digest_text};
}

namespace {

void* const kBound[kio::kAuthDataCount] = {&clientauthinfo, &cur_authinfo, &string};

[[gnu::constructor(101)]] void ChooseExportedData() {
  kio::ChooseData(g_auth_places, kBound, kio::kAuthDataCount);
}

}  // namespace
