// The host. The thread that calls it is the thread of the library: the only one that calls the
// library, runs its commands and writes the store. Another one serves the sockets.
#ifndef HOST_HOST_H
#define HOST_HOST_H

#include <optional>
#include <string>
#include <vector>

#include "apply_log.h"
#include "backup.h"
#include "channel_watch.h"
#include "clients.h"
#include "confirmations.h"
#include "events.h"
#include "exchange.h"
#include "firmware.h"
#include "http_server.h"
#include "library_desk.h"
#include "published.h"
#include "reply.h"
#include "router.h"
#include "sockets_thread.h"
#include "status.h"
#include "store.h"
#include "value_history.h"
#include "variable_list.h"
#include "variables.h"
#include "way_back.h"

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

  // The store must be bound to the library. `reader` is the same store, for the thread of the
  // sockets.
  Host(Store* store, Store* reader, const Settings& settings);
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
  void TakeAfterReply();
  void GoBackWhenDue();
  void WaitAndWork();
  void Run(const LibraryDesk::Job& job);
  void PublishVariables(bool library_is_busy);
  const char* StateWord() const;
  Status RunAfterReplyWhenReady();
  Status RunAfterReplyWhileAway();

  Store* store_;
  Settings settings_;
  Router router_;
  // For the thread of the sockets.
  ApplyLog applies_;
  WayBack way_back_;
  VariableList catalogue_;
  Backup archive_;
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
  std::vector<ListedVariable> variable_names_;
  PublishedState published_;
  LibraryDesk desk_;
  HttpServer server_;
  SocketsThread sockets_;
  // The work after the reply to the request whose turn it is.
  std::optional<AfterReply> after_reply_;
  bool turn_is_open_ = false;  // until that work is done; not that of a deadline
  bool awaits_work_ = false;   // until the reply of a request that leaves some is delivered
};

}  // namespace kiohost

#endif  // HOST_HOST_H
