// Reading a node for display: defaults, keywords, encoding.
#include <algorithm>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/exchange.h"

namespace kio::test {
namespace {

using Kind = StoreCall::Kind;

class StoreNodeTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Host().Set("/runtime/zentrolinks/lanip", "192.168.1.1");
    Host().Set("/zentrolinks/rsshttpport", "80");
    std::fill(std::begin(buffer_), std::end(buffer_), '#');
  }

  // Whether nothing was written behind the 256 bytes that the function may use.
  [[nodiscard]] bool GuardIntact() const {
    return std::string(buffer_ + 256, 16) == std::string(16, '#');
  }

  char buffer_[272];
};

TEST_F(StoreNodeTest, CopiesTheText) {
  Host().Set("/n", "a<b>&'\"");
  EXPECT_EQ(getXNode(buffer_, "/n", nullptr), buffer_);
  EXPECT_STREQ(buffer_, "a<b>&'\"");
  EXPECT_EQ(getXNode_(buffer_, "/n", "unused", 0), buffer_);
  EXPECT_STREQ(buffer_, "a<b>&'\"");
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(StoreNodeTest, EncodesForXml) {
  Host().Set("/n", "a<b>&'\"");
  EXPECT_EQ(getXNode_(buffer_, "/n", nullptr, 1), buffer_);
  EXPECT_STREQ(buffer_, "a&lt;b&gt;&amp;&#39;&quot;");
}

TEST_F(StoreNodeTest, FillsInAddressAndPort) {
  Host().Set("/n", "http://$lanip:$rssport/");
  getXNode(buffer_, "/n", nullptr);
  EXPECT_STREQ(buffer_, "http://192.168.1.1:80/");
  EXPECT_EQ(Host().Text("/n"), "http://$lanip:$rssport/") << "the node keeps its keywords";
}

TEST_F(StoreNodeTest, DefaultIsWrittenToAnEmptyNode) {
  getXNode(buffer_, "/n", "$lanip!");
  EXPECT_STREQ(buffer_, "192.168.1.1!");
  EXPECT_EQ(Host().Writes(), (std::vector<StoreCall>{{Kind::kSetText, "/n", "$lanip!"}}));
}

TEST_F(StoreNodeTest, NoDefaultLeavesAnEmptyNodeAlone) {
  for (const bool untouched : {true, false}) {
    Host().absent_leaves_buffer = untouched;
    getXNode_(buffer_, "/n", nullptr, 0);
    EXPECT_STREQ(buffer_, "");
    getXNode_(buffer_, "/n", nullptr, 1);
    EXPECT_STREQ(buffer_, "");
  }
  EXPECT_TRUE(Host().Writes().empty());
}

TEST_F(StoreNodeTest, LongTextsAreCut) {
  Host().Set("/n", std::string(4000, 'x'));
  getXNode(buffer_, "/n", nullptr);
  EXPECT_EQ(std::string(buffer_), std::string(255, 'x'));
  EXPECT_TRUE(GuardIntact());
}

TEST_F(StoreNodeTest, EncodingIsCutAt255CharactersInsideAnEntity) {
  Host().Set("/n", std::string(250, 'x') + "<&>" + std::string(3000, 'y'));
  getXNode_(buffer_, "/n", nullptr, 1);
  EXPECT_EQ(std::string(buffer_), std::string(250, 'x') + "&lt;&");
  EXPECT_TRUE(GuardIntact());
}

TEST_F(StoreNodeTest, LongAddressAndPortDoNoHarm) {
  Host().Set("/runtime/zentrolinks/lanip", std::string(4000, 'i'));
  Host().Set("/zentrolinks/rsshttpport", std::string(4000, 'p'));
  Host().Set("/n", "$lanip$rssport$lanip$rssport$lanip$rssport$lanip$rssport");
  getXNode(buffer_, "/n", nullptr);
  EXPECT_LE(std::string(buffer_).size(), 255U);
  EXPECT_TRUE(GuardIntact());
}

TEST_F(StoreNodeTest, PercentSignsAreOrdinaryCharacters) {
  const std::string path = "/a%s%n";
  getXNode(buffer_, path.c_str(), "%s%d");
  EXPECT_STREQ(buffer_, "%s%d");
  EXPECT_EQ(Host().Writes(), (std::vector<StoreCall>{{Kind::kSetText, path, "%s%d"}}));
}

}  // namespace
}  // namespace kio::test
