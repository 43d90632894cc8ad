// Tables of variables: what each of them answers over the record of the sample device.
#ifndef KIO_TESTS_VARIABLES_FIELDS_H
#define KIO_TESTS_VARIABLES_FIELDS_H

#include <initializer_list>
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

// A variable that can be read, checked and written.
struct StoredField {
  std::string name;
  std::string path;   // what a read of the path gives
  std::string text;   // what a read of the value gives
  std::string value;  // a value that is accepted
  Change stored;      // what writing it changes
  std::string read_back;
  std::vector<Refusal> refused;
  unsigned empty_code;  // what the check says to an empty value
  Change stored_empty;  // what writing the empty value changes, when the code is 0
  bool is_keyword = false;
  Section section = Section::kNone;
};

// The rows of all parts.
std::vector<StoredField> Joined(std::initializer_list<std::vector<StoredField>> parts);

std::vector<StoredField> DeviceFields();
std::vector<StoredField> UplinkFields();
std::vector<StoredField> ExtenderFields();
std::vector<StoredField> ServiceFields();
std::vector<StoredField> Wireless24Fields();
std::vector<StoredField> Wireless5Fields();
std::vector<StoredField> AccessControlFields();

// A variable that can only be read.
struct ReadOnlyField {
  std::string name;
  std::string path;
  std::string text;
  // The store calls of a read, in order; none for what stands in the record.
  std::vector<StoreCall> calls;
  Section section = Section::kNone;
};

std::vector<ReadOnlyField> DeviceTexts();
std::vector<ReadOnlyField> UplinkTexts();
std::vector<ReadOnlyField> WirelessTexts();
std::vector<ReadOnlyField> ExtraTexts();

// The name of a variable as the name of its test.
inline constexpr auto kTestName = [](const auto& info) { return info.param.name.substr(4); };

// For the tables.
inline Change Nothing() {
  return [](RssXmlData&) {};
}

}  // namespace kio::test

#endif
