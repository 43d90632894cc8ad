#include "mixed_clients.h"

#include <cstdlib>
#include <fstream>
#include <memory>
#include <utility>

#include "app_key.h"
#include "documents.h"
#include "event_reader.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kOk = 200;
constexpr int kRefused = 422;
constexpr int kStreams = 2;
constexpr long kSlotSeconds = 20;

std::string GetRequest(const std::string& url) {
  return "GET " + url + " HTTP/1.1\r\nHost: router\r\n\r\n";
}

// Answers whose body is one text, always.
std::function<bool(const HttpResponse&)> Is(int status, const std::string& body) {
  return [status, body](const HttpResponse& answer) {
    return answer.status == status && answer.body == body;
  };
}

std::function<bool(const HttpResponse&)> Holds(const std::string& part) {
  return [part](const HttpResponse& answer) {
    return answer.status == kOk && answer.body.find(part) != std::string::npos;
  };
}

size_t CountOf(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// Addresses of their own, so that each is a client of its own.
std::string AddressOf(size_t kind, int client) {
  return "127.1." + std::to_string(kind + 1) + "." + std::to_string(client + 1);
}

long UptimeSlot() {
  std::ifstream file("/proc/uptime");
  double uptime = 0;
  file >> uptime;
  return static_cast<long>(uptime) / kSlotSeconds;
}

// The number behind the last '-' of an event's id.
long NumberOf(const std::string& id) {
  const size_t dash = id.rfind('-');
  return dash == std::string::npos ? -1 : std::strtol(id.c_str() + dash + 1, nullptr, 10);
}

ClientKind Readers(const char* name, int clients, const std::string& url,
                   std::function<bool(const HttpResponse&)> is_right) {
  constexpr milliseconds kPause{60};
  return {name, clients, kPause, [url] { return GetRequest(url); }, std::move(is_right)};
}

ClientKind Senders(const char* name, int clients, const std::string& request,
                   std::function<bool(const HttpResponse&)> is_right) {
  constexpr milliseconds kPause{250};
  return {name, clients, kPause, [request] { return request; }, std::move(is_right)};
}

// Each document has a name of its own for the device, so that it always changes something.
ClientKind Changers(int clients) {
  constexpr milliseconds kPause{500};
  constexpr int kWaitSeconds = 5;
  const std::string document = FactoryDocument();
  const auto changes = std::make_shared<std::atomic<long>>(0);
  return {"changing documents", clients, kPause,
          [document, changes] {
            const std::string name = "Name " + std::to_string(++*changes);
            return PostRequest("/settings", With(document, "DeviceName", name));
          },
          Is(kOk, ResultDocument(0, "", kWaitSeconds))};
}

}  // namespace

MixedClients::MixedClients(int port) : port_(port) {
  constexpr int kBadValue = 3;
  const std::string own = "127.1.99.1";
  LogIn(own);
  const auto ask = [&](const std::string& request) {
    Connection connection(port, own);
    return connection.Send(request) ? connection.Read().body : std::string();
  };
  // From here on there is a status document.
  ask(PostRequest("/firmware/0", ""));
  const std::string key = ask(GetRequest("/vars/rss_Wl2_EncryptionKey"));
  const size_t variables = CountOf(ask(GetRequest("/vars?values=1")), "\"name\":");
  const std::string refused = WithIn(FactoryDocument(), "Wireless2.4", "Channel", "99");
  kinds_.push_back(Readers("reads of the device", 12, "/device", Holds("\"model\": \"DR-2400\"")));
  kinds_.push_back(Readers("reads of a variable", 10, "/vars/rss_Wl2_EncryptionKey", Is(kOk, key)));
  kinds_.push_back(Senders("reads of all values", 2, GetRequest("/vars?values=1"),
                           [variables](const HttpResponse& answer) {
                             return CountOf(answer.body, "\"name\":") == variables;
                           }));
  kinds_.push_back(Senders("backups", 2, GetRequest("/backup"), Holds("DR-2400")));
  kinds_.push_back(Readers("status of the upgrade", 3, "/firmware", [](const HttpResponse& answer) {
    return answer.status == kOk && answer.body.find("<result>0</result>") != std::string::npos;
  }));
  kinds_.push_back(Changers(5));
  kinds_.push_back(Senders("refused documents", 5, PostRequest("/settings", refused),
                           Is(kOk, ResultDocument(kBadValue, "Device/Wireless2.4/Channel", 0))));
  kinds_.push_back(Senders(
      "dry runs", 3,
      PostRequest("/settings?dry-run=1", With(FactoryDocument(), "DeviceName", "Nobody's name")),
      Holds("Nobody's name")));
  kinds_.push_back(
      Senders("batches", 3, PostRequest("/vars", "rss_DeviceName=Attic"), Is(kOk, "0 done\n")));
  kinds_.push_back(Senders("refused values", 3, BodyRequest("PUT", "/vars/rss_Wl2_Channel", "99"),
                           Is(kRefused, "2 not a value that this takes\n")));
  tallies_.resize(kinds_.size());
}

int MixedClients::clients() const {
  int clients = kStreams;
  for (const ClientKind& kind : kinds_) {
    clients += kind.clients;
  }
  return clients;
}

long MixedClients::right() const {
  long right = 0;
  for (const KindTally& tally : tallies_) {
    right += tally.right;
  }
  return right;
}

long MixedClients::wrong() const {
  long wrong = 0;
  for (const KindTally& tally : tallies_) {
    wrong += tally.wrong;
  }
  return wrong;
}

void MixedClients::Work(std::chrono::seconds time) {
  for (KindTally& tally : tallies_) {
    tally.waits_us.clear();
  }
  stopping_ = false;
  streams_stopping_ = false;
  std::vector<std::thread> threads;
  std::vector<std::thread> streams;
  streams.reserve(kStreams);
  for (size_t kind = 0; kind < kinds_.size(); ++kind) {
    for (int client = 0; client < kinds_[kind].clients; ++client) {
      threads.emplace_back([=, this] { Ask(kind, AddressOf(kind, client)); });
    }
  }
  for (int client = 0; client < kStreams; ++client) {
    streams.emplace_back([=, this] { ReadEvents(AddressOf(kinds_.size(), client)); });
  }
  std::this_thread::sleep_for(time);
  // Streams wait for news, which the others make.
  streams_stopping_ = true;
  for (std::thread& thread : streams) {
    thread.join();
  }
  stopping_ = true;
  for (std::thread& thread : threads) {
    thread.join();
  }
}

// The key is that of a stretch of twenty seconds; one that has just ended is tried anew.
bool MixedClients::LogIn(const std::string& from) const {
  constexpr int kTries = 3;
  for (int i = 0; i < kTries; ++i) {
    Connection connection(port_, from);
    const std::string key = "kioAppKey=:" + AppKey(UptimeSlot(), from);
    if (connection.Send(PostRequest("/login", key)) && connection.Read().status == kOk) {
      return true;
    }
  }
  return false;
}

void MixedClients::Ask(size_t kind, const std::string& from) {
  constexpr int kOnOneConnection = 20;
  const ClientKind& work = kinds_[kind];
  if (!LogIn(from)) {
    Count(kind, HttpResponse(), {});
  }
  std::unique_ptr<Connection> connection;
  for (int i = 0; !stopping_; ++i) {
    const Clock::time_point begin = Clock::now();
    if (i % kOnOneConnection == 0) {
      connection = std::make_unique<Connection>(port_, from);
    }
    const bool sent = connection->Send(work.request());
    const HttpResponse answer = sent ? connection->Read() : HttpResponse();
    Count(kind, answer, Clock::now() - begin);
    std::this_thread::sleep_for(work.pause);
  }
}

void MixedClients::ReadEvents(const std::string& from) {
  LogIn(from);
  EventReader reader(port_, "", from);
  long last = -1;
  bool is_broken = reader.response().status != kOk;
  while (!streams_stopping_ && !is_broken) {
    const EventBlock block = reader.Next();
    if (block.empty()) {
      is_broken = true;
    } else if (!block.id.empty()) {
      const long number = NumberOf(block.id);
      is_broken = last >= 0 && number != last + 1;
      last = number;
      events_ += block.kind.empty() ? 0 : 1;
    }
  }
  broken_streams_ += is_broken ? 1 : 0;
}

void MixedClients::Count(size_t kind, const HttpResponse& answer, Clock::duration wait) {
  const bool is_right = kinds_[kind].is_right(answer);
  const std::lock_guard<std::mutex> lock(mutex_);
  KindTally& tally = tallies_[kind];
  tally.waits_us.push_back(std::chrono::duration_cast<std::chrono::microseconds>(wait).count());
  if (is_right) {
    ++tally.right;
  } else if (tally.wrong++ == 0) {
    tally.first_wrong = std::to_string(answer.status) + " " + answer.body;
  }
}
