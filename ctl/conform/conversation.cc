#include "conform/conversation.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "conform/raw.h"
#include "http.h"
#include "interrupt.h"
#include "router.h"

namespace kioctl::conform {
namespace {

constexpr int kUnauthorized = 401;
constexpr int kTooMany = 429;
constexpr size_t kMostShown = 2000;

std::string JsonNumber(const char* member, long number) {
  return std::string("{\"") + member + "\":" + std::to_string(number) + "}";
}

Answer ToAnswer(const Call& call, const Reply& reply) {
  return {reply.status, reply.body, reply.headers, call.method + " " + call.path};
}

}  // namespace

struct Conversation::Wires {
  Http router;
  Http control;
};

Conversation::Conversation(Means means)
    : means_(std::move(means)),
      wires_(new Wires{Http(means_.url, means_.seconds), Http(means_.control, means_.seconds)}) {}

Conversation::~Conversation() = default;

Answer Conversation::SendOnce(const Call& call) {
  const Reply reply = wires_->router.Send({.method = call.method,
                                           .path = call.path,
                                           .body = call.body,
                                           .headers = call.headers,
                                           .changes = insists_ || call.method != "GET"});
  Answer answer = ToAnswer(call, reply);
  Note(call, answer);
  StopIfInterruptedUnless(insists_);
  return answer;
}

Answer Conversation::Send(const Call& call) {
  Answer answer = SendOnce(call);
  if (answer.status == kUnauthorized && !call.as_stranger) {
    LogIn();
    answer = SendOnce(call);
  }
  return answer;
}

void Conversation::Note(const Call& call, const Answer& answer) {
  const auto cut = [](const std::string& text) {
    return text.size() > kMostShown ? text.substr(0, kMostShown) + "…" : text;
  };
  std::string asked = "> " + call.method + " " + call.path;
  for (const std::string& header : call.headers) {
    asked += "\n> " + header;
  }
  transcript_.push_back(asked + (call.body.empty() ? "" : "\n" + cut(call.body)));
  std::string said = "< " + std::to_string(answer.status);
  for (const auto& [name, value] : answer.headers) {
    said.append("\n< ").append(name).append(": ").append(value);
  }
  transcript_.push_back(said + (answer.body.empty() ? "" : "\n" + cut(answer.body)));
}

Value Conversation::Device() {
  const Answer answer = Get("/device").Is(200);
  return answer.Json();
}

std::string Conversation::Events(const std::string& since, const std::string& last) {
  constexpr long kPatienceSeconds = 2;
  std::string text;
  Request request{.path = "/events", .seconds = kPatienceSeconds};
  if (!since.empty()) {
    request.headers.push_back("Last-Event-ID: " + since);
  }
  request.ends_in_time = true;
  request.take = [&text, &last](std::string_view part) {
    text += part;
    const size_t found = last.empty() ? 0 : text.find("event: " + last + "\n");
    return found == std::string::npos || text.find("\n\n", found) == std::string::npos;
  };
  const Call call{.path = request.path, .headers = request.headers};
  Answer answer = ToAnswer(call, wires_->router.Send(request));
  if (answer.status == kUnauthorized) {
    LogIn();
    answer = ToAnswer(call, wires_->router.Send(request));
  }
  if (answer.body.empty()) {
    answer.body = text;
  }
  Note(call, answer);
  answer.Is(200);
  answer.HasType("text/event-stream");
  return text;
}

std::string Conversation::Exchange(const std::string& bytes) {
  constexpr std::chrono::milliseconds kPatience(1500);
  transcript_.push_back("> " + bytes.substr(0, kMostShown));
  RawConnection connection(wires_->router.url(), kPatience);
  connection.Send(bytes);
  std::string said = connection.Read();
  transcript_.push_back("< " + said.substr(0, kMostShown));
  return said;
}

std::string Conversation::HostName() const {
  const std::string& url = wires_->router.url();
  const size_t begin = url.find("://") + 3;
  return url.substr(begin, url.find('/', begin) - begin);
}

std::string Conversation::Key(int slots, const std::string& password) {
  constexpr long kSlotSeconds = 20;
  const Reply device = wires_->router.Send({.path = "/device", .changes = insists_});
  const Value said = Value::Parse(device.body);
  Expect(said["uptime"].Is(Value::Kind::kNumber),
         "GET /device does not tell the uptime, which a login needs");
  return LoginKey(said["uptime"].Number() + slots * kSlotSeconds, device.local_address,
                  password.empty() ? means_.password() : password);
}

void Conversation::LogIn() {
  // Wrong keys of an earlier run may have closed the way for a while.
  for (int tries = 0;; ++tries) {
    const Answer answer =
        SendOnce({.method = "POST", .path = "/login", .body = "kioAppKey=:" + Key()});
    if (answer.status == kTooMany && tries == 0) {
      const long seconds = std::strtol(answer.Header("retry-after").c_str(), nullptr, 10);
      means_.note("the router takes no keys for " + std::to_string(seconds) + " s");
      LetPass(seconds + 1);
      continue;
    }
    Expect(answer.status == 200, "the login is answered with " + std::to_string(answer.status) +
                                     " " + Shown(answer.body));
    return;
  }
}

void Conversation::LogOut() { Ask("POST", "/logout"); }

bool Conversation::CanLetPass(long seconds) const {
  return seconds == 0 || HasControl() || means_.slow;
}

void Conversation::LetPass(long seconds) {
  if (HasControl()) {
    Control("POST", "/clock", JsonNumber("advance", seconds));
    return;
  }
  Pause(std::chrono::seconds(seconds));
}

void Conversation::Settle(long promised, bool in_force) {
  constexpr long kGrace = 30;
  constexpr long kGraceWhenReady = 5;
  constexpr long kStepOfClock = 5;
  constexpr std::chrono::milliseconds kStep(20);
  const auto begun = std::chrono::steady_clock::now();
  for (long seconds = promised;;) {
    std::string state = "away";
    try {
      const Value device =
          Value::Parse(wires_->router.Send({.path = "/device", .changes = insists_}).body);
      const std::string outcome = device["lastApply"]["outcome"].Text();
      state = device["state"].Text() + (outcome.empty() ? "" : ", " + outcome);
      const bool is_done = !in_force || (outcome != "applied" && outcome != "going-back");
      if (device["state"].Text() == "ready" && is_done) {
        return;
      }
    } catch (const Failure& failure) {
      if (failure.code != ExitCode::kUnreachable && failure.code != ExitCode::kTimeout) {
        throw;
      }
    }
    if (HasControl()) {
      LetPass(seconds);
      seconds = kStepOfClock;
    }
    // Who says that it is ready will do no more.
    const long grace = state.starts_with("ready") ? kGraceWhenReady : kGrace;
    Expect(std::chrono::steady_clock::now() - begun < std::chrono::seconds(promised + grace),
           std::to_string(promised) + " s were promised, and " + std::to_string(grace) +
               " s later the router is " + state);
    if (insists_) {
      PauseAnyway(kStep);
    } else {
      Pause(kStep);
    }
  }
}

Answer Conversation::Control(const std::string& method, const std::string& path,
                             const std::string& body) {
  const Call call{.method = method, .path = path, .body = body};
  const Reply reply =
      wires_->control.Send({.method = method, .path = path, .body = body, .changes = true});
  return ToAnswer(call, reply).Is(200);
}

std::string Conversation::Node(const std::string& path) {
  return Control("GET", "/store" + path, "").Json()["text"].Text();
}

void Conversation::SetNode(const std::string& path, const std::string& text) {
  Control("PUT", "/store" + path, Value::Parse("{}").With("text", text).Dump());
}

std::vector<std::string> Conversation::TakeTranscript() {
  std::vector<std::string> taken;
  taken.swap(transcript_);
  for (std::string& line : taken) {
    line = Masked(line);
  }
  return taken;
}

std::string Conversation::Masked(std::string text) const {
  for (const std::string& secret : facts_.secrets) {
    for (size_t at = text.find(secret); at != std::string::npos; at = text.find(secret, at)) {
      text.replace(at, secret.size(), "********");
    }
  }
  return text;
}

}  // namespace kioctl::conform
