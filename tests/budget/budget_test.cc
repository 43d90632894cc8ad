// What one exchange of the full document takes of heap and stack.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "kioapp/kioapp.h"
#include "libc_calls.h"
#include "painted_stack.h"
#include "testing/memory_store.h"
#include "testing/temporary_root.h"

namespace kio::test {
namespace {

constexpr std::size_t kStackBudget = std::size_t{24} * 1024;
constexpr int kCommands = 6;

// An exchange of its own, from the factory state on.
class Exchange {
 public:
  Exchange() {
    const std::ifstream file(KIO_SAMPLE_DOCUMENTS "/full.xml", std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    text_ = text.str();
    StoreFactoryDevice();
    commands_before_ = CommandCount();
  }

  void Run() { result_ = do_RssXml_Parser(text_.data()); }

  // Nothing is proved by an exchange that was not accepted in full.
  void ExpectAccepted() const {
    EXPECT_EQ(result_, 1) << rssXmlData.setResult << " " << rssXmlData.setMsg;
    EXPECT_EQ(rssXmlData.wlan[1].wlAcRuleNo, 40);
    EXPECT_GT(StoreWrites(), 160);
    EXPECT_EQ(CommandCount() - commands_before_, kCommands);
  }

 private:
  std::string text_;
  int result_ = 0;
  int commands_before_ = 0;
};

Exchange* g_exchange = nullptr;

// The stack of one exchange, what entering an empty function takes left out.
std::size_t StackOfExchange() {
  const std::size_t empty = PaintedStack().Run([] {});
  Exchange exchange;
  g_exchange = &exchange;
  const std::size_t used = PaintedStack().Run([] { g_exchange->Run(); });
  exchange.ExpectAccepted();
  return used - empty;
}

class BudgetTest : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = std::string(TemporaryRoot()) + KIO_TEMPORARY_NAME;
    ASSERT_NE(mkdtemp(directory_.data()), nullptr);
    std::snprintf(daemon_log_path, sizeof(daemon_log_path), "%s", directory_.c_str());
    daemon_log_file_size_k = 100000;
    daemon_log_level = 5;
    UseLibcFormatting(true);
  }
  void TearDown() override { std::filesystem::remove_all(directory_); }

 private:
  std::string directory_;
};

TEST_F(BudgetTest, HeapCallsAreCounted) {
  const long before = HeapCalls();
  void* volatile memory = std::malloc(10);
  std::free(memory);
  EXPECT_GT(HeapCalls(), before);
}

class LevelTest : public BudgetTest, public ::testing::WithParamInterface<int> {};

TEST_P(LevelTest, ExchangeTakesNoHeap) {
  daemon_log_level = GetParam();
  Exchange exchange;
  const long before = HeapCalls();
  exchange.Run();
  EXPECT_EQ(HeapCalls() - before, 0);
  exchange.ExpectAccepted();
}

TEST_P(LevelTest, LibraryAloneStaysWithinItsStack) {
  daemon_log_level = GetParam();
  UseLibcFormatting(false);
  const std::size_t used = StackOfExchange();
  RecordProperty("stack_bytes", static_cast<int>(used));
  std::printf("level %d: %zu bytes of stack without libc's formatting\n", GetParam(), used);
  EXPECT_GT(used, std::size_t{1024});
  EXPECT_LE(used, kStackBudget);
}

TEST_P(LevelTest, ExchangeStaysWithinItsStack) {
  daemon_log_level = GetParam();
  const std::size_t used = StackOfExchange();
  RecordProperty("stack_bytes", static_cast<int>(used));
  std::printf("level %d: %zu bytes of stack with libc's formatting\n", GetParam(), used);
  EXPECT_GT(used, std::size_t{1024});
  EXPECT_LE(used, kStackBudget);
}

INSTANTIATE_TEST_SUITE_P(Levels, LevelTest, ::testing::Values(4, 5, 7));

}  // namespace
}  // namespace kio::test
