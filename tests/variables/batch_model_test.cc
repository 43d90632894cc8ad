// Batches of any form, read as the plainest way of cutting them does.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "kioapp/xml.h"
#include "testing/heap_chars.h"
#include "variables/batch.h"

namespace kio::test {
namespace {

std::string Trimmed(std::string_view text) {
  const std::size_t last = text.find_last_not_of(" \t\r\n");
  return std::string(text.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

// Goes to the next pair by looking through the whole rest for each character that may end it.
class ModelPairs {
 public:
  ModelPairs(std::string_view text, char separator) : rest_(text), separator_(separator) {}

  bool Next() {
    const std::string skipped = std::string(" \t\r\n") + separator_;
    rest_.remove_prefix(std::min(rest_.find_first_not_of(skipped), rest_.size()));
    const std::size_t equals = rest_.find('=');
    if (equals == std::string_view::npos) {
      return false;
    }
    name_ = Trimmed(rest_.substr(0, equals)).substr(0, 31);
    rest_.remove_prefix(equals + 1);
    rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size()));
    const std::size_t end =
        std::min({rest_.find(separator_), rest_.find_first_of("\r\n"), rest_.size()});
    value_ = Trimmed(rest_.substr(0, end)).substr(0, KIOAPP_VAR_SIZE - 1);
    rest_.remove_prefix(end);
    return true;
  }

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::string& value() const { return value_; }

 private:
  std::string_view rest_;
  char separator_;
  std::string name_;
  std::string value_;
};

// do_RssVar_Parser over these pairs.
Answer ModelBatch(const std::string& text, char separator, int apply) {
  logPrintf(7, "%ld:%s]", sys_uptime_seconds(), "do_RssVar_Parser");
  logPrintf(7, "\n");
  logPrintf(6, "---- Received Rss Var Data Begin ----\n%s\n---- Received Rss Var Data End ----\n",
            text.c_str());
  ModelPairs pairs(text, separator);
  while (pairs.Next()) {
    HeapChars<KIOAPP_VAR_SIZE> value;
    Put(value.array(), pairs.value());
    const unsigned code = set_RssVar(pairs.name().c_str(), value);
    if (code != 0) {
      write_RssXml_ResultXml(static_cast<int>(code), pairs.name().c_str(), 0);
      return {code, pairs.name()};
    }
  }
  XmlErrMsg_LostKey = write_RssXml_LostKeyError;
  if (Verify_RssXml() == 1) {
    if (apply == 0) {
      write_RssXml_ResultXml(0, "", 0);
    } else if (Apply_RssXmlToDevice() == 1) {
      calc_RssExeFlag();
      write_RssXml_ResultXml(0, "", rssXmlData.exeWaitSec);
    }
  }
  dump_RssXmlData();
  logPrintf(7, "done, ret=%d\n", rssXmlData.setResult);
  return {static_cast<unsigned>(rssXmlData.setResult), rssXmlData.setMsg};
}

// Everything that a batch leaves behind.
struct Outcome {
  Answer answer;
  std::vector<StoreCall> calls;
  std::vector<std::string> commands;
  std::string log;

  bool operator==(const Outcome&) const = default;
};

std::string SomeText(std::mt19937& random) {
  static const std::vector<std::string> kPieces = {"rss_Upl_Dsl_IspName",
                                                   "rss_Upl_Dsl_IspName=",
                                                   "rss_Upl_Apn_IspName=",
                                                   "rss_Upl_Apn_IspName",
                                                   "rss_DeviceName=Attic",
                                                   "rss_Wl2_WlEnbl=",
                                                   "rss_Act_SetRssVars=rss_Upl_Dsl_IspName=x",
                                                   "/Device/SafetyVyr/UrlDetectEnblAnything=1",
                                                   "=",
                                                   "=",
                                                   "==",
                                                   "&",
                                                   "&",
                                                   "&",
                                                   "&&& ",
                                                   "\n",
                                                   "\r\n",
                                                   "\r",
                                                   " ",
                                                   "\t",
                                                   ";",
                                                   "1",
                                                   "value",
                                                   "\xE4\xFF",
                                                   "%s%n",
                                                   std::string(126, 'v'),
                                                   std::string(31, 'n'),
                                                   std::string(40, ' ')};
  std::string text;
  const auto count = random() % 12;
  for (unsigned long i = 0; i < count; ++i) {
    // Mostly pairs that are accepted, so that the batch goes on.
    text += random() % 3 == 0 ? "&rss_Upl_Dsl_IspName=" : "";
    text += kPieces[random() % kPieces.size()];
  }
  return text;
}

class BatchModelTest : public BatchFixture {
 protected:
  template <typename Run>
  Outcome OutcomeOf(int level, const Run& run) {
    Host().Reset();
    SetUp();
    XmlErrMsg_LostKey = nullptr;
    log_file::Start(level);
    const Answer answer = run();
    return {answer, Host().calls(), Host().commands(), log_file::Contents()};
  }
};

TEST_F(BatchModelTest, AnyTextIsCutAsTheModelCutsIt) {
  constexpr int kTexts = KIO_TEST_EMULATED ? 300 : 2000;
  std::mt19937 random(11);
  int accepted = 0;
  int refused = 0;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = SomeText(random);
    const char separator = "&&&&&; \n\t=v\r"[random() % 12];
    const int apply = i % 4 == 0 ? 1 : 0;
    // Each of many lines of a log opens its file.
    const int level = i % 32 == 0 ? 7 : 5;
    const Outcome expected = OutcomeOf(level, [&] { return ModelBatch(text, separator, apply); });
    const RssXmlData expected_record = rssXmlData;
    const Outcome outcome = OutcomeOf(level, [&] { return Batch(text, separator, apply); });
    ASSERT_EQ(outcome.answer, expected.answer) << text;
    ASSERT_EQ(outcome.log, expected.log) << text;
    ASSERT_TRUE(outcome == expected) << text;
    // Its bytes, between the members too: neither way writes there.
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
    ASSERT_EQ(std::memcmp(&rssXmlData, &expected_record, sizeof(rssXmlData)), 0) << text;
    ++(outcome.answer.code == 0 ? accepted : refused);
  }
  EXPECT_GT(accepted, kTexts / 20);
  EXPECT_GT(refused, kTexts / 20);
}

}  // namespace
}  // namespace kio::test
