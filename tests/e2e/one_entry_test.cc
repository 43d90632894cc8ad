// The library is called by one thread alone, and never within a call.
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "documents.h"
#include "host_process.h"
#include "http_client.h"

namespace {

TEST(OneEntryTest, OneThreadCallsTheLibraryOneCallAtATime) {
  constexpr int kRounds = 20;
  HostProcess host;
  host.UseScript("uplink.sh", "#!/bin/sh\nsleep 0.02\n");
  const std::string file = host.dir().File("entries");
  setenv("LD_AUDIT", KIO_ONE_ENTRY, 1);
  setenv("KIO_TEST_ENTRIES", file.c_str(), 1);
  const bool started = host.Start();
  unsetenv("LD_AUDIT");
  ASSERT_TRUE(started);
  std::atomic<bool> ends = false;
  std::vector<std::thread> clients;
  for (const char* path : {"/vars/rss_DeviceName", "/device", "/vars/rss_Nothing", "/result",
                           "/firmware", "/backup", "/vars", "/vars?values=1"}) {
    clients.emplace_back([&ends, &host, path] {
      while (!ends) {
        EXPECT_NE(Get(host.port(), path).status, 0);
      }
    });
  }
  clients.emplace_back([&ends, &host] {
    while (!ends) {
      EXPECT_EQ(Post(host.port(), "/login", "BKey=00000000").status / 100, 4);
      EXPECT_EQ(Put(host.port(), "/vars/rss_Wl2_WirelessName", "Loft").status, 200);
    }
  });
  for (int i = 1; i <= kRounds; ++i) {
    const std::string uplink = StaticUplink("192.0.2." + std::to_string(i));
    EXPECT_EQ(
        Post(host.port(), "/settings", With(FactoryDocument(), "UpLinkConnection", uplink)).status,
        200);
  }
  ends = true;
  for (std::thread& client : clients) {
    client.join();
  }
  EXPECT_EQ(host.End(SIGTERM), 0);
  // Whatever else there is in the file went wrong.
  const std::string entries = ReadFile(file);
  EXPECT_TRUE(entries.starts_with("first call: ")) << entries;
  EXPECT_EQ(Count(entries, "\n"), 1U) << entries;
}

}  // namespace
