// Variables, one by one.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

constexpr size_t kLongestValue = 127;
constexpr char kAllValues[] = "/vars?values=1";

std::string VarPath(const std::string& name) { return "/vars/" + name; }

// What a PUT of the name is answered with; a router that takes none gives no occasion.
void SetName(Conversation* talk, const std::string& name) {
  const Answer answer = talk->Put(kNameVariable, name);
  SkipUnless(answer.status != kDenied, "the router's name is locked");
  answer.Is(kGood).HasCode(kDoneCode);
}

// Another name than the present one. Setting alone stores nothing, so any router will do.
std::string AnyOtherName(Conversation* talk) {
  return NameOf(talk) == "Conform-A" ? "Conform-B" : "Conform-A";
}

// A variable that can be read by itself: without an index in its name.
bool IsSingle(const Value& variable) { return !Contains(variable["name"].Text(), "??"); }

void ListTellsAll(Conversation* talk) {
  const Value variables = talk->Get("/vars").Is(kGood).Json()["variables"];
  Expect(variables.size() > 0, "GET /vars lists no variables");
  for (size_t i = 0; i < variables.size(); ++i) {
    const Value one = variables.At(i);
    const std::string kind = one["kind"].Text();
    Expect(one["name"].Text().starts_with("rss_") && one["documentPath"].Text().starts_with("/") &&
               (kind == "text" || kind == "integer" || kind == "keyword") &&
               one["access"]["read"].Is(Value::Kind::kFlag) &&
               one["changeableNow"].Is(Value::Kind::kFlag),
           "a variable is not described: " + one.Dump());
    Expect(kind != "keyword" || one["words"].size() > 0, one["name"].Text() + " has no words");
  }
}

void EachIsRead(Conversation* talk) {
  const Value list = talk->Get("/vars").Is(kGood).Json()["variables"];
  const Value values =
      talk->Get(std::string(kAllValues) + "&secrets=1").Is(kGood).Json()["variables"];
  std::map<std::string, std::string> together;
  for (size_t i = 0; i < values.size(); ++i) {
    together[values.At(i)["name"].Text()] = values.At(i)["value"].Text();
  }
  for (size_t i = 0; i < list.size(); ++i) {
    const std::string name = list.At(i)["name"].Text();
    if (!IsSingle(list.At(i)) || !list.At(i)["access"]["read"].Flag()) {
      continue;
    }
    const Answer answer = talk->Get(VarPath(name));
    answer.Is(kGood).HasType("text/plain");
    const auto value = together.find(name);
    Expect(value != together.end(), "GET /vars?values=1 lacks " + name);
    Expect(value->second == answer.body,
           name + " is " + Shown(answer.body) + ", and among all values " + Shown(value->second));
  }
}

void SecretsAreMasked(Conversation* talk) {
  const Answer masked = talk->Get(kAllValues);
  const Value variables = masked.Is(kGood).Json()["variables"];
  bool found = false;
  for (size_t i = 0; i < variables.size(); ++i) {
    const Value one = variables.At(i);
    found = found || (one["name"].Text() == "rss_DevicePwd" && one["secret"].Flag() &&
                      one["value"].Text() == "********");
  }
  Expect(found, "GET /vars?values=1 does not mask rss_DevicePwd");
  for (const std::string& secret : talk->facts().secrets) {
    Expect(!Contains(masked.body, "\"" + secret + "\""), "GET /vars?values=1 tells a secret");
  }
}

void ChangedSince(Conversation* talk) {
  const std::string name = OtherName(talk);
  const std::string id = talk->Get(kAllValues).Is(kGood).Json()["settings"].Text();
  Apply(talk, Named(talk, name)).Result(kDoneCode);
  const Value since = talk->Get(std::string(kAllValues) + "&changed-since=" + id).Is(kGood).Json();
  SkipUnless(!since["complete"].Flag(), "the router does not know the earlier settings any more");
  bool found = false;
  for (size_t i = 0; i < since["variables"].size(); ++i) {
    const Value one = since["variables"].At(i);
    found = found || (one["name"].Text() == "rss_DeviceName" && one["value"].Text() == name);
    Expect(one["name"].Text() != "rss_DeviceModel", "the model is told as changed");
  }
  Expect(found, "changed-since does not list the name: " + since["variables"].Dump());
  const Value unknown = talk->Get(std::string(kAllValues) + "&changed-since=0123").Is(kGood).Json();
  Expect(unknown["complete"].Flag(),
         "since settings that nobody knows all variables are to be listed");
}

void PathsAreNames(Conversation* talk) {
  const std::string name = talk->Get(kNameVariable).Is(kGood).body;
  for (const char* const path :
       {"/vars/Device/DeviceName", "/vars/Device%2FDeviceName", "/vars//Device/DeviceName"}) {
    const Answer answer = talk->Get(path);
    Expect(answer.Is(kGood).body == name, answer.call + " is " + Shown(answer.body));
  }
}

void NodeIsTold(Conversation* talk) {
  const Answer answer = talk->Get(std::string(kNameVariable) + "?path=1");
  Expect(answer.Is(kGood).body.starts_with("/"), answer.call + " is " + Shown(answer.body));
  talk->Get(std::string(kNameVariable) + "?path=2").Is(kMalformed).IsOneLine();
}

void UnknownIsAbsent(Conversation* talk) {
  talk->Get("/vars/rss_NoSuchThing").Is(kAbsent).IsOneLine();
  talk->Put("/vars/rss_NoSuchThing", "x").Is(kAbsent).HasCode(kNotTakenCode);
  talk->Get("/vars/Device/NoSuchThing").Is(kAbsent);
}

void ActionsAreNone(Conversation* talk) {
  const std::string id = LastApply(talk);
  for (const char* const name : {"rss_Act_ApplyAllRssVars", "rss_Act_CommitRssVars"}) {
    talk->Get(VarPath(name)).Is(kAbsent);
    talk->Put(VarPath(name), "").Is(kAbsent);
  }
  Expect(LastApply(talk) == id, "reading an action has applied something");
}

void SetIsReadBack(Conversation* talk) {
  const std::string stored = NameOf(talk);
  const std::string name = AnyOtherName(talk);
  SetName(talk, name);
  Expect(talk->Get(kNameVariable).body == name, "what was set is not read back");
  Expect(NameOf(talk) == stored,
         "setting a variable has stored it: the name is " + Shown(NameOf(talk)));
}

void SetIsForgotten(Conversation* talk) {
  const std::string stored = NameOf(talk);
  SetName(talk, AnyOtherName(talk));
  talk->Delete("/vars").Is(kGood);
  const std::string read = talk->Get(kNameVariable).body;
  Expect(read == stored, "what was set is not forgotten: " + Shown(read));
}

void ExchangeEndsASeries(Conversation* talk) {
  const std::string stored = NameOf(talk);
  SetName(talk, AnyOtherName(talk));
  Apply(talk, Document(talk->facts())).Result(kDoneCode);
  const std::string read = talk->Get(kNameVariable).body;
  Expect(read == stored, "a document does not end the series: " + Shown(read));
}

void ReadOnlyIsRefused(Conversation* talk) {
  const std::string model = talk->Get("/vars/rss_DeviceModel").Is(kGood).body;
  talk->Put("/vars/rss_DeviceModel", "Another").Is(kRefusedValue).HasCode(kNotTakenCode);
  Expect(talk->Get("/vars/rss_DeviceModel").body == model, "a variable that is read only was set");
}

// A variable that can be set now, of a kind.
std::string Settable(Conversation* talk, const std::string& kind, const std::string& check = "") {
  const Value list = talk->Get("/vars").Is(kGood).Json()["variables"];
  for (size_t i = 0; i < list.size(); ++i) {
    const Value one = list.At(i);
    if (IsSingle(one) && one["kind"].Text() == kind && one["access"]["write"].Flag() &&
        one["changeableNow"].Flag() && Contains(one["check"].Text(), check)) {
      return one["name"].Text();
    }
  }
  Skip("no such variable can be set now");
}

void WordsAreChecked(Conversation* talk) {
  const std::string path = VarPath(Settable(talk, "keyword"));
  const std::string before = talk->Get(path).Is(kGood).body;
  talk->Put(path, "NoSuchWord").Is(kRefusedValue).HasCode(kLengthCode);
  Expect(talk->Get(path).body == before, "a word that was refused is read back");
  talk->Put(path, before).Is(kGood).HasCode(kDoneCode);
}

void AddressesAreChecked(Conversation* talk) {
  const std::string path = VarPath(Settable(talk, "text", "an IPv4 address"));
  talk->Put(path, "192.0.2.300").Is(kRefusedValue).HasCode(kNotTakenCode);
  talk->Put(path, "192.0.2.30").Is(kGood).HasCode(kDoneCode);
}

void LongValuesAreRefused(Conversation* talk) {
  talk->Put(kNameVariable, std::string(kLongestValue + 1, 'x'))
      .Is(kRefusedValue)
      .HasCode(kLengthCode);
}

void ValidateSetsNothing(Conversation* talk) {
  const std::string before = talk->Get(kNameVariable).Is(kGood).body;
  talk->Post(std::string(kNameVariable) + "/validate", AnyOtherName(talk))
      .Is(kGood)
      .HasCode(kDoneCode);
  Expect(talk->Get(kNameVariable).body == before, "a value that was only checked is set");
  talk->Post(std::string(kNameVariable) + "/validate", std::string(kLongestValue + 1, 'x'))
      .Is(kRefusedValue)
      .HasCode(kLengthCode);
}

void IndexBeyondIsAbsent(Conversation* talk) {
  talk->Get("/vars/rss_Wl2_Acl_R99_MAC").Is(kAbsent);
  talk->Get("/vars/rss_Ext_Ssv_S99_BSSID").Is(kAbsent);
}

void LockedSectionIsDenied(Conversation* talk) {
  const Value list = talk->Get("/vars").Is(kGood).Json()["variables"];
  for (size_t i = 0; i < list.size(); ++i) {
    const Value one = list.At(i);
    if (IsSingle(one) && one["access"]["write"].Flag() && !one["changeableNow"].Flag()) {
      talk->Put(VarPath(one["name"].Text()), "1").Is(kDenied).HasCode(kLockedCode);
      return;
    }
  }
  Skip("all sections can be changed now");
}

void ApplyStoresAll(Conversation* talk) {
  SkipUnlessVariablesApply(talk);
  const std::string name = OtherName(talk);
  SetName(talk, name);
  talk->Post("/actions/VerifyAllRssVars").Is(kGood).HasCode(kDoneCode);
  const Answer answer = talk->Post("/actions/ApplyAllRssVars");
  answer.Is(kGood).HasCode(kDoneCode);
  Expect(NameOf(talk) == name,
         "an apply has stored " + Shown(NameOf(talk)) + " and not " + Shown(name));
  Expect(LastApply(talk) == answer.Has("kio-apply-id").Header("kio-apply-id"),
         "lastApply is another one");
  talk->Post("/actions/CommitRssVars").Is(kGood).HasCode(kDoneCode);
  talk->Settle(2);
}

void UnknownActionIsAbsent(Conversation* talk) {
  talk->Post("/actions/NoSuchAction").Is(kAbsent).HasCode(kNotTakenCode);
}

void SurveyNeedsARadioUplink(Conversation* talk) {
  SkipUnless(talk->facts().Offers("GET /vars/{name}"), "the router does not tell its uplink");
  const std::string type = talk->Get("/vars/rss_Upl_HardwareType").Is(kGood).body;
  SkipUnless(type != "WWan802.11", "the uplink is wireless");
  const Answer answer = talk->Post("/actions/SiteSurvey");
  Expect(answer.status != kGood, "a survey is begun although the uplink is " + type);
  answer.HasCode(kNotTakenCode);
}

constexpr Case ReadCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {.name = name, .promise = promise, .run = run, .needs = "GET /vars/{name}"};
}

constexpr Case SetCase(const char* name, const char* promise, void (*run)(Conversation* talk)) {
  return {
      .name = name, .promise = promise, .run = run, .needs = "PUT /vars/{name}", .changes = true};
}

constexpr std::array kVariableRows = {
    Case{"variables.list-tells-all",
         "GET /vars lists the variables with name, path, kind, access and whether they can be "
         "changed now.",
         ListTellsAll, "GET /vars"},
    SetCase("variables.each-is-read",
            "Each variable is read as text/plain, with the value that it has among all values.",
            EachIsRead),
    SetCase("variables.secrets-are-masked", "GET /vars?values=1 masks passwords and keys.",
            SecretsAreMasked),
    SetCase("variables.changed-since",
            "changed-since lists the variables that have changed since an apply, or all when it is "
            "not known.",
            ChangedSince),
    ReadCase("variables.paths-are-names",
             "A variable is also named by the path of its element, with / or %2F, with the first "
             "slash or without it.",
             PathsAreNames),
    ReadCase("variables.node-is-told", "With path=1 the answer is the path of the variable's node.",
             NodeIsTold),
    SetCase("variables.unknown-is-absent",
            "A variable that there is not gets 404, and code 2 when it is set.", UnknownIsAbsent),
    SetCase("variables.actions-are-none",
            "Action variables do not exist among the variables, and are not run.", ActionsAreNone),
    SetCase("variables.set-is-read-back",
            "What is set is read back, and is not stored before it is applied.", SetIsReadBack),
    SetCase("variables.set-is-forgotten", "DELETE /vars forgets what was set and not applied.",
            SetIsForgotten),
    SetCase("variables.exchange-ends-a-series",
            "A settings document forgets what was set and not applied.", ExchangeEndsASeries),
    SetCase("variables.read-only-is-refused",
            "A variable that cannot be set gets 422 with code 2, and keeps its value.",
            ReadOnlyIsRefused),
    SetCase("variables.words-are-checked",
            "What is none of a variable's words gets 422 with code 10; its own word is taken.",
            WordsAreChecked),
    SetCase("variables.addresses-are-checked",
            "What is no IPv4 address gets 422 with code 2; an address is taken.",
            AddressesAreChecked),
    SetCase("variables.long-values-are-refused",
            "A value of more than 127 characters gets 422 with code 10.", LongValuesAreRefused),
    SetCase("variables.validate-sets-nothing",
            "A check tells whether a value is taken, and sets nothing.", ValidateSetsNothing),
    ReadCase("variables.index-beyond-is-absent", "A rule or a site beyond their number gets 404.",
             IndexBeyondIsAbsent),
    SetCase("variables.locked-section-is-denied",
            "A variable of a section that cannot be changed now gets 403 with code 1.",
            LockedSectionIsDenied),
    SetCase("variables.apply-stores-all",
            "ApplyAllRssVars stores what was set, and its id is that of lastApply.",
            ApplyStoresAll),
    Case{"variables.unknown-action-is-absent", "An action that there is not gets 404 with code 2.",
         UnknownActionIsAbsent, "POST /actions/{name}"},
    Case{.name = "variables.survey-needs-a-radio-uplink",
         .promise = "SiteSurvey gets code 2 unless the uplink is wireless.",
         .run = SurveyNeedsARadioUplink,
         .needs = "POST /actions/{name}",
         .changes = true},
};

}  // namespace

const std::span<const Case> kVariableCases(kVariableRows);

}  // namespace kioctl::conform
