// The login.
#include <array>
#include <cstdlib>

#include "conform/case_tools.h"

namespace kioctl::conform {
namespace {

constexpr char kLongKey[] = "kioAppKey=:";
constexpr size_t kShortKeyDigits = 8;
constexpr long kLoginSeconds = 300;

void ExpectOut(Conversation* talk) { talk->Ask("GET", "/").Is(kStranger).IsOneLine(); }

void ExpectIn(Conversation* talk) { talk->Ask("GET", "/").Is(kGood); }

// An answer to a key. A router that takes none after those of an earlier run is no occasion.
Answer Show(Conversation* talk, const std::string& body) {
  Answer answer = talk->Ask("POST", "/login", body);
  SkipUnless(answer.status != kThrottled,
             "the router takes no keys for " + answer.Header("retry-after") + " s");
  return answer;
}

// A good key at the end forgets the wrong ones.
void ShowGoodKey(Conversation* talk) {
  Show(talk, kLongKey + talk->Key()).Is(kGood);
  ExpectIn(talk);
}

void GuardsAll(Conversation* talk) {
  talk->LogOut();
  for (const char* const path :
       {"/", "/result", "/vars", "/backup?secrets=1", "/nothing-of-that-name"}) {
    talk->Ask("GET", path).Is(kStranger).IsOneLine();
  }
  talk->Ask("OPTIONS", "/device").Is(kStranger);
  talk->Ask("POST", "/settings", "<root></root>").Is(kStranger);
  talk->Ask("PUT", kNameVariable, "x").Is(kStranger);
}

void LongKeyLogsIn(Conversation* talk) {
  talk->LogOut();
  ShowGoodKey(talk);
}

void ShortKeyLogsIn(Conversation* talk) {
  talk->LogOut();
  Show(talk, "BKey=" + talk->Key().substr(0, kShortKeyDigits)).Is(kGood);
  ExpectIn(talk);
}

void WrongKeyIsRefused(Conversation* talk) {
  talk->LogOut();
  Show(talk, kLongKey + talk->Key(0, "no password of this router")).Is(kStranger);
  ExpectOut(talk);
  Show(talk, "no key at all").Is(kStranger);
  ExpectOut(talk);
  ShowGoodKey(talk);
}

void OldKeyIsRefused(Conversation* talk) {
  constexpr int kPast = -3;
  constexpr int kFuture = 6;
  talk->LogOut();
  for (const int slots : {kPast, kFuture}) {
    Show(talk, kLongKey + talk->Key(slots)).Is(kStranger);
    ExpectOut(talk);
  }
  ShowGoodKey(talk);
}

void KeyOfTheNextSlot(Conversation* talk) {
  for (const int slots : {1, 2}) {
    talk->LogOut();
    Show(talk, kLongKey + talk->Key(slots)).Is(kGood);
    ExpectIn(talk);
  }
}

void LogoutEndsIt(Conversation* talk) {
  talk->LogIn();
  ExpectIn(talk);
  talk->Ask("POST", "/logout").Is(kGood);
  ExpectOut(talk);
  talk->Ask("POST", "/logout").Is(kStranger);
}

void BodyHasALimit(Conversation* talk) {
  constexpr size_t kMost = 1024;
  talk->Ask("POST", "/login", std::string(kMost + 1, 'x')).Is(kTooLong);
}

void OnlyPostLogsIn(Conversation* talk) {
  talk->LogIn();
  talk->Get("/login").Is(kBadMethod).Has("allow");
}

void Lapses(Conversation* talk) {
  talk->LogIn();
  talk->LetPass(kLoginSeconds - 10);
  ExpectIn(talk);
  talk->LetPass(kLoginSeconds + 1);
  ExpectOut(talk);
}

void RequestsKeepIt(Conversation* talk) {
  talk->LogIn();
  talk->LetPass(kLoginSeconds - 100);
  talk->Ask("GET", "/vars/rss_DeviceModel").Is(kGood);
  talk->LetPass(kLoginSeconds - 100);
  ExpectIn(talk);
}

void DeviceKeepsNobody(Conversation* talk) {
  talk->LogIn();
  talk->LetPass(kLoginSeconds - 100);
  talk->Device();
  talk->LetPass(101);
  ExpectOut(talk);
}

void WrongKeysCloseTheWay(Conversation* talk) {
  constexpr int kMost = 5;
  constexpr long kLongest = 60;
  talk->LogIn();
  talk->LogOut();
  for (int i = 0; i < kMost; ++i) {
    Show(talk, kLongKey + talk->Key(0, "no password of this router")).Is(kStranger);
  }
  // No key is looked at, not even a good one.
  const Answer closed = talk->Ask("POST", "/login", kLongKey + talk->Key());
  closed.Is(kThrottled).Has("retry-after");
  const long seconds = std::strtol(closed.Header("retry-after").c_str(), nullptr, 10);
  Expect(seconds > 0 && seconds <= kLongest, "Retry-After is " + closed.Header("retry-after"));
  ExpectOut(talk);
  talk->LetPass(seconds + 1);
  ShowGoodKey(talk);
}

constexpr Case LoginCase(const char* name, const char* promise, void (*run)(Conversation* talk),
                         long seconds = 0) {
  return {.name = name, .promise = promise, .run = run, .logs_in = true, .seconds = seconds};
}

constexpr std::array kLoginRows = {
    LoginCase(
        "login.guards-all",
        "Without a login all but GET /device and POST /login gets 401, whether it exists or not.",
        GuardsAll),
    LoginCase("login.long-key-logs-in", "The key behind kioAppKey= and one character logs in.",
              LongKeyLogsIn),
    LoginCase("login.short-key-logs-in", "The first 8 digits of the key behind BKey= log in.",
              ShortKeyLogsIn),
    LoginCase("login.wrong-key-is-refused",
              "The key of another password, or none, gets 401 and lets nobody in.",
              WrongKeyIsRefused),
    LoginCase("login.old-key-is-refused", "The key of a time long past, or far ahead, gets 401.",
              OldKeyIsRefused),
    LoginCase("login.key-of-the-next-slot", "The keys of the next slots of 20 seconds are good.",
              KeyOfTheNextSlot),
    LoginCase("login.logout-ends-it", "POST /logout ends the login at once.", LogoutEndsIt),
    LoginCase("login.body-has-a-limit", "A body of more than 1 KiB gets 413.", BodyHasALimit),
    LoginCase("login.only-post-logs-in", "GET /login gets 405.", OnlyPostLogsIn),
    LoginCase("login.lapses", "A login ends 300 seconds after the last request that needs it.",
              Lapses, 2 * kLoginSeconds),
    LoginCase("login.requests-keep-it",
              "A request that needs the login keeps it for 300 seconds more.", RequestsKeepIt,
              2 * kLoginSeconds - 200),
    LoginCase("login.device-keeps-nobody", "GET /device keeps nobody logged in.", DeviceKeepsNobody,
              kLoginSeconds + 1),
    LoginCase("login.wrong-keys-close-the-way",
              "Five wrong keys within 60 seconds get 429, and no key is looked at for the seconds "
              "in Retry-After.",
              WrongKeysCloseTheWay, 61),
};

}  // namespace

const std::span<const Case> kLoginCases(kLoginRows);

}  // namespace kioctl::conform
