#include "http_call.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>
#include <strings.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "http_request.h"
#include "input.h"

// What the HTTP server knows of the request. It is handed on as the server's own type, which nobody
// looks into.
struct MHD_Connection {
  std::vector<std::pair<std::string_view, std::string_view>> headers;
  sockaddr_in client = {};
  MHD_ConnectionInfo info = {};
};

namespace {

bool IsName(std::string_view name, const char* wanted, std::size_t size) {
  return name.size() == size && strncasecmp(name.data(), wanted, size) == 0;
}

}  // namespace

extern "C" {

// These stand in the place of the HTTP server's.
MHD_Result MHD_lookup_connection_value_n(MHD_Connection* connection, MHD_ValueKind /*kind*/,
                                         const char* key, std::size_t key_size, const char** value,
                                         std::size_t* value_size) {
  for (const auto& [name, text] : connection->headers) {
    if (IsName(name, key, key_size)) {
      *value = text.data();
      *value_size = text.size();
      return MHD_YES;
    }
  }
  return MHD_NO;
}

int MHD_get_connection_values_n(MHD_Connection* connection, MHD_ValueKind kind,
                                MHD_KeyValueIteratorN iterator, void* context) {
  for (const auto& [name, text] : connection->headers) {
    iterator(context, kind, name.data(), name.size(), text.data(), text.size());
  }
  return static_cast<int>(connection->headers.size());
}

const union MHD_ConnectionInfo* MHD_get_connection_info(MHD_Connection* connection,
                                                        MHD_ConnectionInfoType type, ...) {
  if (type == MHD_CONNECTION_INFO_CLIENT_ADDRESS) {
    connection->info.client_addr = reinterpret_cast<sockaddr*>(&connection->client);
  } else {
    connection->info.connect_fd = -1;
  }
  return &connection->info;
}

}  // extern "C"

namespace kio::fuzz {
namespace {

std::string_view TakeLine(std::string_view* bytes) {
  const std::size_t end = bytes->find('\n');
  std::string_view line = bytes->substr(0, end);
  bytes->remove_prefix(end == std::string_view::npos ? bytes->size() : end + 1);
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  return line;
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
    text.remove_suffix(1);
  }
  return text;
}

void ReadHeaders(std::string_view* bytes, MHD_Connection* connection) {
  for (std::string_view line = TakeLine(bytes); !line.empty(); line = TakeLine(bytes)) {
    const std::size_t colon = line.find(':');
    if (colon != std::string_view::npos && colon > 0) {
      connection->headers.emplace_back(line.substr(0, colon),
                                       WithoutBlanks(line.substr(colon + 1)));
    }
  }
}

bool IsLineText(const std::string& text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos;
}

void Check(const kiohost::Reply& reply) {
  constexpr unsigned int kLeastStatus = 200;
  constexpr unsigned int kMostStatus = 599;
  if (reply.status < kLeastStatus || reply.status > kMostStatus) {
    Report("an answer has no status");
  }
  for (const auto& [name, value] : kiohost::AllHeaders(reply)) {
    if (name.empty() || !IsLineText(name) || !IsLineText(value)) {
      Report("a header of an answer is more than a line");
    }
  }
  if (reply.content_type.find("json") != std::string::npos && !reply.body.empty() &&
      !kiohost::Json::accept(reply.body)) {
    Report("an answer is no JSON");
  }
  if (!kiohost::RawResponse(reply).starts_with("HTTP/1.1 ")) {
    Report("an answer is no HTTP");
  }
}

// The body comes in pieces.
void AddBody(std::string_view body, kiohost::HttpRequest* request) {
  constexpr std::size_t kPiece = 100;
  while (!body.empty() && request->AddBody(body.substr(0, kPiece))) {
    body.remove_prefix(std::min(kPiece, body.size()));
  }
  request->EndBody();
}

kiohost::Reply Run(kiohost::HttpRequest* request) {
  const kiohost::Route& route = *request->route();
  if (route.answer) {
    if (std::optional<kiohost::Reply> reply = route.answer(request->view())) {
      return *reply;
    }
  }
  if (route.begin) {
    route.begin(request->view());
  }
  request->Handle();
  return *request->reply();
}

}  // namespace

void CallRouter(const kiohost::Router& router, std::string_view bytes) {
  MHD_Connection connection;
  connection.client.sin_family = AF_INET;
  connection.client.sin_addr.s_addr = htonl(0xC0A8010A);
  // The server ends method, target and version with a NUL each, where a blank was.
  std::string line(TakeLine(&bytes));
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  if (first == std::string::npos || first == last) {
    return;
  }
  line[first] = '\0';
  line[last] = '\0';
  const GuardedText guarded(line);
  ReadHeaders(&bytes, &connection);
  const char* const method = guarded.get();
  kiohost::HttpRequest request(&connection, method + first + 1);
  request.Judge(router, method, method + last + 1);
  if (!request.RefusedAtOnce()) {
    AddBody(bytes, &request);
  }
  Check(request.InAcceptedForm(request.refusal() ? *request.refusal() : Run(&request)));
}

}  // namespace kio::fuzz
