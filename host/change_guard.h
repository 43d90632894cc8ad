// What keeps a client from a change that it should not make now: other settings wait for their
// confirmation, or are not those that it knows.
#ifndef HOST_CHANGE_GUARD_H
#define HOST_CHANGE_GUARD_H

#include <optional>

#include "exchange.h"
#include "reply.h"
#include "request_view.h"

namespace kiohost {

class ChangeGuard {
 public:
  explicit ChangeGuard(Exchange* exchange) : exchange_(exchange) {}

  // Judges a request that changes settings, when its turn has come: the refusal, or nothing.
  std::optional<Reply> RefuseChange(const RequestView& request) const;

  // The same for one that only looks: others may wait for their confirmation.
  std::optional<Reply> RefuseLook(const RequestView& request) const;

 private:
  Exchange* exchange_;
};

}  // namespace kiohost

#endif  // HOST_CHANGE_GUARD_H
