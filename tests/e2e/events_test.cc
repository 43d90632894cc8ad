// GET /events: what is told as it happens, to whom, and for how long.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app_key.h"
#include "documents.h"
#include "event_reader.h"
#include "host_clock.h"
#include "host_process.h"
#include "http_client.h"
#include "preload.h"
#include "store.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::SizeIs;

constexpr char kFirstClient[] = "127.0.0.1";
constexpr char kSecondClient[] = "127.0.0.2";
constexpr char kThirdClient[] = "127.0.0.3";
constexpr char kHead[] = "HEAD /events HTTP/1.1\r\nHost: router\r\n\r\n";

// Hosts whose uptime the test sets.
class EventsTest : public ::testing::Test {
 protected:
  void SetUp() override { SetTime(1000); }

  void SetTime(long uptime) {
    time_ = uptime;
    WriteFile(file_ + ".new", std::to_string(uptime));
    std::filesystem::rename(file_ + ".new", file_);
  }

  bool Start(bool closed = false) {
    const Preload preload(KIO_FAKE_UPTIME, "KIO_TEST_UPTIME", file_);
    return closed ? host_.StartClosed() : host_.Start();
  }

  HttpResponse Send(const std::string& request, const std::string& from = kFirstClient) const {
    Connection client(host_.port(), from);
    return client.Send(request) ? client.Read() : HttpResponse();
  }
  int Login(const std::string& from) const {
    return Send(PostRequest("/login", "BKey=" + AppKey(time_ / 20, from)), from).status;
  }
  int Logout(const std::string& from) const {
    return Send(PostRequest("/logout", ""), from).status;
  }

  // Two events each.
  void LogInAndOut(int times) const {
    Connection client(host_.port(), kSecondClient);
    for (int i = 0; i < times; ++i) {
      client.Send(PostRequest("/login", "BKey=" + AppKey(time_ / 20, kSecondClient)));
      ASSERT_EQ(client.Read().status, 200);
      client.Send(PostRequest("/logout", ""));
      ASSERT_EQ(client.Read().status, 200);
    }
  }

  static std::string OtherUplink() {
    return With(FactoryDocument(), "UpLinkConnection", StaticUplink("192.0.2.7"));
  }

  HostProcess host_;
  std::string file_ = host_.dir().File("uptime");
  long time_ = 0;
};

TEST_F(EventsTest, EachKindIsToldInTheOrderInWhichItHappens) {
  host_.UseScript("uplink.sh", "#!/bin/sh\nexit 7\n");
  ASSERT_TRUE(Start(true));
  ASSERT_EQ(Login(kFirstClient), 200);
  EventReader events(host_.port());
  EXPECT_EQ(events.response().status, 200);
  EXPECT_EQ(events.response().Header("Content-Type"), "text/event-stream");
  EXPECT_EQ(events.response().Header("Cache-Control"), "no-store");

  // Settings that are to be confirmed, and are.
  EXPECT_EQ(Login(kSecondClient), 200);
  const HttpResponse applied = Post(host_.port(), "/settings?confirm-within=60", OtherUplink());
  EXPECT_EQ(events.Next("login").data["client"], kSecondClient);
  auto event = events.Next();
  const std::string id = applied.Header("Kio-Apply-Id");
  EXPECT_EQ(event.kind, "applied");
  EXPECT_EQ(event.data["kind"], "applied");
  EXPECT_EQ(event.data["id"], event.id);
  EXPECT_EQ(event.data["uptime"], 1000);
  EXPECT_EQ(event.data["apply"], id);
  EXPECT_EQ(event.data["wait"], 20);
  event = events.Next();
  EXPECT_EQ(event.kind, "confirm-armed");
  EXPECT_EQ(event.data["apply"], id);
  EXPECT_EQ(event.data["seconds"], 60);
  event = events.Next();
  EXPECT_EQ(event.kind, "action-started");
  EXPECT_EQ(event.data["action"], "WanResync");
  event = events.Next();
  EXPECT_EQ(event.kind, "action-ended");
  EXPECT_EQ(event.data["ok"], false);
  EXPECT_EQ(event.data["status"], "exit status 7");
  EXPECT_EQ(event.data["text"], "WanResync: uplink.sh failed: exit status 7");
  EXPECT_THAT(events.KindsUntil("committed"),
              ElementsAre("action-started", "action-ended", "committed"));
  EXPECT_EQ(Login(kFirstClient), 200);
  EXPECT_EQ(Post(host_.port(), "/settings/confirm", "").status, 200);
  EXPECT_THAT(events.KindsUntil("confirmed"), ElementsAre("login", "confirmed"));

  // Settings that go back, with all of their actions.
  host_.UseScript("uplink.sh", "#!/bin/sh\n");
  EXPECT_EQ(Post(host_.port(), "/settings?confirm-within=60",
                 With(FactoryDocument(), "DeviceName", "Attic"))
                .status,
            200);
  EXPECT_EQ(Delete(host_.port(), "/settings/confirm").status, 200);
  events.Next("committed");
  event = events.Next();
  EXPECT_EQ(event.kind, "gone-back");
  EXPECT_EQ(event.data["text"], "the settings went back to those before, on request");
  event = events.Next("committed");
  EXPECT_EQ(event.data["outcome"], "rolled-back");
  EXPECT_EQ(event.data["apply"],
            nlohmann::json::parse(Get(host_.port(), "/device").body)["lastApply"]["id"]);

  // What is refused, as a document and as a batch; and a batch that applies.
  EXPECT_EQ(Post(host_.port(), "/settings", With(FactoryDocument(), "Channel", "99")).status, 200);
  event = events.Next();
  EXPECT_EQ(event.kind, "refused");
  EXPECT_EQ(event.data["code"], 3);
  EXPECT_EQ(event.data["fault"], "Device/Wireless2.4/Channel");
  EXPECT_EQ(Post(host_.port(), "/vars", "rss_Upl_IP=\x1b[2J").status, 422);
  event = events.Next();
  EXPECT_EQ(event.kind, "refused");
  EXPECT_EQ(event.data["fault"], "rss_Upl_IP");
  const HttpResponse batch =
      Post(host_.port(), "/vars", "rss_DeviceName=Den&rss_Act_ApplyAllRssVars=");
  EXPECT_EQ(events.Next().data["apply"], batch.Header("Kio-Apply-Id"));

  // A radio, the firmware, and who comes and goes.
  kiohost::Store store;
  ASSERT_TRUE(store.Open(host_.dir().File("store.db"), kiohost::Store::Mode::kExisting).ok());
  ASSERT_TRUE(store.Set("/lan/wireless5:1/channelusing", "40"));
  ASSERT_TRUE(store.Set("/lan/wireless5:1/channel", "0"));
  event = events.Next("channel");
  EXPECT_EQ(event.data["radio"], "5");
  EXPECT_EQ(event.data["channel"], "40");
  EXPECT_EQ(Post(host_.port(), "/firmware/0", "").status, 200);
  event = events.Next();
  EXPECT_EQ(event.kind, "firmware");
  EXPECT_EQ(event.data["step"], "start");
  EXPECT_EQ(event.data["result"], 0);
  EXPECT_EQ(Post(host_.port(), "/firmware/9", "").status, 200);  // nothing new
  EXPECT_EQ(Logout(kSecondClient), 200);
  event = events.Next();
  EXPECT_EQ(event.kind, "logout");
  EXPECT_EQ(event.data["client"], kSecondClient);
  EXPECT_EQ(Login(kThirdClient), 200);
  SetTime(1200);
  EXPECT_EQ(Get(host_.port(), "/vars").status, 200);
  SetTime(1300);
  event = events.Next("lapse");
  EXPECT_EQ(event.data["client"], kThirdClient);
  EXPECT_EQ(event.data["uptime"], 1300);
}

// The library's thread is held up by a script.
TEST_F(EventsTest, EventsComeWhileTheLibraryIsAtWork) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(Start());
  EventReader events(host_.port());
  EXPECT_EQ(Post(host_.port(), "/settings", OtherUplink()).status, 200);
  EXPECT_EQ(events.Next("action-started").data["action"], "WanResync");
  EXPECT_EQ(Login(kSecondClient), 200);
  EXPECT_EQ(events.Next().kind, "login");
  EventReader late(host_.port());
  EXPECT_EQ(late.Next().id, events.last_id());
  EXPECT_EQ(ReadFile(host_.dir().File("done")), "");
  WriteFile(host_.dir().File("go"), "");
  EXPECT_EQ(events.Next().data["status"], "exit status 0");
  EXPECT_THAT(late.KindsUntil("committed"),
              ElementsAre("action-ended", "action-started", "action-ended", "committed"));
}

TEST_F(EventsTest, AClientThatComesBackMissesNothing) {
  ASSERT_TRUE(Start());
  std::string id;
  {
    EventReader events(host_.port());
    id = events.Next().id;
  }
  LogInAndOut(2);
  {
    EventReader events(host_.port(), id);
    EXPECT_EQ(events.Next().kind, "login");
    EXPECT_EQ(events.Next().kind, "logout");
    id = events.last_id();
  }
  EventReader events(host_.port(), id);
  EXPECT_THAT(events.KindsUntil("logout"), ElementsAre("login", "logout"));
  LogInAndOut(1);
  EXPECT_THAT(events.KindsUntil("logout"), ElementsAre("login", "logout"));
}

TEST_F(EventsTest, TheLast200AreKept) {
  ASSERT_TRUE(Start());
  const std::string first = EventReader(host_.port()).Next().id;
  LogInAndOut(100);
  {
    EventReader events(host_.port(), first);
    for (int i = 0; i < 200; ++i) {
      ASSERT_EQ(events.Next().kind, i % 2 == 0 ? "login" : "logout") << i;
    }
  }
  LogInAndOut(1);
  for (const std::string& id : {first, std::string("00000000-7"), first + "x", std::string("x")}) {
    EventReader events(host_.port(), id);
    const EventBlock lost = events.Next();
    EXPECT_EQ(lost.kind, "lost") << id;
    EXPECT_EQ(lost.id, "");
    const EventBlock oldest = events.Next();
    EXPECT_EQ(lost.data.value("next", ""), oldest.id);
    for (int i = 1; i < 200; ++i) {
      ASSERT_FALSE(events.Next().empty()) << i;
    }
    LogInAndOut(1);
    EXPECT_EQ(events.Next().kind, "login");
    EXPECT_EQ(oldest.kind, "login");
  }
}

// None of them is that of an event before the restart.
TEST_F(EventsTest, AnIdOfAnEarlierRunIsNotTakenForOneOfThisRun) {
  ASSERT_TRUE(Start());
  EventReader before(host_.port());
  LogInAndOut(1);
  before.Next("logout");
  EXPECT_EQ(host_.End(SIGKILL), 128 + SIGKILL);
  EXPECT_TRUE(before.Next().empty());
  EXPECT_FALSE(before.ended());
  ASSERT_TRUE(Start());
  LogInAndOut(2);
  EventReader events(host_.port(), before.last_id());
  EXPECT_THAT(events.KindsUntil("logout"), ElementsAre("lost", "login", "logout"));
}

TEST_F(EventsTest, TheNinthStreamIsRefused) {
  ASSERT_TRUE(Start());
  std::vector<std::unique_ptr<EventReader>> streams;
  for (int i = 0; i < 8; ++i) {
    streams.push_back(std::make_unique<EventReader>(host_.port()));
    ASSERT_EQ(streams.back()->response().status, 200) << i;
  }
  const HttpResponse ninth = Get(host_.port(), "/events");
  EXPECT_EQ(ninth.status, 503);
  EXPECT_EQ(ninth.Header("Retry-After"), "10");
  EXPECT_EQ(ninth.body, "there are 8 streams of events already\n");
  Connection head(host_.port());
  ASSERT_TRUE(head.Send(kHead));
  EXPECT_EQ(head.ReadHead().status, 503);
  LogInAndOut(1);
  for (const auto& stream : streams) {
    EXPECT_THAT(stream->KindsUntil("logout"), ElementsAre("login", "logout"));
  }
  streams.pop_back();
  EXPECT_TRUE(WaitFor([this] { return EventReader(host_.port()).response().status == 200; }));
}

TEST_F(EventsTest, HeadIsAnsweredWithoutAStream) {
  ASSERT_TRUE(Start());
  for (int i = 0; i < 10; ++i) {
    Connection client(host_.port());
    ASSERT_TRUE(client.Send(kHead));
    const HttpResponse head = client.ReadHead();
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.Header("Content-Type"), "text/event-stream");
    EXPECT_TRUE(client.WaitForClose(5));
  }
}

TEST_F(EventsTest, NobodyIsToldWhoIsNotLoggedIn) {
  ASSERT_TRUE(Start(true));
  EXPECT_EQ(Get(host_.port(), "/events").status, 401);
  ASSERT_EQ(Login(kSecondClient), 200);
  EXPECT_EQ(Get(host_.port(), "/events").status, 401);
}

TEST_F(EventsTest, AStreamKeepsNobodyLoggedInAndEndsWithTheLogin) {
  ASSERT_TRUE(Start(true));
  ASSERT_EQ(Login(kFirstClient), 200);
  EventReader events(host_.port());
  SetTime(1299);
  ASSERT_EQ(Login(kSecondClient), 200);
  EXPECT_EQ(events.Next("login").data["client"], kSecondClient);
  SetTime(1300);
  EXPECT_EQ(events.Next().data["client"], kFirstClient);
  EXPECT_TRUE(events.Next().empty());
  EXPECT_TRUE(events.ended());
  EXPECT_EQ(Get(host_.port(), "/events").status, 401);
}

// Also when the client logs in anew at once: what it may know begins with that.
TEST_F(EventsTest, ALogoutEndsTheStreamsOfItsClient) {
  ASSERT_TRUE(Start(true));
  ASSERT_EQ(Login(kFirstClient), 200);
  ASSERT_EQ(Login(kSecondClient), 200);
  EventReader events(host_.port());
  EventReader others(host_.port(), "", kSecondClient);
  others.Next();
  Connection client(host_.port());
  ASSERT_TRUE(client.Send(PostRequest("/logout", "") +
                          PostRequest("/login", "BKey=" + AppKey(50, kFirstClient))));
  EXPECT_EQ(client.Read().status, 200);
  EXPECT_EQ(client.Read().status, 200);
  EXPECT_THAT(events.KindsUntil(""), ElementsAre("logout"));
  EXPECT_TRUE(events.ended());
  EXPECT_THAT(others.KindsUntil("login"), ElementsAre("logout", "login"));
  // The connection is as good as before.
  ASSERT_TRUE(events.connection().Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_EQ(events.connection().Read().status, 200);
}

// It reads nothing, and the system keeps little for it.
TEST_F(EventsTest, ASlowReaderIsDroppedAndTheOthersGoOn) {
  constexpr int kLittle = 2048;
  ASSERT_TRUE(Start());
  EventReader slow(host_.port(), "", kFirstClient, kLittle);
  EventReader other(host_.port());
  std::string last;
  const size_t without_slow = host_.Descriptors() - 1;
  const auto is_dropped = [&] {
    LogInAndOut(50);
    for (int i = 0; i < 50; ++i) {
      last = other.Next("logout").id;
    }
    return host_.Descriptors() == without_slow;
  };
  EXPECT_TRUE(WaitFor(is_dropped));
  while (!slow.Next().empty()) {
  }
  EXPECT_FALSE(slow.ended());
  EXPECT_NE(slow.last_id(), last);
  LogInAndOut(1);
  EXPECT_THAT(other.KindsUntil("logout"), ElementsAre("login", "logout"));
  // It can come back, and is told what it has missed.
  EventReader again(host_.port(), slow.last_id());
  EXPECT_EQ(again.Next().kind, "lost");
}

TEST_F(EventsTest, AStopEndsTheStreams) {
  host_.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(Start());
  EventReader idle(host_.port());
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_THAT(idle.KindsUntil(""), SizeIs(0));
  EXPECT_TRUE(idle.ended());
  // The script would go on for ever. What is told until the sockets are closed is told in full.
  ASSERT_TRUE(Start());
  EventReader busy(host_.port());
  EXPECT_EQ(Post(host_.port(), "/settings", OtherUplink()).status, 200);
  busy.Next("action-started");
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_THAT(busy.KindsUntil(""),
              ElementsAre("action-ended", "action-started", "action-ended", "committed"));
  EXPECT_TRUE(busy.ended());
}

// With a clock that the test moves.
class EventsClockTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(clock_.Start()); }

  HostProcess host_;
  HostClock clock_ = HostClock(&host_);
};

TEST_F(EventsClockTest, AStreamWithoutNewsStaysOpenAndSaysSo) {
  EventReader events(host_.port());
  events.Next();
  for (int i = 0; i < 4; ++i) {
    ASSERT_TRUE(clock_.Advance(std::chrono::seconds(14)));
    EXPECT_TRUE(events.connection().StaysSilent(0));
    ASSERT_TRUE(clock_.Advance(std::chrono::seconds(1)));
    EXPECT_EQ(events.Next().comment, "no news");
  }
}

// An idle connection makes room, a stream does not.
TEST_F(EventsClockTest, StreamsAreNotIdle) {
  constexpr int kMostOfAnAddress = 16;
  std::vector<std::unique_ptr<EventReader>> streams;
  for (int i = 0; i < 8; ++i) {
    streams.push_back(std::make_unique<EventReader>(host_.port()));
    streams.back()->Next();
  }
  std::vector<std::unique_ptr<Connection>> idle;
  for (int i = 0; i < 2 * kMostOfAnAddress; ++i) {
    idle.push_back(std::make_unique<Connection>(host_.port()));
    ASSERT_TRUE(idle.back()->Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    EXPECT_EQ(idle.back()->Read().status, 200);
  }
  for (const auto& stream : streams) {
    EXPECT_TRUE(stream->connection().StaysSilent(0));
  }
}

// What it was sent is on the way, and nothing of it comes to be read.
TEST_F(EventsClockTest, AReaderThatIsSilentForTenSecondsIsDropped) {
  constexpr int kLittle = 2048;
  EventReader silent(host_.port(), "", kFirstClient, kLittle);
  EventReader other(host_.port());
  other.Next();
  Connection client(host_.port());
  const auto bring_about_an_event = [&client, &other] {
    ASSERT_TRUE(client.Send(PostRequest("/vars", "rss_Nothing=1")));
    EXPECT_EQ(client.Read().status, 404);
    EXPECT_EQ(other.Next().kind, "refused");
  };
  for (int i = 0; i < 50; ++i) {
    bring_about_an_event();
  }
  const size_t descriptors = host_.Descriptors();
  ASSERT_TRUE(clock_.Advance(std::chrono::seconds(9)));
  EXPECT_EQ(host_.Descriptors(), descriptors);
  // The one who asks is not idle.
  bring_about_an_event();
  ASSERT_TRUE(clock_.Advance(std::chrono::seconds(2)));
  const auto is_dropped = [&] { return host_.Descriptors() == descriptors - 1; };
  if (!WaitFor(is_dropped)) {
    // The system took the last of it so late that the host saw it with the clock moved.
    bring_about_an_event();
    ASSERT_TRUE(clock_.Advance(std::chrono::seconds(9)));
    EXPECT_TRUE(WaitFor(is_dropped));
  }
  EXPECT_TRUE(other.connection().StaysSilent(0));
}

}  // namespace
