// Each section: without its block, in the log, and in the names of its variables. And the documents
// that the fields are tried in.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "fields/row.h"
#include "fields/section_row.h"
#include "kioapp/kioapp.h"
#include "support/exchange.h"

namespace kio::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class SceneTest : public SettingsTest, public ::testing::WithParamInterface<Scene> {};

TEST_P(SceneTest, AsksForWhatTheDeviceHas) {
  EXPECT_EQ(Parse(Prepare(GetParam())), 1) << rssXmlData.setMsg;
  EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_APPLIED);
  EXPECT_THAT(RealChanges(), IsEmpty());
}

constexpr auto kSceneName = [](const auto& info) { return NameOf(info.param); };

INSTANTIATE_TEST_SUITE_P(Scenes, SceneTest, ::testing::ValuesIn(kScenes), kSceneName);

class SectionRowTest : public SettingsTest, public ::testing::WithParamInterface<SectionRow> {
 protected:
  const SectionRow row_ = GetParam();
};

class SectionInDocumentsTest : public SectionRowTest {};

TEST_P(SectionInDocumentsTest, AMissingBlockIsToldByItsName) {
  for (const Scene scene : row_.scenes) {
    SCOPED_TRACE(NameOf(scene));
    Document document = Prepare(scene);
    EXPECT_EQ(Parse(document.Remove(row_.element)), row_.missing.empty() ? 1 : 0);
    if (!row_.missing.empty()) {
      EXPECT_EQ(Host().commands(), ResultCommands(KIOAPP_RESULT_MISSING_ELEMENT, row_.missing, 0));
      EXPECT_THAT(Host().Writes(), IsEmpty());
    }
  }
}

TEST_P(SectionInDocumentsTest, TheLogNamesTheParser) {
  for (const Scene scene : row_.scenes) {
    SCOPED_TRACE(NameOf(scene));
    const Document document = Prepare(scene);
    log_file::Start(7);
    EXPECT_EQ(Parse(document), 1);
    EXPECT_THAT(log_file::Contents(), HasSubstr(row_.parser));
  }
}

TEST_P(SectionRowTest, VariablesAndPathsBeginAsTheRowSays) {
  const std::string variable = row_.variables + "Some";
  const std::string path = row_.paths + "Some";
  EXPECT_EQ(cvtRss_XmlPathVsVarName(variable.c_str(), 1), path);
  EXPECT_EQ(cvtRss_XmlPathVsVarName(path.c_str(), 0), variable);
}

// The rows of its fields stand below it.
TEST_P(SectionInDocumentsTest, FieldsStandBelowIt) {
  for (const FieldRow& field : AllRows()) {
    if (field.section != row_.section || field.radio != row_.radio) {
      continue;
    }
    EXPECT_THAT(field.node, testing::AnyOf(IsEmpty(), StartsWith(row_.nodes))) << field.name;
    if (!field.documents.empty()) {
      EXPECT_THAT(field.documents.front().element, StartsWith(row_.element + "/")) << field.name;
    }
  }
}

std::vector<SectionRow> SectionsInDocuments() {
  std::vector<SectionRow> rows;
  for (const SectionRow& row : AllSections()) {
    if (!row.scenes.empty()) {
      rows.push_back(row);
    }
  }
  return rows;
}

INSTANTIATE_TEST_SUITE_P(Sections, SectionRowTest, ::testing::ValuesIn(AllSections()), kRowName);
INSTANTIATE_TEST_SUITE_P(Sections, SectionInDocumentsTest,
                         ::testing::ValuesIn(SectionsInDocuments()), kRowName);

}  // namespace
}  // namespace kio::test
