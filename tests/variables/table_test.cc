// The table of variables: a field of the record, a live node, or nothing.
#include "variables/table.h"

#include <gtest/gtest.h>

namespace kio::variables {
namespace {

TEST(VariableTable, FieldIsNoLiveNode) {
  const Variable variable = FindVariable(SectionId::kUplink, "IP");
  ASSERT_TRUE(variable.exists());
  ASSERT_FALSE(variable.is_live());
  EXPECT_EQ(variable.field().element, "IP");
}

TEST(VariableTable, LiveNodeIsNoField) {
  const Variable variable = FindVariable(SectionId::kSurvey, "SiteNo");
  ASSERT_TRUE(variable.exists());
  ASSERT_TRUE(variable.is_live());
  EXPECT_EQ(variable.live().name, "SiteNo");
}

TEST(VariableTable, UnknownNameIsNothing) {
  const Variable variable = FindVariable(SectionId::kUplink, "SiteNo");
  EXPECT_FALSE(variable.exists());
}

}  // namespace
}  // namespace kio::variables
