// The way back from settings that are to be confirmed: what the store held before, and until when a
// confirmation is waited for. It stands in the store, so that it outlives the host.
#ifndef HOST_WAY_BACK_H
#define HOST_WAY_BACK_H

#include <cstdint>
#include <optional>
#include <vector>

#include "status.h"
#include "store.h"

namespace kiohost {

class WayBack {
 public:
  struct Pending {
    int64_t seconds = 0;       // that were given
    int64_t seconds_left = 0;  // 0 when the time is over
    unsigned int actions = 0;  // of the way back
  };

  explicit WayBack(Store* store) : store_(store) {}

  // Keeps the way back to `before`, in the transaction of the settings. There is none before it.
  void Keep(const std::vector<Node>& before, int64_t seconds, unsigned int actions);

  // The way back that is kept, if there is one.
  std::optional<Pending> pending();

  // In a transaction: gives the nodes their old texts, makes the actions due, and forgets the way.
  void Take();

  // In a transaction: gives so many seconds more.
  void Extend(int64_t seconds);

  // In a transaction: forgets the way.
  void Forget();

 private:
  Store* store_;
};

}  // namespace kiohost

#endif  // HOST_WAY_BACK_H
