// The host: the store, the HTTP server and the event loop around the library.
#ifndef HOST_HOST_H
#define HOST_HOST_H

#include <string>

#include "exchange.h"
#include "http_server.h"
#include "status.h"
#include "store.h"

namespace kiohost {

class Host {
 public:
  struct Settings {
    std::string listen;
    int port = 0;
    std::string temp_dir;
    bool real_waits = false;
  };

  // The store must be bound to the library.
  Host(Store* store, const Settings& settings)
      : settings_(settings), exchange_(store, settings.temp_dir), server_(store, &exchange_) {}

  // Listens, and says on standard output where.
  Status Start();

  // Serves until SIGTERM or SIGINT. Fails when the port is lost.
  Status Run();

 private:
  void WaitAndServe();
  Status FinishExchange(const HttpServer::Delivered& delivered);
  Status CommitAway(const HttpServer::Delivered& delivered);
  void Commit(CommitKind kind);

  Settings settings_;
  Exchange exchange_;
  HttpServer server_;
};

}  // namespace kiohost

#endif  // HOST_HOST_H
