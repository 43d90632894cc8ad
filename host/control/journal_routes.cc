#include "control/journal_routes.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "control/control_table.h"
#include "control/expectation.h"
#include "control/json_body.h"
#include "json_reply.h"

namespace kiohost {
namespace {

constexpr int kReadAgainSeconds = 10;
constexpr const char* kKinds[] = {"request", "read",  "write", "command", "action",
                                  "event",   "fault", "said",  "log"};

bool IsKind(const Json& kind) {
  return kind.is_string() && std::find(std::begin(kKinds), std::end(kKinds),
                                       kind.get<std::string>()) != std::end(kKinds);
}

std::optional<uint64_t> Since(const RequestView& request) {
  const std::string_view text = request.Argument("since").value_or("0");
  uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end && !text.empty() ? std::optional(number)
                                                              : std::nullopt;
}

// The kinds that a request asks for; empty for all.
Json KindsOf(std::string_view text) {
  Json kinds = Json::array();
  while (!text.empty()) {
    const std::string_view kind = text.substr(0, text.find(','));
    kinds.push_back(kind);
    text.remove_prefix(std::min(kind.size() + 1, text.size()));
  }
  return kinds;
}

Reply BadKind() {
  std::string known;
  for (const char* kind : kKinds) {
    known.append(known.empty() ? "" : ", ").append(kind);
  }
  return BadRequestReply("the kinds of entries are " + known);
}

// What is wrong with the parameters of a request for entries.
std::optional<Reply> FaultOfParameters(const RequestView& request) {
  if (!Since(request)) {
    return BadRequestReply("since takes the number of an entry, or 0");
  }
  const Json kinds = KindsOf(request.Argument("kinds").value_or(""));
  return std::all_of(kinds.begin(), kinds.end(), IsKind) ? std::nullopt : std::optional(BadKind());
}

Reply Read(const Journal& journal, const RequestView& request) {
  const std::optional<uint64_t> since = Since(request);
  const Json kinds = KindsOf(request.Argument("kinds").value_or(""));
  Reply reply;
  reply.content_type = "application/jsonl";
  const std::vector<Json> entries = journal.Since(*since);
  uint64_t last = *since;
  for (const Json& entry : entries) {
    last = entry["n"].get<uint64_t>();
    if (kinds.empty() || std::find(kinds.begin(), kinds.end(), entry["kind"]) != kinds.end()) {
      reply.body += entry.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    }
  }
  reply.headers.emplace_back("Kio-Journal-Last", std::to_string(last));
  reply.headers.emplace_back("Kio-Journal-Dropped", std::to_string(journal.dropped()));
  return reply;
}

Reply OpenStream(JournalStreams* streams, const RequestView& request) {
  JournalStreams::Asked asked;
  if (const auto last_id = request.Header("Last-Event-ID")) {
    asked.last_id = *last_id;
  }
  asked.since = Since(request).value_or(0);
  asked.kinds = KindsOf(request.Argument("kinds").value_or("")).get<std::vector<std::string>>();
  Reply reply;
  reply.content_type = "text/event-stream";
  reply.stream = streams->Open(std::move(asked));
  return reply.stream != nullptr ? std::move(reply)
                                 : TryLater(MHD_HTTP_SERVICE_UNAVAILABLE,
                                            "there are " + std::to_string(OpenStreams::kMost) +
                                                " streams of the journal already",
                                            kReadAgainSeconds);
}

// The kinds of all expectations, unless the body names them.
Json KindsOfExpectations(const Json& body) {
  if (body.contains("kinds")) {
    return body["kinds"];
  }
  Json kinds = Json::array();
  for (const Json& one : body["expect"]) {
    kinds.push_back(one.contains("kind") ? one["kind"] : Json());
  }
  return kinds;
}

Reply Expect(const Journal& journal, const RequestView& request) {
  using Type = JsonMember::Type;
  Reply refusal;
  const std::optional<Json> body =
      JsonBody(request, {{"since", Type::kWhole}, {"kinds", Type::kList}, {"expect", Type::kList}},
               &refusal);
  if (!body) {
    return refusal;
  }
  const bool has_objects =
      body->contains("expect") && std::all_of((*body)["expect"].begin(), (*body)["expect"].end(),
                                              [](const Json& one) { return one.is_object(); });
  if (!has_objects) {
    return BadRequestReply("\"expect\" takes a list of objects");
  }
  const Json kinds = KindsOfExpectations(*body);
  if (kinds.empty() || !std::all_of(kinds.begin(), kinds.end(), IsKind)) {
    return BadKind();
  }
  const auto since = body->value("since", uint64_t{0});
  if (since < journal.dropped()) {
    return ErrorReply(MHD_HTTP_CONFLICT, "the journal begins behind entry " +
                                             std::to_string(journal.dropped()) +
                                             "; those before were dropped");
  }
  Json answer = Compare(journal.Since(since), kinds, (*body)["expect"]);
  answer["last"] = journal.last();
  return JsonReply(answer);
}

}  // namespace

void AddJournalRoutes(const Journal* journal, JournalStreams* streams,
                      const std::function<void()>& settle, Router* router) {
  router->Add(
      {.description = control_routes::kJournalStream,
       .check = FaultOfParameters,
       .answer = [streams](const RequestView& request) { return OpenStream(streams, request); }});
  router->Add({.description = control_routes::kJournal,
               .check = FaultOfParameters,
               .handle = [journal, settle](const RequestView& request) {
                 settle();
                 return Read(*journal, request);
               }});
  router->Add({.description = control_routes::kExpect,
               .handle = [journal, settle](const RequestView& request) {
                 settle();
                 return Expect(*journal, request);
               }});
}

}  // namespace kiohost
