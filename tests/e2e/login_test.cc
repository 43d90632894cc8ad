// Who may come in: the login, and what guards every route.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app_key.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr char kPassword[] = "change-me-soon";
constexpr char kClient[] = "127.0.0.1";
constexpr char kOther[] = "127.0.0.2";

std::string Key(long slot, const std::string& address = kClient,
                const std::string& password = kPassword) {
  return AppKey(slot, address, password);
}

// A request head without its end, then what is added.
std::string Head(const std::string& method, const std::string& path, size_t length = 0) {
  return method + " " + path +
         " HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: " + std::to_string(length) + "\r\n";
}

class LoginTest : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("KIO_TEST_UPTIME", host_.dir().File("uptime").c_str(), 1);
    setenv("LD_PRELOAD", KIO_FAKE_UPTIME, 1);
    // A sanitizer wants to be loaded first.
    setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
    SetUptime(1000);
    ASSERT_TRUE(host_.StartClosed());
    unsetenv("LD_PRELOAD");
  }

  void SetUptime(long uptime) {
    // In one step, so that the host reads the old number or the new one.
    WriteFile(host_.dir().File("uptime.new"), std::to_string(uptime));
    ASSERT_EQ(
        std::rename(host_.dir().File("uptime.new").c_str(), host_.dir().File("uptime").c_str()), 0);
  }

  HttpResponse Send(const std::string& request, const std::string& from = kClient) {
    Connection connection(host_.port(), from);
    return connection.Send(request) ? connection.Read() : HttpResponse();
  }
  int Status(const std::string& method, const std::string& path,
             const std::string& from = kClient) {
    return Send(Head(method, path) + "\r\n", from).status;
  }
  HttpResponse Login(const std::string& text, const std::string& from = kClient) {
    return Send(Head("POST", "/login", text.size()) + "\r\n" + text, from);
  }
  int LoginStatus(const std::string& text, const std::string& from = kClient) {
    return Login(text, from).status;
  }

  HostProcess host_;
};

TEST_F(LoginTest, LogsInIsServedLapsesAndIsRefused) {
  EXPECT_EQ(Status("GET", "/result"), 401);
  EXPECT_EQ(LoginStatus("kioAppKey=:" + Key(50)), 200);
  EXPECT_EQ(Status("GET", "/vars/rss_DeviceName"), 200);
  SetUptime(1299);
  EXPECT_EQ(Status("GET", "/vars/rss_DeviceName"), 200);
  SetUptime(1598);
  EXPECT_EQ(Status("GET", "/vars/rss_DeviceName"), 200);
  SetUptime(1898);
  EXPECT_EQ(Status("GET", "/vars/rss_DeviceName"), 401);
  EXPECT_EQ(Status("GET", "/device"), 200);
  EXPECT_EQ(LoginStatus("BKey=" + Key(94).substr(0, 8)), 200);
  EXPECT_EQ(Status("GET", "/vars/rss_DeviceName"), 200);
}

TEST_F(LoginTest, WhatIsOpenToAllKeepsNobodyLoggedIn) {
  EXPECT_EQ(LoginStatus("kioAppKey=:" + Key(50)), 200);
  SetUptime(1299);
  EXPECT_EQ(Status("GET", "/device"), 200);
  EXPECT_EQ(LoginStatus("kioAppKey=:" + Key(1)), 401);
  SetUptime(1300);
  EXPECT_EQ(Status("GET", "/result"), 401);
}

TEST_F(LoginTest, EveryRouteIsRefusedWithoutLogin) {
  const std::vector<std::string> paths = {"/settings",
                                          "/settings/confirm",
                                          "/backup",
                                          "/restore",
                                          "/result",
                                          "/events",
                                          "/vars",
                                          "/vars/rss_DeviceName",
                                          "/vars/rss_DeviceName/validate",
                                          "/actions/CommitRssVars",
                                          "/logout",
                                          "/firmware",
                                          "/nothing",
                                          "/",
                                          "/device/",
                                          "//device",
                                          "/device/x",
                                          "/login/",
                                          "/login%00",
                                          "*"};
  const std::string before = host_.Dump();
  for (const std::string& path : paths) {
    for (const char* const method : {"GET", "POST", "PUT", "DELETE", "PATCH", "OPTIONS"}) {
      const bool open = path == "/login%00" && std::string(method) == "POST";
      EXPECT_EQ(Status(method, path), open ? 400 : 401) << method << " " << path;
    }
  }
  for (const char* const method : {"POST", "PUT", "DELETE", "OPTIONS"}) {
    EXPECT_EQ(Status(method, "/device"), 401) << method;
  }
  EXPECT_EQ(Status("GET", "/login"), 401);
  EXPECT_EQ(Status("GET", "/device"), 200);
  EXPECT_EQ(Status("GET", "/device?x=1"), 200);
  EXPECT_EQ(host_.Dump(), before);
}

TEST_F(LoginTest, HeadIsOpenWhereGetIs) {
  const auto head = [this](const std::string& path) {
    Connection connection(host_.port());
    EXPECT_TRUE(connection.Send(Head("HEAD", path) + "\r\n"));
    return connection.ReadHead().status;
  };
  EXPECT_EQ(head("/device"), 200);
  for (const char* const path :
       {"/vars", "/vars/rss_DeviceName", "/result", "/login", "/nothing"}) {
    EXPECT_EQ(head(path), 401) << path;
  }
  // A target in absolute form is the same resource.
  EXPECT_EQ(Status("GET", "http://127.0.0.1/device"), 200);
  EXPECT_EQ(Status("GET", "http://127.0.0.1/vars"), 401);
  EXPECT_EQ(Status("OPTIONS", "http://127.0.0.1"), 401);
}

TEST_F(LoginTest, RefusalsSayHowToLogIn) {
  const HttpResponse response = Send(Head("GET", "/vars") + "\r\n");
  EXPECT_EQ(response.status, 401);
  EXPECT_EQ(response.Header("WWW-Authenticate"), "KioAppKey realm=\"router\"");
  EXPECT_EQ(response.body, "log in first: POST /login\n");
}

TEST_F(LoginTest, KeyIsGoodAgainWithinItsSlotsOnly) {
  const std::string text = "kioAppKey= " + Key(50);
  SetUptime(939);
  EXPECT_EQ(LoginStatus(text), 401);
  for (const long uptime : {940L, 1000L, 1039L}) {
    SetUptime(uptime);
    EXPECT_EQ(LoginStatus(text), 200) << uptime;
  }
  SetUptime(1040);
  EXPECT_EQ(LoginStatus(text), 401);
}

TEST_F(LoginTest, KeyIsBoundToTheAddressThatSendsIt) {
  EXPECT_EQ(LoginStatus("kioAppKey= " + Key(50), kOther), 401);
  EXPECT_EQ(LoginStatus("kioAppKey= " + Key(50, kOther), kOther), 200);
  EXPECT_EQ(Status("GET", "/vars/rss_DeviceName", kOther), 200);
  EXPECT_EQ(Status("GET", "/vars/rss_DeviceName", kClient), 401);
}

TEST_F(LoginTest, AddressIsNeverTakenFromAHeader) {
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, kOther), kOther), 200);
  for (const char* const header : {"X-Forwarded-For: 127.0.0.2", "Forwarded: for=127.0.0.2",
                                   "X-Real-IP: 127.0.0.2", "Client-IP: 127.0.0.2"}) {
    EXPECT_EQ(Send(Head("GET", "/vars") + header + "\r\n\r\n").status, 401) << header;
  }
}

TEST_F(LoginTest, LogoutEndsOneClientOnly) {
  EXPECT_EQ(LoginStatus("BKey=" + Key(50)), 200);
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, kOther), kOther), 200);
  const HttpResponse logout = Send(Head("POST", "/logout") + "\r\n");
  EXPECT_EQ(logout.status, 200);
  EXPECT_EQ(logout.body, "logged out\n");
  EXPECT_EQ(Status("GET", "/vars"), 401);
  EXPECT_EQ(Status("POST", "/logout"), 401);
  EXPECT_EQ(Status("GET", "/vars", kOther), 200);
}

TEST_F(LoginTest, FiveWrongKeysWithinAMinuteBlockTheAddress) {
  const std::string good = "kioAppKey= " + Key(50);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(LoginStatus(i == 2 ? "no key at all" : "BKey=00000000"), 401) << i;
  }
  const HttpResponse blocked = Login(good);
  EXPECT_EQ(blocked.status, 429);
  EXPECT_EQ(blocked.Header("Retry-After"), "60");
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, kOther), kOther), 200);
  SetUptime(1059);
  EXPECT_EQ(Login("kioAppKey= " + Key(53)).Header("Retry-After"), "1");
  EXPECT_EQ(Status("GET", "/vars"), 401);
  SetUptime(1060);
  EXPECT_EQ(LoginStatus("kioAppKey= " + Key(53)), 200);
}

TEST_F(LoginTest, ClientThatIsLoggedInStaysSoWhileItsAddressIsBlocked) {
  EXPECT_EQ(LoginStatus("BKey=" + Key(50)), 200);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(LoginStatus("BKey=00000000"), 401);
  }
  EXPECT_EQ(LoginStatus("BKey=" + Key(50)), 429);
  EXPECT_EQ(Status("GET", "/vars"), 200);
}

TEST_F(LoginTest, WrongKeysFarApartDoNotBlock) {
  for (int i = 0; i < 12; ++i) {
    SetUptime(1000 + 20L * i);
    EXPECT_EQ(LoginStatus("BKey=00000000"), 401) << i;
  }
}

TEST_F(LoginTest, LapsedClientsAreSweptOnceAMinute) {
  EXPECT_EQ(LoginStatus("BKey=" + Key(50)), 200);
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, kOther), kOther), 200);
  SetUptime(1250);
  EXPECT_EQ(Status("GET", "/vars"), 200);
  SetUptime(1310);
  EXPECT_EQ(Status("GET", "/device"), 200);
  EXPECT_TRUE(host_.WaitForOutput("lapsed 127.0.0.2\n"));
  EXPECT_THAT(host_.Output(), Not(HasSubstr("lapsed 127.0.0.1\n")));
}

TEST_F(LoginTest, SixtyFourClientsAtMost) {
  for (int i = 1; i <= 64; ++i) {
    const std::string address = "127.0.1." + std::to_string(i);
    ASSERT_EQ(LoginStatus("BKey=" + Key(50, address), address), 200) << address;
  }
  const std::string late = "127.0.2.1";
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, late), late), 503);
  // The first of them lapses 300 seconds after its login.
  EXPECT_EQ(Login("BKey=" + Key(50, late), late).Header("Retry-After"), "300");
  // Those who are in may log in again, and make room.
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, "127.0.1.7"), "127.0.1.7"), 200);
  EXPECT_EQ(Status("POST", "/logout", "127.0.1.7"), 200);
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, late), late), 200);
  EXPECT_EQ(LoginStatus("BKey=" + Key(50, kOther), kOther), 503);
  // As do those who have lapsed.
  SetUptime(1300);
  EXPECT_EQ(LoginStatus("BKey=" + Key(65, kOther), kOther), 200);
}

TEST_F(LoginTest, OtherNamesThanTheRoutersAreRefused) {
  const auto ask = [this](const std::string& name) {
    std::string request = "GET /device HTTP/1.1\r\nHost: ";
    request.append(name).append("\r\n\r\n");
    return Send(request).status;
  };
  const std::string port = ":" + std::to_string(host_.port());
  for (const std::string& name : {std::string("127.0.0.1"), "127.0.0.1" + port, "localhost" + port,
                                  std::string("router"), std::string("192.168.1.1")}) {
    EXPECT_EQ(ask(name), 200) << name;
  }
  for (const std::string& name :
       {"rebound.example" + port, std::string("127.0.0.2"), std::string("10.0.0.1"),
        std::string("127.0.0.1.rebound.example"), std::string("router.example")}) {
    EXPECT_EQ(ask(name), 421) << name;
  }
  EXPECT_EQ(Send("GET /device HTTP/1.0\r\n\r\n").status, 421);
  EXPECT_EQ(Send("POST /login HTTP/1.1\r\nHost: rebound.example\r\nContent-Length: 13\r\n\r\n"
                 "BKey=" +
                 Key(50).substr(0, 8))
                .status,
            421);
  EXPECT_EQ(Status("GET", "/vars"), 401);
}

TEST_F(LoginTest, ChangesFromOtherOriginsAreRefused) {
  EXPECT_EQ(LoginStatus("BKey=" + Key(50)), 200);
  const std::string host = "127.0.0.1:" + std::to_string(host_.port());
  const auto put = [&](const std::string& origin) {
    return Send("PUT /vars/rss_DeviceName HTTP/1.1\r\nHost: " + host + "\r\nOrigin: " + origin +
                "\r\nContent-Length: 4\r\n\r\nLoft")
        .status;
  };
  EXPECT_EQ(put("http://" + host), 200);
  EXPECT_EQ(put("HTTP://" + host), 200);
  for (const std::string& origin :
       {std::string("null"), std::string("http://evil.example"), std::string("http://127.0.0.1"),
        "https://" + host, "http://" + host + ".evil.example", std::string(), std::string("*")}) {
    EXPECT_EQ(put(origin), 403) << origin;
  }
  EXPECT_EQ(Send("GET /vars HTTP/1.1\r\nHost: " + host + "\r\nOrigin: http://evil.example\r\n\r\n")
                .status,
            200);
  EXPECT_EQ(Send("POST /logout HTTP/1.1\r\nHost: " + host +
                 "\r\nOrigin: http://evil.example\r\nContent-Length: 0\r\n\r\n")
                .status,
            403);
  EXPECT_EQ(Status("GET", "/vars"), 200);
}

TEST_F(LoginTest, OtherContentTypesAreRefused) {
  EXPECT_EQ(LoginStatus("BKey=" + Key(50)), 200);
  const auto put = [&](const std::string& type) {
    return Send(Head("PUT", "/vars/rss_DeviceName", 4) + "Content-Type: " + type + "\r\n\r\nLoft")
        .status;
  };
  EXPECT_EQ(put("text/plain; charset=utf-8"), 200);
  EXPECT_EQ(put("application/x-www-form-urlencoded"), 200);
  EXPECT_EQ(put("multipart/form-data; boundary=x"), 415);
  EXPECT_EQ(put("application/pdf"), 415);
  EXPECT_EQ(put("application/json"), 200);
}

TEST_F(LoginTest, AllAnswersAreMarkedForBrowsers) {
  const std::string login = "BKey=" + Key(50).substr(0, 8);
  for (const std::string& request :
       {Head("GET", "/device") + "\r\n", Head("GET", "/vars") + "\r\n",
        Head("POST", "/login", login.size()) + "\r\n" + login,
        Head("GET", "/vars/rss_DeviceName") + "\r\n", Head("GET", "/nothing") + "\r\n",
        Head("DELETE", "/vars") + "\r\n",
        std::string("GET /device HTTP/1.1\r\nHost: evil.example\r\n\r\n")}) {
    const HttpResponse response = Send(request);
    EXPECT_NE(response.status, 0);
    EXPECT_EQ(response.Header("X-Content-Type-Options"), "nosniff") << request;
    EXPECT_EQ(response.Header("Cache-Control"), "no-store") << request;
  }
}

TEST_F(LoginTest, HostSaysWhoCameAndNothingSecret) {
  EXPECT_EQ(LoginStatus("BKey=00000000"), 401);
  EXPECT_EQ(LoginStatus("kioAppKey= " + Key(50)), 200);
  EXPECT_EQ(Status("POST", "/logout"), 200);
  // The library writes to its log, too.
  EXPECT_EQ(LoginStatus("kioAppKey= " + Key(50)), 200);
  EXPECT_EQ(Post(host_.port(), "/vars", "rss_DeviceName=Attic").status, 200);
  const std::string said = host_.Output() + host_.Errors();
  EXPECT_THAT(said, HasSubstr("wrong key from 127.0.0.1\nlogin 127.0.0.1\nlogout 127.0.0.1\n"));
  const std::string log = ReadFile(host_.dir().File("kiohost_log.txt"));
  EXPECT_THAT(log, HasSubstr("SetResult=0"));
  for (const std::string& secret : {std::string(kPassword), Key(50), Key(50).substr(0, 8)}) {
    EXPECT_THAT(said, Not(HasSubstr(secret)));
    EXPECT_THAT(log, Not(HasSubstr(secret)));
  }
}

TEST_F(LoginTest, FilesOfTheHostAreItsUsersAlone) {
  constexpr auto kOthers = std::filesystem::perms::group_all | std::filesystem::perms::others_all;
  EXPECT_EQ(LoginStatus("kioAppKey=:" + Key(50)), 200);
  EXPECT_EQ(Post(host_.port(), "/vars", "rss_DeviceName=Attic").status, 200);
  for (const char* const name :
       {"store.db", "store.db-wal", "store.db-shm", "kiohost_log.txt", "rssset_result.xml"}) {
    const auto status = std::filesystem::status(host_.dir().File(name));
    ASSERT_TRUE(std::filesystem::exists(status)) << name;
    EXPECT_EQ(status.permissions() & kOthers, std::filesystem::perms::none) << name;
  }
}

TEST_F(LoginTest, LongKeyTextIsRefusedUnread) {
  EXPECT_EQ(LoginStatus(std::string(1025, 'x')), 413);
  EXPECT_EQ(LoginStatus(std::string(1000, 'x') + "BKey=" + Key(50).substr(0, 8)), 200);
  EXPECT_EQ(LoginStatus(std::string("BKey=\0", 6) + Key(50)), 400);
}

TEST(OpenHostTest, LetsEverybodyInAndSaysSoLoudly) {
  HostProcess host;
  ASSERT_TRUE(host.StartClosed({"--open"}));
  EXPECT_EQ(Get(host.port(), "/vars").status, 200);
  EXPECT_THAT(host.Errors(), HasSubstr("WARNING: --open: there is no login"));
  // Web pages are kept out all the same.
  EXPECT_EQ(Request(host.port(), "GET /device HTTP/1.1\r\nHost: evil.example\r\n\r\n").status, 421);
}

TEST(HostNameTest, FurtherNamesAreGivenOnTheCommandLine) {
  HostProcess host;
  ASSERT_TRUE(host.Start({"--name", "kio.lan"}));
  for (const char* const name : {"kio.lan", "router"}) {
    EXPECT_EQ(
        Request(host.port(), std::string("GET /device HTTP/1.1\r\nHost: ") + name + "\r\n\r\n")
            .status,
        200);
  }
}

}  // namespace
