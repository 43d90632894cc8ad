// The waits that are promised, and what is in force after them.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

constexpr char kSaving[] = "CfgSaveToFlash";

// What the actions of a forecast take, but for the saving.
long SecondsOf(const Value& forecast) {
  long seconds = 0;
  for (size_t i = 0; i < forecast["actions"].size(); ++i) {
    const Value action = forecast["actions"].At(i);
    Expect(!action["name"].Text().empty() && action["seconds"].Is(Value::Kind::kNumber),
           "an action lacks its name or seconds: " + action.Dump());
    seconds += action["name"].Text() == kSaving ? 0 : action["seconds"].Number();
  }
  return seconds;
}

void NothingTakesNoTime(Conversation* talk) {
  const ResultText result = Apply(talk, Document(talk->facts())).Result(kDoneCode);
  Expect(result.wait == 0,
         "a document that changes nothing promises " + std::to_string(result.wait) + " s");
}

void WaitIsThatOfTheActions(Conversation* talk) {
  const Value forecast = Forecast(talk, Named(talk, OtherName(talk)));
  Expect(forecast["wait"].Number() == SecondsOf(forecast),
         "the wait is " + forecast["wait"].Dump() + " s, and the actions take " +
             forecast["actions"].Dump());
}

void WaitIsAsForetold(Conversation* talk) {
  const Document document = Named(talk, OtherName(talk));
  const long foretold = Forecast(talk, document)["wait"].Number();
  const ResultText result = Apply(talk, document).Result(kDoneCode);
  Expect(result.wait > 0, "a new name promises no wait");
  Expect(result.wait == foretold, "the wait is " + std::to_string(result.wait) + " s, and " +
                                      std::to_string(foretold) + " s were foretold");
}

void RadioTakesItsTime(Conversation* talk) {
  const std::string element = "Device/" + ARadio(talk) + "/WirelessName";
  Document document(talk->facts());
  const std::string name = document.Text(element) == "Conform-Net" ? "Conform-Net2" : "Conform-Net";
  const Value forecast = Forecast(talk, document.Set(element, name));
  Expect(forecast["result"].Number() == 0,
         "another network name is refused: " + forecast["message"].Dump());
  Expect(forecast["wait"].Number() > 0 && forecast["wait"].Number() == SecondsOf(forecast),
         "another network name promises " + forecast["wait"].Dump() + " s for " +
             forecast["actions"].Dump());
}

void InForceAfterTheWait(Conversation* talk) {
  const long before = talk->Device()["uptime"].Number();
  const Answer answer = ApplyAndGo(talk, Named(talk, OtherName(talk)));
  talk->Settle(answer.Result(kDoneCode).wait);
  const Value device = talk->Device();
  const Value last = device["lastApply"];
  Expect(last["id"].Text() == answer.Header("kio-apply-id"),
         "lastApply is another one: " + last.Dump());
  Expect(last["outcome"].Text() == "in-force",
         "the wait is over, and the outcome is " + last["outcome"].Dump());
  Expect(device["state"].Text() == "ready",
         "the wait is over, and the state is " + device["state"].Dump());
  Expect(last["uptime"].Number() >= before && last["uptime"].Number() <= device["uptime"].Number(),
         "the uptime of the outcome is " + last["uptime"].Dump());
}

void BootIdOutlivesApplies(Conversation* talk) {
  const std::string boot = talk->Device()["bootId"].Text();
  Apply(talk, Named(talk, OtherName(talk))).Result(kDoneCode);
  Expect(talk->Device()["bootId"].Text() == boot, "the bootId has changed without a start");
}

void CommitIsDeferred(Conversation* talk) {
  constexpr long kSeconds = 2;
  SkipUnlessVariablesApply(talk);
  talk->Put(kNameVariable, OtherName(talk)).HasCode(kDoneCode);
  const Answer apply = talk->Post("/actions/ApplyAllRssVars");
  apply.HasCode(kDoneCode).Has("kio-apply-id");
  Value last = talk->Device()["lastApply"];
  Expect(last["id"].Text() == apply.Header("kio-apply-id") && last["outcome"].Text() == "applied",
         "after the apply and before the commit lastApply is " + last.Dump());
  talk->Post("/actions/CommitRssVars").HasCode(kDoneCode);
  const Value device = talk->Device();
  Expect(device["state"].Text() == "busy" || device["state"].Text() == "away",
         "a commit is due, and the state is " + device["state"].Dump());
  // Reads do not wait for it.
  talk->Get(kNameVariable).Is(kGood);
  talk->Settle(kSeconds);
  last = talk->Device()["lastApply"];
  Expect(last["outcome"].Text() == "in-force",
         "after the commit the outcome is " + last["outcome"].Dump());
}

void ReadyAtRest(Conversation* talk) {
  const Value device = talk->Device();
  Expect(device["state"].Text() == "ready",
         "nothing is due, and the state is " + device["state"].Dump());
}

constexpr Case WaitCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "POST /settings", .changes = true};
}

constexpr std::array kWaitRows = {
    WaitCase("waits.nothing-takes-no-time", "A document that changes nothing promises 0 seconds.",
             NothingTakesNoTime),
    WaitCase("waits.wait-is-that-of-the-actions",
             "The wait is the sum of the actions' seconds; saving is not waited for.",
             WaitIsThatOfTheActions),
    WaitCase("waits.wait-is-as-foretold",
             "The answer promises the wait that the dry run has foretold.", WaitIsAsForetold),
    WaitCase("waits.radio-takes-its-time",
             "Another network name promises the seconds of the radio's restart.",
             RadioTakesItsTime),
    WaitCase("waits.in-force-after-the-wait",
             "After the promised wait the router is ready, and lastApply is in force.",
             InForceAfterTheWait),
    WaitCase("waits.boot-id-outlives-applies", "An apply gives no other bootId.",
             BootIdOutlivesApplies),
    Case{.name = "waits.commit-is-deferred",
         .promise = "CommitRssVars is answered at once, and has run two seconds later; the router "
                    "is busy meanwhile, and reads are served.",
         .run = CommitIsDeferred,
         .needs = "POST /actions/{name}",
         .changes = true},
    Case{"waits.ready-at-rest", "The state is ready when nothing is due.", ReadyAtRest},
};

}  // namespace

const std::span<const Case> kWaitCases(kWaitRows);

}  // namespace kioctl::conform
