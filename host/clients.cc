#include "clients.h"

#include <kioapp/auth.h>
#include <kioapp/platform.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <vector>

#include "printable_text.h"

namespace kiohost {
namespace {

size_t Count() {
  size_t count = 0;
  for (const ClientAuthInfo* client = clientauthinfo; client != nullptr; client = client->next) {
    ++count;
  }
  return count;
}

// The seconds until the first client lapses if it sends nothing; one at least.
long SecondsToLapse(long now) {
  long first = std::numeric_limits<long>::max();
  for (const ClientAuthInfo* client = clientauthinfo; client != nullptr; client = client->next) {
    first = std::min(first, static_cast<long>(client->logout));
  }
  return std::max(1L, first - now);
}

bool IsListed(const std::string& address) {
  return checkClientAuthIp(clientauthinfo, address.c_str(), nullptr, KIOAPP_MATCH_ADDRESS) !=
         nullptr;
}

bool Remove(const std::string& address) {
  return clientAuthListDel(&clientauthinfo, address.c_str(), nullptr, KIOAPP_MATCH_ADDRESS) == 1;
}

// Prints what becomes of a client. Keys and passwords are never printed.
void Say(const std::string& what, const std::string& address) {
  PrintLine(stdout, what + " " + address);
}

}  // namespace

Clients::Outcome Clients::Login(const std::string& address, const std::string& text,
                                long* wait_seconds) {
  const long now = sys_uptime_seconds();
  *wait_seconds = throttle_.SecondsBlocked(address, now);
  if (*wait_seconds > 0) {
    return Outcome::kBlocked;
  }
  if (!IsListed(address) && Count() >= kMost) {
    RemoveLapsed();
    if (Count() >= kMost) {
      *wait_seconds = SecondsToLapse(now);
      return Outcome::kFull;
    }
  }
  if (starter_auth_check(text.c_str(), address.c_str(), text.c_str()) != 0) {
    throttle_.AddWrongKey(address, now);
    Say("wrong key from", address);
    return Outcome::kWrongKey;
  }
  throttle_.Forget(address);
  last_logins_[address] = ++logins_;
  Say("login", address);
  return Outcome::kLoggedIn;
}

bool Clients::Passes(const std::string& address) {
  return !address.empty() && check_StarterAuthIP(address.c_str(), nullptr) == 0;
}

unsigned long Clients::LastLogin(const std::string& address) const {
  const auto found = last_logins_.find(address);
  return found == last_logins_.end() ? 0 : found->second;
}

bool Clients::Logout(const std::string& address) {
  const bool removed = Remove(address);
  if (removed) {
    Say("logout", address);
  }
  return removed;
}

void Clients::SweepIfDue() {
  const long now = sys_uptime_seconds();
  if (now >= next_sweep_) {
    next_sweep_ = now + kSweepSeconds;
    RemoveLapsed();
  }
}

void Clients::RemoveLapsed() {
  const auto now = static_cast<unsigned int>(sys_uptime_seconds());
  std::vector<std::string> lapsed;
  for (const ClientAuthInfo* client = clientauthinfo; client != nullptr; client = client->next) {
    if (client->logout <= now) {
      lapsed.emplace_back(client->ip);
    }
  }
  for (const std::string& address : lapsed) {
    Remove(address);
    Say("lapsed", address);
  }
  std::erase_if(last_logins_, [](const auto& login) { return !IsListed(login.first); });
}

}  // namespace kiohost
