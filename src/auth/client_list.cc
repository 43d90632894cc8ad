// The clients that are logged in.
#include "auth/client_list.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "auth/exported_data.h"
#include "kioapp/auth.h"
#include "kioapp/platform.h"
#include "platform/log.h"
#include "platform/text.h"
#include "platform/wipe.h"

namespace kio::auth {
namespace {

using platform::CopyText;
using platform::kLogAction;
using platform::kLogDetail;
using platform::ViewOf;

// The uptime as the list keeps it: unsigned, so that it goes on beyond 2^31 seconds where long has
// 32 bits.
std::uint32_t Now() { return static_cast<std::uint32_t>(sys_uptime_seconds()); }

std::uint32_t LogoutFromNow() { return LogoutAfter(sys_uptime_seconds()); }

// Quirk "address-cut-is-not-found": a longer address than the member holds equals none.
[[gnu::noinline]] bool HasAddress(const ClientAuthInfo& client, const char* ip) {
  return ip != nullptr && std::strcmp(client.ip, ip) == 0;
}

[[gnu::noinline]] bool HasSession(const ClientAuthInfo& client, const char* request) {
  return request != nullptr && std::strstr(request, client.sessionid) != nullptr;
}

bool Matches(const ClientAuthInfo& client, const char* ip, const char* request, int mode) {
  return HasAddress(client, ip) && (mode == KIOAPP_MATCH_ADDRESS || HasSession(client, request));
}

[[gnu::noinline]] ClientAuthInfo* Find(ClientAuthInfo* head, const char* ip, const char* request,
                                       int mode) {
  while (head != nullptr && !Matches(*head, ip, request, mode)) {
    head = head->next;
  }
  return head;
}

// Whether a removal takes this client, which is not the first one of the list.
bool IsRemovedFromBehind(const ClientAuthInfo& client, const char* ip, const char* request,
                         int mode) {
  if (HasAddress(client, ip)) {
    return true;
  }
  // Quirk "later-clients-go-by-other-sessions": clients that the request does not name go as well.
  return mode != KIOAPP_MATCH_ADDRESS && !HasSession(client, request);
}

[[gnu::noinline]] void LogRemoval(const ClientAuthInfo& client, int place, int mode) {
  if (mode == KIOAPP_MATCH_ADDRESS) {
    KIO_LOG(kLogDetail, "%d Delete IP %s from list.\n", place, client.ip);
  } else {
    KIO_LOG(kLogDetail, "%d Delete IP %s(%s) from list.\n", place, client.ip, client.sessionid);
  }
}

// Takes the client that `link` leads to out of its list and frees it.
[[gnu::noinline]] void Remove(ClientAuthInfo** link) {
  ClientAuthInfo* const client = *link;
  *link = client->next;
  if (CurrentClient() == client) {
    CurrentClient() = nullptr;
  }
  platform::Wipe(client->password);
  std::free(client);
}

void RemoveAll(ClientAuthInfo** head) {
  while (*head != nullptr) {
    printList(*head);
    Remove(head);
  }
}

ClientAuthInfo* NewClient(const char* ip, const char* username, const char* password) {
  auto* const client = static_cast<ClientAuthInfo*>(std::calloc(1, sizeof(ClientAuthInfo)));
  if (client != nullptr) {
    // Quirk "session-from-the-clock": clients that are added within one second share a session id.
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    const int session = std::rand();
    CopyText(client->ip, ViewOf(ip));
    CopyText(client->username, ViewOf(username));
    CopyText(client->password, ViewOf(password));
    std::snprintf(client->sessionid, sizeof(client->sessionid), "%.8x",
                  static_cast<unsigned>(session));
  }
  return client;
}

}  // namespace
}  // namespace kio::auth

int clientAuthListAdd(ClientAuthInfo** head, const char* ip, const char* username,
                      const char* password, const char* request, int mode) {
  kio::platform::LogEntry("clientAuthListAdd");
  if (head == nullptr) {
    return 1;
  }
  if (ClientAuthInfo* const client = kio::auth::Find(*head, ip, request, mode)) {
    if (mode == KIOAPP_MATCH_ADDRESS) {
      client->logout = kio::auth::LogoutFromNow();
    }
    return 0;
  }
  ClientAuthInfo* const client = kio::auth::NewClient(ip, username, password);
  if (client == nullptr) {
    // Quirk "added-without-memory": told as if the client had been added.
    return 1;
  }
  // Quirk "mode-zero-adds-lapsed": such a client never passes.
  client->logout = mode == KIOAPP_MATCH_LAPSED ? 0 : kio::auth::LogoutFromNow();
  ClientAuthInfo** end = head;
  while (*end != nullptr) {
    end = &(*end)->next;
  }
  *end = client;
  KIO_LOG(kio::platform::kLogAction, "Add new node ip=%s\n", client->ip);
  kio::CurrentClient() = client;
  printList(kio::Clients());
  return 1;
}

int clientAuthListDel(ClientAuthInfo** head, const char* ip, const char* request, int mode) {
  kio::platform::LogEntry("clientAuthListDel");
  if (head == nullptr || *head == nullptr) {
    KIO_LOG(kio::platform::kLogAction, "No IP to be deleted.\n");
    return 0;
  }
  if (ip == nullptr) {
    // Quirk "removal-of-all-tells-none".
    kio::auth::RemoveAll(head);
    return 0;
  }
  if (kio::auth::Matches(**head, ip, request, mode)) {
    kio::auth::LogRemoval(**head, 1, mode);
    kio::auth::Remove(head);
    return 1;
  }
  for (ClientAuthInfo** link = &(*head)->next; *link != nullptr; link = &(*link)->next) {
    if (kio::auth::IsRemovedFromBehind(**link, ip, request, mode)) {
      kio::auth::LogRemoval(**link, 2, mode);
      kio::auth::Remove(link);
      return 1;
    }
  }
  return 0;
}

ClientAuthInfo* checkClientAuthIp(ClientAuthInfo* head, const char* ip, const char* request,
                                  int mode) {
  kio::platform::LogEntry("checkClientAuthIp");
  return kio::auth::Find(head, ip, request, mode);
}

int check_StarterAuthIP(const char* ip, const char* request) {
  KIO_LOG_NAMED("check_StarterAuthIP", "%s", "");
  kio::CurrentClient() = checkClientAuthIp(kio::Clients(), ip, request, KIOAPP_MATCH_ADDRESS);
  if (kio::CurrentClient() != nullptr) {
    if (kio::auth::Now() < kio::CurrentClient()->logout) {
      kio::CurrentClient()->logout = kio::auth::LogoutFromNow();
      KIO_LOG(kio::platform::kLogDetail, "Auth Client IP, logout=%ld\n",
              static_cast<long>(kio::CurrentClient()->logout));
      return 0;
    }
    clientAuthListDel(&kio::Clients(), ip, request, KIOAPP_MATCH_ADDRESS);
  }
  KIO_LOG(kio::platform::kLogDetail, "UnAuth Rss Client IP!\n");
  return -1;
}

void printList(ClientAuthInfo* head) {
  kio::platform::LogName("printList");
  if (head == nullptr) {
    KIO_LOG(kio::platform::kLogDetail, "Auth list is empty.\n");
    return;
  }
  KIO_LOG(kio::platform::kLogDetail, "The Auth list is:\n");
  for (; head != nullptr; head = head->next) {
    KIO_LOG(kio::platform::kLogAction, "ip=%s,username=%s, sessionid=%s-->", head->ip,
            head->username, head->sessionid);
  }
  KIO_LOG(kio::platform::kLogAction, "NULL \n\n");
}
