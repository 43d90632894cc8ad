// The steps of a firmware upgrade. No case writes firmware.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

constexpr char kStartOver[] = "/firmware/0";

StepText Take(Conversation* talk, const char* action) {
  return talk->Post(std::string("/firmware/") + action).Step();
}

void ExpectResult(const StepText& step, int result, const std::string& after) {
  Expect(step.result == result, after + ": the result is " + std::to_string(step.result));
}

void StartsOver(Conversation* talk) { ExpectResult(Take(talk, "0"), 0, "after action 0"); }

void StatusIsKept(Conversation* talk) {
  const Answer step = talk->Post(kStartOver);
  step.Step();
  const Answer kept = talk->Get("/firmware");
  kept.Step();
  Expect(kept.body == step.body, "GET /firmware is another document than that of the last step");
}

void ReportChangesNothing(Conversation* talk) {
  Take(talk, "0");
  ExpectResult(Take(talk, "9"), 0, "after action 9");
  ExpectResult(Take(talk, "9"), 0, "after action 9 once more");
}

void StepsHaveTheirPlace(Conversation* talk) {
  Take(talk, "0");
  ExpectResult(Take(talk, "2"), 0, "a download without a search");
  ExpectResult(Take(talk, "4"), 0, "an announcement without an image");
}

void OtherCharacters(Conversation* talk) {
  Take(talk, "0");
  for (const char* const action : {"3", "x", "~"}) {
    ExpectResult(Take(talk, action), 0, std::string("after action ") + action);
  }
}

void OneCharacterAlone(Conversation* talk) {
  talk->Post("/firmware/00").Is(kMalformed).IsOneLine();
}

void StepsArePosted(Conversation* talk) { talk->Get(kStartOver).Is(kBadMethod).Has("allow"); }

void SearchTellsWhatItFound(Conversation* talk) {
  constexpr int kNone = 1;
  constexpr int kFound = 2;
  constexpr int kFailed = -1;
  Take(talk, "0");
  const size_t events = talk->Device()["events"].size();
  const StepText step = Take(talk, "1");
  Expect(step.result == kNone || step.result == kFound || step.result == kFailed,
         "after a search the result is " + std::to_string(step.result));
  Expect(step.result != kFound || !step.version.empty(),
         "newer firmware was found, and fwver is empty");
  constexpr size_t kMostEvents = 50;
  Expect(
      step.result != kFailed || events == kMostEvents || talk->Device()["events"].size() > events,
      "the search failed, and no event of GET /device tells why");
  ExpectResult(Take(talk, "0"), 0, "after starting over");
}

constexpr Case StepCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "POST /firmware/{action}"};
}

constexpr std::array kFirmwareRows = {
    StepCase("firmware.starts-over", "Action 0 leads to the result 0.", StartsOver),
    StepCase("firmware.status-is-kept", "GET /firmware gives the status document of the last step.",
             StatusIsKept),
    StepCase("firmware.report-changes-nothing", "Action 9 gives the status.", ReportChangesNothing),
    StepCase(
        "firmware.steps-have-their-place",
        "A download needs a search, and an announcement an image: they change nothing otherwise.",
        StepsHaveTheirPlace),
    StepCase("firmware.other-characters", "A character that is no action changes nothing.",
             OtherCharacters),
    StepCase("firmware.one-character-alone", "An action of two characters gets 400.",
             OneCharacterAlone),
    StepCase("firmware.steps-are-posted", "GET of an action gets 405.", StepsArePosted),
    Case{.name = "firmware.search-tells-what-it-found",
         .promise =
             "A search ends with 1, with 2 and a version, or with -1 and an event that tells why.",
         .run = SearchTellsWhatItFound,
         .needs = "POST /firmware/{action}",
         .slow = true},
};

}  // namespace

const std::span<const Case> kFirmwareCases(kFirmwareRows);

}  // namespace kioctl::conform
