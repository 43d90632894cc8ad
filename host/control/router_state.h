// The whole state of the virtual router: to be put away and brought back.
#ifndef HOST_CONTROL_ROUTER_STATE_H
#define HOST_CONTROL_ROUTER_STATE_H

#include <kioapp/record.h>

#include <array>

#include "channel_watch.h"
#include "clients.h"
#include "confirmations.h"
#include "events.h"
#include "exchange.h"
#include "firmware.h"
#include "status.h"
#include "store.h"
#include "value_history.h"
#include "variables.h"

namespace kiohost {

struct RouterState {
  Store::Contents store;
  std::array<char, sizeof(RssXmlData)> record = {};
  Clients::State clients;
  Events::State events;
  Exchange::State exchange;
  Variables::Series variables;
  Firmware::State firmware;
  ChannelWatch::Channels channels;
  unsigned long arrived_before = 0;
  long uptime = 0;
  long steady = 0;  // second (`SteadySeconds`) at which it was put away
};

// The parts of the host that have it. All of them belong to the thread of the library, or may be
// used by any thread.
struct RouterParts {
  Store* store;
  Clients* clients;
  Events* events;
  Exchange* exchange;
  Variables* variables;
  Firmware* firmware;
  ChannelWatch* channels;
  Confirmations* confirmations;
  ValueHistory* history;
};

RouterState SaveState(const RouterParts& parts);

// Brings a state back, or says why not: then nothing has changed. What was to end some seconds
// after it began has the time left that it had then.
Status RestoreState(const RouterParts& parts, const RouterState& state);

}  // namespace kiohost

#endif  // HOST_CONTROL_ROUTER_STATE_H
