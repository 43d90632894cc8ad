// How the interface describes itself, and what goes for all resources.
#include <array>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

Answer GetWith(Conversation* talk, const std::string& path, const std::string& header) {
  return talk->Send({.path = path, .headers = {header}});
}

void ListsItsResources(Conversation* talk) {
  const Value resources = talk->Get("/").Is(kGood).Json()["resources"];
  Expect(resources.size() > 1, "GET / lists no resources");
  for (size_t i = 0; i < resources.size(); ++i) {
    const Value one = resources.At(i);
    Expect(one["path"].Text().starts_with("/"), "GET /: a resource has no path: " + one.Dump());
    Expect(one["methods"].size() > 0, "GET /: a resource has no methods: " + one.Dump());
    for (const std::string& method : one["methods"].Names()) {
      Expect(!one["methods"][method].Text().empty(),
             "GET /: " + method + " of " + one["path"].Text() + " says nothing");
    }
  }
}

void PageForBrowsers(Conversation* talk) {
  const Answer page = GetWith(talk, "/", "Accept: text/html,*/*;q=0.8");
  page.Is(kGood).HasType("text/html");
}

void DescriptionListsTheSame(Conversation* talk) {
  const Value description = talk->Get("/openapi.json").Is(kGood).Json();
  Expect(description["openapi"].Text().starts_with("3.1"),
         "openapi is " + description["openapi"].Dump());
  const Value resources = talk->Get("/").Json()["resources"];
  for (size_t i = 0; i < resources.size(); ++i) {
    const std::string path = resources.At(i)["path"].Text();
    Expect(!description["paths"][path].IsAbsent(), "the description has no " + path);
  }
  Expect(description["paths"].size() == resources.size(),
         "the description has other resources than the list");
}

void CheckTag(Conversation* talk, const std::string& path) {
  const Answer first = talk->Get(path);
  const std::string tag = first.Is(kGood).Has("etag").Header("etag");
  const Answer again = GetWith(talk, path, "If-None-Match: " + tag);
  again.Is(kNotModified);
  Expect(again.body.empty(), again.call + ": 304 has a body");
  const Answer other = GetWith(talk, path, "If-None-Match: \"another\"");
  other.Is(kGood);
  Expect(other.body == first.body, other.call + ": another body");
}

void DescriptionHasATag(Conversation* talk) { CheckTag(talk, "/openapi.json"); }

void VariablesHaveATag(Conversation* talk) { CheckTag(talk, "/vars"); }

void TagFollowsTheList(Conversation* talk) {
  constexpr char kNode[] = "/uplink/configurable";
  SkipUnless(talk->HasControl(), "what the list depends on is changed by --control URL alone");
  const std::string tag = talk->Get("/vars").Is(kGood).Has("etag").Header("etag");
  const std::string before = talk->Node(kNode);
  talk->SetNode(kNode, before == "0" ? "1" : "0");
  const Answer changed = GetWith(talk, "/vars", "If-None-Match: " + tag);
  talk->SetNode(kNode, before);
  changed.Is(kGood);
  Expect(changed.Header("etag") != tag, "the list has changed, and its ETag has not");
}

void HeadHasNoBody(Conversation* talk) {
  for (const char* const path : {"/device", "/"}) {
    const Answer get = talk->Get(path);
    const std::string said =
        talk->Exchange("HEAD " + std::string(path) + " HTTP/1.1\r\nHost: " + talk->HostName() +
                       "\r\nConnection: close\r\n\r\n");
    Expect(said.starts_with("HTTP/1.1 " + std::to_string(get.status)),
           "HEAD " + std::string(path) + " says " + Shown(said));
    const size_t head = said.find("\r\n\r\n");
    Expect(head != std::string::npos && head + 4 == said.size(),
           "HEAD " + std::string(path) + " has a body");
  }
}

void OptionsTellsMethods(Conversation* talk) {
  const Answer answer = talk->Send({.method = "OPTIONS", .path = "/device"});
  const std::string allow = answer.Is(kEmpty).Has("allow").Header("allow");
  Expect(Contains(allow, "GET") && Contains(allow, "HEAD") && !Contains(allow, "POST"),
         "Allow is " + allow);
}

void OtherMethodIsRefused(Conversation* talk) {
  const Answer answer = talk->Delete("/device");
  const std::string allow = answer.Is(kBadMethod).IsOneLine().Has("allow").Header("allow");
  Expect(Contains(allow, "GET"), "Allow is " + allow);
}

void NothingIsAbsent(Conversation* talk) {
  talk->Get("/nothing-of-that-name").Is(kAbsent).IsOneLine();
}

void CheckGuards(const Answer& answer) {
  Expect(answer.Header("x-content-type-options") == "nosniff",
         answer.call + " lacks X-Content-Type-Options: nosniff");
  Expect(Contains(answer.Header("cache-control"),
                  answer.Header("etag").empty() ? "no-store" : "no-cache"),
         answer.call + ": Cache-Control is " + Shown(answer.Header("cache-control")));
}

void AnswersCarryGuards(Conversation* talk) {
  CheckGuards(talk->Get("/device"));
  CheckGuards(talk->Get("/nothing-of-that-name"));
  CheckGuards(talk->Get("/openapi.json"));
}

constexpr std::array kInterfaceRows = {
    Case{"interface.lists-its-resources",
         "GET / lists the resources, each with its methods and a sentence for each.",
         ListsItsResources},
    Case{"interface.page-for-browsers", "A client that prefers text/html gets a page at GET /.",
         PageForBrowsers},
    Case{"interface.description-lists-the-same",
         "GET /openapi.json describes the resources that GET / lists.", DescriptionListsTheSame,
         "GET /openapi.json"},
    Case{"interface.description-has-a-tag",
         "/openapi.json has an ETag; who names it gets 304 without a body.", DescriptionHasATag,
         "GET /openapi.json"},
    Case{"interface.variables-have-a-tag",
         "The list of variables has an ETag; who names it gets 304 without a body.",
         VariablesHaveATag, "GET /vars"},
    Case{"interface.tag-follows-the-list",
         "The ETag of the list of variables is another one when the list has changed.",
         TagFollowsTheList, "GET /vars"},
    Case{"interface.head-has-no-body", "HEAD is served wherever GET is, without the body.",
         HeadHasNoBody},
    Case{"interface.options-tells-methods", "OPTIONS answers 204 with the methods in Allow.",
         OptionsTellsMethods},
    Case{"interface.other-method-is-refused",
         "Another method gets 405, and Allow names the right ones.", OtherMethodIsRefused},
    Case{"interface.nothing-is-absent", "What there is not gets 404 with a line.", NothingIsAbsent},
    Case{"interface.answers-carry-guards",
         "Every answer says nosniff, and no-store unless it has an ETag.", AnswersCarryGuards,
         "GET /openapi.json"},
};

}  // namespace

const std::span<const Case> kInterfaceCases(kInterfaceRows);

}  // namespace kioctl::conform
