// The clients that are logged in. They belong to the thread of the sockets, so that nobody's login
// waits for the library.
#ifndef HOST_CLIENTS_H
#define HOST_CLIENTS_H

#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "events.h"
#include "login_throttle.h"
#include "store.h"

namespace kiohost {

class Clients {
 public:
  static constexpr size_t kMost = 64;
  static constexpr long kLoginSeconds = 300;
  static constexpr long kSweepSeconds = 60;

  enum class Outcome {
    kLoggedIn,
    kWrongKey,
    kBlocked,  // too many wrong keys: no key is checked
    kFull,
  };

  // The store holds the password.
  Clients(Store* store, Events* events) : store_(store), events_(events) {}

  // Logs the address in when the text holds its key. `wait_seconds` is set when that cannot be now:
  // after this time a key is looked at again, or a client lapses.
  Outcome Login(const std::string& address, const std::string& text, long* wait_seconds);

  // Whether the address is logged in. If it is, the time of its login begins anew.
  bool Passes(const std::string& address);

  // Whether the address is logged in, and nothing else.
  bool IsLoggedIn(const std::string& address);

  // Any thread may ask these. How many logins there have been, and the number of the last one of an
  // address; 0 without one.
  unsigned long logins() const;
  unsigned long LastLogin(const std::string& address) const;

  // Returns whether it was logged in.
  bool Logout(const std::string& address);

  // The second (`SteadySeconds`) at which clients that have lapsed are looked for next.
  long NextSweep() const;

  // Removes the clients that have lapsed, at most once a minute. To be called now and then.
  void SweepIfDue();

  // All that is known of clients.
  struct Client {
    std::string address;
    long logout;  // second (`SteadySeconds`) at which the login lapses
    unsigned long number;
  };
  struct State {
    unsigned long logins = 0;
    LoginThrottle throttle;
    std::vector<Client> clients;  // in the order of their logins
    long next_sweep = 0;
  };
  State Save() const;
  // Takes a state of so many seconds ago. Each client has the time left that it had.
  void Restore(State state, long ago);

 private:
  Client* Find(const std::string& address);
  // Those who have lapsed are removed on the way.
  Client* FindUnlapsed(const std::string& address);
  void Remove(const std::string& address);
  long SecondsToLapse(long now) const;
  void RemoveLapsed();

  Store* store_;
  Events* events_;
  mutable std::mutex mutex_;
  State state_;
};

}  // namespace kiohost

#endif  // HOST_CLIENTS_H
