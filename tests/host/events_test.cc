#include "events.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace kiohost {
namespace {

Event ForPeople(int number) {
  return {EventKind::kChannel, Json::object(), "event " + std::to_string(number)};
}

TEST(EventsOfHostTest, AreNumberedAndTold) {
  int told = 0;
  Events events;
  events.set_listener([&told] { ++told; });
  EXPECT_EQ(events.last(), 0U);
  EXPECT_FALSE(events.Find(0));
  EXPECT_FALSE(events.Find(1));
  events.Add({EventKind::kLogin, {{"client", "192.0.2.1"}}});
  events.Add({EventKind::kLogout});
  EXPECT_EQ(told, 2);
  EXPECT_EQ(events.last(), 2U);
  EXPECT_EQ(events.Find(1)->number, 1U);
  EXPECT_EQ(events.Find(1)->event.about["client"], "192.0.2.1");
  EXPECT_STREQ(KindWord(events.Find(2)->event.kind), "logout");
  EXPECT_FALSE(events.Find(0));
  EXPECT_FALSE(events.Find(3));
}

TEST(EventsOfHostTest, TheLast200AreFound) {
  Events events;
  for (int i = 1; i <= 1000; ++i) {
    events.Add({EventKind::kLogin, {{"number", i}}});
  }
  EXPECT_EQ(events.oldest(), 801U);
  EXPECT_FALSE(events.Find(800));
  EXPECT_EQ(events.Find(801)->event.about["number"], 801);
  EXPECT_EQ(events.Find(1000)->event.about["number"], 1000);
}

// Others than those for a person come more often.
TEST(EventsOfHostTest, TheLast50ForAPersonStayHoweverOldTheyAre) {
  Events events;
  for (int i = 0; i < 300; ++i) {
    events.Add(ForPeople(i));
  }
  for (int i = 0; i < 1000; ++i) {
    events.Add({EventKind::kLogin});
  }
  const Json json = events.AsJson();
  ASSERT_EQ(json.size(), 50U);
  EXPECT_EQ(json.front()["text"], "event 250");
  EXPECT_EQ(json.back()["text"], "event 299");
  EXPECT_FALSE(events.Find(300));
  EXPECT_EQ(events.Find(1101)->number, 1101U);
  events.Add(ForPeople(300));
  EXPECT_EQ(events.AsJson().front()["text"], "event 251");
}

}  // namespace
}  // namespace kiohost
