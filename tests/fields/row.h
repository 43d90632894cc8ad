// What the tests expect of each field of the library's tables, written out field by field.
//
// A row stands for a field of one radio and one rule, where a section has several. The tests of
// this folder try it in documents, in snapshots and in the dump, those in variables as a variable,
// and completeness_test.cc looks whether each field has its row.
#ifndef KIO_TESTS_FIELDS_ROW_H
#define KIO_TESTS_FIELDS_ROW_H

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "fields/scene.h"
#include "settings/sections.h"
#include "variables/fields.h"

namespace kio::test {

using settings::SectionId;
using settings::Versions;

// Longer than any text of the record.
inline const std::string kLong(200, 'z');
// In place of a node's text: there is no such node.
inline constexpr std::nullopt_t kAbsent = std::nullopt;
// In place of a line of the dump: the field is not shown.
inline constexpr const char* kNotDumped = "";

// A member of the record as text.
inline std::string Shown(const char* text) { return text; }
inline std::string Shown(int number) { return std::to_string(number); }

// What a snapshot makes of a node.
struct Loaded {
  std::optional<std::string> stored;
  std::string record;
  int code = 0;  // of a word
};

// A value that is refused.
struct Faulty {
  std::string value;
  int result = 0;
};

// A value that is cut.
struct TooLong {
  std::string value;
  std::string record;
  int result = 0;
};

// What becomes of a document without the element.
enum class Without {
  kRefused,
  kRefusedButInCloning,  // there the text becomes empty
  kKept,                 // it is accepted, and the value stays as it is stored
};

// A field in some kinds of documents. `value` is accepted and differs from what the scene stores.
struct InDocuments {
  std::vector<Scene> scenes = {};
  std::string element = {};
  Without without = Without::kRefused;
  std::string missing = {};  // the message of a document without it
  std::string fault = {};    // the message of a faulty value
  std::vector<Faulty> faults = {};
  std::string value = {};
  int code = 0;                          // of a word
  std::vector<std::string> writes = {};  // what applying the value changes in the store
  std::vector<std::string> again = {};   // what the same document changes the second time
  std::optional<TooLong> too_long = {};
};

enum class Snapshots { kNever, kEvery, kFull };

// Where a snapshot puts the first rule of the store.
struct FirstRule {
  std::string (*record)(const RssXmlData&) = nullptr;
  std::string variable = {};
};

struct FieldRow {
  std::string name = {};  // of its tests
  SectionId section = SectionId::kCount;
  std::string field = {};  // its element, or without one its node
  int radio = 0;
  Versions versions = Versions::kEvery;
  std::string (*record)(const RssXmlData&) = nullptr;
  int (*code)(const RssXmlData&) = nullptr;  // of a word

  std::string node = {};
  Snapshots snapshots = Snapshots::kNever;
  StoreCall::Kind read_by = StoreCall::Kind::kGetText;
  std::vector<Loaded> loads = {};  // first what the sample device stores
  std::optional<FirstRule> first_rule = {};

  std::vector<InDocuments> documents = {};
  // The line of the dump when the sample device is asked for what it has.
  std::optional<std::string> dump = {};
  std::optional<Scene> dumped_in = {};  // when it is not the first that has its element

  std::vector<StoredField> variables = {};
  std::vector<ReadOnlyField> shown = {};
};

void PrintTo(const FieldRow& row, std::ostream* out);

// The rows in the order of the library's tables.
std::vector<FieldRow> VersionRows();
std::vector<FieldRow> FeatureRows();
std::vector<FieldRow> DeviceRows();
std::vector<FieldRow> DeviceRuleRows();
std::vector<FieldRow> UplinkRows();
std::vector<FieldRow> AddressRows();
std::vector<FieldRow> UplinkRuleRows();
std::vector<FieldRow> DslRows();
std::vector<FieldRow> ApnRows();
std::vector<FieldRow> SiteRows();
std::vector<FieldRow> Radio24Rows();
std::vector<FieldRow> Network24Rows();
std::vector<FieldRow> Access24Rows();
std::vector<FieldRow> Rule24Rows();
std::vector<FieldRow> Radio5Rows();
std::vector<FieldRow> Network5Rows();
std::vector<FieldRow> Access5Rows();
std::vector<FieldRow> Rule5Rows();
std::vector<FieldRow> SafetyRows();

std::vector<FieldRow> AllRows();

// The rows for which `predicate` holds.
template <typename Predicate>
std::vector<FieldRow> RowsWith(const Predicate& predicate) {
  std::vector<FieldRow> rows;
  for (const FieldRow& row : AllRows()) {
    if (predicate(row)) {
      rows.push_back(row);
    }
  }
  return rows;
}

// The name of a row as the name of its test.
inline constexpr auto kRowName = [](const auto& info) { return info.param.name; };

}  // namespace kio::test

#endif
