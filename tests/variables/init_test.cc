// The beginning of a series of variable operations. One test only: it must see the first call of
// its process.
#include <cstring>

#include "variables/variables.h"

namespace kio::test {
namespace {

class InitTest : public VariableTest {};

TEST_F(InitTest, OnlyTheFirstCallClearsThePreviousActions) {
  StoreSampleDevice();
  restore_XmlRssStatus(1);
  rssXmlData.pre_exeflag = 0;
  rssXmlData.exeflag = 4;
  const RecordWatch restored;

  rssXmlData.pre_exeflag = 16;
  Put(rssXmlData.deviceName, "set, not applied");
  rssXmlData.upLink.connTypeCode = 3;
  init_RssVar();
  restored.ExpectUnchanged("first call");

  rssXmlData.pre_exeflag = 16;
  Put(rssXmlData.deviceName, "set, not applied");
  Host().Set("/uplink/ip", "10.0.0.77");
  init_RssVar();
  restored.ExpectOnly(
      [](RssXmlData& r) {
        r.pre_exeflag = 16;
        Put(r.upLink.ip, "10.0.0.77");
      },
      "second call");
  EXPECT_TRUE(Host().Writes().empty());
  EXPECT_TRUE(Host().commands().empty());
}

}  // namespace
}  // namespace kio::test
