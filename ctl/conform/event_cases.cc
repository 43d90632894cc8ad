// The stream of events.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

// The id to come back with, of a stream that has just begun.
std::string LastEvent(Conversation* talk) {
  const std::string text = talk->Events("", "");
  const size_t begin = text.find("id: ");
  Expect(begin != std::string::npos, "a stream does not begin with an id: " + Shown(text));
  constexpr size_t kName = 4;
  return text.substr(begin + kName, text.find('\n', begin) - begin - kName);
}

// The data of the first event of a kind; absent without one.
Value DataOf(const std::string& text, const std::string& kind) {
  const size_t event = text.find("event: " + kind + "\n");
  if (event == std::string::npos) {
    return {};
  }
  constexpr char kData[] = "data: ";
  const size_t data = text.find(kData, event);
  Expect(data != std::string::npos, "the event " + kind + " has no data");
  const size_t begin = data + sizeof(kData) - 1;
  Value value = Value::Parse(text.substr(begin, text.find('\n', begin) - begin));
  Expect(value["kind"].Text() == kind && value["uptime"].Is(Value::Kind::kNumber),
         "the data of the event " + kind + " are " + value.Dump());
  return value;
}

Value EventSince(Conversation* talk, const std::string& id, const std::string& kind) {
  const std::string text = talk->Events(id, kind);
  Value data = DataOf(text, kind);
  Expect(!data.IsAbsent(), "no event of the kind " + kind + " came: " + Shown(text));
  return data;
}

void UnknownIdIsLost(Conversation* talk) {
  const std::string text = talk->Events("none", "lost");
  Expect(text.find("event: lost\n") == text.find("event: "),
         "the first event for an unknown id is not lost: " + Shown(text));
  Expect(DataOf(text, "lost")["id"].Is(Value::Kind::kNull), "the event lost has an id");
}

void ApplyIsTold(Conversation* talk) {
  const std::string id = LastEvent(talk);
  const Answer answer = Apply(talk, Named(talk, OtherName(talk)));
  const ResultText result = answer.Result(kDoneCode);
  const std::string apply = answer.Header("kio-apply-id");
  const Value applied = EventSince(talk, id, "applied");
  Expect(applied["apply"].Text() == apply && applied["wait"].Number() == result.wait,
         "the event applied is " + applied.Dump());
  const Value committed = EventSince(talk, id, "committed");
  Expect(committed["apply"].Text() == apply && committed["outcome"].Text() == "in-force",
         "the event committed is " + committed.Dump());
}

void RefusalIsTold(Conversation* talk) {
  OtherName(talk);
  const std::string id = LastEvent(talk);
  Document document(talk->facts());
  ApplyAndGo(talk, document.Remove(kNameElement)).Result(kMissingCode);
  const Value refused = EventSince(talk, id, "refused");
  Expect(refused["code"].Number() == kMissingCode && refused["fault"].Text() == kNameElement,
         "the event refused is " + refused.Dump());
}

void LoginIsTold(Conversation* talk) {
  talk->LogIn();
  const std::string id = LastEvent(talk);
  talk->LogOut();
  talk->LogIn();
  Expect(!EventSince(talk, id, "logout")["client"].Text().empty(),
         "the event logout names no client");
  Expect(!EventSince(talk, id, "login")["client"].Text().empty(),
         "the event login names no client");
}

void DryRunIsNone(Conversation* talk) {
  const std::string id = LastEvent(talk);
  talk->Post("/settings?dry-run=1", Named(talk, "Conform-Dry").Xml()).Is(kGood);
  // The next event ends the wait for one.
  talk->Post(std::string("/settings"), Document(talk->facts()).Remove("specVersion/major").Xml())
      .Is(kGood);
  const std::string text = talk->Events(id, "refused");
  const size_t first = text.find("event: ");
  Expect(first != std::string::npos && first == text.find("event: refused\n"),
         "a dry run is an event: " + Shown(text));
}

void FirmwareStepIsTold(Conversation* talk) {
  talk->Post("/firmware/0").Is(kGood);
  const std::string id = LastEvent(talk);
  talk->Post("/firmware/0").Is(kGood);
  const Value step = EventSince(talk, id, "firmware");
  Expect(step["step"].Text() == "start" && step["result"].Number() == 0,
         "the event firmware is " + step.Dump());
}

constexpr std::array kEventRows = {
    Case{"events.unknown-id-is-lost",
         "A stream for an id that nobody knows begins with the event lost.", UnknownIdIsLost,
         "GET /events"},
    Case{.name = "events.apply-is-told",
         .promise = "An apply and its commit are events, with the id and the wait.",
         .run = ApplyIsTold,
         .needs = "GET /events",
         .changes = true},
    Case{.name = "events.refusal-is-told",
         .promise = "A refusal is an event, with its code and the element at fault.",
         .run = RefusalIsTold,
         .needs = "GET /events",
         .changes = true},
    Case{.name = "events.login-is-told",
         .promise =
             "Logout and login are events, which name the client; the stream resumes behind an id.",
         .run = LoginIsTold,
         .needs = "GET /events",
         .logs_in = true},
    Case{.name = "events.dry-run-is-none",
         .promise = "A dry run is no event.",
         .run = DryRunIsNone,
         .needs = "GET /events",
         .changes = true},
    Case{"events.firmware-step-is-told", "A step of a firmware upgrade is an event.",
         FirmwareStepIsTold, "GET /events"},
};

}  // namespace

const std::span<const Case> kEventCases(kEventRows);

}  // namespace kioctl::conform
