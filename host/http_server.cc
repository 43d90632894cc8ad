#include "http_server.h"

#include <kioapp/platform.h>

#include <string>
#include <utility>

#include "json.h"

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
  MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, reply.content_type);
  if (reply.allow != nullptr) {
    MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, reply.allow);
  }
  const MHD_Result queued = MHD_queue_response(connection, reply.status, response);
  MHD_destroy_response(response);
  return queued;
}

Reply ResultDocument(std::string document) {
  Reply reply;
  reply.content_type = "application/xml";
  reply.body = std::move(document);
  return reply;
}

}  // namespace

Status HttpServer::Start(FileDescriptor listener) {
  stopping_ = false;
  daemon_.reset(MHD_start_daemon(
      MHD_ALLOW_SUSPEND_RESUME, 0, nullptr, nullptr, OnRequest, this, MHD_OPTION_LISTEN_SOCKET,
      listener.get(), MHD_OPTION_CONNECTION_LIMIT, kMaxConnections, MHD_OPTION_CONNECTION_TIMEOUT,
      kIdleSeconds, MHD_OPTION_NOTIFY_COMPLETED, OnCompleted, this,
      MHD_OPTION_SIGPIPE_HANDLED_BY_APP, 1, MHD_OPTION_END));
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

std::optional<HttpServer::Delivered> HttpServer::TakeDelivered() {
  return std::exchange(delivered_, std::nullopt);
}

void HttpServer::EndExchange() {
  EndTurn(finished_.get());
  finished_.reset();
}

MHD_Result HttpServer::OnRequest(void* self, MHD_Connection* connection, const char* url,
                                 const char* method, const char* /*version*/,
                                 const char* upload_data, size_t* upload_data_size,
                                 void** request) {
  auto* server = static_cast<HttpServer*>(self);
  if (*request == nullptr) {
    auto arrived = std::make_unique<HttpRequest>(connection, method, url);
    const bool refused_at_once = arrived->RefusedAtOnce();
    *request = arrived.release();  // `OnCompleted` takes it back
    const auto* refused = static_cast<const HttpRequest*>(*request);
    return refused_at_once ? Send(connection, *refused->refusal()) : MHD_YES;
  }
  auto* current = static_cast<HttpRequest*>(*request);
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
  switch (request->resource()) {
    case Resource::kSettings:
      return AnswerSettings(request);
    case Resource::kResult:
      return Send(request->connection(), ResultReply());
    case Resource::kDevice:
      return Send(request->connection(), DeviceReply());
  }
  return MHD_NO;
}

MHD_Result HttpServer::AnswerSettings(HttpRequest* request) {
  if (!turns_.Take(request)) {
    MHD_suspend_connection(request->connection());
    return MHD_YES;
  }
  Exchange::Outcome outcome = exchange_->Run(request->TakeBody(), request->kind());
  switch (outcome.kind) {
    case Exchange::Outcome::Kind::kAnswered:
      request->set_commit_due(outcome.commit, outcome.wait_seconds);
      return Send(request->connection(), ResultDocument(std::move(outcome.text)));
    case Exchange::Outcome::Kind::kNoRoot:
      return Send(request->connection(),
                  ErrorReply(MHD_HTTP_BAD_REQUEST, "the settings document has no root element"));
    case Exchange::Outcome::Kind::kFailed:
      return Send(request->connection(), ErrorReply(MHD_HTTP_INTERNAL_SERVER_ERROR, outcome.text));
  }
  return MHD_NO;
}

Reply HttpServer::ResultReply() const {
  std::optional<std::string> result = exchange_->LastResult();
  return result ? ResultDocument(std::move(*result))
                : ErrorReply(MHD_HTTP_NOT_FOUND, "there was no exchange yet");
}

Reply HttpServer::DeviceReply() const {
  Reply reply;
  reply.content_type = "application/json";
  reply.body = "{\"model\": " + JsonString(store_->Get("/sys/modelnumber").value_or("")) +
               ", \"name\": " + JsonString(store_->Get("/sys/friendlyname").value_or("")) +
               ", \"uptime\": " + std::to_string(sys_uptime_seconds()) + "}\n";
  return reply;
}

void HttpServer::Finish(std::unique_ptr<HttpRequest> request) {
  if (request->due_kind() == CommitKind::kNone) {
    EndTurn(request.get());
    return;
  }
  delivered_ = Delivered{request->due_kind(), request->due_wait_seconds()};
  finished_ = std::move(request);
}

void HttpServer::EndTurn(HttpRequest* request) {
  HttpRequest* next = turns_.Leave(request);
  if (next != nullptr && !stopping_) {
    MHD_resume_connection(next->connection());
    resumed_ = true;
  }
}

}  // namespace kiohost
