#include "event_streams.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace kiohost {
namespace {

using State = BodyStream::State;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr char kOwnAddress[] = "192.0.2.1";

class EventStreamsTest : public ::testing::Test {
 protected:
  std::shared_ptr<BodyStream> Open(std::optional<std::string_view> last_id = std::nullopt) {
    return streams_.Open(kOwnAddress, last_id);
  }
  static std::string TakeAll(BodyStream* stream, size_t at_once = 7) {
    std::string text;
    std::string piece(at_once, ' ');
    while (const size_t taken = stream->Take(piece.data(), piece.size())) {
      text += piece.substr(0, taken);
    }
    return text;
  }
  void Add(EventKind kind, const std::string& client = "192.0.2.9") {
    events_.Add({kind, {{"client", client}}});
  }

  BodyStream::Clock::time_point now_ = BodyStream::Clock::now();
  bool logged_in_ = true;
  Events events_;
  EventStreams streams_ = EventStreams(
      {&events_, "b007", [this](const std::string& /*address*/) { return logged_in_; }});
};

TEST_F(EventStreamsTest, BeginsWithTheIdToComeBackWith) {
  Add(EventKind::kLogin);
  const auto stream = Open();
  EXPECT_EQ(stream->Look(now_), State::kHasBytes);
  EXPECT_EQ(TakeAll(stream.get()), "id: b007-1\n\n");
  EXPECT_EQ(stream->Look(now_), State::kWaits);
  EXPECT_FALSE(stream->IsOver());
}

// In pieces of any size.
TEST_F(EventStreamsTest, AnEventIsOneBlockWithItsTextsEscaped) {
  const auto stream = Open("b007-0");
  events_.Add({EventKind::kRefused, {{"fault", "a\r\n\nevent: x\xff"}}, "told \x1b"});
  EXPECT_EQ(stream->Look(now_), State::kHasBytes);
  const std::string text = TakeAll(stream.get(), 1);
  EXPECT_THAT(text, StartsWith("id: b007-1\nevent: refused\ndata: {\"id\":\"b007-1\",\"uptime\":"));
  EXPECT_THAT(text, EndsWith(",\"kind\":\"refused\",\"fault\":\"a\\r\\n\\nevent: x\xEF\xBF\xBD\","
                             "\"text\":\"told \\u001b\"}\n\n"));
}

TEST_F(EventStreamsTest, AReaderWhoseNextEventIsGoneIsLost) {
  const auto stream = Open();
  for (size_t i = 0; i < Events::kMost; ++i) {
    Add(EventKind::kLogin);
  }
  EXPECT_EQ(stream->Look(now_), State::kHasBytes);
  Add(EventKind::kLogin);
  EXPECT_EQ(stream->Look(now_), State::kLost);
}

TEST_F(EventStreamsTest, WhatIsLostIsSaid) {
  for (size_t i = 0; i < Events::kMost; ++i) {
    Add(EventKind::kLogin);
  }
  EXPECT_THAT(TakeAll(Open("b007-0").get()), StartsWith("id: b007-1\n"));
  Add(EventKind::kLogin);
  EXPECT_THAT(TakeAll(Open("b007-0").get()), StartsWith("event: lost\ndata: {\"id\":null,"));
  EXPECT_THAT(TakeAll(Open("b007-1").get()), StartsWith("id: b007-2\n"));
  EXPECT_EQ(TakeAll(Open("b007-201").get()), "");
  for (const char* id : {"b007-202", "b008-7", "b007-", "b007-x", "b007--1", "", "7"}) {
    EXPECT_THAT(TakeAll(Open(id).get()), StartsWith("event: lost\n")) << id;
  }
}

TEST_F(EventStreamsTest, SaysNowAndThenThatThereIsNoNews) {
  const auto stream = Open("b007-0");
  using std::chrono::seconds;
  EXPECT_EQ(stream->Look(now_ + seconds(14)), State::kWaits);
  EXPECT_EQ(stream->Look(now_ + seconds(16)), State::kHasBytes);
  EXPECT_EQ(TakeAll(stream.get()), ": no news\n\n");
  EXPECT_EQ(stream->Look(now_ + seconds(30)), State::kWaits);
  Add(EventKind::kLogin);
  EXPECT_EQ(stream->Look(now_ + seconds(40)), State::kHasBytes);
  EXPECT_THAT(TakeAll(stream.get()), Not(HasSubstr("no news")));
  EXPECT_EQ(stream->Look(now_ + seconds(54)), State::kWaits);
}

TEST_F(EventStreamsTest, TheEndOfTheLoginIsTheLastThatIsTold) {
  for (const EventKind kind : {EventKind::kLogout, EventKind::kLapse}) {
    const auto stream = Open();
    Add(kind, "192.0.2.2");
    Add(kind, kOwnAddress);
    Add(EventKind::kLogin, kOwnAddress);
    const std::string text = TakeAll(stream.get());
    EXPECT_THAT(text, HasSubstr("192.0.2.2"));
    EXPECT_THAT(text, HasSubstr(kOwnAddress));
    EXPECT_THAT(text, Not(HasSubstr("event: login")));
    EXPECT_EQ(stream->Look(now_), State::kOver);
    EXPECT_TRUE(stream->IsOver());
  }
}

TEST_F(EventStreamsTest, TheEndOfAnEarlierLoginDoesNotEndTheStream) {
  for (const EventKind kind : {EventKind::kLogout, EventKind::kLapse}) {
    Add(kind, kOwnAddress);
  }
  Add(EventKind::kLogin, kOwnAddress);
  const auto stream = Open("b007-0");
  EXPECT_THAT(TakeAll(stream.get()), HasSubstr("event: login"));
  EXPECT_FALSE(stream->IsOver());
  Add(EventKind::kLogout, kOwnAddress);
  TakeAll(stream.get());
  EXPECT_TRUE(stream->IsOver());
}

TEST_F(EventStreamsTest, NothingIsToldThatComesAfterTheEndOfTheLogin) {
  const auto stream = Open("b007-0");
  Add(EventKind::kRefused);
  logged_in_ = false;
  EXPECT_EQ(stream->Look(now_), State::kHasBytes);
  Add(EventKind::kApplied);
  const std::string text = TakeAll(stream.get());
  EXPECT_THAT(text, HasSubstr("refused"));
  EXPECT_THAT(text, Not(HasSubstr("applied")));
  EXPECT_TRUE(stream->IsOver());
}

TEST_F(EventStreamsTest, ThereAreEightAtOnce) {
  std::vector<std::shared_ptr<BodyStream>> open;
  for (size_t i = 0; i < EventStreams::kMost; ++i) {
    open.push_back(Open());
    ASSERT_NE(open.back(), nullptr) << i;
  }
  EXPECT_EQ(Open(), nullptr);
  open[3].reset();
  EXPECT_NE(Open(), nullptr);
}

}  // namespace
}  // namespace kiohost
