#include "conform/case_tools.h"

namespace kioctl::conform {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string NameOf(Conversation* talk) { return talk->Device()["name"].Text(); }

std::string OtherName(Conversation* talk) {
  SkipUnless(!talk->facts().leaves_all_as_is, "the router leaves all as it is");
  return NameOf(talk) == "Conform-A" ? "Conform-B" : "Conform-A";
}

std::string LastApply(Conversation* talk) { return talk->Device()["lastApply"]["id"].Text(); }

Document Named(Conversation* talk, const std::string& name) {
  Document document(talk->facts());
  document.Set(kNameElement, name);
  return document;
}

Value Forecast(Conversation* talk, const Document& document, const std::string& query) {
  const Answer answer = talk->Post("/settings?dry-run=1" + query, document.Xml());
  return answer.Is(kGood).Json();
}

Answer ApplyAndGo(Conversation* talk, const Document& document, const std::string& query) {
  // No case applies more than another name.
  const std::string& link = talk->facts().dropped_link;
  SkipUnless(link.empty() || talk->means().disruptive,
             "the link of this machine would drop (" + link + "): --disruptive");
  return talk->Post("/settings" + (query.empty() ? "" : "?" + query), document.Xml());
}

Answer Apply(Conversation* talk, const Document& document, const std::string& query) {
  Answer answer = ApplyAndGo(talk, document, query);
  talk->Settle(answer.status == kGood ? answer.Result().wait : 0);
  return answer;
}

std::string ARadio(Conversation* talk) {
  SkipUnless(!talk->facts().leaves_all_as_is, "the router leaves all as it is");
  const std::vector<std::string> radios = RadiosOf(talk->facts());
  for (const std::string& radio : radios) {
    if (Document(talk->facts()).Has("Device/" + radio + "/WlEnbl")) {
      return radio;
    }
  }
  Skip("the router has no radio that a document may change");
}

std::string RadioVariable(const std::string& radio, const std::string& element) {
  return (radio == "Wireless5" ? "rss_Wl5_" : "rss_Wl2_") + element;
}

std::string NameBatch(const std::string& name) {
  return "rss_DeviceName=" + name + "&rss_Act_ApplyAllRssVars=";
}

void SkipUnlessVariablesApply(Conversation* talk) {
  const Facts& facts = talk->facts();
  SkipUnless(facts.Offers("POST /vars") && facts.Offers("POST /actions/{name}"),
             "the router offers no actions");
  const Value device = facts.settings["Device"];
  for (const char* const radio : {"Wireless2.4", "Wireless5"}) {
    // Applying variables removes the rules, and only a document for an access control that is on
    // brings them back.
    const Value control = device[radio]["AccessControl"];
    SkipUnless(control["AcRule"].size() == 0 ||
                   (facts.way_back == WayBack::kArchive && control["WlAcEnbl"].Text() == "1"),
               std::string("applying variables would lose the access rules of ") + radio);
  }
  const Value forecast = talk->Post("/vars?dry-run=1", NameBatch(OtherName(talk))).Is(kGood).Json();
  SkipUnless(forecast["result"].Number() == 0,
             "the router does not apply its variables as they are: " + forecast["message"].Text());
  SkipUnless(talk->means().disruptive || !forecast["link"]["drops"].Flag(),
             "the link of this machine would drop: --disruptive");
}

}  // namespace kioctl::conform
