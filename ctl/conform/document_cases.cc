// Settings documents.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

// The forecast says that nothing would change.
void ExpectNoNodes(const Value& forecast, const std::string& what) {
  Expect(forecast["result"].Number() == kDoneCode,
         what + " is refused with " + forecast["result"].Dump() + " " + forecast["message"].Dump());
  for (size_t i = 0; i < forecast["nodes"].size(); ++i) {
    const std::string path = forecast["nodes"].At(i)["path"].Text();
    Expect(path.ends_with("/factorydefault"),
           std::string(what).append(" would change ").append(path));
  }
}

void OwnSettingsChangeNothing(Conversation* talk) {
  const std::string name = NameOf(talk);
  Apply(talk, Document(talk->facts())).Result(kDoneCode);
  Expect(NameOf(talk) == name, "the name was " + Shown(name) + ", and is " + Shown(NameOf(talk)));
}

void NameIsApplied(Conversation* talk) {
  const std::string name = OtherName(talk);
  const Answer answer = Apply(talk, Named(talk, name));
  answer.Result(kDoneCode);
  answer.Has("kio-apply-id");
  Expect(NameOf(talk) == name,
         "the document asks for " + Shown(name) + ", and the name is " + Shown(NameOf(talk)));
  Expect(LastApply(talk) == answer.Header("kio-apply-id"),
         "Kio-Apply-Id is " + answer.Header("kio-apply-id") + ", and lastApply has " +
             LastApply(talk));
}

void EachApplyHasItsId(Conversation* talk) {
  const Answer first = Apply(talk, Named(talk, OtherName(talk)));
  const Answer second = Apply(talk, Named(talk, OtherName(talk)));
  Expect(first.Has("kio-apply-id").Header("kio-apply-id") !=
             second.Has("kio-apply-id").Header("kio-apply-id"),
         "two applies have the same id");
}

void ResultIsKept(Conversation* talk) {
  const Answer answer = Apply(talk, Document(talk->facts()));
  answer.Result(kDoneCode);
  const Answer again = talk->Get("/result");
  again.Result(kDoneCode);
  Expect(again.body == answer.body, "GET /result is another document than the answer");
}

void RefusalIsKept(Conversation* talk) {
  OtherName(talk);
  const std::string id = LastApply(talk);
  Document document(talk->facts());
  document.Remove(kNameElement);
  const Answer answer = ApplyAndGo(talk, document);
  answer.Result(kMissingCode);
  Expect(answer.Header("kio-apply-id").empty(), "a refusal has the header Kio-Apply-Id");
  Expect(LastApply(talk) == id, "lastApply is another one after a refusal");
  talk->Get("/result").Result(kMissingCode);
}

void EntitiesAreDecoded(Conversation* talk) {
  constexpr char kName[] = "A & <b> C";
  OtherName(talk);
  const Document document = Named(talk, kName);
  SkipUnless(Forecast(talk, document)["result"].Number() == 0,
             "the router's rule does not take such a name");
  Apply(talk, document).Result(kDoneCode);
  Expect(NameOf(talk) == kName,
         "the document has " + Shown(XmlText(kName)) + ", and the name is " + Shown(NameOf(talk)));
}

void AnyOrder(Conversation* talk) {
  Document document(talk->facts());
  ExpectNoNodes(Forecast(talk, document.Reverse()), "the document in another order");
}

void AnyCase(Conversation* talk) {
  Document document(talk->facts());
  ExpectNoNodes(Forecast(talk, document.LowerNames()), "the document with names in lower case");
}

void UnknownElements(Conversation* talk) {
  Document document(talk->facts());
  document.Set("Device/ElementOfTomorrow/Inner", "5").Set("SectionOfTomorrow", "x");
  ExpectNoNodes(Forecast(talk, document), "the document with unknown elements");
}

void SectionMayBeLeftOut(Conversation* talk) {
  const std::string name = NameOf(talk);
  Document document = Named(talk, OtherName(talk));
  document.Set("Device/Configurable", "0");
  ExpectNoNodes(Forecast(talk, document), "a document whose Device is not configurable");
  Apply(talk, document).Result(kDoneCode);
  Expect(NameOf(talk) == name, "the name has changed to " + Shown(NameOf(talk)));
}

void FixedDeviceLeavesAll(Conversation* talk) {
  SkipUnless(talk->facts().leaves_all_as_is, "the settings of the router can be changed");
  const std::string name = NameOf(talk);
  Apply(talk, Named(talk, "Conform-A")).Result(kDoneCode);
  Expect(NameOf(talk) == name, "the name has changed to " + Shown(NameOf(talk)));
}

void DryRunLeavesAll(Conversation* talk) {
  const std::string name = NameOf(talk);
  const std::string id = LastApply(talk);
  const Answer before = talk->Get("/result");
  const Answer answer = talk->Post("/settings?dry-run=1", Named(talk, "Conform-Dry").Xml());
  answer.Is(kGood).Json();
  Expect(answer.Header("kio-apply-id").empty(), "a dry run has the header Kio-Apply-Id");
  Expect(NameOf(talk) == name, "a dry run has changed the name to " + Shown(NameOf(talk)));
  Expect(LastApply(talk) == id, "a dry run has changed lastApply");
  const Answer after = talk->Get("/result");
  Expect(after.status == before.status && after.body == before.body,
         "a dry run has changed the last result");
}

void DryRunForetells(Conversation* talk) {
  const std::string before = NameOf(talk);
  const std::string name = OtherName(talk);
  const Value forecast = Forecast(talk, Named(talk, name));
  bool found = false;
  for (size_t i = 0; i < forecast["nodes"].size(); ++i) {
    const Value node = forecast["nodes"].At(i);
    found = found || (node["old"].Text() == before && node["new"].Text() == name);
  }
  Expect(found, "the forecast does not tell the change of the name: " + forecast["nodes"].Dump());
  Expect(forecast["actions"].size() > 0, "the forecast tells no action");
  Expect(forecast["link"]["by"].Is(Value::Kind::kText) &&
             forecast["link"]["drops"].Is(Value::Kind::kFlag),
         "the forecast does not tell what becomes of the link");
}

void DryRunMasksSecrets(Conversation* talk) {
  constexpr char kSecret[] = "conform-secret-9";
  OtherName(talk);
  Document document(talk->facts());
  document.Set("Device/DevicePwd", kSecret);
  const Answer answer = talk->Post("/settings?dry-run=1", document.Xml());
  const Value forecast = answer.Is(kGood).Json();
  SkipUnless(forecast["result"].Number() == 0, "the router's rule does not take such a password");
  Expect(!Contains(answer.body, kSecret), "the forecast tells a new password");
  bool found = false;
  for (size_t i = 0; i < forecast["nodes"].size(); ++i) {
    const Value node = forecast["nodes"].At(i);
    found = found || (node["secret"].Flag() && node["new"].Text() == "********");
  }
  Expect(found, "the forecast has no masked node: " + forecast["nodes"].Dump());
}

void IfMatchGuards(Conversation* talk) {
  const std::string name = OtherName(talk);
  const auto send = [talk](const std::string& id, const std::string& wanted) {
    Answer answer = talk->Send({.method = "POST",
                                .path = "/settings",
                                .body = Named(talk, wanted).Xml(),
                                .headers = {"If-Match: " + id}});
    talk->Settle(0);
    return answer;
  };
  Apply(talk, Named(talk, name)).Result(kDoneCode);
  send("\"0123456789abcdef\"", OtherName(talk)).Is(kOtherSettings);
  Expect(NameOf(talk) == name,
         "a change for other settings has changed the name to " + Shown(NameOf(talk)));
  send("\"" + LastApply(talk) + "\"", OtherName(talk)).Result(kDoneCode);
  Expect(NameOf(talk) != name, "a change for the present settings has changed nothing");
  send("*", OtherName(talk)).Result(kDoneCode);
  Expect(NameOf(talk) == name, "a change for any settings has changed nothing");
}

void CloningLeavesTheName(Conversation* talk) {
  const Document document = Named(talk, OtherName(talk));
  const Value forecast = Forecast(talk, document, "&cloning=1");
  SkipUnless(forecast["result"].Number() == 0,
             "the router does not clone: " + forecast["message"].Text());
  for (size_t i = 0; i < forecast["nodes"].size(); ++i) {
    Expect(forecast["nodes"].At(i)["new"].Text() != document.Text(kNameElement),
           "with cloning=1 the name would change");
  }
}

constexpr Case DocumentCase(const char* name, const char* promise,
                            void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "POST /settings", .changes = true};
}

constexpr std::array kDocumentRows = {
    DocumentCase("documents.own-settings-change-nothing",
                 "A document of the router's own settings gets 0 and changes nothing.",
                 OwnSettingsChangeNothing),
    DocumentCase("documents.name-is-applied",
                 "A new name is applied, and Kio-Apply-Id is the id that lastApply has.",
                 NameIsApplied),
    DocumentCase("documents.each-apply-has-its-id", "No two applies have the same id.",
                 EachApplyHasItsId),
    DocumentCase("documents.result-is-kept",
                 "GET /result gives the last result document once more.", ResultIsKept),
    DocumentCase("documents.refusal-is-kept",
                 "A refusal has no id, leaves lastApply, and is what GET /result gives.",
                 RefusalIsKept),
    DocumentCase("documents.entities-are-decoded", "Texts have the entities of XML.",
                 EntitiesAreDecoded),
    DocumentCase("documents.any-order", "Elements may come in any order.", AnyOrder),
    DocumentCase("documents.any-case", "The case of names does not matter.", AnyCase),
    DocumentCase("documents.unknown-elements", "Unknown elements are not looked at.",
                 UnknownElements),
    DocumentCase("documents.section-may-be-left-out",
                 "Configurable 0 leaves a section as it is, and gets 0.", SectionMayBeLeftOut),
    DocumentCase("documents.fixed-device-leaves-all",
                 "A device that cannot be changed answers 0 and leaves all as it is.",
                 FixedDeviceLeavesAll),
    DocumentCase("documents.dry-run-leaves-all",
                 "A dry run leaves name, last apply and last result as they are.", DryRunLeavesAll),
    DocumentCase("documents.dry-run-foretells",
                 "A dry run tells the nodes that change, the actions and the link.",
                 DryRunForetells),
    DocumentCase("documents.dry-run-masks-secrets", "A dry run tells no password.",
                 DryRunMasksSecrets),
    DocumentCase(
        "documents.if-match-guards",
        "If-Match with another id gets 412 and changes nothing; the right id and * are taken.",
        IfMatchGuards),
    DocumentCase("documents.cloning-leaves-the-name", "With cloning=1 the name stays as it is.",
                 CloningLeavesTheName),
};

}  // namespace

const std::span<const Case> kDocumentCases(kDocumentRows);

}  // namespace kioctl::conform
