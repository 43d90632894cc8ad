#include "http_response.h"

#include <sys/socket.h>

#include <memory>

#include "body_stream.h"

namespace kiohost {
namespace {

struct StreamedBody {
  MHD_Connection* connection;
  std::shared_ptr<BodyStream> stream;
};

ssize_t ReadStream(void* body, uint64_t /*position*/, char* bytes, size_t size) {
  const auto* streamed = static_cast<const StreamedBody*>(body);
  const size_t taken = streamed->stream->Take(bytes, size);
  if (taken > 0) {
    return static_cast<ssize_t>(taken);
  }
  if (streamed->stream->IsOver()) {
    return MHD_CONTENT_READER_END_OF_STREAM;
  }
  if (streamed->stream->IsBroken()) {
    return MHD_CONTENT_READER_END_WITH_ERROR;
  }
  MHD_suspend_connection(streamed->connection);
  return 0;
}

void FreeStream(void* body) { delete static_cast<StreamedBody*>(body); }

MHD_Response* MakeStreamResponse(Connection* connection,
                                 const std::shared_ptr<BodyStream>& stream) {
  // What the system keeps for a slow reader. It may be megabytes otherwise.
  constexpr int kSendBuffer = 16 * 1024;
  setsockopt(connection->socket(), SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
  constexpr size_t kPiece = 1024;
  auto body = std::make_unique<StreamedBody>(StreamedBody{connection->handle(), stream});
  MHD_Response* response = MHD_create_response_from_callback(MHD_SIZE_UNKNOWN, kPiece, ReadStream,
                                                             body.get(), FreeStream);
  if (response != nullptr) {
    static_cast<void>(body.release());
  }
  return response;
}

}  // namespace

MHD_Response* MakeResponse(Connection* connection, const Reply& reply) {
  // The buffer is copied, so that it is never written through this pointer.
  MHD_Response* response =
      reply.stream != nullptr
          ? MakeStreamResponse(connection, reply.stream)
          : MHD_create_response_from_buffer(reply.body.size(), const_cast<char*>(reply.body.data()),
                                            MHD_RESPMEM_MUST_COPY);
  if (response == nullptr) {
    return nullptr;
  }
  for (const auto& [name, value] : AllHeaders(reply)) {
    MHD_add_response_header(response, name.c_str(), value.c_str());
  }
  if (connection->request()->RefusedAtOnce()) {
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
  }
  if (reply.stream != nullptr && connection->request()->view().method() == MHD_HTTP_METHOD_HEAD) {
    // The server would send the end of a body in chunks otherwise.
    MHD_set_response_options(response, MHD_RF_HTTP_1_0_COMPATIBLE_STRICT, MHD_RO_END);
  } else {
    connection->set_stream(reply.stream);
  }
  return response;
}

bool ServeStream(Connection* connection, ClientTimeout::Clock::time_point now) {
  BodyStream* stream = connection->stream();
  if (stream == nullptr) {
    return true;
  }
  const BodyStream::State state = stream->Look(now);
  if (state == BodyStream::State::kLost || connection->IsClientGone()) {
    return false;
  }
  connection->NoteStream(now, state == BodyStream::State::kOver);
  if (state != BodyStream::State::kWaits) {
    ResumeIfSuspended(connection->handle());
  }
  return true;
}

bool ResumeIfSuspended(MHD_Connection* handle) {
  const MHD_ConnectionInfo* info =
      MHD_get_connection_info(handle, MHD_CONNECTION_INFO_CONNECTION_SUSPENDED);
  if (info->suspended != MHD_YES) {
    return false;
  }
  MHD_resume_connection(handle);
  return true;
}

}  // namespace kiohost
