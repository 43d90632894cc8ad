#include "http_server.h"

#include <malloc.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "http_response.h"

namespace kiohost {
namespace {

using std::chrono::ceil;
using std::chrono::milliseconds;

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
    if (connection->stream() != nullptr || faulty_wire_ != nullptr) {
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
  if (faulty_wire_ != nullptr) {
    next = std::min(next, faulty_wire_->Deadline().value_or(kNever));
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
  if (faulty_wire_ != nullptr) {
    RunFaultyWire(now);
  }
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
  if (server->faulty_wire_ != nullptr) {
    server->faulty_wire_->Forget(connection);
  }
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

void HttpServer::RunFaultyWire(Clock::time_point now) {
  const FaultyWire::Due due = faulty_wire_->Run(now);
  for (Connection* connection : due.closed) {
    Close(connection);
  }
  for (Connection* connection : due.resumed) {
    Resume(connection->request());
  }
}

MHD_Result HttpServer::Answer(Connection* connection) {
  HttpRequest* request = connection->request();
  if (faulty_wire_ != nullptr) {
    if (const std::optional<Reply> reply = FaultyWire::Meet(request)) {
      return Send(connection, *reply);
    }
  }
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
  Reply reply = connection->request()->InAcceptedForm(given);
  using Way = FaultyWire::Way;
  const Way way =
      faulty_wire_ == nullptr ? Way::kSend : faulty_wire_->Take(connection, &reply, Clock::now());
  if (way == Way::kLater) {
    return MHD_YES;
  }
  for (const OnAnswer& on_answer : on_answer_) {
    on_answer(*connection->request(), reply);
  }
  if (way != Way::kSend) {
    return way == Way::kTaken ? MHD_YES : MHD_NO;
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

}  // namespace kiohost
