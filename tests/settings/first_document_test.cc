// The first document that a process writes into the temporary directory. One test only: it must run
// before any other element is written.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"

namespace kio::test {
namespace {

TEST(FirstDocumentTest, BeginsANewFile) {
  FakeHost& host = FakeHost::Get();
  host.Reset();
  rssXmlData = {};
  std::snprintf(rssXmlData.tmpPath, sizeof(rssXmlData.tmpPath), "/var/tmp");
  write_TmpXmlFile("x.xml", "a", "1", 0);
  EXPECT_EQ(
      host.commands(),
      (std::vector<std::string>{"echo '<?xml version=\"1.0\" ?><root><a>1</a>' > /var/tmp/x.xml"}));
  rssXmlData = {};
}

}  // namespace
}  // namespace kio::test
