// The exported functions that read, set and validate one variable: setget_RssVar, each with its
// mode.

#include "kioapp/settings.h"
#include "kioapp/variables.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/text.h"

namespace kio::variables {
namespace {

const char* Printable(const char* text) { return text != nullptr ? text : "(null)"; }

void LogResult(const char* function, const char* name, const char* value, int code) {
  KIO_LOG_NAMED(function, "'%s'='%s', ret=%d\n", Printable(name), Printable(value), code);
}

// Validates the value at the end of the caller's text. What a check writes there is cut to the size
// of that value.
int ValidateInPlace(const char* name, char* value) {
  const std::size_t size = std::strlen(value) + 1;
  if (size >= KIOAPP_VAR_SIZE) {
    return validate_RssVar(name, value);
  }
  char copy[KIOAPP_VAR_SIZE];
  platform::CopyText(copy, value);
  const int code = validate_RssVar(name, copy);
  // Most checks write nothing; then the text is not touched, as it may be a constant.
  if (std::memcmp(value, copy, size) != 0) {
    platform::CopyText(value, size, copy);
  }
  return code;
}

bool g_first_series = true;

}  // namespace
}  // namespace kio::variables

using kio::variables::LogResult;

int get_RssVar(const char* name, char* value, int wantPath) {
  const int mode = wantPath != 0 ? KIOAPP_VAR_READ | KIOAPP_VAR_PATH : KIOAPP_VAR_READ;
  const int code = static_cast<int>(setget_RssVar(name, value, mode));
  LogResult("get_RssVar", name, value, code);
  return code;
}

char* getRssVar(const char* name) {
  static char value[KIOAPP_VAR_SIZE];
  const int code = static_cast<int>(setget_RssVar(name, value, KIOAPP_VAR_READ));
  if (code != KIOAPP_VAR_DONE) {
    kio::platform::CopyText(value, "**ERROR**");
  }
  LogResult("getRssVar", name, value, code);
  return value;
}

unsigned int set_RssVar(const char* name, char* value) {
  return setget_RssVar(name, value, KIOAPP_VAR_WRITE);
}

int validate_RssVar(const char* name, char* value) {
  KIO_LOG_NAMED("validate_RssVar", "'%s'='%s'\n", kio::variables::Printable(name),
                kio::variables::Printable(value));
  const int code = static_cast<int>(setget_RssVar(name, value, KIOAPP_VAR_VALIDATE));
  KIO_LOG_NAMED("validate_RssVar", "ret=%d\n", code);
  return code;
}

int validate_RssVar2(char* text) {
  constexpr std::size_t kMaxName = 31;
  char* const equals = text != nullptr ? std::strchr(text, '=') : nullptr;
  if (equals == nullptr) {
    KIO_LOG_NAMED("validate_RssVar2", "Invalid data='%s'\n", kio::variables::Printable(text));
    return KIOAPP_VAR_MALFORMED;
  }
  const auto name_size = static_cast<std::size_t>(equals - text);
  if (name_size > kMaxName) {
    return KIOAPP_VAR_MALFORMED;
  }
  char name[kMaxName + 1];
  kio::platform::CopyText(name, {text, name_size});
  return kio::variables::ValidateInPlace(name, equals + 1);
}

void init_RssVar(void) {
  if (kio::variables::g_first_series) {
    kio::variables::g_first_series = false;
    kio::Record().pre_exeflag = 0;
  }
  restore_XmlRssStatus(1);
}
