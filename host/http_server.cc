#include "http_server.h"

#include <utility>

namespace kiohost {
namespace {

constexpr unsigned int kMaxConnections = 64;
constexpr unsigned int kIdleSeconds = 10;

MHD_Result Send(MHD_Connection* connection, const Reply& reply) {
  // The buffer is copied, so that it is never written through this pointer.
  MHD_Response* response = MHD_create_response_from_buffer(
      reply.body.size(), const_cast<char*>(reply.body.data()), MHD_RESPMEM_MUST_COPY);
  if (response == nullptr) {
    return MHD_NO;
  }
  MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, reply.content_type.c_str());
  // What a browser gets is taken for nothing else than it is said to be, and kept nowhere.
  MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
  MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, "no-store");
  for (const auto& [name, value] : reply.headers) {
    MHD_add_response_header(response, name.c_str(), value.c_str());
  }
  const MHD_Result queued = MHD_queue_response(connection, reply.status, response);
  MHD_destroy_response(response);
  return queued;
}

}  // namespace

Status HttpServer::Start(FileDescriptor listener) {
  stopping_ = false;
  daemon_.reset(MHD_start_daemon(
      MHD_ALLOW_SUSPEND_RESUME, 0, nullptr, nullptr, OnRequest, this, MHD_OPTION_LISTEN_SOCKET,
      listener.get(), MHD_OPTION_CONNECTION_LIMIT, kMaxConnections, MHD_OPTION_CONNECTION_TIMEOUT,
      kIdleSeconds, MHD_OPTION_URI_LOG_CALLBACK, OnRequestLine, this, MHD_OPTION_NOTIFY_COMPLETED,
      OnCompleted, this, MHD_OPTION_SIGPIPE_HANDLED_BY_APP, 1, MHD_OPTION_END));
  if (daemon_ == nullptr) {
    return {ExitCode::kNetwork, "the HTTP server could not be started"};
  }
  listener.Release();
  return {};
}

void HttpServer::Stop() {
  stopping_ = true;
  // A daemon must not be stopped while connections of its are suspended.
  for (HttpRequest* request : turns_.waiting()) {
    MHD_resume_connection(request->connection());
  }
  daemon_.reset();
}

void HttpServer::AddDescriptors(fd_set* read_set, fd_set* write_set, fd_set* except_set,
                                int* max_fd) {
  MHD_get_fdset2(daemon_.get(), read_set, write_set, except_set, max_fd, FD_SETSIZE);
}

std::optional<long> HttpServer::MillisecondsToWait() const {
  if (resumed_) {
    return 0;
  }
  MHD_UNSIGNED_LONG_LONG milliseconds = 0;
  if (MHD_get_timeout(daemon_.get(), &milliseconds) != MHD_YES) {
    return std::nullopt;
  }
  return static_cast<long>(milliseconds);
}

void HttpServer::Run(const fd_set& read_set, const fd_set& write_set, const fd_set& except_set) {
  resumed_ = false;
  MHD_run_from_select(daemon_.get(), &read_set, &write_set, &except_set);
}

std::optional<FollowUp> HttpServer::TakeFollowUp() {
  return std::exchange(follow_up_, std::nullopt);
}

void HttpServer::EndTurn() {
  Leave(finished_.get());
  finished_.reset();
}

void* HttpServer::OnRequestLine(void* /*self*/, const char* target, MHD_Connection* connection) {
  return new HttpRequest(connection, target);  // `OnCompleted` takes it back
}

MHD_Result HttpServer::OnRequest(void* self, MHD_Connection* connection, const char* url,
                                 const char* method, const char* /*version*/,
                                 const char* upload_data, size_t* upload_data_size,
                                 void** request) {
  auto* server = static_cast<HttpServer*>(self);
  auto* current = static_cast<HttpRequest*>(*request);
  if (!current->judged()) {
    current->Judge(*server->router_, method, url);
    return current->RefusedAtOnce() ? Send(connection, *current->refusal()) : MHD_YES;
  }
  if (*upload_data_size > 0) {
    const std::string_view piece(upload_data, *upload_data_size);
    *upload_data_size = 0;
    return current->AddBody(piece) ? MHD_YES : MHD_NO;
  }
  current->EndBody();
  return server->Answer(current);
}

void HttpServer::OnCompleted(void* self, MHD_Connection* /*connection*/, void** request,
                             MHD_RequestTerminationCode /*reason*/) {
  std::unique_ptr<HttpRequest> completed(static_cast<HttpRequest*>(*request));
  *request = nullptr;
  if (completed != nullptr) {
    static_cast<HttpServer*>(self)->Finish(std::move(completed));
  }
}

MHD_Result HttpServer::Answer(HttpRequest* request) {
  if (request->refusal()) {
    return Send(request->connection(), *request->refusal());
  }
  if (!HasItsTurn(request)) {
    MHD_suspend_connection(request->connection());
    return MHD_YES;
  }
  Reply reply = request->route()->handle(request->view());
  request->set_follow_up(std::move(reply.follow_up));
  return Send(request->connection(), reply);
}

bool HttpServer::HasItsTurn(HttpRequest* request) {
  const Route& route = *request->route();
  const bool joins = route.may_join && turns_.waiting().empty() && route.may_join(request->view());
  return !route.takes_turn || joins || turns_.Take(request);
}

void HttpServer::Finish(std::unique_ptr<HttpRequest> request) {
  FollowUp follow_up = request->TakeFollowUp();
  if (!follow_up.run) {
    Leave(request.get());
    return;
  }
  follow_up_ = std::move(follow_up);
  finished_ = std::move(request);
}

void HttpServer::Leave(HttpRequest* request) {
  HttpRequest* next = turns_.Leave(request);
  if (next != nullptr && !stopping_) {
    MHD_resume_connection(next->connection());
    resumed_ = true;
  }
}

}  // namespace kiohost
