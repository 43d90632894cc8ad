#include "variable_codes.h"

#include <gtest/gtest.h>
#include <kioapp/kioapp.h>

namespace kiohost {
namespace {

unsigned int StatusOf(unsigned int code) {
  const VariableCode* row = FindVariableCode(code);
  return row == nullptr ? 0 : row->http_status;
}

TEST(VariableCodesTest, EveryCodeOfAVariableHasAStatus) {
  EXPECT_EQ(StatusOf(KIOAPP_VAR_DONE), 200U);
  EXPECT_EQ(StatusOf(KIOAPP_VAR_NOT_CONFIGURABLE), 403U);
  for (const unsigned int code :
       {unsigned{KIOAPP_VAR_REFUSED}, unsigned{KIOAPP_RESULT_INVALID_VALUE},
        unsigned{KIOAPP_VAR_UNKNOWN_WORD}, unsigned{KIOAPP_RESULT_BAD_CHARACTER},
        unsigned{KIOAPP_RESULT_ABOVE_MAXIMUM}, unsigned{KIOAPP_RESULT_BELOW_MINIMUM}}) {
    EXPECT_EQ(StatusOf(code), 422U) << code;
  }
}

TEST(VariableCodesTest, OtherCodesAreUnknown) {
  for (const unsigned int code : {4U, 9U, 12U, 19U, 22U, 99U, 4294967295U}) {
    EXPECT_EQ(FindVariableCode(code), nullptr) << code;
  }
}

TEST(VariableCodesTest, ADocumentsCodeHasItsOwnReason) {
  EXPECT_STREQ(ResultReason(1), "the document's format version is not the device's");
  EXPECT_STREQ(ResultReason(2), "a required element is missing");
  EXPECT_STREQ(ResultReason(3), "a value is invalid or cannot be changed");
  EXPECT_STREQ(ResultReason(10), "the length of a text is out of range");
  EXPECT_STREQ(ResultReason(11), "a character is not allowed");
  EXPECT_STREQ(ResultReason(20), "a number is above its maximum");
  EXPECT_STREQ(ResultReason(21), "a number is below its minimum");
  EXPECT_STREQ(ResultReason(4), "the document was refused");
}

}  // namespace
}  // namespace kiohost
