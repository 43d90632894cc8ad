// Many variables in one text.

#include "kioapp/settings.h"
#include "kioapp/variables.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/text.h"

namespace kio::variables {
namespace {

using platform::kLogAction;
using platform::kLogDetail;
using platform::TextView;

constexpr bool IsSpace(char character) { return character == ' ' || character == '\t'; }
constexpr bool IsLineEnd(char character) { return character == '\r' || character == '\n'; }
constexpr bool IsBlank(char character) { return IsSpace(character) || IsLineEnd(character); }

// The pairs of a batch, one after the other, in one pass over the text.
class Pairs {
 public:
  Pairs(TextView text, char separator) : rest_(text), separator_(separator) {}

  // Goes on to the next pair; false when there is none. Text without a '=' is ignored.
  bool Next() {
    while (!rest_.empty() && (IsBlank(rest_.front()) || rest_.front() == separator_)) {
      rest_.remove_prefix(1);
    }
    // Quirk "names-reach-back": all text before the '=' is the name, line ends and separators in it
    // too.
    const std::size_t equals = rest_.find('=');
    if (equals == TextView::npos) {
      return false;
    }
    // Quirk "names-of-31": the rest of a longer name is dropped.
    CopyTrimmed(name_, {rest_.data(), equals});
    rest_.remove_prefix(equals + 1);
    while (!rest_.empty() && IsSpace(rest_.front())) {
      rest_.remove_prefix(1);
    }
    CopyTrimmed(value_, TakeValue());
    return true;
  }

  [[nodiscard]] const char* name() const { return name_; }
  // A buffer of KIOAPP_VAR_SIZE: setting the variable may write to it.
  [[nodiscard]] char* value() { return value_; }

 private:
  // Takes what comes before the next separator or line end. It looks no further, as the text may
  // hold many pairs.
  TextView TakeValue() {
    std::size_t size = 0;
    while (size < rest_.size() && rest_[size] != separator_ && !IsLineEnd(rest_[size])) {
      ++size;
    }
    const TextView value(rest_.data(), size);
    rest_.remove_prefix(size);
    return value;
  }

  template <std::size_t N>
  static void CopyTrimmed(char (&dst)[N], TextView text) {
    while (!text.empty() && IsBlank(text.back())) {
      text.remove_suffix(1);
    }
    platform::CopyText(dst, text);
  }

  TextView rest_;
  char separator_;
  char name_[32];
  char value_[KIOAPP_VAR_SIZE];
};

void CopyMessage(char* name_out, const char* text) {
  if (name_out != nullptr) {
    platform::CopyText(name_out, KIOAPP_VAR_SIZE, text);
  }
}

// A fault is reported where it is found.
void VerifyAndApply(bool apply) {
  OnLostKey() = write_RssXml_LostKeyError;
  if (Verify_RssXml() != 1) {
    return;
  }
  if (!apply) {
    write_RssXml_ResultXml(KIOAPP_RESULT_APPLIED, "", 0);
  } else if (Apply_RssXmlToDevice() == 1) {
    calc_RssExeFlag();
    write_RssXml_ResultXml(KIOAPP_RESULT_APPLIED, "", Record().exeWaitSec);
  }
}

}  // namespace
}  // namespace kio::variables

int do_RssVar_Parser(char* text, char separator, char* nameOut, int apply) {
  using kio::variables::CopyMessage;
  kio::platform::LogEntry("do_RssVar_Parser");
  KIO_LOG(kio::platform::kLogAction,
          "---- Received Rss Var Data Begin ----\n%s\n---- Received Rss Var Data End ----\n",
          kio::platform::TextOf(text));
  kio::variables::Pairs pairs(kio::platform::ViewOf(text), separator);
  while (pairs.Next()) {
    const unsigned int code = set_RssVar(pairs.name(), pairs.value());
    // Quirk "batch-keeps-what-was-set": a failed batch leaves what it had set in the record.
    if (code != KIOAPP_VAR_DONE) {
      write_RssXml_ResultXml(static_cast<int>(code), pairs.name(), 0);
      CopyMessage(nameOut, pairs.name());
      return static_cast<int>(code);
    }
  }
  kio::variables::VerifyAndApply(apply != 0);
  dump_RssXmlData();
  KIO_LOG(kio::platform::kLogDetail, "done, ret=%d\n", kio::Record().setResult);
  CopyMessage(nameOut, kio::Record().setMsg);
  return kio::Record().setResult;
}

unsigned int do_RssVar_Commit(void) { return do_RssXml_Commit(); }
