#include "record/recorder.h"

#include <nettle/base64.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "nodes.h"
#include "secrets.h"
#include "uptime.h"
#include "utf8.h"

namespace kiohost {
namespace {

constexpr int kRecordFormat = 1;

// The headers that decide about an answer. The host that a client names is another one for another
// router; it decides about one answer alone.
constexpr const char* kHeaders[] = {"Accept", "Content-Type",  "Expect",       "If-Match",
                                    "Origin", "If-None-Match", "Last-Event-ID"};

long MillisecondsSince(std::chrono::steady_clock::time_point begin,
                       std::chrono::steady_clock::time_point end) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(end - begin).count();
}

// A part of a target. What stands for a secret is left as it is.
std::string Escaped(std::string_view text) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/:*(),";
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : text) {
    if (kPlain.find(c) != std::string_view::npos) {
      escaped += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      escaped += {'%', kHexDigits[byte / kHexDigits.size()], kHexDigits[byte % kHexDigits.size()]};
    }
  }
  return escaped;
}

std::string TargetOf(const RequestTarget& target, const SecretMarks& marks) {
  if (target.is_server) {
    return "*";
  }
  std::string text = Escaped(marks.Masked(target.path));
  char mark = '?';
  for (const auto& [name, value] : target.arguments) {
    text.append(1, std::exchange(mark, '&')).append(Escaped(marks.Masked(name)));
    text.append(value.empty() ? "" : "=").append(Escaped(marks.Masked(value)));
  }
  return text;
}

// Bytes that are no text are told in base64.
void SetBody(std::string body, Json* json) {
  if (IsUtf8(body)) {
    (*json)["body"] = std::move(body);
    return;
  }
  std::string digits(BASE64_ENCODE_RAW_LENGTH(body.size()), '\0');
  base64_encode_raw(digits.data(), body.size(), reinterpret_cast<const uint8_t*>(body.data()));
  (*json)["base64"] = digits;
}

// The body of a login without its key, which leads to the password.
std::string WithoutKey(const std::string& body) {
  for (const char* marker : {"kioAppKey=", "BKey="}) {
    if (body.find(marker) != std::string::npos) {
      return std::string(marker).append(kMasked);
    }
  }
  return std::string(kMasked);
}

char SeparatorOf(const RequestView& view) {
  const std::string_view text = view.Argument("separator").value_or("&");
  return text.size() == 1 ? text.front() : '&';
}

// The variable whose value the body of a request or of its answer is; empty for none.
std::string_view VariableOf(const RequestView& view) {
  constexpr std::string_view kBegin = "/vars/";
  constexpr std::string_view kValidate = "/validate";
  std::string_view path = view.path();
  if (!path.starts_with(kBegin)) {
    return {};
  }
  path.remove_prefix(kBegin.size());
  return path.ends_with(kValidate) ? path.substr(0, path.size() - kValidate.size()) : path;
}

}  // namespace

Recorder::Recorder(Store* reader, const Json& variables) : reader_(reader), marks_(variables) {}

Status Recorder::Open(const std::string& file, const std::string& secrets_file) {
  Status status = file_.Make(file);
  if (status.ok() && !secrets_file.empty()) {
    status = secrets_.Make(secrets_file);
  }
  if (!status.ok()) {
    return status;
  }
  marks_.set_on_new([this](const std::string& mark, const std::string& text) {
    secrets_.Add(JsonLine({{"mark", mark}, {"text", text}}));
  });
  // The first one, for which a replay takes the password that it is given.
  marks_.MarkOf(reader_->Get(kPasswordNode).value_or(""));
  LearnSecrets();
  file_.Add(
      JsonLine({{"record", kRecordFormat}, {"model", reader_->Get(kModelNode).value_or("")}}));
  return {};
}

void Recorder::LearnSecrets() {
  for (const Node& node : reader_->List()) {
    if (IsSecret(node.path)) {
      marks_.MarkOf(node.text);
    }
  }
}

void Recorder::Add(const HttpRequest& request, const Reply& reply) {
  const auto now = std::chrono::steady_clock::now();
  if (!request.view().IsGet()) {
    LearnSecrets();
  }
  Json line = {{"n", ++count_},
               {"ms", MillisecondsSince(begin_, request.begun())},
               {"uptime", UptimeSeconds()},
               {"from", request.view().peer_address()},
               {"connection", request.view().connection_number()}};
  line.update(RequestOf(request, reply));
  line["answer"] = AnswerOf(request, reply, MillisecondsSince(request.begun(), now));
  file_.Add(JsonLine(line));
}

Json Recorder::RequestOf(const HttpRequest& request, const Reply& reply) {
  const RequestView& view = request.view();
  Json json = {{"method", view.method()}, {"target", TargetOf(view.target(), marks_)}};
  Json headers = Json::object();
  for (const char* name : kHeaders) {
    if (const auto value = view.Header(name)) {
      headers[name] = marks_.Masked(std::string(*value));
    }
  }
  if (reply.status == MHD_HTTP_MISDIRECTED_REQUEST) {
    headers[MHD_HTTP_HEADER_HOST] = view.Header(MHD_HTTP_HEADER_HOST).value_or("");
  }
  json["headers"] = std::move(headers);
  if (request.is_malformed() || view.target().nul_in_path) {
    json["malformed"] = true;
  } else if (view.path() == "/login" && !view.body().empty()) {
    json["body"] = WithoutKey(view.body());
    if (reply.status == MHD_HTTP_OK) {
      json["password"] = marks_.MarkOf(reader_->Get(kPasswordNode).value_or(""));
    }
  } else if (view.body().empty()) {
    // Of a refused body the length alone is known.
    json["bytes"] = std::max(request.received(), request.DeclaredLength());
  } else if (marks_.IsSecretName(VariableOf(view))) {
    json["body"] = marks_.MarkOf(view.body());
  } else {
    SetBody(marks_.MaskedBody(view.body(), SeparatorOf(view)), &json);
  }
  return json;
}

Json Recorder::AnswerOf(const HttpRequest& request, const Reply& reply, long milliseconds) {
  Json json = {{"ms", milliseconds}, {"status", reply.status}};
  Json headers = Json::object();
  for (const auto& [name, value] : AllHeaders(reply)) {
    headers[name] = marks_.Masked(value);
  }
  json["headers"] = std::move(headers);
  const RequestView& view = request.view();
  if (reply.stream != nullptr) {
    json["stream"] = true;
  } else if (reply.status == MHD_HTTP_OK && view.IsGet() &&
             !FlagArgument(view, "path").value_or(false) && marks_.IsSecretName(VariableOf(view))) {
    json["body"] = marks_.MarkOf(reply.body);
  } else {
    SetBody(marks_.MaskedBody(reply.body, '&'), &json);
  }
  return json;
}

}  // namespace kiohost
