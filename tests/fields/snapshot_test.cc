// Each field in snapshots of the store and in the dump of the record.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "fields/row.h"
#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"
#include "variables/variables.h"

namespace kio::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

class FieldInSnapshotsTest : public SettingsTest, public ::testing::WithParamInterface<FieldRow> {
 protected:
  static void Store(const std::string& node, const std::optional<std::string>& text) {
    Prepare(Scene::kDhcp);
    if (text) {
      Host().Set(node, *text);
    } else {
      Host().Delete(node);
    }
  }

  [[nodiscard]] std::string Record() const {
    return row_.first_rule ? row_.first_rule->record(rssXmlData) : row_.record(rssXmlData);
  }

  // The lines of a dump.
  static std::vector<std::string> Dump() {
    log_file::Start(6);
    dump_RssXmlData();
    return log_file::Lines();
  }

  const FieldRow row_ = GetParam();
};

class FieldInVariablesTest : public FieldInSnapshotsTest {};
class FieldInDumpsTest : public FieldInSnapshotsTest {};

TEST_P(FieldInSnapshotsTest, TheSampleDeviceStoresTheFirstText) {
  StoreSampleDevice();
  EXPECT_EQ(Host().Text(row_.node), row_.loads.front().stored);
}

TEST_P(FieldInSnapshotsTest, IsLoadedAsTheRowSays) {
  for (const bool full : {false, true}) {
    for (const Loaded& load : row_.loads) {
      SCOPED_TRACE(load.stored.value_or("(absent)") + (full ? " in a full snapshot" : ""));
      Store(row_.node, load.stored);
      restore_XmlRssStatus(static_cast<int>(full));
      if (full || row_.snapshots == Snapshots::kEvery) {
        EXPECT_EQ(Record(), load.record);
        if (row_.code != nullptr) {
          EXPECT_EQ(row_.code(rssXmlData), load.code);
        }
      } else {
        const std::string loaded = Record();
        ClearRecord();
        EXPECT_EQ(loaded, Record()) << "left as it was";
      }
    }
  }
}

TEST_P(FieldInVariablesTest, ShowsWhatIsLoaded) {
  for (const Loaded& load : row_.loads) {
    SCOPED_TRACE(load.stored.value_or("(absent)"));
    Store(row_.node, load.stored);
    init_RssVar();
    for (const ReadOnlyField& shown : row_.shown) {
      EXPECT_EQ(Read(shown.name), (Answer{0, load.record}));
    }
    if (row_.first_rule) {
      EXPECT_EQ(Read(row_.first_rule->variable), (Answer{0, load.record}));
    } else if (!row_.variables.empty()) {
      EXPECT_EQ(Read(row_.variables.front().name), (Answer{0, load.record}));
    }
  }
}

TEST_P(FieldInDumpsTest, IsShownAsTheRowSays) {
  const Scene scene = row_.documents.empty() ? Scene::kDhcp : row_.documents.front().scenes.front();
  const Document document = Prepare(row_.dumped_in.value_or(scene));
  ASSERT_EQ(Parse(document), 1) << rssXmlData.setMsg;
  ASSERT_TRUE(row_.dump) << "the row says nothing of the dump";
  const std::vector<std::string> lines = Dump();
  if (*row_.dump != kNotDumped) {
    EXPECT_THAT(lines, Contains(*row_.dump));
    return;
  }
  EXPECT_THAT(lines, Contains("----RSSXML_END----"));
  EXPECT_THAT(lines, Not(Contains(HasSubstr("+- " + row_.field + "="))));
  if (const std::string value = row_.record(rssXmlData); value.size() > 3) {
    EXPECT_THAT(lines, Not(Contains(HasSubstr(value))));
  }
}

bool IsLoaded(const FieldRow& row) { return !row.loads.empty(); }

INSTANTIATE_TEST_SUITE_P(Fields, FieldInSnapshotsTest, ::testing::ValuesIn(RowsWith(IsLoaded)),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(Fields, FieldInVariablesTest,
                         ::testing::ValuesIn(RowsWith([](const FieldRow& row) {
                           return IsLoaded(row) && row.variables.size() + row.shown.size() > 0;
                         })),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(Fields, FieldInDumpsTest, ::testing::ValuesIn(AllRows()), kRowName);

}  // namespace
}  // namespace kio::test
