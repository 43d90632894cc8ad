// The control port: a second port, by which a test bench moves the clock, sets the store, and reads
// what has happened. Without it nothing of it exists.
#ifndef HOST_CONTROL_CONTROL_PORT_H
#define HOST_CONTROL_CONTROL_PORT_H

#include <optional>
#include <string>
#include <vector>

#include "http_server.h"
#include "library_desk.h"
#include "router.h"
#include "sockets_thread.h"
#include "status.h"
#include "store.h"

namespace kiohost {

class ControlPort {
 public:
  struct Settings {
    std::string listen;
    int port = 0;
    std::string openapi;             // the file with the description of this interface
    std::vector<std::string> names;  // the host's, in Host headers
  };

  // Work for the thread of the library is told of at `bell`, too. `reader` is the store, for the
  // thread of this port.
  ControlPort(Settings settings, const LibraryDesk* bell, Store* reader);

  // For the rooms of routes, before `Start`.
  Router* router() { return &router_; }

  // Listens, unless it does already, and prints where.
  Status Start();
  void Stop() { sockets_.Stop(); }

  // For the thread of the library.
  std::optional<LibraryDesk::Job> TakeJob() { return desk_.TakeJob(); }
  void TellJobDone() { desk_.TellJobDone(); }

  // There are entries of the journal to be sent. Any thread may tell.
  void TellEntries() { desk_.TellEvents(); }

 private:
  Settings settings_;
  Router router_;
  LibraryDesk desk_;
  HttpServer server_;
  SocketsThread sockets_;
  bool runs_ = false;
};

}  // namespace kiohost

#endif  // HOST_CONTROL_CONTROL_PORT_H
