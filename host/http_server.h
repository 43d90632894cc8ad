// The HTTP server: one thread, driven by the host's event loop.
#ifndef HOST_HTTP_SERVER_H
#define HOST_HTTP_SERVER_H

#include <microhttpd.h>
#include <sys/select.h>

#include <memory>
#include <optional>
#include <string_view>

#include "exchange.h"
#include "http_request.h"
#include "listener.h"
#include "status.h"
#include "store.h"
#include "turns.h"

namespace kiohost {

class HttpServer {
 public:
  // An exchange whose answer has left, or whose client has: its commit is due.
  struct Delivered {
    CommitKind commit;
    int wait_seconds;
  };

  HttpServer(Store* store, Exchange* exchange) : store_(store), exchange_(exchange) {}
  ~HttpServer() { Stop(); }
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // Serves the connections of a listening socket, which it closes in the end.
  Status Start(FileDescriptor listener);

  // Closes the listening socket and all connections. An exchange that ends by it is delivered as
  // far as its client goes: its commit is due. Requests that waited for their turn are dropped.
  void Stop();

  // The descriptors to wait for; the time until the server wants to run in any case.
  void AddDescriptors(fd_set* read_set, fd_set* write_set, fd_set* except_set, int* max_fd);
  std::optional<long> MillisecondsToWait() const;

  // Serves what is ready.
  void Run(const fd_set& read_set, const fd_set& write_set, const fd_set& except_set);

  // The exchange that was delivered, once; nothing when there is none.
  std::optional<Delivered> TakeDelivered();

  // Lets the next exchange begin. To be called after the commit.
  void EndExchange();

 private:
  static MHD_Result OnRequest(void* self, MHD_Connection* connection, const char* url,
                              const char* method, const char* version, const char* upload_data,
                              size_t* upload_data_size, void** request);
  static void OnCompleted(void* self, MHD_Connection* connection, void** request,
                          MHD_RequestTerminationCode reason);

  MHD_Result Answer(HttpRequest* request);
  MHD_Result AnswerSettings(HttpRequest* request);
  Reply ResultReply() const;
  Reply DeviceReply() const;
  void Finish(std::unique_ptr<HttpRequest> request);
  void EndTurn(HttpRequest* request);

  struct DaemonStopper {
    void operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }
  };

  Store* store_;
  Exchange* exchange_;
  std::unique_ptr<MHD_Daemon, DaemonStopper> daemon_;
  Turns<HttpRequest*> turns_;
  bool stopping_ = false;
  // A connection was resumed, which shows neither in the descriptors nor in the time to wait.
  bool resumed_ = false;
  // The request whose exchange was delivered and keeps its turn until its commit has run.
  std::unique_ptr<HttpRequest> finished_;
  std::optional<Delivered> delivered_;
};

}  // namespace kiohost

#endif  // HOST_HTTP_SERVER_H
