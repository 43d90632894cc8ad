// Limits of sizes and numbers.
#include <array>
#include <chrono>
#include <list>

#include "conform/case_tools.h"
#include "conform/raw.h"

namespace kioctl::conform {
namespace {

constexpr size_t kMostBody = 65536;
constexpr std::chrono::milliseconds kRawPatience(2000);

std::string Head(Conversation* talk, const std::string& request, const std::string& headers = "") {
  return request + " HTTP/1.1\r\nHost: " + talk->HostName() + "\r\n" + headers + "\r\n";
}

void DocumentsOf64KiB(Conversation* talk) {
  // Blanks behind the root do not count as settings.
  std::string body = Document(talk->facts()).Xml();
  body.resize(kMostBody, ' ');
  talk->Post("/settings?dry-run=1", body).Is(kGood);
  talk->Post("/settings?dry-run=1", body + " ").Is(kTooLong).IsOneLine();
}

void BatchesOf64KiB(Conversation* talk) {
  talk->Post("/vars?dry-run=1", std::string(kMostBody + 1, 'x')).Is(kTooLong).IsOneLine();
}

void ValuesOf127(Conversation* talk) {
  constexpr size_t kMost = 127;
  const Answer longest =
      talk->Post(std::string(kNameVariable) + "/validate", std::string(kMost, 'x'));
  Expect(longest.status == kGood || longest.status == kRefusedValue,
         longest.call + " answers " + std::to_string(longest.status));
  talk->Post(std::string(kNameVariable) + "/validate", std::string(kMost + 1, 'x'))
      .Is(kRefusedValue)
      .HasCode(kLengthCode);
}

void ParametersOf64(Conversation* talk) {
  constexpr int kMost = 64;
  std::string query = "/device?a=1";
  for (int i = 1; i < kMost; ++i) {
    query += "&a=1";
  }
  talk->Get(query).Is(kGood);
  talk->Get(query + "&a=1").Is(kMalformed);
}

void StreamsOf8(Conversation* talk) {
  constexpr int kMost = 8;
  talk->Get("/").Is(kGood);
  std::list<RawConnection> streams;
  std::string last;
  for (int i = 0; i <= kMost; ++i) {
    streams.emplace_back(talk->means().url, kRawPatience);
    streams.back().Send(Head(talk, "GET /events"));
    last = streams.back().ReadAnswer();
    Expect(i == kMost || last.starts_with("HTTP/1.1 200"),
           "stream " + std::to_string(i + 1) + " gets " + Shown(last));
  }
  Expect(last.starts_with("HTTP/1.1 503"), "the ninth stream gets " + Shown(last));
  Expect(Contains(last, "Retry-After: ") || Contains(last, "retry-after: "),
         "503 of the ninth stream lacks Retry-After");
}

void HeadsOf30KiB(Conversation* talk) {
  constexpr size_t kTooMuch = 64UL * 1024;
  const std::string said =
      talk->Exchange(Head(talk, "GET /device", "X-Long: " + std::string(kTooMuch, 'x') + "\r\n"));
  Expect(said.empty() || said.starts_with("HTTP/1.1 4"), "a head of 64 KiB gets " + Shown(said));
  talk->Get("/device").Is(kGood);
}

void BodiesOf1MiB(Conversation* talk) {
  const std::string said =
      talk->Exchange(Head(talk, "POST /login", "Content-Length: 104857600\r\n"));
  Expect(said.starts_with("HTTP/1.1 413"), "a body of 100 MiB is answered with " + Shown(said));
  Expect(Contains(said, "close"), "the connection does not end after a body that was not read");
}

void ManyConnections(Conversation* talk) {
  constexpr int kMany = 24;
  std::list<RawConnection> idle;
  for (int i = 0; i < kMany; ++i) {
    idle.emplace_back(talk->means().url, kRawPatience);
  }
  talk->Get("/device").Is(kGood);
}

void SlowHeads(Conversation* talk) {
  constexpr std::chrono::milliseconds kPatience(15000);
  RawConnection connection(talk->means().url, kPatience);
  connection.Send("GET /device HTTP/1.1\r\nHost: ");
  const std::string said = connection.Read();
  Expect(said.starts_with("HTTP/1.1 408"), "a head that does not end gets " + Shown(said));
}

void IdleConnections(Conversation* talk) {
  constexpr std::chrono::milliseconds kPatience(15000);
  RawConnection connection(talk->means().url, kPatience);
  const auto begun = std::chrono::steady_clock::now();
  const std::string said = connection.Read();
  Expect(said.empty() && std::chrono::steady_clock::now() - begun < kPatience,
         "an idle connection is not closed");
}

constexpr std::array kLimitRows = {
    Case{.name = "limits.documents-of-64-kib",
         .promise = "A document of 64 KiB is taken; one byte more gets 413.",
         .run = DocumentsOf64KiB,
         .needs = "POST /settings",
         .changes = true},
    Case{"limits.batches-of-64-kib", "A batch of more than 64 KiB gets 413.", BatchesOf64KiB,
         "POST /vars"},
    Case{"limits.values-of-127", "A value of 128 characters gets code 10.", ValuesOf127,
         "POST /vars/{name}/validate"},
    Case{"limits.parameters-of-64", "A query of more than 64 parameters gets 400.", ParametersOf64},
    Case{"limits.streams-of-8", "The ninth stream of events gets 503 with Retry-After.", StreamsOf8,
         "GET /events"},
    Case{"limits.heads-of-30-kib",
         "A head of more than some 30 KiB is refused, and the router goes on.", HeadsOf30KiB},
    Case{"limits.bodies-of-1-mib",
         "A body of more than 1 MiB is answered at once with 413, and the connection ends.",
         BodiesOf1MiB},
    Case{"limits.many-connections",
         "Idle connections of one address keep none of its requests away.", ManyConnections},
    Case{.name = "limits.slow-heads",
         .promise = "A head that is not whole after 10 seconds gets 408.",
         .run = SlowHeads,
         .slow = true},
    Case{.name = "limits.idle-connections",
         .promise = "A connection without a request for 10 seconds is closed.",
         .run = IdleConnections,
         .slow = true},
};

}  // namespace

const std::span<const Case> kLimitCases(kLimitRows);

}  // namespace kioctl::conform
