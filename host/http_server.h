// The HTTP server: one thread, driven by the host's event loop.
#ifndef HOST_HTTP_SERVER_H
#define HOST_HTTP_SERVER_H

#include <microhttpd.h>
#include <sys/select.h>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "acceptor.h"
#include "client_timeout.h"
#include "connection.h"
#include "http_request.h"
#include "lingering_sockets.h"
#include "listener.h"
#include "reply.h"
#include "router.h"
#include "status.h"
#include "turn_queue.h"

namespace kiohost {

class HttpServer {
 public:
  static constexpr size_t kMostConnections = 64;
  static constexpr size_t kMostOfAnAddress = 16;

  explicit HttpServer(const Router* router) : router_(router) {}
  ~HttpServer() { Stop(); }
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // Serves the connections of a listening socket, which `Stop` closes.
  Status Start(FileDescriptor listener);

  // Closes the listening socket and all connections. A request that ends by it counts as answered:
  // the work after its reply is due. Requests that waited for their turn are dropped.
  void Stop();

  // The descriptors to wait for, and the time after which `Run` is to be called in any case.
  void AddDescriptors(fd_set* read_set, fd_set* write_set, fd_set* except_set, int* max_fd);
  std::optional<long> MillisecondsToWait() const;

  // Serves what is ready.
  void Run(const fd_set& read_set, const fd_set& write_set, const fd_set& except_set);

  // The work that a request left behind, when its answer was sent or its client has gone; once, and
  // nothing when there is none.
  std::optional<AfterReply> TakeAfterReply();

  // Whether a request has its turn, or has left work behind that is not done.
  bool IsTurnTaken() const { return turn_queue_.IsTaken(); }

  // Lets the next request have its turn. To be called when that work is done.
  void EndTurn();

 private:
  using Clock = ClientTimeout::Clock;

  static void OnConnection(void* self, MHD_Connection* handle, void** context,
                           MHD_ConnectionNotificationCode code);
  static void* OnRequestLine(void* self, const char* target, MHD_Connection* handle);
  static MHD_Result OnRequest(void* self, MHD_Connection* handle, const char* url,
                              const char* method, const char* version, const char* upload_data,
                              size_t* upload_data_size, void** request);
  static void OnCompleted(void* self, MHD_Connection* handle, void** request,
                          MHD_RequestTerminationCode reason);

  // Answers a whole request, or lets it wait.
  MHD_Result Answer(Connection* connection);
  MHD_Result Send(Connection* connection, const Reply& reply);
  bool HasItsTurn(HttpRequest* request);
  void Finish(std::unique_ptr<HttpRequest> request);
  void Leave(HttpRequest* request);

  void ExtendTimeouts(Clock::duration busy);
  void CutSlowConnections(fd_set* cut, Clock::time_point now);

  // Takes new connections. At a limit, a useless connection is closed for the new one, or else the
  // new one is refused.
  void Accept(Clock::time_point now);
  void Admit(Acceptor::Incoming incoming, Clock::time_point now);
  bool MakeRoom(const std::string& address);
  size_t CountOf(const std::string& address) const;
  bool CloseUselessConnection(const std::string* address);
  void Close(Connection* connection);
  void Part(Connection* connection);

  struct DaemonStopper {
    void operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }
  };

  const Router* router_;
  Acceptor acceptor_;
  std::unique_ptr<MHD_Daemon, DaemonStopper> daemon_;
  std::vector<std::unique_ptr<Connection>> connections_;  // in the order of their coming
  LingeringSockets lingering_;
  TurnQueue<HttpRequest*> turn_queue_;
  bool stopping_ = false;
  // Whether a connection was resumed: neither the descriptors nor the time to wait show it.
  bool resumed_ = false;
  // When the host last stopped waiting for its clients.
  std::optional<Clock::time_point> busy_since_;
  // The request that was delivered and keeps its turn until the work after its reply is done.
  std::unique_ptr<HttpRequest> finished_;
  std::optional<AfterReply> after_reply_;
};

}  // namespace kiohost

#endif  // HOST_HTTP_SERVER_H
