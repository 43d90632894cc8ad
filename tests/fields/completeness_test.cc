// Each section, field and live variable of the library's tables has its row of expectations, and
// each row its section or field.
#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "fields/row.h"
#include "fields/section_row.h"
#include "settings/field.h"
#include "settings/sections.h"
#include "variables/table.h"

namespace kio::test {
namespace {

using settings::Check;
using settings::Field;
using settings::Group;
using settings::Load;
using settings::Member;
using settings::Optional;
using settings::Snapshot;
using settings::VariableKind;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;

std::string Text(platform::TextView view) { return {view.data(), view.size()}; }

// A field of the library's.
struct LibraryField {
  std::string name;  // of its test
  SectionId section;
  const Field* field;
};

void PrintTo(const LibraryField& field, std::ostream* out) { *out << field.name; }

// The name of a field as its rows have it.
std::string NameOf(const Field& field) {
  return Text(field.element.empty() ? field.node : field.element);
}

// "Wireless*" and "/zentrolinks/apcloning" as parts of a test's name.
std::string TestName(const std::string& text) {
  std::string name = text.substr(text.rfind('/') + 1);
  name.erase(std::remove_if(name.begin(), name.end(),
                            [](unsigned char c) { return std::isalnum(c) == 0 && c != '_'; }),
             name.end());
  return name;
}

std::vector<LibraryField> LibraryFields() {
  std::vector<LibraryField> fields;
  const auto add = [&fields](SectionId section, settings::FieldTable table) {
    for (const Field& field : table) {
      fields.push_back(
          {TestName(Text(settings::RowOf(section).element)) + "_" + TestName(NameOf(field)),
           section, &field});
    }
  };
  add(SectionId::kDevice, settings::kFeatureFields);
  for (const settings::Section& section : settings::kSections) {
    add(section.id, section.fields);
    add(section.id, section.rules);
  }
  return fields;
}

int RadiosOf(SectionId section) {
  return settings::RowOf(section).of_radio ? settings::kRadioCount : 1;
}

bool IsOf(const FieldRow& row, const LibraryField& field) {
  return row.section == field.section && row.field == NameOf(*field.field);
}

// How many faults a check must be shown by.
std::size_t FaultsOf(const Field& field) {
  switch (field.check) {
    case Check::kNothing:
      return field.write == settings::Write::kSwitch ? 1 : 0;
    case Check::kInRange:   // below and above
    case Check::kRule:      // length and characters
    case Check::kRadioKey:  // form and rule
    case Check::kSiteKey:
      return 2;
    default:
      return 1;
  }
}

class LibraryFieldTest : public ::testing::TestWithParam<LibraryField> {
 protected:
  // The first row of a radio's; null without one.
  [[nodiscard]] const FieldRow* Row(int radio) const {
    const auto row = std::find_if(rows_.begin(), rows_.end(), [radio](const FieldRow& other) {
      return other.radio == radio && IsOf(other, GetParam());
    });
    return row == rows_.end() ? nullptr : &*row;
  }

  static void ExpectDocuments(const FieldRow& row, const Field& field) {
    EXPECT_EQ(row.documents.empty(), field.group == Group::kDeviceOnly) << "in documents";
    const bool is_text = field.member.type == Member::Type::kText;
    for (const InDocuments& held : row.documents) {
      EXPECT_THAT(held.scenes, Not(IsEmpty())) << "documents that hold it";
      EXPECT_THAT(held.element, Not(IsEmpty()));
      EXPECT_EQ(held.missing.empty(), held.without == Without::kKept) << "the missing element";
      EXPECT_THAT(held.value, Not(IsEmpty())) << "an applied value";
    }
    if (!row.documents.empty()) {
      const InDocuments& held = row.documents.front();
      EXPECT_GE(held.faults.size(), FaultsOf(field)) << "a fault for each check";
      EXPECT_EQ(held.too_long.has_value(), is_text) << "a too long text";
      const bool may_be_missing = field.optional == Optional::kAlways;
      EXPECT_EQ(held.without == Without::kKept, may_be_missing) << "an optional element";
      const bool may_in_cloning = field.optional == Optional::kWhileCloning;
      EXPECT_EQ(held.without == Without::kRefusedButInCloning, may_in_cloning);
    }
  }

  static void ExpectSnapshots(const FieldRow& row, const Field& field) {
    EXPECT_EQ(row.loads.empty(), field.load == Load::kNever) << "what a snapshot loads";
    EXPECT_EQ(row.node.empty(), field.node.empty()) << "the node";
    if (row.loads.empty()) {
      return;
    }
    EXPECT_TRUE(std::any_of(row.loads.begin(), row.loads.end(), [](const Loaded& load) {
      return !load.stored;
    })) << "an absent node";
    const bool is_text = field.member.type == Member::Type::kText;
    const bool has_long = std::any_of(row.loads.begin(), row.loads.end(), [](const Loaded& load) {
      return load.stored && load.stored->size() > load.record.size() && load.stored == kLong;
    });
    EXPECT_EQ(has_long, is_text) << "a too long text in the store";
  }

  static void ExpectVariables(const FieldRow& row, const Field& field) {
    const bool is_read_only = field.variable_kind == VariableKind::kReadOnly;
    EXPECT_EQ(row.shown.empty(), !is_read_only) << "a variable that is only read";
    EXPECT_EQ(row.variables.empty(), is_read_only || field.variable_kind == VariableKind::kNone)
        << "a variable that can be written";
  }

  const std::vector<FieldRow> rows_ = AllRows();
};

TEST_P(LibraryFieldTest, HasItsRow) {
  const Field& field = *GetParam().field;
  for (int radio = 0; radio < RadiosOf(GetParam().section); ++radio) {
    const FieldRow* const row = Row(radio);
    ASSERT_NE(row, nullptr) << "tests/fields has no row of expectations for " << GetParam().name
                            << (RadiosOf(GetParam().section) > 1
                                    ? " of radio " + std::to_string(radio)
                                    : "");
    SCOPED_TRACE("the row " + row->name + " must say");
    EXPECT_EQ(row->versions, field.versions) << "the versions of its documents";
    EXPECT_NE(row->record, nullptr) << "where it stands in the record";
    EXPECT_EQ(row->code != nullptr, field.has_words()) << "where its word's code stands";
    EXPECT_TRUE(row->dump.has_value()) << "how it is dumped";
    ExpectDocuments(*row, field);
    ExpectSnapshots(*row, field);
    ExpectVariables(*row, field);
  }
}

INSTANTIATE_TEST_SUITE_P(Library, LibraryFieldTest, ::testing::ValuesIn(LibraryFields()), kRowName);

TEST(FieldRowsTest, EachHasItsField) {
  const std::vector<LibraryField> fields = LibraryFields();
  for (const FieldRow& row : AllRows()) {
    EXPECT_TRUE(std::any_of(fields.begin(), fields.end(),
                            [&row](const LibraryField& field) { return IsOf(row, field); }))
        << row.name << ": the library has no field " << row.field;
    EXPECT_LT(row.radio, RadiosOf(row.section)) << row.name;
  }
}

class LibrarySectionTest : public ::testing::TestWithParam<settings::Section> {};

TEST_P(LibrarySectionTest, HasItsRow) {
  const settings::Section& section = GetParam();
  const std::vector<SectionRow> rows = AllSections();
  for (int radio = 0; radio < RadiosOf(section.id); ++radio) {
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const SectionRow& other) {
      return other.section == section.id && other.radio == radio;
    });
    ASSERT_NE(row, rows.end()) << "tests/fields has no row of expectations for the section "
                               << Text(section.element) << " of radio " << radio;
    SCOPED_TRACE("the row " + row->name + " must say");
    EXPECT_EQ(row->element.empty(), section.fields.empty()) << "its element";
    EXPECT_EQ(row->scenes.empty(), section.fields.empty()) << "documents that hold it";
    EXPECT_EQ(row->parser.empty(), section.parser == nullptr) << "its parser";
    EXPECT_THAT(row->variables, Not(IsEmpty())) << "what its variables begin with";
  }
}

constexpr auto kSectionName = [](const auto& info) { return TestName(Text(info.param.element)); };

INSTANTIATE_TEST_SUITE_P(Library, LibrarySectionTest, ::testing::ValuesIn(settings::kSections),
                         kSectionName);

TEST(SectionRowsTest, EachHasItsSection) {
  for (const SectionRow& row : AllSections()) {
    ASSERT_LT(row.section, SectionId::kCount) << row.name;
    EXPECT_LT(row.radio, RadiosOf(row.section)) << row.name;
  }
}

// A variable that is read live.
struct LibraryVariable {
  std::string name;  // of its test
  SectionId section;
  const variables::LiveNode* live;
};

void PrintTo(const LibraryVariable& variable, std::ostream* out) { *out << variable.name; }

std::vector<LibraryVariable> LiveVariables() {
  std::vector<LibraryVariable> all;
  for (const variables::LiveNode& live : variables::kLiveNodes) {
    all.push_back({TestName(Text(settings::RowOf(live.section).element)) + "_" + Text(live.name),
                   live.section, &live});
  }
  return all;
}

class LiveVariableTest : public ::testing::TestWithParam<LibraryVariable> {};

TEST_P(LiveVariableTest, HasItsRow) {
  std::set<std::string> names;
  for (const ReadOnlyField& field : LiveFields()) {
    names.insert(field.name);
  }
  for (const SectionRow& section : AllSections()) {
    if (section.section == GetParam().section) {
      EXPECT_THAT(names, Contains(section.variables + Text(GetParam().live->name)))
          << "tests/variables/live_fields.cc has no such row";
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Library, LiveVariableTest, ::testing::ValuesIn(LiveVariables()), kRowName);

}  // namespace
}  // namespace kio::test
