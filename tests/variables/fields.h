// What the tests expect of variables over the record of the sample device. The variables of the
// record's fields stand in the rows of tests/fields.
#ifndef KIO_TESTS_VARIABLES_FIELDS_H
#define KIO_TESTS_VARIABLES_FIELDS_H

#include <iosfwd>
#include <string>
#include <vector>

#include "variables/variables.h"

namespace kio::test {

// The switch that a write depends on.
enum class Section { kNone, kUplink, kWireless24, kWireless5 };

// Sets the switch of `section`, and all others to the opposite.
void SetConfigurable(Section section, int configurable);

struct Refusal {
  std::string value;
  unsigned code;
};

// In place of a change: there is none.
inline void Nothing(RssXmlData& /*record*/) {}

// A variable that can be read, checked and written.
struct StoredField {
  std::string name = {};
  std::string path = {};   // what a read of the path gives
  std::string text = {};   // what a read of the value gives
  std::string value = {};  // a value that is accepted
  Change stored = {};      // what writing it changes
  std::string read_back = {};
  std::vector<Refusal> refused = {};
  unsigned empty_code = 0;        // what the check says to an empty value
  Change stored_empty = Nothing;  // what writing the empty value changes, when the code is 0
  bool is_keyword = false;
  Section section = Section::kNone;
};

// A variable that can only be read.
struct ReadOnlyField {
  std::string name = {};
  std::string path = {};
  std::string text = {};
  // The store calls of a read, in order; none for what stands in the record.
  std::vector<StoreCall> calls = {};
  Section section = Section::kNone;
};

void PrintTo(const StoredField& field, std::ostream* out);
void PrintTo(const ReadOnlyField& field, std::ostream* out);

// The variables that are no field of the record: read from the store each time.
std::vector<ReadOnlyField> LiveFields();

// The name of a variable as the name of its test.
inline constexpr auto kTestName = [](const auto& info) { return info.param.name.substr(4); };

}  // namespace kio::test

#endif
