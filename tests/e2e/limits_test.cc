// What a client can do to the others: how many connections it gets, how long it may take.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include "documents.h"
#include "held_alarm.h"
#include "host_clock.h"
#include "host_process.h"
#include "http_client.h"

namespace {

using std::chrono::milliseconds;
using ::testing::HasSubstr;
using Clients = std::vector<std::unique_ptr<Connection>>;

constexpr size_t kMostOfAnAddress = 16;
constexpr size_t kMost = 64;
constexpr char kGetDevice[] = "GET /device HTTP/1.1\r\nHost: router\r\n\r\n";
constexpr char kFirstAddress[] = "127.0.0.1";
constexpr char kSecondAddress[] = "127.0.0.2";

class LimitsTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(clock_.Start()); }

  // Connections that have sent `bytes`.
  Clients Connect(size_t count, const std::string& bytes, const std::string& from = kFirstAddress) {
    Clients clients;
    for (size_t i = 0; i < count; ++i) {
      clients.push_back(std::make_unique<Connection>(host_.port(), from));
      EXPECT_TRUE(clients.back()->connected()) << i;
      clients.back()->Send(bytes);
    }
    return clients;
  }

  int Status(const std::string& from) {
    Connection client(host_.port(), from);
    return client.Send(kGetDevice) ? client.Read().status : 0;
  }

  HostProcess host_;
  HostClock clock_ = HostClock(&host_);
};

// How many of them were told something other than nothing yet.
size_t Answered(Clients* clients, int status) {
  size_t count = 0;
  for (const auto& client : *clients) {
    if (!client->StaysSilent(0) && client->Read().status == status) {
      ++count;
    }
  }
  return count;
}

TEST_F(LimitsTest, IdleConnectionsMakeRoomForNewOnes) {
  for (const char* bytes : {"", kGetDevice}) {
    const Clients idle = Connect(100, bytes);
    EXPECT_EQ(Status(kFirstAddress), 200);
    EXPECT_EQ(Status(kSecondAddress), 200);
    for (const auto& client : idle) {
      if (*bytes != '\0') {
        EXPECT_EQ(client->Read().status, 200);
      }
    }
    // None has been idle for so long that it would have been closed for that: room was made, by the
    // oldest ones.
    EXPECT_FALSE(idle.front()->StaysSilent(0));
    EXPECT_TRUE(idle.back()->StaysSilent(0));
    ASSERT_TRUE(idle.back()->Send(kGetDevice));
    EXPECT_EQ(idle.back()->Read().status, 200);
  }
}

TEST_F(LimitsTest, TheOldestIdleConnectionOfAnyAddressMakesRoom) {
  Clients idle;
  for (size_t i = 0; i < kMost; ++i) {
    const std::string address = "127.0.1." + std::to_string(1 + i / kMostOfAnAddress);
    idle.push_back(std::move(Connect(1, kGetDevice, address).front()));
    EXPECT_EQ(idle.back()->Read().status, 200) << i;
  }
  EXPECT_EQ(Status(kFirstAddress), 200);
  EXPECT_TRUE(idle[0]->WaitForClose(5));
  for (size_t i = 1; i < kMost; ++i) {
    EXPECT_TRUE(idle[i]->StaysSilent(0)) << i;
  }
}

TEST_F(LimitsTest, AnAddressThatTakesAllItGetsLocksNobodyElseOut) {
  Clients begun = Connect(kMostOfAnAddress, "G");
  // They have come, and each has begun a request.
  EXPECT_EQ(Status(kSecondAddress), 200);
  Connection beyond(host_.port());
  const HttpResponse refusal = beyond.Read();
  EXPECT_EQ(refusal.status, 503);
  EXPECT_EQ(refusal.Header("Retry-After"), "10");
  EXPECT_EQ(refusal.Header("Connection"), "close");
  EXPECT_EQ(refusal.Header("X-Content-Type-Options"), "nosniff");
  EXPECT_EQ(refusal.body, "there are too many connections, of this address or in all\n");
  EXPECT_TRUE(beyond.WaitForClose(5));
  // What a client sends after it was refused is read: answered by a reset, the client could lose
  // the refusal.
  Connection eager(host_.port());
  EXPECT_FALSE(eager.StaysSilent(5));
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(eager.Send(std::string(10000, 'x'))) << i;
    ASSERT_TRUE(clock_.Settle());
  }
  EXPECT_EQ(eager.Read().status, 503);
  EXPECT_EQ(Status(kSecondAddress), 200);
  EXPECT_EQ(Answered(&begun, 503), 0U);
  // One that goes makes room.
  begun.pop_back();
  ASSERT_TRUE(clock_.Settle());
  EXPECT_EQ(Status(kFirstAddress), 200);
  for (const auto& client : begun) {
    ASSERT_TRUE(client->Send("ET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    EXPECT_EQ(client->Read().status, 200);
  }
}

TEST_F(LimitsTest, ThereAre64ConnectionsInAll) {
  std::vector<Clients> begun;
  for (size_t i = 0; i < kMost / kMostOfAnAddress; ++i) {
    begun.push_back(Connect(kMostOfAnAddress, "G", "127.0.1." + std::to_string(i + 1)));
  }
  Connection beyond(host_.port());
  EXPECT_EQ(beyond.Read().status, 503);
  begun.front().pop_back();
  ASSERT_TRUE(clock_.Settle());
  EXPECT_EQ(Status(kFirstAddress), 200);
}

void SendAll(const Clients& clients, const std::string& piece) {
  for (const auto& client : clients) {
    client->Send(piece);
  }
}

TEST_F(LimitsTest, SlowHeadsAndBodiesAreEndedAfter10Seconds) {
  const std::string post = "POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: ";
  constexpr size_t kBodies = 8;
  Clients heads = Connect(kMost, "GET /dev");
  Clients bodies = Connect(kBodies, post + "5000\r\n\r\n", kSecondAddress);
  // More than 1 KiB a second and to the end, in 15 seconds.
  const Clients steady = Connect(1, post + "45000\r\n\r\n", "127.0.0.3");
  for (int i = 0; i < 30; ++i) {
    SendAll(heads, "x");
    SendAll(bodies, "x");
    SendAll(steady, std::string(1500, 'x'));
    ASSERT_TRUE(clock_.Advance(milliseconds(500)));
    if (i == 18) {
      EXPECT_EQ(Status(kFirstAddress), 503);
      EXPECT_EQ(Status(kSecondAddress), 200);
    }
  }
  // The bytes have not stopped for as long as the host waits in silence.
  for (const auto& client : bodies) {
    ASSERT_FALSE(client->StaysSilent(0));
    const HttpResponse answer = client->Read();
    EXPECT_EQ(answer.status, 408);
    EXPECT_EQ(answer.body, "the body of the request came too slowly\n");
    EXPECT_EQ(answer.Header("Connection"), "close");
  }
  size_t refused = 0;
  size_t ended = 0;
  for (const auto& client : heads) {
    ASSERT_FALSE(client->StaysSilent(0));
    const int status = client->Read().status;
    refused += status == 503 ? 1 : 0;
    ended += status == 408 ? 1 : 0;
  }
  EXPECT_EQ(ended, kMostOfAnAddress);
  EXPECT_EQ(refused, kMost - kMostOfAnAddress);
  EXPECT_EQ(Status(kFirstAddress), 200);
  EXPECT_EQ(steady.front()->Read().body, "the settings document has no root element\n");
}

TEST_F(LimitsTest, WhoIsSilentForLongIsLeftAlone) {
  Connection silent(host_.port());
  Connection half(host_.port());
  ASSERT_TRUE(
      half.Send("POST /settings HTTP/1.1\r\nHost: router\r\nContent-Length: 100\r\n\r\n<root"));
  // It asks for more than any buffer on the way holds, and reads nothing.
  constexpr size_t kAnswers = 400;
  Connection deaf(host_.port());
  for (size_t i = 0; i < kAnswers; ++i) {
    ASSERT_TRUE(deaf.Send("GET /vars HTTP/1.1\r\nHost: router\r\n\r\n"));
  }
  ASSERT_TRUE(clock_.Advance(milliseconds(9999)));
  EXPECT_TRUE(silent.StaysSilent(0));
  EXPECT_TRUE(half.StaysSilent(0));
  ASSERT_TRUE(clock_.Advance(milliseconds(1)));
  EXPECT_TRUE(silent.WaitForClose(5));
  EXPECT_EQ(half.Read().status, 408);
  EXPECT_TRUE(half.WaitForClose(5));
  // The system may still have found room for some more bytes on the way.
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(clock_.Advance(milliseconds(10000)));
  }
  size_t answers = 0;
  while (deaf.Read().status == 200) {
    ++answers;
  }
  EXPECT_LT(answers, kAnswers);
  EXPECT_EQ(Get(host_.port(), "/device").status, 200);
}

TEST_F(LimitsTest, TheLimitsHoldDuringASlowCommand) {
  host_.UseScript("uplink.sh", kHeldScript);
  const std::string document =
      With(FactoryDocument(), "UpLinkConnection", StaticUplink("192.0.2.7"));
  Clients begun = Connect(1, "GET /dev", kSecondAddress);
  EXPECT_EQ(Status("127.0.0.3"), 200);
  EXPECT_EQ(Post(host_.port(), "/settings", document).status, 200);
  ASSERT_TRUE(WaitFor([this] { return ReadFile(host_.dir().File("begun")) == "begun\n"; }));
  ASSERT_TRUE(clock_.Advance(milliseconds(9000)));
  EXPECT_TRUE(begun.front()->StaysSilent(0));
  ASSERT_TRUE(clock_.Advance(milliseconds(1500)));
  EXPECT_EQ(begun.front()->Read().status, 408);
  EXPECT_EQ(Status(kSecondAddress), 200);
  EXPECT_EQ(ReadFile(host_.dir().File("done")), "");
  WriteFile(host_.dir().File("go"), "");
}

TEST_F(LimitsTest, DocumentsOfClientsThatHaveGoneDoNotRun) {
  // While it runs, 40 clients send a document and go, and one stays.
  host_.UseScript("uplink.sh", kHeldScript);
  const std::string uplink = With(FactoryDocument(), "UpLinkConnection", StaticUplink("192.0.2.7"));
  const auto renamed = [&uplink](const std::string& name) {
    return PostRequest("/settings", With(uplink, "DeviceName", name));
  };
  EXPECT_EQ(Post(host_.port(), "/settings", uplink).status, 200);
  for (int i = 0; i < 40; ++i) {
    Connection client(host_.port());
    ASSERT_TRUE(client.Send(renamed("Gone " + std::to_string(i))));
  }
  Connection reader(host_.port());
  ASSERT_TRUE(reader.Send(kGetDevice));
  Connection stays(host_.port());
  ASSERT_TRUE(stays.Send(renamed("Stays")));
  WriteFile(host_.dir().File("go"), "");
  const HttpResponse device = reader.Read();
  EXPECT_EQ(device.status, 200);
  EXPECT_THAT(device.body, HasSubstr("Home router"));
  EXPECT_EQ(stays.Read().body, ResultDocument(0, "", 5));
  EXPECT_EQ(host_.Node("/sys/friendlyname"), "Stays");
  EXPECT_EQ(host_.End(SIGTERM), 0);
  EXPECT_EQ(Count(host_.Output(), "action DeviceResync"), 1U) << host_.Output();
}

// In line they do not take the room of others either.
TEST(LineTest, WhoGoesWhileWaitingLeavesTheLine) {
  HostProcess host;
  ASSERT_TRUE(StartWithHeldAlarm(&host));
  EXPECT_EQ(Put(host.port(), "/vars/rss_DeviceName", "Loft").status, 200);
  EXPECT_EQ(Post(host.port(), "/actions/ApplyAllRssVars", "").status, 200);
  EXPECT_EQ(Post(host.port(), "/actions/CommitRssVars", "").status, 200);
  // They wait until the alarm rings, while reads are served.
  for (int i = 0; i < 40; ++i) {
    Connection client(host.port());
    ASSERT_TRUE(
        client.Send(PostRequest("/settings", With(FactoryDocument(), "DeviceName", "Gone"))));
    EXPECT_EQ(Get(host.port(), "/device").status, 200) << i;
  }
  ASSERT_TRUE(RingAlarm(host));
  EXPECT_EQ(Post(host.port(), "/actions/VerifyAllRssVars", "").status, 200);
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Loft");
}

TEST_F(LimitsTest, WithoutDescriptorsTheHostWaits) {
  const rlimit few = {20, 20};
  ASSERT_EQ(prlimit(host_.pid(), RLIMIT_NOFILE, &few, nullptr), 0);
  Connection open(host_.port());
  ASSERT_TRUE(open.Send(kGetDevice));
  EXPECT_EQ(open.Read().status, 200);
  ASSERT_TRUE(open.Send("G"));
  Clients begun = Connect(14, "G");
  // It would never settle if it asked for them again and again.
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(clock_.Advance(milliseconds(400)));
  }
  EXPECT_THAT(host_.Errors(),
              HasSubstr("no connection can be taken for now: Too many open files\n"));
  EXPECT_EQ(Count(host_.Errors(), "no connection can be taken"), 1U);
  ASSERT_TRUE(open.Send("ET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_EQ(open.Read().status, 200);
  begun.clear();
  Connection next(host_.port());
  ASSERT_TRUE(next.Send(kGetDevice));
  EXPECT_TRUE(
      WaitFor([this, &next] { return clock_.Advance(milliseconds(250)) && !next.StaysSilent(0); }));
  EXPECT_EQ(next.Read().status, 200);
}

TEST_F(LimitsTest, WithoutDescriptorsIdleConnectionsMakeRoom) {
  const rlimit few = {20, 20};
  ASSERT_EQ(prlimit(host_.pid(), RLIMIT_NOFILE, &few, nullptr), 0);
  const Clients idle = Connect(14, "");
  EXPECT_EQ(Status(kFirstAddress), 200);
  EXPECT_TRUE(idle.back()->StaysSilent(0));
}

}  // namespace
