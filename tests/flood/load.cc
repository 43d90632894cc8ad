#include "load.h"

#include <memory>
#include <random>

#include "documents.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr char kGetDevice[] = "GET /device HTTP/1.1\r\nHost: router\r\n\r\n";
constexpr char kGetVariable[] = "GET /vars/rss_DeviceName HTTP/1.1\r\nHost: router\r\n\r\n";
constexpr char kGetVariables[] = "GET /vars HTTP/1.1\r\nHost: router\r\n\r\n";

// Requests that are refused in all the places where one can be.
std::vector<std::string> BrokenRequests() {
  const std::string post = "POST /settings HTTP/1.1\r\nHost: router\r\n";
  std::vector<std::string> requests = {
      "GET /?" + std::string(600, '&') + " HTTP/1.1\r\nHost: router\r\n\r\n",
      "GET /" + std::string(40000, 'a') + " HTTP/1.1\r\nHost: router\r\n\r\n",
      "GET /device HTTP/1.1\r\nX: " + std::string(40000, 'a') + "\r\n\r\n",
      "GET /device HTTP/1.1\r\nCookie: " + std::string(15000, ';') + "\r\n\r\n",
      "GET /device HTTP/1.1\r\nno header\r\n\r\n",
      "GET /device HTTP/3.0\r\n\r\n",
      "GET /device HTTP/1.1\r\n\r\n",
      "hello\r\n",
      "DELETE /device HTTP/1.1\r\nHost: router\r\n\r\n",
      "GET /device HTTP/1.1\r\nHost: evil.example\r\n\r\n",
      post + "Content-Length: 5\r\nContent-Length: 6\r\n\r\nhello",
      post + "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n\r\nhello",
      post + "Transfer-Encoding: chunked\r\n\r\nzz\r\n",
      post + "Content-Length: 99999999\r\n\r\n",
      post + "Content-Length: 70000\r\n\r\n" + std::string(70000, 'x'),
      post + "Content-Length: 4\r\n\r\nnone"};
  std::mt19937 random(1);
  for (int i = 0; i < 20; ++i) {
    std::string noise(1 + random() % 300, '\0');
    for (char& c : noise) {
      c = static_cast<char>(random());
    }
    requests.push_back(noise + "\n\r\n\r\n");
  }
  return requests;
}

}  // namespace

void Tally::Count(int status, Clock::duration wait) {
  constexpr int kFull = 503;
  constexpr int kFirstRefusal = 400;
  ++(status == 0 ? silent : status == kFull ? full : status >= kFirstRefusal ? refused : answered);
  const long us = std::chrono::duration_cast<std::chrono::microseconds>(wait).count();
  long longest = longest_wait_us;
  while (us > longest && !longest_wait_us.compare_exchange_weak(longest, us)) {
  }
}

void Load::Start(int port) {
  port_ = port;
  stopping_ = false;
  const std::string post =
      "POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 9999\r\n\r\n";
  for (const char* from : {"127.0.1.1", "127.0.1.2"}) {
    threads_.emplace_back([this, from] { ReadHonestly(from); });
  }
  threads_.emplace_back([this] { ChangeHonestly("127.0.1.3"); });
  for (const char* from : {"127.0.2.1", "127.0.2.1", "127.0.2.2"}) {
    threads_.emplace_back([this, from] { Flood(from); });
  }
  for (const char* from : {"127.0.3.1", "127.0.3.2"}) {
    threads_.emplace_back([this, from] { Churn(from); });
  }
  for (const char* from : {"127.0.4.1", "127.0.4.2"}) {
    threads_.emplace_back([this, from] { SendBroken(from); });
  }
  threads_.emplace_back([this] { SendAndGo("127.0.5.1"); });
  threads_.emplace_back([this] { Drip("127.0.6.1", "GET /dev", 64, &heads); });
  threads_.emplace_back([this, post] { Drip("127.0.7.1", post, 16, &bodies); });
  threads_.emplace_back([this] { Drip("127.0.8.1", "", 100, &idle); });
}

void Load::Stop() {
  stopping_ = true;
  for (std::thread& thread : threads_) {
    thread.join();
  }
  threads_.clear();
}

// Waits in short steps, so that a stop does not wait for it.
void Load::Pause(milliseconds time) const {
  constexpr milliseconds kStep{20};
  for (milliseconds waited{0}; waited < time && !stopping_; waited += kStep) {
    std::this_thread::sleep_for(kStep);
  }
}

// A request now and then, some of them on one connection.
void Load::ReadHonestly(const std::string& from) {
  constexpr int kOnOneConnection = 5;
  while (!stopping_) {
    Clock::time_point begin = Clock::now();
    Connection connection(port_, from);
    for (int i = 0; i < kOnOneConnection; ++i) {
      const bool sent = connection.Send(i % 2 == 0 ? kGetDevice : kGetVariable);
      const int status = sent ? connection.Read().status : 0;
      honest.Count(status, Clock::now() - begin);
      Pause(milliseconds(20));
      begin = Clock::now();
    }
  }
}

// A whole document a second, each with another name.
void Load::ChangeHonestly(const std::string& from) {
  for (int i = 0; !stopping_; ++i) {
    const Clock::time_point begin = Clock::now();
    const std::string name = "Name " + std::to_string(i % 2);
    Connection connection(port_, from);
    const bool sent =
        connection.Send(PostRequest("/settings", With(FactoryDocument(), "DeviceName", name)));
    const HttpResponse answer = sent ? connection.Read() : HttpResponse();
    const bool applied = answer.body == ResultDocument(0, "", 5);
    changers.Count(applied || answer.status == 0 ? answer.status : 500, Clock::now() - begin);
    Pause(milliseconds(1000));
  }
}

void Load::Flood(const std::string& from) {
  constexpr int kOnOneConnection = 500;
  while (!stopping_) {
    Connection connection(port_, from);
    for (int i = 0; i < kOnOneConnection && !stopping_; ++i) {
      const bool sent = connection.Send(i % 10 == 0 ? kGetVariables : kGetDevice);
      const int status = sent ? connection.Read().status : 0;
      good.Count(status);
      if (status == 0) {
        break;
      }
    }
  }
}

void Load::Churn(const std::string& from) {
  for (int i = 0; !stopping_; ++i) {
    Connection connection(port_, from);
    connection.Send(kGetDevice);
    if (i % 2 == 0) {
      churn.Count(connection.Read().status);
    }
    connection.Abort();
  }
}

void Load::SendBroken(const std::string& from) {
  const std::vector<std::string> requests = BrokenRequests();
  for (size_t i = 0; !stopping_; ++i) {
    Connection connection(port_, from);
    connection.Send(requests[i % requests.size()]);
    broken.Count(connection.Read().status);
    connection.Abort();
  }
}

void Load::SendAndGo(const std::string& from) {
  const std::string request = PostRequest("/settings", With(FactoryDocument(), "DeviceName", "X"));
  while (!stopping_) {
    Connection connection(port_, from);
    connection.Send(request);
    gone.Count(0);
    Pause(milliseconds(100));
  }
}

// Connections that send a byte every half second after `begin`, or nothing without it. Those that
// end are opened again.
void Load::Drip(const std::string& from, const std::string& begin, size_t connections,
                Tally* tally) {
  std::vector<std::unique_ptr<Connection>> clients(connections);
  while (!stopping_) {
    for (auto& client : clients) {
      if (client != nullptr && client->StaysSilent(0)) {
        client->Send(begin.empty() ? "" : "x");
        continue;
      }
      if (client != nullptr) {
        tally->Count(client->Read().status);
        client->Abort();
      }
      client = std::make_unique<Connection>(port_, from);
      client->Send(begin);
    }
    Pause(milliseconds(500));
  }
}
