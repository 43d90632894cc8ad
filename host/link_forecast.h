// Whether the link of a client lives through a change of the settings.
#ifndef HOST_LINK_FORECAST_H
#define HOST_LINK_FORECAST_H

#include <string>
#include <vector>

#include "store.h"

namespace kiohost {

// The ends of a client's connection.
struct LinkEnds {
  std::string peer_address;
  std::string local_address;
  std::string mac;  // the client's; empty when it is not known
};

struct LinkForecast {
  // "host": the client runs on the router itself; "radio 2.4" or "radio 5"; "lan": a cable or a
  // radio; "uplink".
  std::string by;
  bool drops = false;
  // What the forecast goes by, each one sentence: what is known, and what is only assumed.
  std::vector<std::string> known;
  std::vector<std::string> assumed;

  // A network that the client may have to join again.
  struct Network {
    std::string band;
    std::string name;
    std::string encryption;
    bool on;
  };
  std::vector<Network> rejoin;
};

// `before` and `after` are the nodes of the store; `actions` are those of the commit.
LinkForecast ForecastLink(const LinkEnds& ends, const std::vector<Node>& before,
                          const std::vector<Node>& after, unsigned int actions);

}  // namespace kiohost

#endif  // HOST_LINK_FORECAST_H
