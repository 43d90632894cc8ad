// Counts wrong keys and blocks addresses that have sent too many of them.
#ifndef HOST_LOGIN_THROTTLE_H
#define HOST_LOGIN_THROTTLE_H

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kiohost {

// Its size does not depend on how many addresses guess.
class LoginThrottle {
 public:
  static constexpr size_t kMostWrong = 5;
  static constexpr long kWindowSeconds = 60;
  static constexpr long kBlockSeconds = 60;
  static constexpr size_t kAddresses = 128;

  // For how many seconds from `now` on no key of this address is checked; 0 when keys are checked.
  // When all places are taken by addresses that are blocked or have sent a wrong key within the
  // window, an address without a place has to wait for one. Otherwise somebody with many addresses
  // could go on guessing.
  long SecondsBlocked(std::string_view address, long now) const;

  // Notes a wrong key. kMostWrong of them within kWindowSeconds block the address.
  void AddWrongKey(std::string_view address, long now);

  // Moves all that was noted by so many seconds.
  void Shift(long seconds);

  // Forgets an address that has sent a good key.
  void Forget(std::string_view address);

 private:
  struct Entry {
    long taken_until() const;

    std::string address;
    size_t count = 0;
    std::array<long, kMostWrong> times = {};  // of the last wrong keys, `count` of them, in order
    long blocked_until = 0;
  };

  const Entry* Find(std::string_view address) const;
  Entry* PlaceFor(std::string_view address, long now);

  std::array<Entry, kAddresses> entries_;
};

}  // namespace kiohost

#endif  // HOST_LOGIN_THROTTLE_H
