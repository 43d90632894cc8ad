// What the router says of itself.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

void DescribesItself(Conversation* talk) {
  const Value device = talk->Device();
  for (const char* const member : {"model", "name", "bootId", "state"}) {
    Expect(device[member].Is(Value::Kind::kText),
           std::string("GET /device: ") + member + " is no text");
  }
  const std::string state = device["state"].Text();
  Expect(state == "ready" || state == "busy" || state == "away",
         "GET /device: the state is " + state);
  Expect(device["uptime"].Is(Value::Kind::kNumber), "GET /device: uptime is no number");
  for (const char* const member : {"lastApply", "pendingConfirm"}) {
    Expect(device[member].Is(Value::Kind::kNull) || device[member]["id"].Is(Value::Kind::kText),
           std::string("GET /device: ") + member + " is neither null nor an object with an id");
  }
}

void OutcomeIsKnown(Conversation* talk) {
  Apply(talk, Document(talk->facts())).Result(kDoneCode);
  const Value last = talk->Device()["lastApply"];
  const std::string outcome = last["outcome"].Text();
  bool is_known = false;
  for (const char* const word : {"applied", "in-force", "failed", "going-back", "rolled-back"}) {
    is_known = is_known || outcome == word;
  }
  Expect(is_known, "GET /device: the outcome is " + Shown(outcome));
  Expect(last["uptime"].Is(Value::Kind::kNumber), "GET /device: lastApply has no uptime");
}

void IsOpenToAll(Conversation* talk) {
  talk->LogOut();
  talk->Ask("GET", "/device").Is(kGood);
  talk->Ask("HEAD", "/device").Is(kGood);
}

void UptimeGoesOn(Conversation* talk) {
  constexpr long kSeconds = 7;
  const long before = talk->Device()["uptime"].Number();
  if (talk->HasControl()) {
    talk->LetPass(kSeconds);
  }
  const long after = talk->Device()["uptime"].Number();
  Expect(after >= before + (talk->HasControl() ? kSeconds : 0),
         "the uptime went from " + std::to_string(before) + " to " + std::to_string(after));
}

void BootIdStays(Conversation* talk) {
  const std::string first = talk->Device()["bootId"].Text();
  const std::string second = talk->Device()["bootId"].Text();
  Expect(!first.empty() && first == second,
         "the bootId was " + first + " and is " + second + " without a start between");
}

void EventsAreFew(Conversation* talk) {
  constexpr size_t kMost = 50;
  const Value events = talk->Device()["events"];
  Expect(events.Is(Value::Kind::kList), "GET /device: events is no list");
  Expect(events.size() <= kMost, "GET /device has " + std::to_string(events.size()) + " events");
  for (size_t i = 0; i < events.size(); ++i) {
    Expect(events.At(i)["uptime"].Is(Value::Kind::kNumber) && !events.At(i)["text"].Text().empty(),
           "an event lacks its uptime or text: " + events.At(i).Dump());
  }
}

void NameIsTheVariables(Conversation* talk) {
  const std::string name = talk->Get(kNameVariable).Is(kGood).body;
  Expect(name == NameOf(talk),
         "the variable is " + Shown(name) + ", and /device says " + Shown(NameOf(talk)));
}

void ModelIsTheVariables(Conversation* talk) {
  const std::string model = talk->Get("/vars/rss_DeviceModel").Is(kGood).body;
  Expect(model == talk->Device()["model"].Text(), "the variable is " + Shown(model));
}

constexpr std::array kDeviceRows = {
    Case{"device.describes-itself",
         "GET /device tells model, name, uptime, boot, state and what was applied last.",
         DescribesItself},
    Case{.name = "device.outcome-is-known",
         .promise = "The outcome of the last apply is one of the five words.",
         .run = OutcomeIsKnown,
         .needs = "POST /settings",
         .changes = true},
    Case{.name = "device.is-open-to-all",
         .promise = "GET and HEAD /device need no login.",
         .run = IsOpenToAll,
         .logs_in = true},
    Case{"device.uptime-goes-on", "The uptime counts the seconds and never goes back.",
         UptimeGoesOn},
    Case{"device.boot-id-stays", "The bootId is the same until the next start.", BootIdStays},
    Case{"device.events-are-few", "At most 50 events are listed, each with its uptime and text.",
         EventsAreFew},
    Case{.name = "device.name-is-the-variables",
         .promise = "The name is the value of rss_DeviceName.",
         .run = NameIsTheVariables,
         .needs = "GET /vars/{name}",
         .changes = true},
    Case{"device.model-is-the-variables", "The model is the value of rss_DeviceModel.",
         ModelIsTheVariables, "GET /vars/{name}"},
};

}  // namespace

const std::span<const Case> kDeviceCases(kDeviceRows);

}  // namespace kioctl::conform
