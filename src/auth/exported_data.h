// The data that the room exports, as its own code reaches it; platform/exported_data.h tells why.
#ifndef KIO_AUTH_EXPORTED_DATA_H
#define KIO_AUTH_EXPORTED_DATA_H

#include "kioapp/auth.h"

namespace kio {

enum ExportedAuthData : int { kDataClients, kDataCurrentClient, kDataDigestText, kAuthDataCount };

[[gnu::visibility("hidden")]] extern void* const kExportedAuthData[kAuthDataCount] __asm__(
    "kio_exported_auth_data");

inline ClientAuthInfo*& Clients() {
  return *static_cast<ClientAuthInfo**>(kExportedAuthData[kDataClients]);
}
inline ClientAuthInfo*& CurrentClient() {
  return *static_cast<ClientAuthInfo**>(kExportedAuthData[kDataCurrentClient]);
}
inline char (&DigestText())[80] {
  return *static_cast<char(*)[80]>(kExportedAuthData[kDataDigestText]);
}

}  // namespace kio

#endif
