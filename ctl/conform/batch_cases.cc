// Batches of variables.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

constexpr char kSetName[] = "rss_DeviceName=";

std::string ReadName(Conversation* talk) { return talk->Get(kNameVariable).Is(kGood).body; }

void ExpectSet(Conversation* talk, const std::string& name) {
  Expect(ReadName(talk) == name,
         "the batch sets " + Shown(name) + ", and " + Shown(ReadName(talk)) + " is read");
}

// The last variable of a batch may make the whole record verify; a router whose record does not
// pass gives no occasion.
Answer SendBatch(Conversation* talk, const std::string& path, const std::string& body) {
  Answer answer = talk->Post(path, body);
  SkipUnless(!answer.body.starts_with(std::to_string(kInvalidCode) + " "),
             "the settings of the router do not pass as a whole: " + answer.body);
  return answer;
}

void SetsAll(Conversation* talk) {
  SendBatch(talk, "/vars", "rss_DeviceName=Conform-1&rss_Vyr_UrlDetectEnbl=1")
      .Is(kGood)
      .HasCode(kDoneCode);
  ExpectSet(talk, "Conform-1");
}

void LaterPairWins(Conversation* talk) {
  SendBatch(talk, "/vars", "rss_DeviceName=Conform-1&rss_DeviceName=Conform-2")
      .Is(kGood)
      .HasCode(kDoneCode);
  ExpectSet(talk, "Conform-2");
}

void OtherSeparator(Conversation* talk) {
  SendBatch(talk, "/vars?separator=|", "rss_DeviceName=a&b|rss_DeviceName=c&d")
      .Is(kGood)
      .HasCode(kDoneCode);
  ExpectSet(talk, "c&d");
  talk->Post("/vars?separator=ab", kSetName).Is(kMalformed).IsOneLine();
}

void LineEndsSeparate(Conversation* talk) {
  SendBatch(talk, "/vars", "rss_DeviceName = Conform-1\nrss_DeviceName = Conform-3\n")
      .Is(kGood)
      .HasCode(kDoneCode);
  ExpectSet(talk, "Conform-3");
}

void StopsAtTheFault(Conversation* talk) {
  const Answer answer =
      talk->Post("/vars", "rss_DeviceName=Conform-1&rss_DeviceModel=No&rss_DeviceName=Conform-2");
  answer.Is(kRefusedValue).HasCode(kNotTakenCode);
  Expect(Contains(answer.body, "rss_DeviceModel"),
         "the answer does not name the variable at fault: " + Shown(answer.body));
  ExpectSet(talk, "Conform-1");
  Expect(NameOf(talk) == talk->facts().settings["Device"]["DeviceName"].Text(),
         "a batch that was refused has stored its name");
}

void UnknownVariable(Conversation* talk) {
  talk->Post("/vars", "rss_NoSuchThing=1").Is(kAbsent).HasCode(kNotTakenCode);
}

void BatchDryRunLeavesAll(Conversation* talk) {
  const std::string before = ReadName(talk);
  const Value forecast = talk->Post("/vars?dry-run=1", "rss_DeviceName=Conform-1").Is(kGood).Json();
  SkipUnless(forecast["result"].Number() != kInvalidCode,
             "the settings of the router do not pass as a whole: " + forecast["message"].Text());
  Expect(forecast["applies"].Is(Value::Kind::kFlag) && !forecast["applies"].Flag(),
         "applies is " + forecast["applies"].Dump());
  Expect(forecast["commits"].Is(Value::Kind::kFlag) && !forecast["commits"].Flag(),
         "commits is " + forecast["commits"].Dump());
  Expect(forecast["apply"]["result"].Is(Value::Kind::kNumber),
         "the forecast does not tell what an apply would do");
  Expect(ReadName(talk) == before, "a dry run of a batch has set " + Shown(ReadName(talk)));
  Expect(talk->Post("/vars?dry-run=1", NameBatch("Conform-1")).Is(kGood).Json()["applies"].Flag(),
         "a batch that applies is not told as such");
}

void ActionsRunInTheirPlace(Conversation* talk) {
  SkipUnlessVariablesApply(talk);
  const std::string name = OtherName(talk);
  const Answer answer = talk->Post("/vars", NameBatch(name) + "&rss_DeviceName=Conform-Later");
  answer.Is(kGood).HasCode(kDoneCode).Has("kio-apply-id");
  Expect(LastApply(talk) == answer.Header("kio-apply-id"), "lastApply is another one");
  Expect(NameOf(talk) == name, "the apply in the middle has stored " + Shown(NameOf(talk)));
  ExpectSet(talk, "Conform-Later");
}

void BatchOfAnAction(Conversation* talk) {
  SendBatch(talk, "/actions/SetRssVars", "rss_DeviceName=Conform-4").Is(kGood).HasCode(kDoneCode);
  ExpectSet(talk, "Conform-4");
}

void WritesAResult(Conversation* talk) {
  SendBatch(talk, "/vars", "rss_DeviceName=Conform-1").Is(kGood).HasCode(kDoneCode);
  talk->Get("/result").Result(kDoneCode);
  talk->Post("/vars", "rss_DeviceModel=No").Is(kRefusedValue).HasCode(kNotTakenCode);
  talk->Get("/result").Result(kNotTakenCode);
}

void BatchIfMatch(Conversation* talk) {
  const std::string before = ReadName(talk);
  talk->Send({.method = "POST",
              .path = "/vars",
              .body = "rss_DeviceName=Conform-1",
              .headers = {"If-Match: \"0123456789abcdef\""}})
      .Is(kOtherSettings)
      .IsOneLine();
  Expect(ReadName(talk) == before, "a batch for other settings was set");
}

constexpr Case BatchCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "POST /vars", .changes = true};
}

constexpr std::array kBatchRows = {
    BatchCase("batches.sets-all", "A batch sets its variables.", SetsAll),
    BatchCase("batches.later-pair-wins", "The pairs are set in their order.", LaterPairWins),
    BatchCase("batches.other-separator",
              "separator names the one character between the pairs; another length gets 400.",
              OtherSeparator),
    BatchCase("batches.line-ends-separate",
              "Pairs may stand on lines, with blanks around the = sign.", LineEndsSeparate),
    BatchCase("batches.stops-at-the-fault",
              "A batch stops at the first variable that is refused and names it; those before it "
              "remain set.",
              StopsAtTheFault),
    BatchCase("batches.unknown-variable", "A variable that there is not gets 404 with code 2.",
              UnknownVariable),
    BatchCase("batches.dry-run-leaves-all",
              "A dry run tells whether a batch applies and commits, and leaves nothing of it.",
              BatchDryRunLeavesAll),
    BatchCase("batches.actions-run-in-their-place",
              "An action in a batch runs in its place: what stands behind it is not applied.",
              ActionsRunInTheirPlace),
    Case{.name = "batches.batch-of-an-action",
         .promise = "SetRssVars sets the batch in its body.",
         .run = BatchOfAnAction,
         .needs = "POST /actions/{name}",
         .changes = true},
    BatchCase("batches.writes-a-result", "GET /result has the outcome of a batch.", WritesAResult),
    BatchCase("batches.if-match-guards", "A batch for other settings gets 412 and sets nothing.",
              BatchIfMatch),
};

}  // namespace

const std::span<const Case> kBatchCases(kBatchRows);

}  // namespace kioctl::conform
