#include "accept.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(AcceptTest, TheHigherQualityIsPreferred) {
  const struct {
    const char* accept;
    bool json;
  } cases[] = {
      {"", false},
      {"*/*", false},
      {"text/plain", false},
      {"application/json", true},
      {"Application/JSON", true},
      {"application/json;q=0.5, text/plain;q=0.4", true},
      {"application/json;q=0.4, text/plain;q=0.5", false},
      {"text/plain;q=0.999 , application/json ; Q=1.000", true},
      {"application/json;charset=utf-8;q=0.1, text/plain;q=0.2", false},
      {"application/json;q=0", false},
      {"application/json;q=0, */*", false},
      {"application/json;q=0.0, text/plain;q=0", false},
      {"text/*;q=0.3, application/*;q=0.4", true},
      // The closest range counts, and not the best one.
      {"text/plain;q=0.1, */*;q=0.9, application/json;q=0.5", true},
      {"application/json;q=0.1, application/*, text/plain;q=0.2", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Prefers(c.accept, kJsonType, "text/plain"), c.json) << c.accept;
  }
}

TEST(AcceptTest, WithTheSameQualityTheCloserNameIsPreferred) {
  EXPECT_TRUE(Prefers("application/json, */*", kJsonType, "text/plain"));
  EXPECT_TRUE(Prefers("application/*, */*", kJsonType, "text/plain"));
  EXPECT_FALSE(Prefers("application/json, text/plain, */*", kJsonType, "text/plain"));
  EXPECT_FALSE(Prefers("text/plain, */*", kJsonType, "text/plain"));
  EXPECT_FALSE(Prefers("application/json;q=0.5, */*;q=0.6", kJsonType, "text/plain"));
}

TEST(AcceptTest, WhatIsNoQualityIsTheHighest) {
  EXPECT_TRUE(Prefers("application/json;q=x, text/plain;q=0.9", kJsonType, "text/plain"));
  EXPECT_TRUE(Prefers("application/json;q=0.x, text/plain;q=0.9", kJsonType, "text/plain"));
  EXPECT_FALSE(Prefers("application/json;q=1.9, text/plain", kJsonType, "text/plain"));
  EXPECT_FALSE(Prefers(";;,,;q=1,", kJsonType, "text/plain"));
}

TEST(AcceptTest, ProblemDetailsAreAskedForByNameOrAsJson) {
  for (const char* accept :
       {"application/problem+json", "application/json", "application/problem+json, text/plain",
        "text/plain, application/problem+json, */*", "application/problem+json;q=0.2, */*;q=0.1"}) {
    EXPECT_TRUE(PrefersProblem(accept, "text/plain")) << accept;
  }
  for (const char* accept :
       {"", "*/*", "text/plain, application/json", "application/problem+json;q=0",
        "application/problem+json;q=0.5, text/plain", "text/html, */*"}) {
    EXPECT_FALSE(PrefersProblem(accept, "text/plain")) << accept;
  }
}

}  // namespace
}  // namespace kiohost
