// The forms of refusals.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

constexpr char kWantsProblem[] = "Accept: application/problem+json";
constexpr char kNoChannel[] = "999";

void CheckProblem(const Answer& answer, int status) {
  answer.Is(status).HasType("application/problem+json");
  const Value problem = Value::Parse(answer.body);
  Expect(problem["status"].Number() == status,
         answer.call + ": the member status is " + problem["status"].Dump());
  for (const char* const member : {"type", "title", "detail"}) {
    Expect(!problem[member].Text().empty(), answer.call + ": the problem has no " + member);
  }
}

void ErrorsAreLines(Conversation* talk) {
  talk->Get("/nothing-of-that-name").Is(kAbsent).IsOneLine();
  talk->Delete("/device").Is(kBadMethod).IsOneLine();
  talk->Post("/settings", "no settings document").Is(kMalformed).IsOneLine();
}

void ProblemDetails(Conversation* talk) {
  CheckProblem(talk->Send({.path = "/nothing-of-that-name", .headers = {kWantsProblem}}), kAbsent);
  CheckProblem(talk->Send({.path = "/settings", .headers = {kWantsProblem}}), kBadMethod);
  CheckProblem(talk->Send({.path = "/settings", .headers = {"Accept: application/json"}}),
               kBadMethod);
}

void PreferredFormWins(Conversation* talk) {
  talk->Send({.path = "/nothing-of-that-name",
              .headers = {"Accept: application/json;q=0.8, text/plain;q=0.9"}})
      .Is(kAbsent)
      .IsOneLine();
}

void RefusedValueTellsWhy(Conversation* talk) {
  const std::string name = RadioVariable(ARadio(talk), "Channel");
  const Answer answer = talk->Send(
      {.method = "PUT", .path = "/vars/" + name, .body = kNoChannel, .headers = {kWantsProblem}});
  if (answer.status == kDenied) {
    Skip("the radio is locked");
  }
  CheckProblem(answer, kRefusedValue);
  const Value problem = Value::Parse(answer.body);
  Expect(problem["code"].Number() == kNotTakenCode,
         answer.call + ": the code is " + problem["code"].Dump());
  Expect(problem["variable"].Text() == name,
         answer.call + ": the variable is " + problem["variable"].Dump());
  Expect(Contains(problem["element"].Text(), "/Channel"),
         answer.call + ": the element is " + problem["element"].Dump());
  Expect(!problem["rule"].Text().empty(), answer.call + ": it tells no rule");
  Expect(problem["changeableNow"].Is(Value::Kind::kFlag),
         answer.call + ": it does not tell changeableNow");
  Expect(problem["accepts"]["words"].size() > 0,
         answer.call + ": it does not tell what it accepts");
}

void RefusedDocumentTellsWhy(Conversation* talk) {
  Document document(talk->facts());
  document.Remove(kNameElement);
  SkipUnless(!talk->facts().leaves_all_as_is, "the router leaves all as it is");
  const Answer answer = talk->Send(
      {.method = "POST", .path = "/settings", .body = document.Xml(), .headers = {kWantsProblem}});
  CheckProblem(answer, kRefusedValue);
  const Value problem = Value::Parse(answer.body);
  Expect(problem["code"].Number() == kMissingCode && problem["element"].Text() == kNameElement,
         answer.call + ": code and element are " + problem["code"].Dump() + " and " +
             problem["element"].Dump());
}

void ContentTypes(Conversation* talk) {
  const std::string body = Document(talk->facts()).Xml();
  for (const char* const type : {"application/xml", "text/xml", "text/plain", "application/json",
                                 "application/octet-stream", "application/x-www-form-urlencoded"}) {
    talk->Send({.method = "POST",
                .path = "/settings?dry-run=1",
                .body = body,
                .headers = {std::string("Content-Type: ") + type}})
        .Is(kGood);
  }
}

void OtherContentType(Conversation* talk) {
  talk->Send({.method = "POST",
              .path = "/settings?dry-run=1",
              .body = Document(talk->facts()).Xml(),
              .headers = {"Content-Type: image/png"}})
      .Is(kBadType)
      .IsOneLine();
}

void EmptyDocument(Conversation* talk) { talk->Post("/settings", "").Is(kMalformed).IsOneLine(); }

void NoRootElement(Conversation* talk) {
  talk->Post("/settings", "<settings></settings>").Is(kMalformed).IsOneLine();
}

void NulIsRefused(Conversation* talk) {
  talk->Get("/vars/rss_DeviceName%00x").Is(kMalformed);
  talk->Post("/settings", std::string("<root>\0</root>", 14)).Is(kMalformed);
}

void BadParameters(Conversation* talk) {
  const std::string body = Document(talk->facts()).Xml();
  for (const char* const query : {"dry-run=2", "dry-run=1&cloning=yes"}) {
    talk->Post(std::string("/settings?") + query, body).Is(kMalformed).IsOneLine();
  }
}

constexpr std::array kErrorRows = {
    Case{.name = "errors.are-lines",
         .promise = "An error has a body of one line that says why.",
         .run = ErrorsAreLines,
         .needs = "POST /settings"},
    Case{.name = "errors.problem-details",
         .promise = "Who asks for application/problem+json, or prefers application/json, gets "
                    "problem details.",
         .run = ProblemDetails,
         .needs = "POST /settings"},
    Case{"errors.preferred-form-wins", "Who prefers text/plain to application/json gets the line.",
         PreferredFormWins},
    Case{.name = "errors.refused-value-tells-why",
         .promise = "The problem of a refused value names code, variable, element, rule and what "
                    "is accepted.",
         .run = RefusedValueTellsWhy,
         .needs = "PUT /vars/{name}",
         .changes = true},
    Case{.name = "errors.refused-document-tells-why",
         .promise =
             "A document that is refused gets 422 and problem details when these are preferred.",
         .run = RefusedDocumentTellsWhy,
         .needs = "POST /settings",
         .changes = true},
    Case{.name = "errors.content-types",
         .promise = "Six types of bodies are taken.",
         .run = ContentTypes,
         .needs = "POST /settings",
         .changes = true},
    Case{.name = "errors.other-content-type",
         .promise = "A body of another type gets 415.",
         .run = OtherContentType,
         .needs = "POST /settings",
         .changes = true},
    Case{.name = "errors.empty-document",
         .promise = "An empty document gets 400.",
         .run = EmptyDocument,
         .needs = "POST /settings"},
    Case{.name = "errors.no-root-element",
         .promise = "A document without a root element gets 400.",
         .run = NoRootElement,
         .needs = "POST /settings"},
    Case{.name = "errors.nul-is-refused",
         .promise = "A path or a body with a NUL byte gets 400.",
         .run = NulIsRefused,
         .needs = "POST /settings"},
    Case{.name = "errors.bad-parameters",
         .promise = "A parameter that is not as described gets 400.",
         .run = BadParameters,
         .needs = "POST /settings",
         .changes = true},
};

}  // namespace

const std::span<const Case> kErrorCases(kErrorRows);

}  // namespace kioctl::conform
