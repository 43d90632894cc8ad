// Each field in the documents that hold it: left out, faulty, changed, too long, and on its way to
// the store and back to a variable.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fields/row.h"
#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"
#include "variables/variables.h"

namespace kio::test {
namespace {

using Texts = std::vector<std::string>;

class FieldInDocumentsTest : public SettingsTest, public ::testing::WithParamInterface<FieldRow> {
 protected:
  // Calls `look` for each kind of documents that holds the field.
  template <typename Function>
  void ForEach(const Function& look) const {
    for (const InDocuments& held : row_.documents) {
      for (const Scene scene : held.scenes) {
        SCOPED_TRACE(NameOf(scene));
        look(held, scene);
      }
    }
  }

  static void ExpectRefused(const Document& document, int result, const std::string& message) {
    Host().ClearCommands();
    EXPECT_EQ(Parse(document), 0);
    EXPECT_EQ(Host().commands(), ResultCommands(result, message, 0));
    EXPECT_EQ(RealChanges(), Texts());
  }

  static void ExpectAccepted(const Document& document) {
    EXPECT_EQ(Parse(document), 1) << rssXmlData.setMsg;
    EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_APPLIED);
  }

  [[nodiscard]] std::string Record() const { return row_.record(rssXmlData); }

  // The variable that shows what a snapshot has read; empty when there is none.
  [[nodiscard]] std::string Variable() const {
    if (row_.first_rule) {
      return row_.first_rule->variable;
    }
    if (!row_.variables.empty()) {
      return row_.variables.front().name;
    }
    return row_.shown.empty() ? "" : row_.shown.front().name;
  }

  const FieldRow row_ = GetParam();
};

class FieldToldInFaultsTest : public FieldInDocumentsTest {};
class LongFieldTest : public FieldInDocumentsTest {};
class FieldOptionalInCloningTest : public FieldInDocumentsTest {};
class FieldOfOneVersionTest : public FieldInDocumentsTest {};

TEST_P(FieldInDocumentsTest, WithoutItADocumentIsRefusedOrKeepsTheValue) {
  ForEach([this](const InDocuments& held, Scene scene) {
    Document document = Prepare(scene);
    document.Remove(held.element);
    if (held.without != Without::kKept) {
      ExpectRefused(document, KIOAPP_RESULT_MISSING_ELEMENT, held.missing);
      return;
    }
    ExpectAccepted(document);
    EXPECT_EQ(RealChanges(), Texts());
    EXPECT_EQ(Record(), row_.loads.front().record);
    Host().Set(row_.node, held.value);
    ExpectAccepted(document);
    EXPECT_EQ(Record(), held.value);
    EXPECT_EQ(Host().Text(row_.node), held.value);
  });
}

TEST_P(FieldToldInFaultsTest, FaultsAreTold) {
  ForEach([](const InDocuments& held, Scene scene) {
    for (const Faulty& faulty : held.faults) {
      SCOPED_TRACE("'" + faulty.value + "'");
      Document document = Prepare(scene);
      ExpectRefused(document.Set(held.element, faulty.value), faulty.result, held.fault);
    }
  });
}

TEST_P(FieldInDocumentsTest, TheSameValueChangesNothing) {
  ForEach([this](const InDocuments& /*held*/, Scene scene) {
    const Document document = Prepare(scene);
    const auto stored = Host().Text(row_.node);
    ExpectAccepted(document);
    EXPECT_EQ(RealChanges(), Texts());
    EXPECT_EQ(Host().Text(row_.node), stored);
  });
}

TEST_P(FieldInDocumentsTest, AnotherValueIsAppliedOnce) {
  ForEach([this](const InDocuments& held, Scene scene) {
    Document document = Prepare(scene);
    document.Set(held.element, held.value);
    ExpectAccepted(document);
    EXPECT_EQ(RealChanges(), held.writes);
    EXPECT_EQ(Record(), held.value);
    if (row_.code != nullptr) {
      EXPECT_EQ(row_.code(rssXmlData), held.code);
    }
    Host().ClearCalls();
    ExpectAccepted(document);
    EXPECT_EQ(RealChanges(), held.again);
  });
}

// From a document to the store, from there by a snapshot to the record, from there to a variable.
TEST_P(FieldInDocumentsTest, ComesBackFromTheStore) {
  ForEach([this](const InDocuments& held, Scene scene) {
    Document document = Prepare(scene);
    const std::string stored = Host().Text(row_.node).value_or("");
    ExpectAccepted(document.Set(held.element, held.value));
    ClearRecord();
    std::string expected = Record();  // where no snapshot loads it
    if (!row_.loads.empty()) {
      expected = held.writes.empty() ? stored : held.value;
    }
    init_RssVar();
    EXPECT_EQ(row_.first_rule ? row_.first_rule->record(rssXmlData) : Record(), expected);
    if (!Variable().empty()) {
      EXPECT_EQ(Read(Variable()), (Answer{0, expected}));
      const char* const path = cvtRss_XmlPathVsVarName(Variable().c_str(), 1);
      ASSERT_NE(path, nullptr);
      EXPECT_EQ(Read(path), (Answer{0, expected}));
    }
  });
}

TEST_P(LongFieldTest, TooLongATextIsCut) {
  ForEach([this](const InDocuments& held, Scene scene) {
    if (held.too_long) {
      Document document = Prepare(scene);
      Parse(document.Set(held.element, held.too_long->value));
      EXPECT_EQ(Record(), held.too_long->record);
      EXPECT_EQ(rssXmlData.setResult, held.too_long->result) << rssXmlData.setMsg;
    }
  });
}

// Quirk "cloning-without-roaming-clears-it".
TEST_P(FieldOptionalInCloningTest, IsEmptyWithoutItsElement) {
  ForEach([this](const InDocuments& held, Scene scene) {
    Document document = Prepare(scene);
    EXPECT_EQ(ParseCloning(document.Remove(held.element)), 1) << rssXmlData.setMsg;
    EXPECT_EQ(Record(), "");
    EXPECT_EQ(Host().Text(row_.node), "");
  });
}

TEST_P(FieldOfOneVersionTest, IsNotLookedAtInTheOther) {
  const bool only_10 = row_.versions == Versions::kOnly10;
  Document document = Prepare(only_10 ? Scene::kDhcp : Scene::kDhcp10);
  ExpectAccepted(document.Set(row_.documents.front().element, "nonsense"));
  EXPECT_EQ(RealChanges(), Texts());
}

bool IsInDocuments(const FieldRow& row) { return !row.documents.empty(); }

template <typename Predicate>
std::vector<FieldRow> RowsWithDocuments(const Predicate& predicate) {
  return RowsWith([&predicate](const FieldRow& row) {
    return std::any_of(row.documents.begin(), row.documents.end(), predicate);
  });
}

INSTANTIATE_TEST_SUITE_P(Fields, FieldInDocumentsTest, ::testing::ValuesIn(RowsWith(IsInDocuments)),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(Fields, FieldToldInFaultsTest,
                         ::testing::ValuesIn(RowsWithDocuments([](const InDocuments& held) {
                           return !held.faults.empty();
                         })),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(Fields, LongFieldTest,
                         ::testing::ValuesIn(RowsWithDocuments([](const InDocuments& held) {
                           return held.too_long.has_value();
                         })),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(Fields, FieldOptionalInCloningTest,
                         ::testing::ValuesIn(RowsWithDocuments([](const InDocuments& held) {
                           return held.without == Without::kRefusedButInCloning;
                         })),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(Fields, FieldOfOneVersionTest,
                         ::testing::ValuesIn(RowsWith([](const FieldRow& row) {
                           return IsInDocuments(row) && row.versions != Versions::kEvery;
                         })),
                         kRowName);

}  // namespace
}  // namespace kio::test
