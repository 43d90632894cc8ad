#include "settings_tag.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(SettingsTagTest, ATagIsNamedByItselfInQuotesInAListOrByAStar) {
  EXPECT_TRUE(MatchesTag("00a1", "00a1"));
  EXPECT_TRUE(MatchesTag("\"00a1\"", "00a1"));
  EXPECT_TRUE(MatchesTag(" \"x\" ,\t\"00a1\" ", "00a1"));
  EXPECT_TRUE(MatchesTag("*", "00a1"));
  EXPECT_TRUE(MatchesTag("x, *", "00a1"));
  EXPECT_FALSE(MatchesTag("", "00a1"));
  EXPECT_FALSE(MatchesTag(",", "00a1"));
  EXPECT_FALSE(MatchesTag("00a", "00a1"));
  EXPECT_FALSE(MatchesTag("00A1", "00a1"));
  EXPECT_FALSE(MatchesTag("W/\"00a1\"", "00a1")) << "a weak tag never matches";
  EXPECT_FALSE(MatchesTag("\"", "00a1"));
}

TEST(SettingsTagTest, SettingsThatWereTakenBackHaveAnotherTag) {
  EXPECT_EQ(SettingsTag(std::nullopt), "none");
  EXPECT_EQ(SettingsTag(Apply{"7", ApplyOutcome::kApplied, 1}), "7");
  EXPECT_EQ(SettingsTag(Apply{"7", ApplyOutcome::kInForce, 1}), "7");
  EXPECT_EQ(SettingsTag(Apply{"7", ApplyOutcome::kFailed, 1}), "7");
  EXPECT_EQ(SettingsTag(Apply{"7", ApplyOutcome::kGoingBack, 1}), "7-rolled-back");
  EXPECT_EQ(SettingsTag(Apply{"7", ApplyOutcome::kRolledBack, 1}), "7-rolled-back");
}

}  // namespace
}  // namespace kiohost
