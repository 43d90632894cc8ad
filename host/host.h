// The host: the store, the HTTP server and the event loop around the library.
#ifndef HOST_HOST_H
#define HOST_HOST_H

#include <optional>
#include <string>
#include <vector>

#include "backup.h"
#include "channel_watch.h"
#include "clients.h"
#include "confirmations.h"
#include "events.h"
#include "exchange.h"
#include "firmware.h"
#include "http_server.h"
#include "reply.h"
#include "router.h"
#include "status.h"
#include "store.h"
#include "value_history.h"
#include "variable_list.h"
#include "variables.h"

namespace kiohost {

class Host {
 public:
  struct Settings {
    std::string listen;
    int port = 0;
    std::string temp_dir;
    std::string state_dir;
    std::string catalogue;  // the file with the list of all variables
    std::string openapi;    // the file with the description of the interface
    bool real_waits = false;
    bool open = false;               // nobody needs to log in
    std::vector<std::string> names;  // the router's, in Host headers
  };

  // The store must be bound to the library.
  Host(Store* store, const Settings& settings);
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Runs the actions that an earlier run of the host has left due, and prints so. To be called
  // before `Start`.
  void RunOverdueActions();

  // Listens, and prints where.
  Status Start();

  // Serves until SIGTERM, SIGINT or SIGHUP. Fails when the port is lost.
  Status Run();

 private:
  // How clients are told apart that have come after settings which are to be confirmed.
  Confirmations::Arrivals WhoComes() const;
  void WaitAndServe();
  void TakeAfterReply();
  void GoBackWhenDue();
  long MillisecondsToWait() const;
  const char* StateWord() const;
  Status RunAfterReplyWhenReady();
  Status RunAfterReplyWhileAway();

  Store* store_;
  Settings settings_;
  Router router_;
  Clients clients_;
  Events events_;
  Exchange exchange_;
  Confirmations confirmations_;
  VariableList variable_list_;
  ValueHistory value_history_;
  Variables variables_;
  Backup backup_;
  Firmware firmware_;
  ChannelWatch channel_watch_;
  HttpServer server_;
  // The work after the reply to the request whose turn it is.
  std::optional<AfterReply> after_reply_;
};

}  // namespace kiohost

#endif  // HOST_HOST_H
