#include "store_api.h"

#include <gtest/gtest.h>
#include <kioapp/store.h>

#include <array>
#include <cstring>
#include <string>

#include "node_path.h"
#include "store.h"
#include "temp_dir.h"

namespace kiohost {
namespace {

class StoreApiTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(store_.Open(dir_.File("store.db"), Store::Mode::kCreate).ok());
    BindStore(&store_);
  }
  void TearDown() override { BindStore(nullptr); }

  TempDir dir_;
  Store store_;
};

TEST_F(StoreApiTest, WritesAndReadsThroughFormattedPaths) {
  EXPECT_EQ(xset_str("6", "%s/channel", "/lan/wireless2.4:1"), 0);
  EXPECT_EQ(xset_int(-7, "/lan/wireless%s:%d/level", "5", 1), 0);
  std::array<char, 4096> text{};
  xget_str(text.data(), "/lan/wireless%s:1/channel", "2.4");
  EXPECT_STREQ(text.data(), "6");
  EXPECT_EQ(xget_int("/lan/wireless2.4:1/CHANNEL"), 6);
  EXPECT_EQ(xget_int("%s/level", "/lan/wireless5:1"), -7);
}

TEST_F(StoreApiTest, AnAbsentNodeReadsAsEmptyAndAsMinusOne) {
  std::array<char, 4096> text{'x'};
  xget_str(text.data(), "/sys/none");
  EXPECT_STREQ(text.data(), "");
  EXPECT_EQ(xget_int("/sys/none"), -1);
  EXPECT_EQ(xget_int("/sys/none#"), -1);
}

TEST_F(StoreApiTest, CountsAndDeletesInstances) {
  for (int i = 1; i <= 12; ++i) {
    EXPECT_EQ(xset_int(1, "/acl/acrule:%d/active", i), 0);
  }
  EXPECT_EQ(xget_int("%s/acrule#", "/acl"), 12);
  for (int i = 12; i > 1; --i) {
    EXPECT_EQ(xdel("/acl/acrule:%d", i), 0);
  }
  EXPECT_EQ(xget_int("/acl/acrule#"), 1);
  EXPECT_EQ(xget_int("/acl/acrule:1/active"), 1);
}

TEST_F(StoreApiTest, AnInstanceBeyondTheBoundIsNeitherWrittenNorDeletedNorRead) {
  EXPECT_EQ(xset_int(1, "/acl/acrule:%d/active", kMaxInstance), 0);
  EXPECT_NE(xset_int(1, "/acl/acrule:%d/active", kMaxInstance + 1), 0);
  EXPECT_NE(xset_int(1, "/acl/acrule:%d/active", 2000000000), 0);
  EXPECT_NE(xdel("/acl/acrule:%d", 2000000000), 0);
  EXPECT_EQ(xget_int("/acl/acrule:%d/active", 2000000000), -1);
  EXPECT_EQ(xget_int("/acl/acrule#"), kMaxInstance);
}

TEST_F(StoreApiTest, NeverWritesBeyondTheLibrarysBuffer) {
  ASSERT_TRUE(store_.Set("/sys/long", std::string(Store::kMaxTextLength, 'x')));
  std::array<char, 4097> buffer{};
  buffer.fill('#');
  xget_str(buffer.data(), "/sys/long");
  EXPECT_EQ(std::strlen(buffer.data()), 4095U);
  EXPECT_EQ(buffer[4096], '#');
}

TEST_F(StoreApiTest, APathThatDoesNotFitIsNotCutToAnotherNode) {
  const std::string longest = "/" + std::string(254, 'a');
  EXPECT_EQ(xset_str("1", "%s", longest.c_str()), 0);
  EXPECT_NE(xset_str("2", "%s%s", longest.c_str(), "bcd"), 0);
  EXPECT_EQ(xget_int("%s%s", longest.c_str(), "bcd"), -1);
  EXPECT_EQ(xget_int("%s", longest.c_str()), 1);
}

TEST_F(StoreApiTest, ATextIsNeverAFormat) {
  EXPECT_EQ(xset_str("%s%n", "/sys/a"), 0);
  EXPECT_EQ(store_.Get("/sys/a"), "%s%n");
}

TEST(StoreApiWithoutStoreTest, EveryNodeIsAbsent) {
  std::array<char, 4096> text{'x'};
  xget_str(text.data(), "/sys/a");
  EXPECT_STREQ(text.data(), "");
  EXPECT_EQ(xget_int("/sys/a"), -1);
  EXPECT_NE(xset_str("1", "/sys/a"), 0);
  EXPECT_NE(xset_int(1, "/sys/a"), 0);
  EXPECT_NE(xdel("/sys/a"), 0);
}

}  // namespace
}  // namespace kiohost
