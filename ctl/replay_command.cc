// A record is played against a router: the first answer that differs is told.
#include <algorithm>
#include <chrono>
#include <map>
#include <memory>

#include "commands.h"
#include "files.h"
#include "interrupt.h"
#include "password.h"
#include "record.h"
#include "same_answer.h"
#include "status.h"

namespace kioctl {
namespace {

using nlohmann::json;
using Clock = std::chrono::steady_clock;

constexpr size_t kMostBytes = size_t{1024} * 1024;
constexpr int kBadRequest = 400;

// Why a request is not played; empty for one that is.
std::string WhyNotPlayed(const RecordedRequest& request) {
  if (request.is_malformed) {
    return "it is malformed";
  }
  const bool is_unkept = request.bytes > 0;
  return is_unkept && (request.bytes > kMostBytes || request.answer.status == kBadRequest)
             ? "its body was not recorded"
             : "";
}

class Player {
 public:
  Player(Context* context, const std::vector<RecordedRequest>& requests)
      : context_(context),
        url_(context->router->url()),
        secrets_(context->options->secrets_file, [context] { return AskPassword(*context); }) {
    for (const RecordedRequest& request : requests) {
      last_of_connection_[request.connection] = request.number;
    }
  }

  // Throws a Failure for an answer that is not as recorded.
  void Play(const RecordedRequest& recorded) {
    const std::string from = AddressFor(recorded.from);
    auto& connection = connections_[recorded.connection];
    if (connection == nullptr) {
      connection = std::make_unique<Http>(url_, context_->options->timeout);
    }
    const Request request = RequestFor(recorded, from, connection.get());
    const auto end = Clock::now() + std::chrono::seconds(context_->options->patience);
    const bool is_read = recorded.method == "GET" || recorded.method == "HEAD";
    Reply now = connection->Send(request);
    std::optional<Difference> difference = comparison_.Compare(Expected(recorded), now);
    // The router may still be at work on what was asked for before.
    while (difference && is_read && Clock::now() < end) {
      constexpr std::chrono::milliseconds kPause(50);
      Pause(kPause);
      now = connection->Send(request);
      difference = comparison_.Compare(Expected(recorded), now);
    }
    if (difference) {
      throw Differs(recorded, *difference);
    }
    if (last_of_connection_[recorded.connection] == recorded.number) {
      connections_.erase(recorded.connection);
    }
  }

 private:
  static std::string AskPassword(const Context& context) {
    const std::optional<std::string> password =
        Password(context.options->password_file, context.router->url());
    if (!password) {
      throw Failure{ExitCode::kNotLoggedIn, "the record wants the administrator's password",
                    "set KIO_PASSWORD, name a file of mode 600 with --password-file, or give "
                    "--secrets FILE"};
    }
    return *password;
  }

  // Logins are of addresses. On this machine there is one for each recorded client.
  std::string AddressFor(const std::string& recorded) {
    constexpr std::string_view kHere = "http://127.";
    if (!url_.starts_with(kHere)) {
      return {};
    }
    if (recorded.starts_with("127.")) {
      return recorded;
    }
    return addresses_.emplace(recorded, "127.0.1." + std::to_string(addresses_.size() + 1))
        .first->second;
  }

  Request RequestFor(const RecordedRequest& recorded, const std::string& from, Http* connection) {
    Request request;
    // A stream goes on, but its head tells whether it begins.
    request.method = recorded.has_stream ? "HEAD" : recorded.method;
    request.path = comparison_.WithOwnIds(
        secrets_.PutBack(recorded.target, [](const std::string& text) { return Escape(text); }));
    for (const std::string& header : recorded.headers) {
      request.headers.push_back(comparison_.WithOwnIds(secrets_.PutBack(header)));
    }
    request.as_is = true;
    request.from = from;
    if (recorded.password) {
      request.body = LoginFor(recorded, from, connection);
    } else if (recorded.bytes > 0) {
      request.body = std::string(recorded.bytes, ' ');
    } else {
      request.body = comparison_.WithOwnIds(secrets_.PutBack(recorded.body));
    }
    return request;
  }

  // A key of this moment. One character behind the marker of the long key does not count.
  std::string LoginFor(const RecordedRequest& recorded, const std::string& from, Http* connection) {
    constexpr std::string_view kShort = "BKey=";
    const Reply device = connection->Send({.path = "/device", .as_is = true, .from = from});
    const json description = ReadJson(device.body);
    if (device.status != kOk || !description.contains("uptime")) {
      throw Strange(url_ + " does not tell its uptime, which a login needs");
    }
    const std::string key = LoginKey(description["uptime"].get<long>(), device.local_address,
                                     secrets_.PutBack(*recorded.password));
    return recorded.body.starts_with(kShort) ? std::string(kShort) + key : "kioAppKey=:" + key;
  }

  static Reply Expected(const RecordedRequest& recorded) {
    Reply answer = recorded.answer;
    if (recorded.has_stream || recorded.method == "HEAD") {
      answer.body.clear();
    }
    return answer;
  }

  Failure Differs(const RecordedRequest& recorded, const Difference& difference) const {
    const std::string number = std::to_string(recorded.number);
    Failure failure = {ExitCode::kRefused,
                       "answer " + number + " differs, to " + recorded.method + " " +
                           recorded.target + ": " + difference.where + " was recorded as " +
                           difference.recorded + ", and is " + difference.now,
                       "line " + std::to_string(recorded.number + 1) + " of " +
                           context_->options->operand + " has the request and its answer"};
    failure.details = {
        {"n", recorded.number},      {"method", recorded.method},       {"target", recorded.target},
        {"where", difference.where}, {"recorded", difference.recorded}, {"now", difference.now}};
    return failure;
  }

  Context* context_;
  std::string url_;
  Secrets secrets_;
  AnswerComparison comparison_;
  std::map<long, std::unique_ptr<Http>> connections_;
  std::map<long, size_t> last_of_connection_;
  std::map<std::string, std::string> addresses_;
};

}  // namespace

void RunReplay(Context* context) {
  const Options& options = *context->options;
  const std::vector<RecordedRequest> requests = ReadRecord(ReadInput(options.operand));
  Player player(context, requests);
  size_t left_out = 0;
  const auto begin = Clock::now();
  for (const RecordedRequest& request : requests) {
    if (const std::string why = WhyNotPlayed(request); !why.empty()) {
      context->out->Note("request " + std::to_string(request.number) + " is left out: " + why);
      ++left_out;
      continue;
    }
    if (options.real_time) {
      const std::chrono::milliseconds due(request.milliseconds);
      const auto passed =
          std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
      Pause(std::max(due - passed, std::chrono::milliseconds(0)));
    }
    player.Play(request);
  }
  const size_t played = requests.size() - left_out;
  context->out->Json({{"same", played}, {"leftOut", left_out}});
  context->out->Line(std::to_string(played) + " answers are as they were recorded");
}

}  // namespace kioctl
