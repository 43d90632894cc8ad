#include "clients.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <utility>

#include "login_key.h"
#include "nodes.h"
#include "printable_text.h"
#include "uptime.h"

namespace kiohost {
namespace {

// Prints what becomes of a client. Keys and passwords are never printed.
void Say(const std::string& what, const std::string& address) {
  PrintLine(stdout, what + " " + address);
}

// The same, and as an event.
void Tell(Events* events, EventKind kind, const std::string& what, const std::string& address) {
  Say(what, address);
  events->Add({kind, {{"client", address}}});
}

}  // namespace

Clients::Outcome Clients::Login(const std::string& address, const std::string& text,
                                long* wait_seconds) {
  const std::lock_guard lock(mutex_);
  const long now = SteadySeconds();
  *wait_seconds = state_.throttle.SecondsBlocked(address, now);
  if (*wait_seconds > 0) {
    return Outcome::kBlocked;
  }
  if (Find(address) == nullptr && state_.clients.size() >= kMost) {
    RemoveLapsed();
    if (state_.clients.size() >= kMost) {
      *wait_seconds = SecondsToLapse(now);
      return Outcome::kFull;
    }
  }
  if (!HoldsGoodKey(text, address, store_->Get(kPasswordNode).value_or(""), UptimeSeconds())) {
    state_.throttle.AddWrongKey(address, now);
    Say("wrong key from", address);
    return Outcome::kWrongKey;
  }
  state_.throttle.Forget(address);
  if (Client* client = Find(address); client != nullptr) {
    client->logout = now + kLoginSeconds;
    client->number = ++state_.logins;
  } else {
    state_.clients.push_back({address, now + kLoginSeconds, ++state_.logins});
  }
  Tell(events_, EventKind::kLogin, "login", address);
  return Outcome::kLoggedIn;
}

bool Clients::Passes(const std::string& address) {
  const std::lock_guard lock(mutex_);
  Client* client = FindUnlapsed(address);
  if (client == nullptr) {
    return false;
  }
  client->logout = SteadySeconds() + kLoginSeconds;
  return true;
}

bool Clients::IsLoggedIn(const std::string& address) {
  const std::lock_guard lock(mutex_);
  return FindUnlapsed(address) != nullptr;
}

unsigned long Clients::logins() const {
  const std::lock_guard lock(mutex_);
  return state_.logins;
}

unsigned long Clients::LastLogin(const std::string& address) const {
  const std::lock_guard lock(mutex_);
  const auto found =
      std::find_if(state_.clients.begin(), state_.clients.end(),
                   [&address](const auto& client) { return client.address == address; });
  return found == state_.clients.end() ? 0 : found->number;
}

bool Clients::Logout(const std::string& address) {
  const std::lock_guard lock(mutex_);
  if (Find(address) == nullptr) {
    return false;
  }
  Remove(address);
  Tell(events_, EventKind::kLogout, "logout", address);
  return true;
}

Clients::State Clients::Save() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

void Clients::Restore(State state, long ago) {
  for (Client& client : state.clients) {
    client.logout += ago;
  }
  state.throttle.Shift(ago);
  state.next_sweep += ago;
  const std::lock_guard lock(mutex_);
  state_ = std::move(state);
}

long Clients::NextSweep() const {
  const std::lock_guard lock(mutex_);
  return state_.next_sweep;
}

void Clients::SweepIfDue() {
  const std::lock_guard lock(mutex_);
  const long now = SteadySeconds();
  if (now >= state_.next_sweep) {
    state_.next_sweep = now + kSweepSeconds;
    RemoveLapsed();
  }
}

// The seconds until the first client lapses if it sends nothing; one at least.
long Clients::SecondsToLapse(long now) const {
  long first = std::numeric_limits<long>::max();
  for (const Client& client : state_.clients) {
    first = std::min(first, client.logout);
  }
  return std::max(1L, first - now);
}

Clients::Client* Clients::Find(const std::string& address) {
  const auto found =
      std::find_if(state_.clients.begin(), state_.clients.end(),
                   [&address](const auto& client) { return client.address == address; });
  return found == state_.clients.end() ? nullptr : &*found;
}

Clients::Client* Clients::FindUnlapsed(const std::string& address) {
  const Client* client = Find(address);
  if (client != nullptr && client->logout <= SteadySeconds()) {
    RemoveLapsed();
  }
  return Find(address);
}

void Clients::Remove(const std::string& address) {
  std::erase_if(state_.clients,
                [&address](const auto& client) { return client.address == address; });
}

void Clients::RemoveLapsed() {
  const long now = SteadySeconds();
  std::erase_if(state_.clients, [this, now](const auto& client) {
    if (client.logout > now) {
      return false;
    }
    Tell(events_, EventKind::kLapse, "lapsed", client.address);
    return true;
  });
}

}  // namespace kiohost
