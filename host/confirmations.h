// Who may confirm settings: a client that has come after them, and so has shown that it still
// reaches the router.
#ifndef HOST_CONFIRMATIONS_H
#define HOST_CONFIRMATIONS_H

#include <functional>
#include <utility>

#include "exchange.h"
#include "request_view.h"

namespace kiohost {

class Confirmations {
 public:
  // How clients are counted as they come.
  struct Arrivals {
    std::function<unsigned long()> count;                     // so far
    std::function<unsigned long(const RequestView&)> number;  // of the client of a request
    const char* demand;  // what is told to one that came before
  };

  Confirmations(Exchange* exchange, Arrivals arrivals)
      : exchange_(exchange), arrivals_(std::move(arrivals)) {}

  // Notes that settings were applied that are to be confirmed. Those of an earlier run of the host
  // may be confirmed by any client: it has come since.
  void NoteApply() { arrived_before_ = arrivals_.count(); }

  // Whether the client of a request has come since.
  bool HasComeSince(const RequestView& request) const {
    return arrivals_.number(request) > arrived_before_;
  }
  // How many had come before the settings that are to be confirmed.
  unsigned long arrived_before() const { return arrived_before_; }
  void Restore(unsigned long arrived_before) { arrived_before_ = arrived_before; }

  const char* demand() const { return arrivals_.demand; }

  Exchange* exchange() { return exchange_; }

 private:
  Exchange* exchange_;
  Arrivals arrivals_;
  unsigned long arrived_before_ = 0;
};

}  // namespace kiohost

#endif  // HOST_CONFIRMATIONS_H
