// The first document parse of a process. One test only: it must run before any other parse.
#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class FirstParseTest : public SettingsTest {};

TEST_F(FirstParseTest, OnlyTheFirstDocumentClearsThePreviousActions) {
  StoreSampleDevice();
  rssXmlData.pre_exeflag = 16;
  EXPECT_EQ(Parse("no document element"), 0);
  EXPECT_EQ(rssXmlData.pre_exeflag, 16) << "a text without root is no document";

  rssXmlData.exeflag = 4;
  EXPECT_EQ(Parse("<root></root>"), 0);
  EXPECT_EQ(rssXmlData.pre_exeflag, 0);
  EXPECT_EQ(rssXmlData.exeflag, 4);

  rssXmlData.pre_exeflag = 16;
  EXPECT_EQ(Parse("<root></root>"), 0);
  EXPECT_EQ(rssXmlData.pre_exeflag, 16);
  rssXmlData.exeflag = 0;
  EXPECT_EQ(Parse(SampleDocument()), 1);
  EXPECT_EQ(rssXmlData.pre_exeflag, 16);
}

}  // namespace
}  // namespace kio::test
