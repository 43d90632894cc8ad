// Requests that no well-behaved client sends.
#include <array>
#include <chrono>
#include <random>

#include "conform/case_tools.h"
#include "conform/raw.h"

namespace kioctl::conform {
namespace {

std::string HostLine(Conversation* talk) { return "Host: " + talk->HostName() + "\r\n"; }

void ExpectStatus(Conversation* talk, const std::string& bytes, int status) {
  const std::string said = talk->Exchange(bytes);
  Expect(said.starts_with("HTTP/1.1 " + std::to_string(status)),
         Shown(bytes) + " was to get " + std::to_string(status) + ", and gets " + Shown(said));
}

// The router goes on as before.
void ExpectThere(Conversation* talk) { talk->Get("/device").Is(kGood); }

void TwoLengths(Conversation* talk) {
  ExpectStatus(talk,
               "POST /login HTTP/1.1\r\n" + HostLine(talk) +
                   "Content-Length: 1\r\nContent-Length: 2\r\n\r\nxx",
               kMalformed);
  ExpectStatus(talk,
               "POST /login HTTP/1.1\r\n" + HostLine(talk) +
                   "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
               kMalformed);
}

void OtherEncoding(Conversation* talk) {
  ExpectStatus(talk,
               "POST /login HTTP/1.1\r\n" + HostLine(talk) + "Transfer-Encoding: gzip\r\n\r\n",
               kMalformed);
}

void NoHost(Conversation* talk) {
  ExpectStatus(talk, "GET /device HTTP/1.1\r\n\r\n", kMalformed);
  ExpectStatus(talk, "GET /device HTTP/1.1\r\n" + HostLine(talk) + HostLine(talk) + "\r\n",
               kMalformed);
}

void OtherHost(Conversation* talk) {
  ExpectStatus(talk, "GET /device HTTP/1.1\r\nHost: another.example\r\nConnection: close\r\n\r\n",
               kOtherHost);
}

void OtherOrigin(Conversation* talk) {
  ExpectStatus(
      talk,
      "POST /logout HTTP/1.1\r\n" + HostLine(talk) +
          "Origin: http://another.example\r\nContent-Length: 0\r\nConnection: close\r\n\r\n",
      kDenied);
  ExpectStatus(talk,
               "GET /device HTTP/1.1\r\n" + HostLine(talk) +
                   "Origin: http://another.example\r\nConnection: close\r\n\r\n",
               kGood);
}

void HeaderOfTwoWords(Conversation* talk) {
  ExpectStatus(talk, "GET /device HTTP/1.1\r\n" + HostLine(talk) + "X Two: 1\r\n\r\n", kMalformed);
}

void MalformedEndsTheConnection(Conversation* talk) {
  const std::string bad = "GET /device HTTP/1.1\r\n" + HostLine(talk) + HostLine(talk) + "\r\n";
  const std::string good = "GET /device HTTP/1.1\r\n" + HostLine(talk) + "\r\n";
  const std::string said = talk->Exchange(bad + good);
  Expect(said.starts_with("HTTP/1.1 400") && !Contains(said, "HTTP/1.1 200"),
         "after a malformed request the connection goes on: " + Shown(said));
}

void NoHttpAtAll(Conversation* talk) {
  for (const char* const bytes :
       {"\x16\x03\x01\x02\x01\x01\n\n", "HELO router\r\n\r\n", "GET /device HTTP/9.9\r\n\r\n"}) {
    const std::string said = talk->Exchange(bytes);
    Expect(said.empty() || said.starts_with("HTTP/1.1 4") || said.starts_with("HTTP/1.1 5"),
           Shown(bytes) + " gets " + Shown(said));
  }
  ExpectThere(talk);
}

void AbsoluteTarget(Conversation* talk) {
  ExpectStatus(talk,
               "GET http://" + talk->HostName() + "/device HTTP/1.1\r\n" + HostLine(talk) +
                   "Connection: close\r\n\r\n",
               kGood);
  ExpectStatus(talk,
               "GET http://another.example/device HTTP/1.1\r\n" + HostLine(talk) +
                   "Connection: close\r\n\r\n",
               kOtherHost);
}

void OlderHttp(Conversation* talk) {
  const std::string said = talk->Exchange("GET /device HTTP/1.0\r\n" + HostLine(talk) + "\r\n");
  Expect(Contains(said.substr(0, said.find('\r')), " 200"), "HTTP/1.0 gets " + Shown(said));
}

void ChunksAreTaken(Conversation* talk) {
  ExpectStatus(talk,
               "POST /login HTTP/1.1\r\n" + HostLine(talk) +
                   "Transfer-Encoding: chunked\r\nConnection: close\r\n\r\n3\r\nabc\r\n401\r\n" +
                   std::string(1025, 'x') + "\r\n0\r\n\r\n",
               kTooLong);
}

void ConnectionIsKept(Conversation* talk) {
  constexpr std::chrono::milliseconds kPatience(2000);
  RawConnection connection(talk->means().url, kPatience);
  const std::string request = "GET /device HTTP/1.1\r\n" + HostLine(talk) + "\r\n";
  for (int i = 0; i < 2; ++i) {
    connection.Send(request);
    const std::string said = connection.ReadAnswer();
    Expect(said.starts_with("HTTP/1.1 200"),
           "request " + std::to_string(i + 1) + " on a connection gets " + Shown(said));
  }
}

void HalfRequestIsNone(Conversation* talk) {
  const std::string name = NameOf(talk);
  const std::string body = Named(talk, "Conform-Half").Xml();
  {
    RawConnection connection(talk->means().url, std::chrono::milliseconds(0));
    connection.Send("POST /settings HTTP/1.1\r\n" + HostLine(talk) + "Content-Length: " +
                    std::to_string(body.size()) + "\r\n\r\n" + body.substr(0, body.size() / 2));
  }
  ExpectThere(talk);
  Expect(NameOf(talk) == name, "half a request has changed the name to " + Shown(NameOf(talk)));
}

// Damaged in places that a seed decides, so that a failure can be had again.
void DamagedDocuments(Conversation* talk) {
  constexpr int kTries = 40;
  constexpr unsigned kSeed = 20;
  std::mt19937 random(kSeed);
  const std::string whole = Document(talk->facts()).Xml();
  for (int i = 0; i < kTries; ++i) {
    std::string body = whole;
    for (int damages = 0; damages < 4; ++damages) {
      const size_t at = random() % body.size();
      switch (random() % 3) {
        case 0:
          body[at] = static_cast<char>(1 + random() % 255);
          break;
        case 1:
          body.erase(at, random() % 40);
          break;
        default:
          body.insert(at, "<Device><Wireless5>");
      }
    }
    const Answer answer = talk->Post("/settings?dry-run=1", body);
    Expect(answer.status == kGood || answer.status == kMalformed,
           "a damaged document gets " + std::to_string(answer.status));
  }
  ExpectThere(talk);
}

void DeepDocuments(Conversation* talk) {
  constexpr int kLevels = 5000;
  std::string body = "<root>";
  for (int i = 0; i < kLevels; ++i) {
    body += "<Device>";
  }
  const Answer answer = talk->Post("/settings?dry-run=1", body);
  Expect(answer.status == kGood || answer.status == kMalformed,
         "a deep document gets " + std::to_string(answer.status));
  ExpectThere(talk);
}

void OddPaths(Conversation* talk) {
  for (const char* const path : {"/vars/../backup", "/vars/%2e%2e/x", "/%", "/vars/%zz",
                                 "/settings/", "//device", "/vars/%ff%fe"}) {
    const Answer answer = talk->Get(path);
    Expect(answer.status == kAbsent || answer.status == kMalformed || answer.status == kBadMethod,
           answer.call + " answers " + std::to_string(answer.status));
  }
}

constexpr Case RoughCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "POST /settings", .changes = true};
}

constexpr std::array kRobustnessRows = {
    Case{"robustness.two-lengths", "A body with two lengths, or a length and chunks, gets 400.",
         TwoLengths},
    Case{"robustness.other-encoding", "A Transfer-Encoding other than chunked gets 400.",
         OtherEncoding},
    Case{"robustness.no-host", "A request without a Host header, or with two, gets 400.", NoHost},
    Case{"robustness.other-host", "A Host header that names another host gets 421.", OtherHost},
    Case{"robustness.other-origin",
         "A change that a page of another origin asks for gets 403; a read is served.",
         OtherOrigin},
    Case{"robustness.header-of-two-words", "A header whose name is not one word gets 400.",
         HeaderOfTwoWords},
    Case{"robustness.malformed-ends-the-connection",
         "The connection ends with the answer to a malformed request.", MalformedEndsTheConnection},
    Case{"robustness.no-http-at-all", "What is no HTTP is refused, and the router goes on.",
         NoHttpAtAll},
    Case{"robustness.absolute-target", "A target may be in absolute form; its host counts.",
         AbsoluteTarget},
    Case{"robustness.older-http", "HTTP/1.0 is served.", OlderHttp},
    Case{"robustness.chunks-are-taken", "A body in chunks is taken, and its limit counts.",
         ChunksAreTaken},
    Case{"robustness.connection-is-kept", "A connection serves one request after the other.",
         ConnectionIsKept},
    RoughCase("robustness.half-request-is-none",
              "A document whose end never comes changes nothing.", HalfRequestIsNone),
    RoughCase("robustness.damaged-documents",
              "A damaged document gets a result or 400, and the router goes on.", DamagedDocuments),
    RoughCase("robustness.deep-documents",
              "A document of 5000 levels gets a result or 400, and the router goes on.",
              DeepDocuments),
    Case{"robustness.odd-paths",
         "Paths with dots, doubled slashes and broken escapes reach nothing.", OddPaths},
};

}  // namespace

const std::span<const Case> kRobustnessCases(kRobustnessRows);

}  // namespace kioctl::conform
