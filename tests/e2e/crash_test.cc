// A host that is killed in the middle of an exchange leaves the store as it was before the exchange
// or as it is after it.
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "documents.h"
#include "host_process.h"
#include "host_steps.h"
#include "http_client.h"

namespace {

// An exchange with its commit has fewer.
constexpr int kManySteps = 500;

// Two documents that differ in every part of the store that an exchange writes. Each sets all of
// it, so that the store is the same whichever came before.
std::string Variant(bool second) {
  std::string document =
      With(FactoryDocument(), "DeviceName", second ? "Second name" : "First name");
  document = With(document, "UpLinkConnection", StaticUplink(second ? "192.0.2.2" : "192.0.2.1"));
  document = WithIn(document, "Wireless2.4", "AccessControl", AccessRules(second ? 40 : 20));
  document = WithIn(document, "Wireless5", "AccessControl", AccessRules(second ? 3 : 40));
  document = WithIn(document, "Wireless5", "Channel", second ? "40" : "44");
  return With(document, "SafetyNotifyEnbl", second ? "1" : "0");
}

struct Kill {
  bool answered;  // the answer had come
  bool came;      // before all was done
};

// Sends a document and kills the host before a step of the exchange or its commit, or afterwards.
Kill KillBefore(HostProcess* host, HostSteps* steps, int step, const std::string& document) {
  steps->SignalBefore(step, SIGKILL);
  Connection client(host->port());
  EXPECT_TRUE(client.Send(PostRequest("/settings", document)));
  const bool answered = client.Read().status == 200;
  const bool done = answered && WaitForTurn(host->port());
  EXPECT_EQ(done ? host->End(SIGKILL) : host->WaitForEnd(), 128 + SIGKILL);
  return {answered, !done};
}

TEST(CrashTest, AKillLeavesTheStoreBeforeOrAfterTheExchange) {
  HostProcess host;
  host.UseScript("uplink.sh", "#!/bin/sh\n");
  host.UseScript("device_resync.sh", "#!/bin/sh\n");
  HostSteps steps(&host);
  ASSERT_TRUE(steps.Start());
  const std::string documents[] = {Variant(false), Variant(true)};
  std::string states[2];
  for (const int variant : {0, 1, 0, 1}) {
    ASSERT_EQ(Post(host.port(), "/settings", documents[variant]).body, ResultDocument(0, "", 45));
    const std::string state = host.Dump();
    ASSERT_TRUE(states[variant].empty() || states[variant] == state);
    states[variant] = state;
  }
  ASSERT_NE(states[0], states[1]);
  ASSERT_EQ(host.End(SIGTERM), 0);

  int current = 1;
  int before = 0;
  int after = 0;
  int answered = 0;
  bool killed = true;
  for (int step = 1; killed && step < kManySteps; step += steps.stride()) {
    ASSERT_TRUE(steps.Start());
    const int next = 1 - current;
    const Kill kill = KillBefore(&host, &steps, step, documents[next]);
    const std::string state = host.Dump();
    ASSERT_TRUE(state == states[0] || state == states[1]) << "before step " << step << "\n"
                                                          << state;
    const bool applied = state == states[next];
    EXPECT_TRUE(applied || !kill.answered) << "an answered exchange is lost";
    before += applied ? 0 : 1;
    after += applied && !kill.answered ? 1 : 0;
    answered += kill.answered && kill.came ? 1 : 0;
    current = applied ? next : current;
    killed = kill.came;
  }
  EXPECT_FALSE(killed) << "there is no end to the steps";
  EXPECT_GT(before, 0);
  EXPECT_TRUE(after > 0 || steps.stride() > 1) << "of those without an answer";
  EXPECT_GT(answered, 0) << "in the commit";

  // The store is in order and goes on working.
  ASSERT_TRUE(host.Start());
  EXPECT_EQ(Post(host.port(), "/settings", documents[1 - current]).body, ResultDocument(0, "", 45));
  EXPECT_EQ(host.Dump(), states[1 - current]);
}

}  // namespace
