// Every variable that is stored in the record, in every mode.
#include <string>
#include <vector>

#include "fields/row.h"
#include "variables/fields.h"

namespace kio::test {
namespace {

class StoredFieldTest : public VariableTest, public ::testing::WithParamInterface<StoredField> {
 protected:
  void SetUp() override {
    VariableTest::SetUp();
    SetConfigurable(field_.section, 1);
  }

  // None of these variables reads or writes the store.
  void TearDown() override { EXPECT_TRUE(Host().calls().empty()); }

  // What a mode without any action says.
  [[nodiscard]] unsigned IdleCode() const { return field_.is_keyword ? 2 : 0; }

  const StoredField& field_ = GetParam();
};

std::string Mode(int mode) { return "mode " + std::to_string(mode); }

TEST_P(StoredFieldTest, IsRead) {
  const RecordWatch record;
  EXPECT_EQ(Read(field_.name), (Answer{0, field_.text}));
  EXPECT_EQ(ReadPath(field_.name), (Answer{0, field_.path}));
  record.ExpectUnchanged("read");
}

TEST_P(StoredFieldTest, IsValidated) {
  const RecordWatch record;
  for (const int mode : {kValidate, kValidate | kPath}) {
    EXPECT_EQ(Call(field_.name, mode, field_.value), (Answer{IdleCode(), field_.value}))
        << Mode(mode);
    record.ExpectUnchanged(Mode(mode));
  }
}

TEST_P(StoredFieldTest, WrongValuesAreRefused) {
  const RecordWatch record;
  for (const Refusal& refusal : field_.refused) {
    for (const int mode : {kValidate, kValidate | kPath, kWrite, kWrite | kPath, kWrite | kValidate,
                           kWrite | kValidate | kPath}) {
      EXPECT_EQ(Call(field_.name, mode, refusal.value), (Answer{refusal.code, refusal.value}))
          << Mode(mode);
      record.ExpectUnchanged("'" + refusal.value + "' in " + Mode(mode));
    }
  }
}

TEST_P(StoredFieldTest, WhatRefusesNothingTakesWordsAndNumbers) {
  if (!field_.refused.empty()) {
    return;
  }
  for (const char* const value : {"word", "7", "-1", "0.0.0.0"}) {
    EXPECT_EQ(Call(field_.name, kValidate, value), (Answer{0, value}));
  }
}

TEST_P(StoredFieldTest, IsWritten) {
  const RecordWatch record;
  for (const int mode : {kWrite, kWrite | kPath, kWrite | kValidate, kWrite | kValidate | kPath}) {
    record.Restore();
    EXPECT_EQ(Call(field_.name, mode, field_.value), (Answer{0, field_.value})) << Mode(mode);
    record.ExpectOnly(field_.stored, Mode(mode));
  }
  EXPECT_EQ(Read(field_.name), (Answer{0, field_.read_back}));
}

// Quirk "reading-empties-before-writing": a read empties the buffer first, so that what is written
// or checked with it is the empty text.
TEST_P(StoredFieldTest, AReadWithAWriteWritesTheEmptyText) {
  const RecordWatch record;
  for (const int mode : {kRead | kWrite, kRead | kWrite | kValidate, kRead | kWrite | kPath,
                         kRead | kWrite | kValidate | kPath}) {
    record.Restore();
    EXPECT_EQ(Call(field_.name, mode, field_.value), (Answer{field_.empty_code, ""})) << Mode(mode);
    if (field_.empty_code == 0) {
      record.ExpectOnly(field_.stored_empty, Mode(mode));
    } else {
      record.ExpectUnchanged(Mode(mode));
    }
  }
}

TEST_P(StoredFieldTest, AReadWithACheckChecksTheEmptyText) {
  const RecordWatch record;
  const bool passes = field_.empty_code == 0;
  EXPECT_EQ(Call(field_.name, kRead | kValidate, field_.value),
            (Answer{field_.empty_code, passes ? field_.text : ""}));
  EXPECT_EQ(Call(field_.name, kRead | kValidate | kPath, field_.value),
            (Answer{field_.empty_code, passes ? field_.path : ""}));
  record.ExpectUnchanged("read and check");
}

TEST_P(StoredFieldTest, OtherModesDoNothing) {
  const RecordWatch record;
  for (const int mode : {0, kPath, 0x002, 0x8FE}) {
    EXPECT_EQ(Call(field_.name, mode, field_.value), (Answer{IdleCode(), field_.value}))
        << Mode(mode);
    EXPECT_EQ(Call(field_.name, mode, "?"), (Answer{IdleCode(), "?"})) << Mode(mode);
    record.ExpectUnchanged(Mode(mode));
  }
}

TEST_P(StoredFieldTest, IsWrittenOnlyWhereItsSectionIsConfigurable) {
  if (field_.section == Section::kNone) {
    SetConfigurable(Section::kNone, 1);  // every switch off
    EXPECT_EQ(Write(field_.name, field_.value).code, 0U);
    return;
  }
  SetConfigurable(field_.section, 0);
  const RecordWatch record;
  for (const int mode : {kWrite, kWrite | kPath, kWrite | kValidate}) {
    EXPECT_EQ(Call(field_.name, mode, field_.value), (Answer{1, field_.value})) << Mode(mode);
    EXPECT_EQ(Call(field_.name, mode, "\x01"), (Answer{1, "\x01"})) << Mode(mode);
  }
  EXPECT_EQ(Call(field_.name, kWrite | kRead, field_.value), (Answer{1, ""}));
  record.ExpectUnchanged("write");
  EXPECT_EQ(Validate(field_.name, field_.value), (Answer{IdleCode(), field_.value}));
  EXPECT_EQ(Read(field_.name), (Answer{0, field_.text}));
  EXPECT_EQ(ReadPath(field_.name), (Answer{0, field_.path}));
}

std::vector<StoredField> Fields() {
  std::vector<StoredField> fields;
  for (const FieldRow& row : AllRows()) {
    fields.insert(fields.end(), row.variables.begin(), row.variables.end());
  }
  return fields;
}

INSTANTIATE_TEST_SUITE_P(Fields, StoredFieldTest, ::testing::ValuesIn(Fields()), kTestName);

}  // namespace
}  // namespace kio::test
