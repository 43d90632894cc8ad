// Settings that go back unless they are confirmed.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

constexpr char kConfirm[] = "/settings/confirm";
constexpr char kLong[] = "confirm-within=600";

void ExpectName(Conversation* talk, const std::string& name) {
  Expect(NameOf(talk) == name,
         "the name was to be " + Shown(name) + ", and is " + Shown(NameOf(talk)));
}

void ExpectNonePending(Conversation* talk) {
  const Value pending = talk->Device()["pendingConfirm"];
  Expect(pending.Is(Value::Kind::kNull), "pendingConfirm is " + pending.Dump());
}

void NothingWaits(Conversation* talk) {
  talk->Post(kConfirm).Is(kAbsent).IsOneLine();
  talk->Delete(kConfirm).Is(kAbsent).IsOneLine();
}

void TimeHasBounds(Conversation* talk) {
  const std::string body = Document(talk->facts()).Xml();
  for (const char* const time : {"4", "3601", "soon"}) {
    talk->Post(std::string("/settings?confirm-within=") + time, body).Is(kMalformed).IsOneLine();
  }
}

void PendingIsTold(Conversation* talk) {
  constexpr long kSeconds = 600;
  const std::string name = OtherName(talk);
  const Answer answer = Apply(talk, Named(talk, name), kLong);
  answer.Result(kDoneCode);
  ExpectName(talk, name);
  const Value pending = talk->Device()["pendingConfirm"];
  Expect(pending["id"].Text() == answer.Header("kio-apply-id") &&
             pending["seconds"].Number() == kSeconds && pending["secondsLeft"].Number() > 0 &&
             pending["secondsLeft"].Number() <= kSeconds,
         "pendingConfirm is " + pending.Dump());
}

void TakenBack(Conversation* talk) {
  const std::string before = NameOf(talk);
  Apply(talk, Named(talk, OtherName(talk)), kLong).Result(kDoneCode);
  talk->Delete(kConfirm).Is(kGood);
  talk->Settle(0);
  ExpectName(talk, before);
  ExpectNonePending(talk);
  const Value last = talk->Device()["lastApply"];
  Expect(last["outcome"].Text() == "rolled-back", "the outcome is " + last["outcome"].Dump());
}

void LaterLoginConfirms(Conversation* talk) {
  const std::string name = OtherName(talk);
  talk->LogIn();
  Apply(talk, Named(talk, name), kLong).Result(kDoneCode);
  talk->Post(kConfirm).Is(kDenied).IsOneLine();
  talk->LogIn();
  talk->Post(kConfirm).Is(kGood).IsOneLine();
  ExpectNonePending(talk);
  ExpectName(talk, name);
  talk->Post(kConfirm).Is(kAbsent);
}

void OthersAreInTheWay(Conversation* talk) {
  const std::string name = OtherName(talk);
  Apply(talk, Named(talk, name), kLong).Result(kDoneCode);
  const Document other = Named(talk, OtherName(talk));
  talk->Post("/settings", other.Xml()).Is(kInTheWay).IsOneLine().Has("retry-after");
  ExpectName(talk, name);
  // Dry runs and reads are served.
  Forecast(talk, other);
  talk->Get("/backup").Is(kGood);
}

void GoesBack(Conversation* talk) {
  constexpr long kSeconds = 6;
  const std::string before = NameOf(talk);
  const Answer answer = Apply(talk, Named(talk, OtherName(talk)), "confirm-within=5");
  answer.Result(kDoneCode);
  talk->LetPass(kSeconds);
  talk->Settle(0);
  ExpectName(talk, before);
  ExpectNonePending(talk);
  const Value last = talk->Device()["lastApply"];
  Expect(
      last["id"].Text() == answer.Header("kio-apply-id") && last["outcome"].Text() == "rolled-back",
      "nobody has confirmed, and lastApply is " + last.Dump());
}

void RefusalArmsNothing(Conversation* talk) {
  OtherName(talk);
  Document document(talk->facts());
  talk->Post(std::string("/settings?") + kLong, document.Remove(kNameElement).Xml())
      .Result(kMissingCode);
  ExpectNonePending(talk);
}

constexpr Case ConfirmCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name,
          .promise = promise,
          .run = run,
          .needs = "POST /settings/confirm",
          .changes = true};
}

constexpr std::array kConfirmRows = {
    Case{"confirm.nothing-waits", "Confirming or taking back gets 404 when no settings wait.",
         NothingWaits, "POST /settings/confirm"},
    ConfirmCase("confirm.time-has-bounds",
                "confirm-within takes 5 to 3600 seconds, and 400 is the answer otherwise.",
                TimeHasBounds),
    ConfirmCase("confirm.pending-is-told",
                "Settings that wait are in force, and pendingConfirm tells their id and time.",
                PendingIsTold),
    ConfirmCase("confirm.taken-back",
                "DELETE /settings/confirm goes back at once; the outcome is rolled-back.",
                TakenBack),
    Case{.name = "confirm.later-login-confirms",
         .promise = "A login from before the apply gets 403; one from after it confirms.",
         .run = LaterLoginConfirms,
         .needs = "POST /settings/confirm",
         .changes = true,
         .logs_in = true},
    ConfirmCase("confirm.others-are-in-the-way",
                "As long as settings wait, other changes get 409 with Retry-After; dry runs and "
                "reads are served.",
                OthersAreInTheWay),
    Case{.name = "confirm.goes-back",
         .promise = "Without a confirmation in time the settings go back to what they were.",
         .run = GoesBack,
         .needs = "POST /settings/confirm",
         .changes = true,
         .seconds = 6},
    ConfirmCase("confirm.refusal-arms-nothing", "A document that is refused arms nothing.",
                RefusalArmsNothing),
};

}  // namespace

const std::span<const Case> kConfirmCases(kConfirmRows);

}  // namespace kioctl::conform
