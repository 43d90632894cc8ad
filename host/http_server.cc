#include "http_server.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "http_response.h"
#include "peer_address.h"

namespace kiohost {
namespace {

using std::chrono::ceil;
using std::chrono::milliseconds;

Reply TooSlow(const char* what) {
  return ErrorReply(MHD_HTTP_REQUEST_TIMEOUT, std::string("the ") + what + " came too slowly");
}

// Sends a reply on the socket itself. What the client does not take at once is lost.
void Say(int socket, const Reply& reply) {
  const std::string text = RawResponse(reply);
  [[maybe_unused]] const ssize_t sent =
      send(socket, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

}  // namespace

Status HttpServer::Start(FileDescriptor listener) {
  stopping_ = false;
  // Without MHD_USE_TURBO the server shuts the sending side down itself, before the host could send
  // its own reply.
  daemon_.reset(MHD_start_daemon(
      MHD_ALLOW_SUSPEND_RESUME | MHD_USE_NO_LISTEN_SOCKET | MHD_USE_TURBO, 0, nullptr, nullptr,
      OnRequest, this, MHD_OPTION_CONNECTION_LIMIT, static_cast<unsigned int>(kMostConnections),
      MHD_OPTION_PER_IP_CONNECTION_LIMIT, static_cast<unsigned int>(kMostOfAnAddress),
      MHD_OPTION_NOTIFY_CONNECTION, OnConnection, this, MHD_OPTION_URI_LOG_CALLBACK, OnRequestLine,
      this, MHD_OPTION_NOTIFY_COMPLETED, OnCompleted, this, MHD_OPTION_SIGPIPE_HANDLED_BY_APP, 1,
      MHD_OPTION_END));
  if (daemon_ == nullptr) {
    return {ExitCode::kNetwork, "the HTTP server could not be started"};
  }
  acceptor_.Listen(std::move(listener));
  return {};
}

void HttpServer::Stop() {
  stopping_ = true;
  acceptor_.Listen(FileDescriptor());
  // The daemon must not be stopped while any of its connections is suspended.
  for (HttpRequest* request : turn_queue_.waiting()) {
    MHD_resume_connection(request->connection());
  }
  for (HttpRequest* request : library_line_.Clear()) {
    MHD_resume_connection(request->connection());
  }
  for (const auto& connection : connections_) {
    if (connection->stream() != nullptr) {
      ResumeIfSuspended(connection->handle());
    }
  }
  daemon_.reset();
  lingering_.Clear();
}

void HttpServer::AddDescriptors(fd_set* read_set, fd_set* write_set, fd_set* except_set,
                                int* max_fd) {
  MHD_get_fdset2(daemon_.get(), read_set, write_set, except_set, max_fd, FD_SETSIZE);
  acceptor_.AddDescriptor(read_set, max_fd);
  lingering_.AddDescriptors(read_set, max_fd);
}

std::optional<long> HttpServer::MillisecondsToWait() const {
  MHD_UNSIGNED_LONG_LONG pending = 0;
  if (resumed_ || MHD_get_timeout(daemon_.get(), &pending) == MHD_YES) {
    return 0;
  }
  constexpr auto kNever = Clock::time_point::max();
  Clock::time_point next = std::min(acceptor_.Deadline().value_or(kNever),  //
                                    lingering_.Deadline().value_or(kNever));
  for (const auto& connection : connections_) {
    next = std::min(next, connection->timeout().Deadline());
  }
  if (next == kNever) {
    return std::nullopt;
  }
  return std::max<long>(0, ceil<milliseconds>(next - Clock::now()).count());
}

void HttpServer::Run(const fd_set& read_set, const fd_set& write_set, const fd_set& except_set) {
  const Clock::time_point now = Clock::now();
  resumed_ = false;
  for (const auto& connection : connections_) {
    if (connection->timeout().phase() == ClientTimeout::Phase::kIdle &&
        FD_ISSET(connection->socket(), &read_set)) {
      connection->timeout().Enter(ClientTimeout::Phase::kHead, now);
    }
  }
  // The server closes a connection whose socket has an exceptional condition.
  fd_set cut = except_set;
  CutSlowConnections(&cut, now);
  MHD_run_from_select(daemon_.get(), &read_set, &write_set, &cut);
  if (acceptor_.IsReady(read_set, now)) {
    Accept(now);
  }
  lingering_.Run(read_set, now);
  library_line_.PutNext();
  GiveMemoryBackAfterRush();
}

// What many clients at once have taken goes back to the system when they are gone: this thread's
// part of the heap keeps it otherwise, when something small that stays lies behind it.
void HttpServer::GiveMemoryBackAfterRush() {
  most_at_once_ = std::max(most_at_once_, connections_.size());
  if (connections_.empty() && std::exchange(most_at_once_, 0) >= kMostOfAnAddress) {
    malloc_trim(0);
  }
}

void HttpServer::HandleNews(const LibraryDesk::News& news) {
  for (HttpRequest* request : library_line_.Advance(news)) {
    Resume(request);
  }
  if (news.turn_over) {
    EndTurn();
  }
}

void HttpServer::EndStreams() {
  for (const auto& connection : connections_) {
    if (connection->stream() != nullptr) {
      connection->stream()->End();
    }
  }
}

bool HttpServer::IsAnswering() const {
  return resumed_ || std::any_of(connections_.begin(), connections_.end(), [](const auto& owned) {
           return owned->timeout().phase() == ClientTimeout::Phase::kAnswer ||
                  owned->stream() != nullptr;
         });
}

void HttpServer::EndTurn() {
  Leave(finished_.get());
  finished_.reset();
  seconds_away_ = 0;
}

void HttpServer::OnConnection(void* self, MHD_Connection* handle, void** context,
                              MHD_ConnectionNotificationCode code) {
  auto* server = static_cast<HttpServer*>(self);
  if (code == MHD_CONNECTION_NOTIFY_STARTED) {
    server->connections_.push_back(std::make_unique<Connection>(handle, Clock::now()));
    *context = server->connections_.back().get();
    return;
  }
  auto* connection = static_cast<Connection*>(*context);
  server->Part(connection);
  std::erase_if(server->connections_,
                [connection](const auto& owned) { return owned.get() == connection; });
}

void* HttpServer::OnRequestLine(void* /*self*/, const char* target, MHD_Connection* handle) {
  Connection::Of(handle)->Begin(target, Clock::now());
  // Hides the query from the server: the request has its own copy. The server would parse the query
  // into the memory of the connection, and fails when that does not suffice. The server itself
  // writes to this line, so it may be changed here.
  if (const char* query = std::strchr(target, '?'); query != nullptr) {
    const_cast<char*>(query)[1] = '\0';
  }
  return nullptr;
}

MHD_Result HttpServer::OnRequest(void* self, MHD_Connection* handle, const char* /*url*/,
                                 const char* method, const char* version, const char* upload_data,
                                 size_t* upload_data_size, void** /*request*/) {
  auto* server = static_cast<HttpServer*>(self);
  Connection* connection = Connection::Of(handle);
  HttpRequest* request = connection->request();
  if (!request->judged()) {
    connection->timeout().Enter(ClientTimeout::Phase::kBody, Clock::now());
    request->Judge(*server->router_, method, version);
    return request->RefusedAtOnce() ? server->Send(connection, *request->refusal()) : MHD_YES;
  }
  if (*upload_data_size > 0) {
    const std::string_view piece(upload_data, *upload_data_size);
    connection->timeout().Add(static_cast<int64_t>(*upload_data_size), Clock::now());
    *upload_data_size = 0;
    if (!request->AddBody(piece)) {
      connection->set_closing_reply(*request->refusal());
      return MHD_NO;
    }
    return MHD_YES;
  }
  request->EndBody();
  return server->Answer(connection);
}

void HttpServer::OnCompleted(void* self, MHD_Connection* handle, void** /*request*/,
                             MHD_RequestTerminationCode reason) {
  Connection* connection = Connection::Of(handle);
  std::unique_ptr<HttpRequest> request = connection->TakeRequest();
  if (reason == MHD_REQUEST_TERMINATED_COMPLETED_OK) {
    connection->EndAnswer(Clock::now());
  }
  if (request != nullptr) {
    static_cast<HttpServer*>(self)->Finish(std::move(request));
  }
}

MHD_Result HttpServer::Answer(Connection* connection) {
  HttpRequest* request = connection->request();
  if (request->refusal()) {
    return Send(connection, *request->refusal());
  }
  if (request->IsDroppedWithoutClient() && connection->IsClientGone()) {
    return MHD_NO;
  }
  if (request->reply()) {
    return Send(connection, *request->reply());
  }
  const Route& route = *request->route();
  if (const std::optional<Reply> reply =
          route.answer ? route.answer(request->view()) : std::nullopt) {
    return Send(connection, *reply);
  }
  if (HasItsTurn(request)) {
    if (route.begin) {
      route.begin(request->view());
    }
    library_line_.Add(request);
  }
  connection->timeout().Enter(ClientTimeout::Phase::kWaits, Clock::now());
  MHD_suspend_connection(connection->handle());
  return MHD_YES;
}

MHD_Result HttpServer::Send(Connection* connection, const Reply& given) {
  const Reply reply = connection->request()->InAcceptedForm(given);
  for (const OnAnswer& on_answer : on_answer_) {
    on_answer(*connection->request(), reply);
  }
  connection->BeginAnswer(Clock::now());
  MHD_Response* response = MakeResponse(connection, reply);
  if (response == nullptr) {
    return MHD_NO;
  }
  const MHD_Result queued = MHD_queue_response(connection->handle(), reply.status, response);
  MHD_destroy_response(response);
  return queued;
}

bool HttpServer::HasItsTurn(HttpRequest* request) {
  const Route& route = *request->route();
  if (!route.takes_turn) {
    return true;
  }
  const bool may_ask = route.may_join && request->join() == HttpRequest::Join::kNotAsked &&
                       turn_queue_.waiting().empty() && turn_queue_.IsOthers(request);
  if (may_ask) {
    request->set_join(HttpRequest::Join::kAsked);
  }
  return may_ask || turn_queue_.Take(request);
}

void HttpServer::Finish(std::unique_ptr<HttpRequest> request) {
  AfterReply after_reply = request->TakeAfterReply();
  if (!after_reply.run) {
    Leave(request.get());
    return;
  }
  seconds_away_ = after_reply.wait_seconds;
  desk_->PutAfterReply(std::move(after_reply));
  finished_ = std::move(request);
}

void HttpServer::Leave(HttpRequest* request) {
  library_line_.Remove(request);
  HttpRequest* next = turn_queue_.Leave(request);
  if (next != nullptr && !stopping_) {
    Resume(next);
  }
}

void HttpServer::Resume(HttpRequest* request) {
  MHD_resume_connection(request->connection());
  resumed_ = true;
}

void HttpServer::CutSlowConnections(fd_set* cut, Clock::time_point now) {
  for (const auto& connection : connections_) {
    if (connection->timeout().phase() == ClientTimeout::Phase::kAnswer) {
      connection->NoteProgress(now);
    }
    if (ServeStream(connection.get(), now) && connection->timeout().Deadline() > now) {
      continue;
    }
    ResumeIfSuspended(connection->handle());
    if (connection->timeout().phase() == ClientTimeout::Phase::kHead) {
      connection->set_closing_reply(TooSlow("head of the request"));
    } else if (connection->timeout().phase() == ClientTimeout::Phase::kBody) {
      connection->set_closing_reply(TooSlow("body of the request"));
    }
    connection->Abandon();
    FD_SET(connection->socket(), cut);
  }
}

void HttpServer::Accept(Clock::time_point now) {
  // Not more at once: what these have sent is read first. Then it is known which of them have gone
  // and make room.
  constexpr int kAtOnce = 8;
  for (int i = 0; i < kAtOnce; ++i) {
    int error = 0;
    std::optional<Acceptor::Incoming> incoming = acceptor_.Next(&error);
    if (incoming) {
      Admit(std::move(*incoming), now);
      continue;
    }
    if (error != 0 && !lingering_.CloseOldest() && !CloseUselessConnection(nullptr)) {
      acceptor_.Pause(error, now);
    }
    return;
  }
}

void HttpServer::Admit(Acceptor::Incoming incoming, Clock::time_point now) {
  if (!MakeRoom(AddressText(incoming.generic()))) {
    const Reply reply = TryLater(MHD_HTTP_SERVICE_UNAVAILABLE,
                                 "there are too many connections, of this address or in all",
                                 ClientTimeout::kHeadTime.count());
    Say(incoming.socket.get(), reply);
    lingering_.Take(std::move(incoming.socket), now);
    return;
  }
  MHD_add_connection(daemon_.get(), incoming.socket.Release(), incoming.generic(), incoming.length);
}

bool HttpServer::MakeRoom(const std::string& address) {
  while (CountOf(address) >= kMostOfAnAddress) {
    if (!CloseUselessConnection(&address)) {
      return false;
    }
  }
  while (connections_.size() >= kMostConnections) {
    if (!CloseUselessConnection(nullptr)) {
      return false;
    }
  }
  return true;
}

size_t HttpServer::CountOf(const std::string& address) const {
  return static_cast<size_t>(
      std::count_if(connections_.begin(), connections_.end(),
                    [&address](const auto& owned) { return owned->address() == address; }));
}

// Closes the connection that has been useless for the longest time, of one address if it is given.
bool HttpServer::CloseUselessConnection(const std::string* address) {
  Connection* found = nullptr;
  for (const auto& owned : connections_) {
    const bool is_older = found == nullptr || owned->timeout().since() < found->timeout().since();
    if ((address == nullptr || owned->address() == *address) && is_older && owned->IsUseless()) {
      found = owned.get();
    }
  }
  if (found != nullptr) {
    found->Abandon();
    Close(found);
  }
  return found != nullptr;
}

void HttpServer::Close(Connection* connection) {
  ResumeIfSuspended(connection->handle());
  fd_set none;
  FD_ZERO(&none);
  fd_set cut = none;
  FD_SET(connection->socket(), &cut);
  MHD_run_from_select(daemon_.get(), &none, &none, &cut);
}

// Sends what is still to be sent on a connection that the server is about to close.
void HttpServer::Part(Connection* connection) {
  if (std::unique_ptr<HttpRequest> request = connection->TakeRequest()) {
    Finish(std::move(request));
  }
  if (stopping_ || connection->IsClientGone()) {
    return;
  }
  const std::optional<Reply> closing_reply = connection->ClosingReply();
  if (closing_reply) {
    Say(connection->socket(), *closing_reply);
  }
  if (closing_reply || !connection->is_abandoned()) {
    lingering_.Take(FileDescriptor(fcntl(connection->socket(), F_DUPFD_CLOEXEC, 0)), Clock::now());
  }
}

}  // namespace kiohost
