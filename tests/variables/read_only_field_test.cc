// Every variable that can only be read, in every mode.
#include <algorithm>
#include <string>
#include <vector>

#include "fields/row.h"
#include "variables/fields.h"

namespace kio::test {
namespace {

class ReadOnlyFieldTest : public VariableTest, public ::testing::WithParamInterface<ReadOnlyField> {
 protected:
  void SetUp() override {
    VariableTest::SetUp();
    rssXmlData.specMinor = 7;
    Put(rssXmlData.loginPasswordValidate, "0,63,2");
    SetConfigurable(field_.section, 1);
    for (const StoreCall& call : field_.calls) {
      Host().Set(call.path, call.value);
    }
  }

  void TearDown() override { EXPECT_TRUE(Host().Writes().empty()); }

  const ReadOnlyField& field_ = GetParam();
};

TEST_P(ReadOnlyFieldTest, IsRead) {
  const RecordWatch record;
  EXPECT_EQ(Read(field_.name), (Answer{0, field_.text}));
  EXPECT_EQ(Host().calls(), field_.calls);
  EXPECT_EQ(ReadPath(field_.name), (Answer{0, field_.path}));
  record.ExpectUnchanged("read");
}

// The other bits of a mode do not matter to a read.
TEST_P(ReadOnlyFieldTest, IsReadWhateverElseIsAsked) {
  const RecordWatch record;
  for (const int more : {kWrite, kValidate, kWrite | kValidate, 0x002}) {
    EXPECT_EQ(Call(field_.name, kRead | more, "1"), (Answer{0, field_.text})) << more;
    EXPECT_EQ(Call(field_.name, kRead | kPath | more, "1"), (Answer{0, field_.path})) << more;
  }
  record.ExpectUnchanged("read");
}

TEST_P(ReadOnlyFieldTest, IsRefusedInOtherModes) {
  const RecordWatch record;
  for (const int mode : {0, kPath, kWrite, kWrite | kPath, kValidate, kValidate | kPath,
                         kWrite | kValidate, 0x002}) {
    for (const std::string value : {"1", "", "0,32,1"}) {
      EXPECT_EQ(Call(field_.name, mode, value), (Answer{2, value})) << "mode " << mode;
    }
  }
  record.ExpectUnchanged("refused modes");
  EXPECT_TRUE(Host().calls().empty()) << "refused before the store is asked";
}

TEST_P(ReadOnlyFieldTest, SectionThatIsNotConfigurableAnswersWritesWithOne) {
  if (field_.section == Section::kNone) {
    SetConfigurable(Section::kNone, 1);  // every switch off
    EXPECT_EQ(Read(field_.name), (Answer{0, field_.text}));
    EXPECT_EQ(Write(field_.name, "1"), (Answer{2, "1"}));
    return;
  }
  SetConfigurable(field_.section, 0);
  const bool is_the_switch = field_.name == "rss_Upl_Configurable";
  EXPECT_EQ(Read(field_.name), (Answer{0, is_the_switch ? "0" : field_.text}));
  EXPECT_EQ(Write(field_.name, "1"), (Answer{1, "1"}));
  EXPECT_EQ(Call(field_.name, kWrite | kRead, "1"), (Answer{1, ""}));
  EXPECT_EQ(Validate(field_.name, "1"), (Answer{2, "1"}));
}

TEST_P(ReadOnlyFieldTest, StoreTextsAreCutToTheBuffer) {
  const auto read =
      std::find_if(field_.calls.begin(), field_.calls.end(), [this](const StoreCall& call) {
        return call.kind == StoreCall::Kind::kGetText && call.value == field_.text;
      });
  if (read == field_.calls.end()) {
    return;
  }
  const std::string& node = read->path;
  for (const std::size_t length : {126U, 127U, 128U, 300U, 4000U}) {
    Host().Set(node, std::string(length, 't'));
    EXPECT_EQ(Read(field_.name), (Answer{0, std::string(length < 127 ? length : 127, 't')}));
  }
  Host().Set(node, "%n%s%d");
  EXPECT_EQ(Read(field_.name), (Answer{0, "%n%s%d"}));
  Host().Delete(node);
  EXPECT_EQ(Read(field_.name), (Answer{0, ""}));
}

std::vector<ReadOnlyField> ShownFields() {
  std::vector<ReadOnlyField> fields;
  for (const FieldRow& row : AllRows()) {
    fields.insert(fields.end(), row.shown.begin(), row.shown.end());
  }
  return fields;
}

INSTANTIATE_TEST_SUITE_P(Fields, ReadOnlyFieldTest, ::testing::ValuesIn(ShownFields()), kTestName);
INSTANTIATE_TEST_SUITE_P(Live, ReadOnlyFieldTest, ::testing::ValuesIn(LiveFields()), kTestName);

}  // namespace
}  // namespace kio::test
