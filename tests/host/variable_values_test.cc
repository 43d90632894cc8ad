#include "variable_values.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(VariableValuesTest, NamesAreReadAsTheLibraryReadsThem) {
  VariableValues values;
  values.Add("rss_Upl_IP", "/Device/UpLinkConnection/IP", {{0, "192.0.2.1"}, {0, "/uplink/ip"}});
  for (const char* name :
       {"rss_Upl_IP", "abc_Upl_IP", "1234Upl_IP", "/Device/UpLinkConnection/IP"}) {
    ASSERT_TRUE(values.Find(name, false).has_value()) << name;
    EXPECT_EQ(values.Find(name, false)->text, "192.0.2.1");
    EXPECT_EQ(values.Find(name, true)->text, "/uplink/ip");
  }
  for (const char* name : {"Upl_IP", "rss_upl_IP", "rss_Upl_IP2", "/Device/UpLinkConnection/ip",
                           "Device/UpLinkConnection/IP", "", "rss", "rss_", "/"}) {
    EXPECT_FALSE(values.Find(name, false).has_value()) << name;
  }
}

TEST(VariableValuesTest, TheListNamesAllVariables) {
  const auto names = ReadVariableNames(
      Json::parse(R"([{"name": "rss_A", "documentPath": "/Device/A", "kind": "text"},
                                        {"name": "rss_R??_B", "documentPath": "/Device/R:??/B"}])"));
  ASSERT_EQ(names.size(), 2U);
  EXPECT_EQ(names[0].name, "rss_A");
  EXPECT_EQ(names[0].document_path, "/Device/A");
  EXPECT_EQ(names[1].name, "rss_R??_B");
}

TEST(VariableValuesTest, WithoutAListThereIsNone) {
  EXPECT_TRUE(ReadVariableNames(Json::array()).empty());
}

}  // namespace
}  // namespace kiohost
