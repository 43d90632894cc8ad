#include "observe.h"

#include <cstddef>
#include <cstring>
#include <string>

#include "kioapp/kioapp.h"
#include "machine.h"

namespace kio::differential {

ClientAuthInfo* g_other_clients = nullptr;

namespace {

// Exported data, and its content at the last look.
struct Region {
  std::string_view name;
  char* data;
  std::size_t size;
  std::string seen = std::string(size, '\0');
};

template <class Object>
Region RegionOf(std::string_view name, Object& object) {
  return {name, reinterpret_cast<char*>(&object), sizeof(object)};
}

Region g_regions[] = {
    RegionOf("rssXmlData", rssXmlData),
    RegionOf("fwXmlData", fwXmlData),
    RegionOf("string", string),
    RegionOf("daemon_log_path", daemon_log_path),
    RegionOf("daemon_log_header", daemon_log_header),
    RegionOf("daemon_log_level", daemon_log_level),
    RegionOf("daemon_log_file_size_k", daemon_log_file_size_k),
};
std::string g_clients_seen;
void (*g_handler_seen)(const char* path, const char* key) = nullptr;

// Changes that are closer to each other than this make one event.
constexpr std::size_t kGap = 16;

void ObserveRegion(Region& region) {
  if (std::memcmp(region.data, region.seen.data(), region.size) == 0) {
    return;
  }
  std::size_t at = 0;
  while (at < region.size) {
    if (region.data[at] == region.seen[at]) {
      ++at;
      continue;
    }
    std::size_t end = at + 1;
    for (std::size_t i = end; i < region.size && i < end + kGap; ++i) {
      end = region.data[i] != region.seen[i] ? i + 1 : end;
    }
    Event(region.name, {"from byte", at, std::string_view(region.data + at, end - at)});
    at = end;
  }
  region.seen.assign(region.data, region.size);
}

void AppendClients(std::string& text, const ClientAuthInfo* head) {
  for (const ClientAuthInfo* client = head; client != nullptr; client = client->next) {
    const auto* const bytes = reinterpret_cast<const char*>(client);
    text += client == cur_authinfo ? "current " : "client ";
    text.append(bytes + offsetof(ClientAuthInfo, ip),
                sizeof(*client) - offsetof(ClientAuthInfo, ip));
  }
}

std::string Clients() {
  std::string text;
  if (clientauthinfo != nullptr || g_other_clients != nullptr || cur_authinfo != nullptr) {
    AppendClients(text, clientauthinfo);
    text += '|';
    AppendClients(text, g_other_clients);
    text += cur_authinfo != nullptr ? " with a current one" : " without one";
  }
  return text;
}

std::string_view HandlerName() {
  if (XmlErrMsg_LostKey == nullptr) {
    return "none";
  }
  return XmlErrMsg_LostKey == write_RssXml_LostKeyError ? "write_RssXml_LostKeyError" : "another";
}

}  // namespace

void Observe() {
  for (Region& region : g_regions) {
    ObserveRegion(region);
  }
  if (std::string clients = Clients(); clients != g_clients_seen) {
    g_clients_seen = std::move(clients);
    Event("clients", {g_clients_seen});
  }
  if (XmlErrMsg_LostKey != g_handler_seen) {
    g_handler_seen = XmlErrMsg_LostKey;
    Event("XmlErrMsg_LostKey", {HandlerName()});
  }
}

void AcceptChanges() {
  for (Region& region : g_regions) {
    region.seen.assign(region.data, region.size);
  }
  g_clients_seen = Clients();
  g_handler_seen = XmlErrMsg_LostKey;
}

void WatchClients() {
  std::vector<const ClientAuthInfo*>& watched = Machine::Get().clients;
  watched.clear();
  for (const ClientAuthInfo* head : {clientauthinfo, g_other_clients}) {
    for (; head != nullptr; head = head->next) {
      watched.push_back(head);
    }
  }
}

long OffsetIn(const char* pointer, const char* text, std::size_t size) {
  if (pointer == nullptr) {
    return -1;
  }
  return pointer >= text && pointer <= text + size ? pointer - text : -2;
}

}  // namespace kio::differential
