// The HTTP server, driven by the loop of the thread that owns the sockets.
#ifndef HOST_HTTP_SERVER_H
#define HOST_HTTP_SERVER_H

#include <microhttpd.h>
#include <sys/select.h>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "acceptor.h"
#include "client_timeout.h"
#include "connection.h"
#include "faulty_wire.h"
#include "http_request.h"
#include "library_desk.h"
#include "library_line.h"
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

  HttpServer(const Router* router, LibraryDesk* desk)
      : router_(router), desk_(desk), library_line_(desk) {}
  ~HttpServer() { Stop(); }
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // Serves the connections of a listening socket, which `Stop` closes.
  Status Start(FileDescriptor listener);

  // Closes the listening socket and all connections. A request that ends by it counts as answered:
  // the work after its reply is due. Requests that waited are dropped. The thread of the library
  // must not have one.
  void Stop();

  // The descriptors to wait for, and the time after which `Run` is to be called in any case.
  void AddDescriptors(fd_set* read_set, fd_set* write_set, fd_set* except_set, int* max_fd);
  std::optional<long> MillisecondsToWait() const;

  // Serves what is ready.
  void Run(const fd_set& read_set, const fd_set& write_set, const fd_set& except_set);

  // Takes what the thread of the library has done, and gives it the next work. To be called before
  // `Run`.
  void HandleNews(const LibraryDesk::News& news);

  // Called with each answer that is about to be sent.
  using OnAnswer = std::function<void(const HttpRequest&, const Reply&)>;
  void AddOnAnswer(OnAnswer on_answer) { on_answer_.push_back(std::move(on_answer)); }

  // From now on fault rules meet its connections and requests.
  void MeetFaults() { faulty_wire_ = std::make_unique<FaultyWire>(); }

  // Has the bodies end that go on for as long as there is something to tell.
  void EndStreams();

  // Whether an answer that is there, or a stream that ends, was not sent in full yet.
  bool IsAnswering() const;

  // Whether a request has its turn, or has left work behind that is not done.
  bool IsTurnTaken() const { return turn_queue_.IsTaken(); }

  // For how long the app was told that the router is away for that work; 0 without any.
  int SecondsAway() const { return seconds_away_; }

  // Lets the next request have its turn. To be called when the work after a reply is done.
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

  void Resume(HttpRequest* request);

  void CutSlowConnections(fd_set* cut, Clock::time_point now);

  // Takes new connections. At a limit, a useless connection is closed for the new one, or else the
  // new one is refused.
  void Accept(Clock::time_point now);
  void Admit(Acceptor::Incoming incoming, Clock::time_point now);
  bool MakeRoom(const std::string& address);
  size_t CountOf(const std::string& address) const;
  bool CloseUselessConnection(const std::string* address);
  void Close(Connection* connection);
  void RunFaultyWire(Clock::time_point now);
  void Part(Connection* connection);
  void GiveMemoryBackAfterRush();

  struct DaemonStopper {
    void operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }
  };

  const Router* router_;
  LibraryDesk* desk_;
  std::vector<OnAnswer> on_answer_;
  Acceptor acceptor_;
  std::unique_ptr<MHD_Daemon, DaemonStopper> daemon_;
  std::vector<std::unique_ptr<Connection>> connections_;  // in the order of their coming
  size_t most_at_once_ = 0;                               // connections since there were none
  LingeringSockets lingering_;
  std::unique_ptr<FaultyWire> faulty_wire_;  // null without a control port
  TurnQueue<HttpRequest*> turn_queue_;
  bool stopping_ = false;
  // Whether a connection was resumed: neither the descriptors nor the time to wait show it.
  bool resumed_ = false;
  LibraryLine library_line_;
  // The request that was delivered and keeps its turn until the work after its reply is done.
  std::unique_ptr<HttpRequest> finished_;
  int seconds_away_ = 0;
};

}  // namespace kiohost

#endif  // HOST_HTTP_SERVER_H
