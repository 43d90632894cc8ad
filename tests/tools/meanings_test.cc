// Each row of the library's tables is explained, and nothing else is.
#include "meanings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace kio::tools {
namespace {

using ::testing::IsEmpty;
using ::testing::Not;

std::string TitleOf(SectionId section, platform::TextView name) {
  return Text(settings::RowOf(section).element) + "/" + Text(name);
}

// Calls `look` with the section and the name of each row.
template <typename Function>
void ForEachRow(const Function& look) {
  for (const auto& table : kFieldTables) {
    for (const Field& field : table) {
      look(table.section, NameOf(field));
    }
  }
  for (const LiveNode& live : kLiveNodes) {
    look(live.section, NameOf(live));
  }
}

TEST(MeaningsTest, EachRowHasOne) {
  ForEachRow([](SectionId section, platform::TextView name) {
    const Meaning* const meaning = FindMeaning(section, name);
    ASSERT_NE(meaning, nullptr) << "tools/meanings.h does not say what " << TitleOf(section, name)
                                << " means";
    EXPECT_THAT(std::string(meaning->text), Not(IsEmpty())) << TitleOf(section, name);
  });
}

TEST(MeaningsTest, EachIsOfARow) {
  std::set<const Meaning*> used;
  ForEachRow([&used](SectionId section, platform::TextView name) {
    used.insert(FindMeaning(section, name));
  });
  for (const Meaning& meaning : kMeanings) {
    EXPECT_EQ(used.count(&meaning), 1U)
        << TitleOf(meaning.section, meaning.name) << " is no row, or is explained twice";
  }
}

}  // namespace
}  // namespace kio::tools
