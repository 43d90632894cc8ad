// A login and what follows. The input is a line with the uptime, a line with the client's address,
// and the request. "@0" to "@9" in the request stand for the keys of ten slots; "@4" is that of the
// present slot. The result is compared with that of a plain model.
#include <cstdio>
#include <cstring>

#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace {

constexpr char kPassword[] = "pw";

std::string Key(long slot, const std::string& ip) {
  char source[128];
  std::snprintf(source, sizeof(source), "%ld%s%s%s", slot, ip.c_str(), "admin", kPassword);
  return MD5Encryption(source);
}

std::string WithKeys(const std::string& request, long uptime, const std::string& ip) {
  std::string text;
  for (std::size_t i = 0; i < request.size(); ++i) {
    const bool is_key = request[i] == '@' && i + 1 < request.size() && request[i + 1] >= '0' &&
                        request[i + 1] <= '9';
    if (is_key) {
      text += Key(uptime / 20 - 4 + (request[++i] - '0'), ip);
    } else {
      text += request[i];
    }
  }
  return text;
}

// The result that starter_auth_check must give.
int Expected(const std::string& request, long uptime, const std::string& ip) {
  std::size_t digits = 32;
  std::size_t key = request.find("kioAppKey=");
  if (key != std::string::npos) {
    key += 11;
  } else {
    digits = 8;
    key = request.find("BKey=");
    if (key == std::string::npos) {
      return -1;
    }
    key += 5;
  }
  const std::string shown = key < request.size() ? request.substr(key, digits) : "";
  for (long slot = uptime / 20 - 1; slot <= uptime / 20 + 3; ++slot) {
    if (shown == Key(slot, ip).substr(0, digits)) {
      return 0;
    }
  }
  return -1;
}

void CheckList() {
  bool is_current = cur_authinfo == nullptr;
  for (const ClientAuthInfo* client = clientauthinfo; client != nullptr; client = client->next) {
    is_current = is_current || client == cur_authinfo;
    if (strnlen(client->ip, sizeof(client->ip)) == sizeof(client->ip) ||
        strnlen(client->password, sizeof(client->password)) == sizeof(client->password)) {
      kio::fuzz::Report("a text of a client has no terminator");
    }
  }
  if (!is_current) {
    kio::fuzz::Report("the current client is none of the list");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  kio::fuzz::ResetDevice(size);
  kio::test::FakeHost& host = kio::test::FakeHost::Get();
  host.Set("/sys/user:1/password", kPassword);
  const int number = input.Number();
  host.uptime = number < 0 ? 0 : number;
  const std::string ip = input.Line();
  const std::string request = WithKeys(input.Rest(), host.uptime, ip);
  const kio::fuzz::GuardedText text(request);
  const kio::fuzz::GuardedText address(ip);

  const int result = starter_auth_check(text.get(), address.get(), text.get());
  if (result != Expected(request, host.uptime, ip)) {
    kio::fuzz::Report("a key is judged wrongly");
  }
  CheckList();
  // A longer address is cut in the list and so not found again.
  if (ip.size() < sizeof(clientauthinfo->ip) &&
      check_StarterAuthIP(address.get(), text.get()) != result) {
    kio::fuzz::Report("a client passes that is not logged in, or the other way round");
  }
  for (const int mode : {0, 2, 1}) {
    clientAuthListAdd(&clientauthinfo, address.get(), "admin", text.get(), text.get(), mode);
    CheckList();
  }
  checkClientAuthIp(clientauthinfo, address.get(), text.get(), 2);
  for (const int mode : {2, 1, 0}) {
    clientAuthListDel(&clientauthinfo, address.get(), text.get(), mode);
    CheckList();
  }
  host.uptime += 300;
  if (check_StarterAuthIP(address.get(), text.get()) != -1) {
    kio::fuzz::Report("a client passes after its time");
  }
  CheckList();
  clientAuthListDel(&clientauthinfo, nullptr, nullptr, 1);
  if (clientauthinfo != nullptr || cur_authinfo != nullptr) {
    kio::fuzz::Report("an emptied list is not empty");
  }
  return 0;
}
