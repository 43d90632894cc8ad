// When the resync actions of an exchange run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include "documents.h"
#include "host_clock.h"
#include "host_process.h"
#include "host_steps.h"
#include "http_client.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Whether the held script has begun, and how often it was done.
bool WaitForHeldScript(const HostProcess& host) {
  return WaitFor([&host] { return ReadFile(host.dir().File("begun")) == "begun\n"; });
}
std::string Done(const HostProcess& host) { return ReadFile(host.dir().File("done")); }

std::string NewUplink(const std::string& address) {
  return With(FactoryDocument(), "UpLinkConnection", StaticUplink(address));
}

TEST(CommitTest, RunsOnlyAfterTheAnswerWasSent) {
  HostProcess host;
  host.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host.Start());
  // The script does not end before the answer is here.
  const HttpResponse answer = Post(host.port(), "/settings", NewUplink("192.0.2.77"));
  EXPECT_EQ(answer.body, ResultDocument(0, "", 20));
  EXPECT_EQ(Done(host), "");
  WriteFile(host.dir().File("go"), "");
  EXPECT_TRUE(host.WaitForOutput("action WanResync"));
  EXPECT_EQ(Done(host), "done\n");
}

TEST(CommitTest, RunsAlthoughTheClientWentAway) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  {
    Connection client(host.port());
    ASSERT_TRUE(client.Send(PostRequest("/settings", NewUplink("192.0.2.77"))));
    ASSERT_TRUE(WaitFor([&host] { return host.Node("/uplink/ip") == "192.0.2.77"; }));
    client.Abort();
  }
  EXPECT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_THAT(host.Output(), HasSubstr("action WanResync"));
  EXPECT_EQ(Get(host.port(), "/device").status, 200);
}

// A connection that the host has accepted.
std::unique_ptr<Connection> Accepted(int port) {
  auto connection = std::make_unique<Connection>(port);
  EXPECT_TRUE(connection->Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
  EXPECT_EQ(connection->Read().status, 200);
  return connection;
}

// While a slow commit runs, two more documents arrive, so that the host finds both at once. Each
// must get its own actions; the library keeps those of one exchange only.
TEST(CommitTest, EachOfTwoExchangesAtOnceGetsItsActions) {
  HostProcess host;
  host.UseScript("uplink.sh", kHeldScript);
  ASSERT_TRUE(host.Start());
  const auto second = Accepted(host.port());
  const auto third = Accepted(host.port());
  EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.9")).status, 200);

  // Whichever comes first, it and the other change different parts.
  const std::string renamed = With(NewUplink("192.0.2.9"), "DeviceName", "Second");
  const std::string cloned = WithIn(FactoryDocument(), "Wireless5", "WirelessName", "Third");
  ASSERT_TRUE(second->Send(PostRequest("/settings", renamed)));
  ASSERT_TRUE(third->Send(PostRequest("/settings?cloning=1", cloned)));
  WriteFile(host.dir().File("go"), "");
  EXPECT_THAT(second->Read().body, HasSubstr("<RssSetResult>0</RssSetResult>"));
  EXPECT_THAT(third->Read().body, HasSubstr("<RssSetResult>0</RssSetResult>"));

  EXPECT_EQ(host.End(SIGTERM), 0);
  const std::string output = host.Output();
  EXPECT_EQ(Count(output, "action WanResync"), 1U) << output;
  EXPECT_EQ(Count(output, "action DeviceResync"), 1U) << output;
  EXPECT_GE(Count(output, "action Wlan5gResync"), 1U) << output;
  EXPECT_EQ(Count(output, "action CfgSaveToFlash"), 3U) << output;
}

TEST(CommitTest, ManyExchangesAtOnceAllGetTheirAnswerAndCommit) {
  constexpr size_t kClients = 12;
  HostProcess host;
  host.UseScript("device_resync.sh", "#!/bin/sh\n");
  ASSERT_TRUE(host.Start());
  std::vector<std::unique_ptr<Connection>> clients;
  for (size_t i = 0; i < kClients; ++i) {
    clients.push_back(Accepted(host.port()));
  }
  for (size_t i = 0; i < kClients; ++i) {
    const std::string name = "Name " + std::to_string(i);
    ASSERT_TRUE(
        clients[i]->Send(PostRequest("/settings", With(FactoryDocument(), "DeviceName", name))));
  }
  for (const auto& client : clients) {
    EXPECT_EQ(client->Read().body, ResultDocument(0, "", 5));
  }
  // None waited for another connection to become idle, which would be closed now.
  for (const auto& client : clients) {
    EXPECT_TRUE(client->Send("GET /device HTTP/1.1\r\nHost: router\r\n\r\n"));
    EXPECT_EQ(client->Read().status, 200);
  }
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_EQ(Count(host.Output(), "action DeviceResync"), kClients);
}

TEST(CommitTest, BodiesThatArriveSideBySideDoNotMix) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string one = PostRequest("/settings", With(FactoryDocument(), "DeviceName", "One"));
  const std::string two = PostRequest("/settings", With(FactoryDocument(), "DeviceName", "Two"));
  Connection first(host.port());
  Connection second(host.port());
  const size_t half = one.size() / 2;
  ASSERT_TRUE(first.Send(one.substr(0, half)));
  ASSERT_TRUE(second.Send(two.substr(0, half)));
  EXPECT_EQ(Get(host.port(), "/device").status, 200);
  ASSERT_TRUE(first.Send(one.substr(half)));
  EXPECT_EQ(first.Read().body, ResultDocument(0, "", 5));
  EXPECT_EQ(host.Node("/sys/friendlyname"), "One");
  ASSERT_TRUE(second.Send(two.substr(half)));
  EXPECT_EQ(second.Read().body, ResultDocument(0, "", 5));
  EXPECT_EQ(host.Node("/sys/friendlyname"), "Two");
}

TEST(CommitTest, ADocumentThatChangesNothingRepeatsTheLastActionsOnce) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.77")).status, 200);
  }
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_EQ(Count(host.Output(), "action WanResync"), 2U);
}

TEST(CommitTest, ARefusedDocumentDoesNotDisturbALaterOne) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  const std::string refused = WithIn(NewUplink("192.0.2.77"), "Wireless2.4", "Channel", "99");
  EXPECT_EQ(Post(host.port(), "/settings", refused).body,
            ResultDocument(3, "Device/Wireless2.4/Channel", 0));
  EXPECT_EQ(Post(host.port(), "/settings", With(FactoryDocument(), "DeviceName", "Renamed")).body,
            ResultDocument(0, "", 5));
  EXPECT_EQ(host.End(SIGTERM), 0);
  EXPECT_THAT(host.Output(), HasSubstr("action DeviceResync"));
  EXPECT_THAT(host.Output(), Not(HasSubstr("action WanResync")));
}

TEST(CommitTest, AStopDoesNotLoseTheCommitOfAnAnsweredExchange) {
  for (const int signal_number : {SIGTERM, SIGINT, SIGHUP}) {
    HostProcess host;
    ASSERT_TRUE(host.Start());
    EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.77")).status, 200);
    EXPECT_EQ(host.End(signal_number), 0);
    EXPECT_THAT(host.Output(), HasSubstr("action WanResync"));
  }
}

TEST(CommitTest, AStopDuringACommitWaitsForIt) {
  for (const int signal_number : {SIGTERM, SIGINT, SIGHUP}) {
    HostProcess host;
    HostClock clock(&host);
    host.UseScript("uplink.sh", kHeldScript);
    ASSERT_TRUE(clock.Start());
    EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.77")).status, 200);
    ASSERT_TRUE(WaitForHeldScript(host));
    ASSERT_EQ(kill(host.pid(), signal_number), 0);
    // As long as a stop leaves a script alone.
    ASSERT_TRUE(clock.Advance(std::chrono::milliseconds(1299)));
    WriteFile(host.dir().File("go"), "");
    EXPECT_EQ(host.WaitForEnd(), 0);
    EXPECT_EQ(Done(host), "done\n");
    EXPECT_THAT(host.Output(), HasSubstr("action CfgSaveToFlash"));
  }
}

// The host runs command after command the while.
TEST(CommitTest, NoMomentOfAnExchangeLosesAStop) {
  int count = 0;
  int stride = 1;
  // Nothing comes before step 0: the first exchange tells how many there are.
  for (int step = 0; step <= count; step += stride) {
    HostProcess host;
    host.UseScript("uplink.sh", "#!/bin/sh\n");
    HostSteps steps(&host);
    ASSERT_TRUE(steps.Start());
    steps.SignalBefore(step, SIGINT, HostSteps::Kind::kEffectsAndWaits);
    Connection client(host.port());
    // The host may end as soon as the client has come.
    const bool sent = client.Send(PostRequest("/settings", NewUplink("192.0.2.77")));
    if (step == 0) {
      ASSERT_TRUE(sent);
      ASSERT_EQ(client.Read().status, 200);
      ASSERT_TRUE(WaitForTurn(host.port()));  // the commit is over
      count = steps.taken();
      stride = steps.stride();
    } else {
      ASSERT_EQ(host.WaitForEnd(), 0) << "before step " << step << " of " << count;
    }
  }
  EXPECT_GT(count, 10);
}

TEST(CommitTest, ScriptsInheritNoSocketAndNoStore) {
  HostProcess host;
  host.UseScript("uplink.sh", "#!/bin/sh\nls -l /proc/$$/fd >\"$KIOHOST_STATE_DIR/fds\"\n");
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.77")).status, 200);
  ASSERT_TRUE(host.WaitForOutput("action WanResync"));
  const std::string fds = ReadFile(host.dir().File("fds"));
  EXPECT_THAT(fds, HasSubstr("->"));
  EXPECT_THAT(fds, Not(HasSubstr("socket:")));
  EXPECT_THAT(fds, Not(HasSubstr("store.db")));
}

TEST(CommitTest, ScriptsHaveOrdinarySignals) {
  constexpr unsigned long kPipe = 1UL << (SIGPIPE - 1);
  constexpr unsigned long kBlockedInTheHost = 1UL << (SIGALRM - 1) | 1UL << (SIGTERM - 1) |
                                              1UL << (SIGINT - 1) | 1UL << (SIGHUP - 1) |
                                              1UL << (SIGCHLD - 1);
  HostProcess host;
  // `read` is the shell's own: a shell that starts another program blocks signals meanwhile.
  host.UseScript("uplink.sh",
                 "#!/bin/sh\nwhile read -r name value; do\n"
                 "  echo \"$value\" >\"$KIOHOST_STATE_DIR/$name\"\ndone </proc/$$/status\n");
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.77")).status, 200);
  ASSERT_TRUE(host.WaitForOutput("action WanResync"));
  const auto signals = [&host](const char* name) {
    return std::stoul(ReadFile(host.dir().File(name)), nullptr, 16);
  };
  EXPECT_EQ(signals("SigIgn:") & kPipe, 0U);
  EXPECT_EQ(signals("SigBlk:") & kBlockedInTheHost, 0U);
}

// An alarm is served, but never within a call into the library: the script, which the library runs,
// rings the alarm of the host. Without a commit that waits for it, it does nothing.
TEST(CommitTest, AnAlarmDoesNotInterruptACommit) {
  HostProcess host;
  host.UseScript("uplink.sh",
                 "#!/bin/sh\nkill -ALRM \"$(cat \"$KIOHOST_STATE_DIR/pid\")\"\n"
                 "sleep 0.2\necho done >>\"$KIOHOST_STATE_DIR/done\"\n");
  ASSERT_TRUE(host.Start());
  WriteFile(host.dir().File("pid"), std::to_string(host.pid()));
  EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.77")).status, 200);
  ASSERT_TRUE(host.WaitForOutput("action CfgSaveToFlash"));
  EXPECT_EQ(Done(host), "done\n");
  EXPECT_EQ(Get(host.port(), "/device").status, 200);
  EXPECT_EQ(host.End(SIGTERM), 0);
}

TEST(CommitTest, AStrayAlarmDoesNothing) {
  HostProcess host;
  ASSERT_TRUE(host.Start());
  ASSERT_EQ(kill(host.pid(), SIGALRM), 0);
  EXPECT_EQ(Get(host.port(), "/device").status, 200);
  EXPECT_EQ(Post(host.port(), "/settings", NewUplink("192.0.2.77")).status, 200);
  EXPECT_TRUE(host.WaitForOutput("action WanResync: ran uplink.sh"));
  EXPECT_EQ(host.End(SIGTERM), 0);
}

TEST(CommitTest, WithRealWaitsTheHostGoesAwayAsLongAsItSaid) {
  HostProcess host;
  HostClock clock(&host);
  ASSERT_TRUE(clock.Start({"--real-waits"}));
  const std::string survey = With(FactoryDocument(), "UpLinkConnection",
                                  "<HardwareType>WWan802.11</HardwareType>"
                                  "<ConnType>DHCP</ConnType><ExtenderSite><Survey>1</Survey>"
                                  "</ExtenderSite>");
  EXPECT_EQ(Post(host.port(), "/settings", survey).body, ResultDocument(0, "", 3));
  ASSERT_TRUE(host.WaitForOutput("away for 3 s"));
  ASSERT_TRUE(clock.Advance(std::chrono::milliseconds(2999)));
  EXPECT_FALSE(Connection(host.port()).connected());
  ASSERT_TRUE(clock.Advance(std::chrono::milliseconds(1)));
  EXPECT_TRUE(Connection(host.port()).connected());
  EXPECT_THAT(host.Output(), HasSubstr("action WlanSiteSurvey"));
  EXPECT_EQ(Get(host.port(), "/device").status, 200);
}

TEST(CommitTest, AStopEndsARealWait) {
  HostProcess host;
  ASSERT_TRUE(host.Start({"--real-waits"}));
  const std::string name = With(NewUplink("192.0.2.77"), "DeviceName", "Renamed");
  EXPECT_EQ(Post(host.port(), "/settings", WithIn(name, "Wireless5", "Channel", "40")).body,
            ResultDocument(0, "", 35));
  ASSERT_TRUE(host.WaitForOutput("away for 35 s"));
  // The test waits for 20 seconds.
  EXPECT_EQ(host.End(SIGTERM), 0);
}

}  // namespace
