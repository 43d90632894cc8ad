#include "platform/store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <string>

#include "guarded.h"
#include "platform/command.h"
#include "sandbox.h"
#include "testing/heap_chars.h"

// There when the program is linked with the address sanitizer.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): its name
extern "C" __attribute__((weak)) void __asan_init();
// There when the library is compiled to count what is executed.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming): its name
extern "C" __attribute__((weak)) int __llvm_profile_write_file();

namespace kio::platform {
namespace {

using test::StoreCall;
using ::testing::ElementsAre;

class StoreTest : public test::SandboxTest {};

TEST_F(StoreTest, TextIsReadOnceWhenTheObjectIsMade) {
  host_.Set("/sys/friendlyname", "den");
  const StoreText text("/sys/friendlyname");
  EXPECT_STREQ(text.c_str(), "den");
  EXPECT_EQ(text.view(), "den");
  EXPECT_FALSE(text.empty());
  EXPECT_THAT(host_.calls(),
              ElementsAre(StoreCall{StoreCall::Kind::kGetText, "/sys/friendlyname", "den"}));
}

TEST_F(StoreTest, AbsentTextIsEmptyWhateverTheHostDoes) {
  for (const bool untouched : {true, false}) {
    host_.absent_leaves_buffer = untouched;
    const StoreText text("/absent");
    EXPECT_TRUE(text.empty());
    EXPECT_STREQ(text.c_str(), "");
  }
}

TEST_F(StoreTest, PathIsNoFormat) {
  host_.Set("/a%s%n", "x");
  EXPECT_STREQ(StoreText("/a%s%n").c_str(), "x");
  WriteStoreText("/b%d", "100%s");
  EXPECT_EQ(host_.Text("/b%d"), "100%s");
  WriteStoreInt("/c%d", 5);
  EXPECT_EQ(ReadStoreInt("/c%d"), 5);
  DeleteStoreNode("/c%d");
  EXPECT_EQ(ReadStoreInt("/c%d"), -1);
}

TEST_F(StoreTest, LongTextsAreCutToTheField) {
  host_.text_for_every_node = std::string(4000, 'x');
  for (const std::size_t size : {1U, 2U, 16U, 128U}) {
    const test::Guarded field(size);
    ReadStoreText("/any", field.data(), size);
    EXPECT_EQ(field.data(), std::string(size - 1, 'x'));
  }
  EXPECT_EQ(StoreText("/any").view().size(), 4000U);
}

// All that kioapp/store.h allows.
TEST_F(StoreTest, TextsOf4095CharactersAreReadInFull) {
  host_.text_for_every_node = std::string(4095, 'x');
  EXPECT_EQ(StoreText("/any").view(), std::string(4095, 'x'));
  HeapChars<4096> field;
  ReadStoreSecret("/any", field.array());
  EXPECT_EQ(std::string(field), std::string(4095, 'x'));
}

TEST_F(StoreTest, TextThatFillsTheBufferIsTerminated) {
  host_.text_for_every_node = std::string(4096, 'x');
  host_.leaves_out_terminator = true;
  EXPECT_EQ(StoreText("/any").view(), std::string(4095, 'x'));
}

class StoreDeathTest : public StoreTest, public ::testing::WithParamInterface<std::size_t> {
 protected:
  // Reads texts of so many characters, in a process that leaves no core behind.
  template <typename Read>
  void ExpectStopped(const Read& read) {
    host_.text_for_every_node = std::string(GetParam(), 'x');
    const auto run = [&] {
      const rlimit no_core = {};
      setrlimit(RLIMIT_CORE, &no_core);
      // What stops so writes no counts by itself.
      if (__llvm_profile_write_file != nullptr) {
        std::signal(SIGABRT, [](int) { __llvm_profile_write_file(); });
      }
      read();
    };
    EXPECT_EXIT(run(), ::testing::KilledBySignal(SIGABRT),
                "libkioapp: xget_str wrote more than the 4096 bytes that kioapp/store.h allows: "
                "stopped");
  }
};

TEST_P(StoreDeathTest, LongerTextsStopTheProcess) {
  ExpectStopped([] { const StoreText text("/any"); });
  ExpectStopped([] {
    HeapChars<8> field;
    ReadStoreText("/any", field.array());
  });
  ExpectStopped([] {
    HeapChars<8> field;
    ReadStoreSecret("/any", field.array());
  });
}

// What is further behind is told by the sanitizer, when the library is compiled with it.
std::size_t Longest() { return __asan_init == nullptr ? 4300 : 4099; }

INSTANTIATE_TEST_SUITE_P(Sizes, StoreDeathTest,
                         ::testing::Values(4096, 4097, 4098, 4099, Longest()));

TEST_F(StoreTest, AbsentTextEmptiesTheField) {
  HeapChars<8> field("before");
  ReadStoreText("/absent", field.array());
  EXPECT_STREQ(field, "");
}

TEST_F(StoreTest, AbsentIntegerTakesTheCallersValue) {
  EXPECT_EQ(ReadStoreInt("/absent"), -1);
  EXPECT_EQ(ReadStoreInt("/absent", 2), 2);
  host_.Set("/zero", 0);
  EXPECT_EQ(ReadStoreInt("/zero", 2), 0);
  host_.Set("/negative", -5);
  EXPECT_EQ(ReadStoreInt("/negative", 2), 2);
}

TEST_F(StoreTest, PathsGrowBelowABase) {
  StorePath radio("/lan/wireless", "2.4", ":1");
  EXPECT_STREQ(radio.c_str(), "/lan/wireless2.4:1");
  EXPECT_STREQ(radio.Node("/channel"), "/lan/wireless2.4:1/channel");
  EXPECT_STREQ(radio.Instance("/acrule", 3, "/mac"), "/lan/wireless2.4:1/acrule:3/mac");
  EXPECT_STREQ(radio.Instance("/acrule", 40), "/lan/wireless2.4:1/acrule:40");
  EXPECT_STREQ(radio.Node(""), "/lan/wireless2.4:1");
}

TEST_F(StoreTest, PathsAreCutAt127Characters) {
  StorePath path(std::string(120, 'p').c_str());
  EXPECT_EQ(path.Node("/123456789"), std::string(120, 'p') + "/123456");
  EXPECT_EQ(path.Instance("/a", 1234567, "/b"), std::string(120, 'p') + "/a:1234");
}

TEST_F(StoreTest, CommandsGoToTheShellAsTheyAre) {
  host_.system_status = 256;
  EXPECT_EQ(RunCommand("echo '%s' > \"x y\""), 256);
  EXPECT_THAT(host_.commands(), ElementsAre("echo '%s' > \"x y\""));
}

}  // namespace
}  // namespace kio::platform
