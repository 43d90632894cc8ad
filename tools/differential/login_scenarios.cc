// Keys and the list of clients, over a clock that moves.
#include <cstring>

#include "buffers.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

constexpr const char* kAddresses[] = {"10.1.1.2", "10.1.1.3", "10.1.1.20", "fe80::1"};

std::string ClientAddress(Random& random) {
  if (random.OneIn(10)) {
    return Odd(random, 160);
  }
  return random.OneIn(15) ? Letters(random, random.Between(125, 130)) : random.Of(kAddresses);
}

void MoveClock(Random& random) {
  constexpr long kSteps[] = {0, 1, 19, 20, 21, 60, 80, 299, 300, 301, 1000};
  long& uptime = Machine::Get().uptime;
  switch (random.Below(10)) {
    case 0:
      uptime = random.Below(60);
      break;
    case 1: {
      constexpr long kEnds[] = {2147483647, 2147483347, 4294967295, 4294967000, 42949672960};
      uptime = random.Of(kEnds);
      break;
    }
    default:
      uptime += random.Of(kSteps);
      break;
  }
  Machine::Get().time_of_day += random.Below(3);
  Note("uptime", {uptime});
}

// The key of a time slot near the present one, made as kioapp/auth.h describes it.
std::string Key(Random& random, const std::string& address) {
  const long slot = Machine::Get().uptime / 20 + random.Between(-2, 4);
  const std::string password = Store::Text("/sys/user:1/password").value_or("");
  const std::string source =
      std::to_string(static_cast<int>(slot)) + address + "admin" + password.substr(0, 63);
  return MD5Encryption(source.substr(0, 127).c_str());
}

std::string Request(Random& random, const std::string& address) {
  const std::string key = Key(random, address);
  std::string request = "GET /x?";
  switch (random.Below(10)) {
    case 0:
      request += "BKey=" + key.substr(0, 8);
      break;
    case 1:
      request += "kioAppKey=" + key;
      break;
    case 2:
      request += "kioAppKey=%" + key.substr(0, static_cast<std::size_t>(random.Below(32)));
      break;
    case 3:
      request += "BKey=" + key + "&kioAppKey=:" + key;
      break;
    case 4:
      request += random.OneIn(2) ? "kioAppKey" : "kioAppKey=";
      break;
    case 5:
      request += "kioAppKey=:" + Mutated(random, key, 1);
      break;
    case 6:
      request += "BKey=" + MixedCase(random, key);
      break;
    default:
      request += "kioAppKey=:" + key;
      break;
  }
  request += random.OneIn(2) ? " HTTP/1.1" : "";
  // The session ids of some clients of the list.
  for (const ClientAuthInfo* client = clientauthinfo; client != nullptr; client = client->next) {
    if (random.OneIn(3)) {
      request += std::string(" session=") + client->sessionid;
    }
  }
  return random.OneIn(20) ? Mutated(random, request, 2) : request;
}

void LogIn(Random& random) {
  const std::string address = ClientAddress(random);
  const std::string request = Request(random, address);
  const Buffer text(request);
  const Buffer ip(address);
  Note("request", {request, address});
  const int result = starter_auth_check(random.OneIn(40) ? nullptr : text.get(),
                                        random.OneIn(40) ? nullptr : ip.get(),
                                        random.OneIn(5) ? nullptr : text.get());
  Answer("starter_auth_check", {result});
}

// The place of a client in the two lists, counted from 1; 0 for null, -1 when it is in neither.
long Where(const ClientAuthInfo* client) {
  long place = 0;
  for (const ClientAuthInfo* head : {clientauthinfo, g_other_clients}) {
    for (; head != nullptr; head = head->next) {
      ++place;
      if (head == client) {
        return place;
      }
    }
  }
  return client == nullptr ? 0 : -1;
}

void CallList(Random& random) {
  ClientAuthInfo** const head = random.OneIn(5) ? &g_other_clients : &clientauthinfo;
  const std::string address = ClientAddress(random);
  const std::string request = Request(random, address);
  const Buffer ip(address);
  const Buffer text(request);
  const char* const session = random.OneIn(3) ? nullptr : text.get();
  const int mode = random.OneIn(10) ? random.Between(-1, 4) : random.Below(3);
  WatchClients();
  switch (random.Below(8)) {
    case 0:
    case 1:
    case 2: {
      const Buffer user(random.OneIn(6) ? Odd(random, 100) : "admin");
      const Buffer password(Password(random));
      Machine::Get().no_memory = random.OneIn(20);
      const int result =
          clientAuthListAdd(head, ip.get(), user.get(), password.get(), session, mode);
      Machine::Get().no_memory = false;
      Answer("clientAuthListAdd", {result, mode, address});
      break;
    }
    case 3:
    case 4: {
      const int result =
          clientAuthListDel(head, random.OneIn(12) ? nullptr : ip.get(), session, mode);
      Answer("clientAuthListDel", {result, mode, address});
      break;
    }
    case 5:
      Answer(
          "checkClientAuthIp",
          {Where(checkClientAuthIp(*head, random.OneIn(12) ? nullptr : ip.get(), session, mode))});
      break;
    case 6:
      Answer("check_StarterAuthIP", {check_StarterAuthIP(ip.get(), session)});
      break;
    default:
      printList(*head);
      Answer("printList", {});
      break;
  }
}

void RunLogins(Random& random) {
  for (int i = random.Between(2, 10); i > 0; --i) {
    if (random.OneIn(2)) {
      LogIn(random);
    } else {
      const Buffer ip(ClientAddress(random));
      WatchClients();
      Answer("check_StarterAuthIP", {check_StarterAuthIP(ip.get(), nullptr)});
    }
    MoveClock(random);
  }
}

void RunClients(Random& random) {
  for (int i = random.Between(2, 16); i > 0; --i) {
    CallList(random);
    if (random.OneIn(3)) {
      MoveClock(random);
    }
  }
  if (random.OneIn(2)) {
    WatchClients();
    Answer("clientAuthListDel", {clientAuthListDel(&clientauthinfo, nullptr, nullptr, 1)});
    Answer("clientAuthListDel", {clientAuthListDel(&g_other_clients, nullptr, nullptr, 0)});
  }
}

void RunKeys(Random& random) {
  const Buffer ip(ClientAddress(random));
  Answer("generate_StarterKey", {generate_StarterKey(ip.get())});
  MoveClock(random);
  Answer("generate_BKey", {generate_BKey(ip.get())});
  const std::string text = random.OneIn(3) ? Odd(random) : Letters(random, random.Below(140));
  const Buffer source(text);
  Answer("MD5Encryption", {MD5Encryption(source.get())});
  const Buffer digest(std::size_t{16});
  MD5Digest(source.get(), static_cast<unsigned>(random.Next()),
            reinterpret_cast<unsigned char*>(digest.get()));
  Answer("MD5Digest", {digest.bytes()});
  const Buffer digits(std::size_t{33});
  Hex2String(reinterpret_cast<const unsigned char*>(digest.get()), digits.get(),
             random.Between(-1, 16));
  Answer("Hex2String", {digits.bytes()});
}

constexpr Kind kKinds[] = {
    {"logins", 6, RunLogins}, {"clients", 6, RunClients}, {"keys", 3, RunKeys}};

}  // namespace

const std::span<const Kind> kLoginKinds = kKinds;

}  // namespace kio::differential
