// Calling variables in the tests and watching what becomes of the record.
#ifndef KIO_TESTS_VARIABLES_VARIABLES_H
#define KIO_TESTS_VARIABLES_VARIABLES_H

#include <functional>
#include <iosfwd>
#include <string>

#include "kioapp/kioapp.h"
#include "kioapp/variables.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {

// The bits of a mode.
inline constexpr int kRead = 0x001;
inline constexpr int kPath = 0x100;
inline constexpr int kWrite = 0x200;
inline constexpr int kValidate = 0x400;

// What a call returned and what it left in the value buffer.
struct Answer {
  unsigned code;
  std::string text;

  bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out);

// Calls setget_RssVar. Name and buffer lie at the very end of what the process may access, the name
// in read-only memory; the buffer has 128 bytes (more only when `value` needs them).
Answer Call(const std::string& name, int mode, const std::string& value);
// The four usual modes. The buffer of a read begins with a text that must not stay.
Answer Read(const std::string& name);
Answer ReadPath(const std::string& name);
Answer Write(const std::string& name, const std::string& value);
Answer Validate(const std::string& name, const std::string& value);

using Change = std::function<void(RssXmlData&)>;
using Kind = StoreCall::Kind;

// The record as it is now, to tell later what was changed. What stands behind the terminators of
// its texts does not count.
class RecordWatch {
 public:
  RecordWatch();
  RecordWatch(const RecordWatch&) = delete;
  RecordWatch& operator=(const RecordWatch&) = delete;

  void ExpectUnchanged(const std::string& what) const;
  void ExpectOnly(const Change& change, const std::string& what) const;
  void Restore() const;

 private:
  RssXmlData before_;
};

// Starts with an empty host and the record of the sample device.
class VariableTest : public SettingsTest {
 protected:
  void SetUp() override;
};

}  // namespace kio::test

#endif
