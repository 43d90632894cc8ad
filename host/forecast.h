// What a dry run foretells.
#ifndef HOST_FORECAST_H
#define HOST_FORECAST_H

#include <optional>
#include <string>
#include <vector>

#include "json.h"
#include "node_changes.h"

namespace kiohost {

// Of a batch: whether it applies the record, and commits, by itself. When it does not apply, the
// changes are those of an apply after it, whose result this is.
struct BatchForecast {
  bool applies = false;
  bool commits = false;
  std::optional<int> apply_code;
  std::string apply_message;
};

struct Forecast {
  int code = 0;         // of the exchange or the batch
  std::string message;  // the element or variable at fault
  std::vector<Node> before;
  std::vector<Node> after;
  unsigned int actions = 0;  // that the commit runs
  int wait_seconds = 0;      // that the app is told

  std::optional<BatchForecast> batch;
};

// The nodes that change, with their old and new texts. Secrets are masked: a new text then differs
// from the old one even when both look the same.
Json ChangesAsJson(const std::vector<NodeChange>& changes);

// All of it, for a client at this address.
Json AsJson(const Forecast& forecast, const std::string& peer_address,
            const std::string& local_address);

}  // namespace kiohost

#endif  // HOST_FORECAST_H
