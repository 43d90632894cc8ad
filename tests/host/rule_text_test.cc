#include "rule_text.h"

#include <gtest/gtest.h>

namespace kiohost {
namespace {

TEST(RuleTextTest, ARuleIsToldForProgramsAndInWords) {
  const struct {
    const char* rule;
    const char* accepted;
    const char* words;
  } cases[] = {
      {"0,32,1", R"({"minLength":1,"maxLength":32,"characters":"printable"})",
       "1 to 32 printable characters"},
      {"", R"({"minLength":1,"maxLength":9999,"characters":"printable"})",
       "1 to 9999 printable characters"},
      {"0,63,0,1", R"({"minLength":0,"maxLength":63,"characters":"any"})", "0 to 63 characters"},
      {"0,63,1,0,1,0-9,a-z,\\,",
       R"({"minLength":1,"maxLength":63,"characters":"printable",)"
       R"("only":["0-9","a-z",","]})",
       R"(1 to 63 printable characters, only "0-9", "a-z", ",")"},
      {"0,32,5,0,0, ,\\\\",
       R"({"minLength":5,"maxLength":32,"characters":"printable",)"
       R"("not":[" ","\\"]})",
       R"(5 to 32 printable characters, not " ", "\\")"},
      {"0,9,1,0,1", R"({"minLength":1,"maxLength":9,"characters":"printable","only":[]})",
       "1 to 9 printable characters, only none"},
      {"1,14,1", R"({"minimum":1.0,"maximum":14.0})", "a number of at least 1 and of at most 14"},
      {"1,2.5", R"({"maximum":2.5})", "a number of at most 2.5"},
      {"1", "{}", "anything"},
      {"2,x", "null", "anything"},
  };
  for (const auto& c : cases) {
    const Json accepted = AcceptedByRule(c.rule);
    EXPECT_EQ(accepted.dump(), c.accepted) << c.rule;
    EXPECT_EQ(InWords(accepted), c.words) << c.rule;
  }
}

}  // namespace
}  // namespace kiohost
