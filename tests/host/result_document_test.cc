#include "result_document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "temp_dir.h"

namespace kiohost {
namespace {

class ResultDocumentFileTest : public ::testing::Test {
 protected:
  bool IsWrittenAs(const std::string& text, const ExchangeResult& result) const {
    std::ofstream(dir_.File("r"), std::ios::binary) << text;
    return IsWritten(dir_.File("r"), result);
  }

  TempDir dir_;
};

const char kText[] =
    "<?xml version=\"1.0\" ?>\n<root>\n <RssSetResult>3</RssSetResult>\n"
    " <RssSetMsg>Device/Channel</RssSetMsg>\n <RssGetWaitSec>7</RssGetWaitSec>\n</root>\n";

TEST_F(ResultDocumentFileTest, HasSixLines) {
  EXPECT_EQ(ResultText({3, "Device/Channel", 7}), kText);
  EXPECT_TRUE(IsWrittenAs(kText, {3, "Device/Channel", 7}));
}

TEST_F(ResultDocumentFileTest, AnotherResultIsNotThisOne) {
  EXPECT_FALSE(IsWrittenAs(kText, {2, "Device/Channel", 7}));
  EXPECT_FALSE(IsWrittenAs(kText, {3, "Device/Channe", 7}));
  EXPECT_FALSE(IsWrittenAs(kText, {3, "Device/Channel", 0}));
  EXPECT_FALSE(IsWritten(dir_.File("none"), {3, "Device/Channel", 7}));
}

TEST_F(ResultDocumentFileTest, EveryPieceCounts) {
  for (const ExchangeResult& result :
       {ExchangeResult{3, "Device/Channel", 7}, ExchangeResult{3, "a\\b", 7}}) {
    const std::string whole = ResultText(result);
    const size_t message = whole.find(result.message);
    for (size_t cut = 0; cut < whole.size(); ++cut) {
      EXPECT_FALSE(IsWrittenAs(whole.substr(0, cut), result)) << cut;
      // What a shell makes of a message with a backslash is not known.
      if (cut < message || cut >= whole.find(" <RssGet") ||
          result.message.find('\\') == std::string::npos) {
        EXPECT_FALSE(IsWrittenAs(std::string(whole).erase(cut, 1), result)) << cut;
      }
    }
    EXPECT_FALSE(IsWrittenAs(whole + "\n", result));
  }
}

TEST_F(ResultDocumentFileTest, AShellMayInterpretBackslashes) {
  const ExchangeResult result = {2, "rss_a\\tb", 0};
  const std::string whole = ResultText(result);
  const size_t at = whole.find("\\t");
  EXPECT_TRUE(IsWrittenAs(whole, result));
  EXPECT_TRUE(IsWrittenAs(std::string(whole).replace(at, 2, "\t"), result));
}

}  // namespace
}  // namespace kiohost
