#include "variable_codes.h"

#include <kioapp/kioapp.h>
#include <microhttpd.h>

namespace kiohost {
namespace {

// KIOAPP_VAR_REFUSED is also the code of an unknown name.
constexpr VariableCode kCodes[] = {
    {KIOAPP_VAR_DONE, MHD_HTTP_OK, "done"},
    {KIOAPP_VAR_NOT_CONFIGURABLE, MHD_HTTP_FORBIDDEN, "the section is not configurable"},
    {KIOAPP_VAR_REFUSED, MHD_HTTP_UNPROCESSABLE_CONTENT, "not a value that this takes"},
    {KIOAPP_RESULT_INVALID_VALUE, MHD_HTTP_UNPROCESSABLE_CONTENT,
     "a value is invalid or cannot be changed"},
    {KIOAPP_VAR_UNKNOWN_WORD, MHD_HTTP_UNPROCESSABLE_CONTENT,
     "the length is out of range, or not one of the words"},
    {KIOAPP_RESULT_BAD_CHARACTER, MHD_HTTP_UNPROCESSABLE_CONTENT, "a character is not allowed"},
    {KIOAPP_RESULT_ABOVE_MAXIMUM, MHD_HTTP_UNPROCESSABLE_CONTENT, "a number is above its maximum"},
    {KIOAPP_RESULT_BELOW_MINIMUM, MHD_HTTP_UNPROCESSABLE_CONTENT, "a number is below its minimum"},
};

}  // namespace

const VariableCode* FindVariableCode(unsigned int code) {
  for (const VariableCode& row : kCodes) {
    if (row.code == code) {
      return &row;
    }
  }
  return nullptr;
}

const char* ResultReason(unsigned int code) {
  switch (code) {
    case KIOAPP_RESULT_VERSION_MISMATCH:
      return "the document's format version is not the device's";
    case KIOAPP_RESULT_MISSING_ELEMENT:
      return "a required element is missing";
    case KIOAPP_RESULT_BAD_LENGTH:
      return "the length of a text is out of range";
    default:
      break;
  }
  const VariableCode* row = FindVariableCode(code);
  return row == nullptr ? "the document was refused" : row->reason;
}

}  // namespace kiohost
