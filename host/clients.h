// The clients that are logged in, kept by the library.
#ifndef HOST_CLIENTS_H
#define HOST_CLIENTS_H

#include <cstddef>
#include <map>
#include <string>

#include "login_throttle.h"

namespace kiohost {

class Clients {
 public:
  static constexpr size_t kMost = 64;
  static constexpr long kSweepSeconds = 60;

  enum class Outcome {
    kLoggedIn,
    kWrongKey,
    kBlocked,  // too many wrong keys: no key is checked
    kFull,
  };

  // Logs the address in when the text holds its key. `wait_seconds` is set when that cannot be now:
  // after this time a key is looked at again, or a client lapses.
  Outcome Login(const std::string& address, const std::string& text, long* wait_seconds);

  // Whether the address is logged in. If it is, the time of its login begins anew.
  bool Passes(const std::string& address);

  // How many logins there have been, and the number of the last one of an address; 0 without one.
  unsigned long logins() const { return logins_; }
  unsigned long LastLogin(const std::string& address) const;

  // Returns whether it was logged in.
  bool Logout(const std::string& address);

  // Removes the clients that have lapsed, at most once a minute. To be called now and then.
  void SweepIfDue();

 private:
  void RemoveLapsed();

  LoginThrottle throttle_;
  unsigned long logins_ = 0;
  std::map<std::string, unsigned long> last_logins_;  // of those in the list
  long next_sweep_ = 0;
};

}  // namespace kiohost

#endif  // HOST_CLIENTS_H
