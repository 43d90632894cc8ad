#include "control/journal_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kiohost {
namespace {

using State = BodyStream::State;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class JournalStreamTest : public ::testing::Test {
 protected:
  void SetUp() override { journal_.Begin(false); }

  std::shared_ptr<BodyStream> Open(uint64_t since = 0, std::optional<std::string> last_id = {},
                                   std::vector<std::string> kinds = {}) {
    return streams_.Open({std::move(last_id), since, std::move(kinds)});
  }
  // What comes at one look, or the beginning of it.
  std::string Read(BodyStream* stream) {
    constexpr size_t kEnough = 1000;
    std::string text;
    if (stream->Look(now_) == State::kHasBytes) {
      std::string piece(100, ' ');
      size_t taken = piece.size();
      while (taken > 0 && text.size() < kEnough) {
        taken = stream->Take(piece.data(), piece.size());
        text += piece.substr(0, taken);
      }
    }
    return text;
  }
  void Add(const char* kind, int times = 1) {
    for (int i = 0; i < times; ++i) {
      journal_.Add(kind, {{"text", "a\nb"}});
    }
  }

  BodyStream::Clock::time_point now_ = BodyStream::Clock::now();
  Journal journal_;
  JournalStreams streams_ = JournalStreams(&journal_, "b007");
};

TEST_F(JournalStreamTest, EachEntryIsABlock) {
  Add("event", 2);
  const auto stream = Open(1);
  const std::string text = Read(stream.get());
  EXPECT_THAT(text, StartsWith("id: b007-2\nevent: event\ndata: {\"n\":2,\"uptime\":"));
  EXPECT_THAT(text, testing::EndsWith(",\"kind\":\"event\",\"text\":\"a\\nb\"}\n\n"));
  EXPECT_EQ(stream->Look(now_), State::kWaits);
  Add("said");
  EXPECT_THAT(Read(stream.get()), StartsWith("id: b007-3\nevent: said\n"));
  EXPECT_THAT(Read(Open(0, "b007-2").get()), StartsWith("id: b007-3\n"));
  EXPECT_EQ(Read(Open(3).get()), "");
  EXPECT_EQ(Read(Open(~uint64_t{0}).get()), "");
}

TEST_F(JournalStreamTest, KindsThatNobodyAskedForAreLeftOut) {
  const auto stream = Open(0, {}, {"write", "said"});
  Add("read", 2);
  EXPECT_EQ(Read(stream.get()), "");
  EXPECT_EQ(stream->Look(now_), State::kWaits);
  Add("said");
  EXPECT_THAT(Read(stream.get()), StartsWith("id: b007-3\nevent: said\n"));
  // Who comes back after a long silence is not told of what was left out.
  Add("read", 2);
  EXPECT_EQ(Read(stream.get()), "");
  now_ += std::chrono::seconds(16);
  EXPECT_EQ(Read(stream.get()), ": no news\nid: b007-5\n\n");
  now_ += std::chrono::seconds(16);
  EXPECT_EQ(Read(stream.get()), ": no news\n\n");
}

TEST_F(JournalStreamTest, WritesAreToldWhenTheyHaveSettled) {
  const auto stream = Open();
  for (const bool undone : {false, true}) {
    journal_.BeginWrites();
    journal_.AddWrite("/a", "1", "2", true);
    Add("command");
    EXPECT_EQ(Read(stream.get()), "");
    EXPECT_EQ(stream->Look(now_), State::kWaits);
    journal_.EndWrites(undone);
    const std::string text = Read(stream.get());
    EXPECT_THAT(text, HasSubstr("event: command"));
    EXPECT_THAT(text,
                undone ? HasSubstr("\"new\":\"2\",\"undone\":true}") : HasSubstr("\"new\":\"2\"}"));
  }
}

TEST_F(JournalStreamTest, WhatWasDroppedIsTold) {
  const auto stream = Open();
  Add("read", static_cast<int>(Journal::kMost));
  EXPECT_THAT(Read(Open().get()), StartsWith("id: b007-1\n"));
  Add("read", 5);
  // Also in the midst of a stream, which goes on with what is there.
  const auto late = Open();
  for (BodyStream* const reader : {stream.get(), late.get()}) {
    const std::string text = Read(reader);
    EXPECT_THAT(text, StartsWith("event: lost\ndata: {\"uptime\":"));
    EXPECT_THAT(text, HasSubstr("\"entries\":5,\"next\":\"b007-6\"}\n\nid: b007-6\n"));
  }
  EXPECT_THAT(Read(Open(5).get()), StartsWith("id: b007-6\n"));
  for (const char* id : {"b008-7", "b007-x", "b007-10006", ""}) {
    EXPECT_THAT(Read(Open(9, id).get()),
                testing::AllOf(StartsWith("event: lost\n"), HasSubstr("\"entries\":null")))
        << id;
  }
  EXPECT_THAT(Read(Open(0, "b007-9").get()), Not(HasSubstr("lost")));
}

// Only then anybody is to be told of news.
TEST_F(JournalStreamTest, ReadersAreCountedAndThereAreEightAtMost) {
  EXPECT_FALSE(streams_.IsRead());
  std::vector<std::shared_ptr<BodyStream>> open;
  for (size_t i = 0; i < OpenStreams::kMost; ++i) {
    open.push_back(Open());
    ASSERT_NE(open.back(), nullptr) << i;
  }
  EXPECT_EQ(Open(), nullptr);
  EXPECT_TRUE(streams_.IsRead());
  open.clear();
  EXPECT_FALSE(streams_.IsRead());
}

}  // namespace
}  // namespace kiohost
