// The page of the documents says what the library reads, and its examples are good documents.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "document_elements.h"
#include "kioapp/kioapp.h"
#include "page.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::tools {
namespace {

using settings::Check;
using settings::Field;
using test::Document;
using test::FakeHost;
using test::Parse;
using ::testing::SizeIs;

// The kinds of settings documents, each with documents that hold all of its elements between them.
struct Version {
  DocumentKind kind;
  void (*store)();
  std::vector<Document> documents;
};

Document Extender10() {
  Document document = test::Version10Document();
  const std::string site = "Device/ExtenderSite/";
  document.Set("Device/ExtenderEnbl", "1").Set(site + "Survey", "0");
  document.Set(site + "ConnRefSiteBSSID", "02:00:00:00:99:01").Set(site + "WirelessType", "2.4");
  return document.Set(site + "WirelessName", "Upstream")
      .Set(site + "EncryptionKey", "upstream-key");
}

std::vector<Document> Documents(Document (*make)()) {
  std::vector<Document> documents = {make(), make(), make()};
  test::UseStatic(documents[1]);
  test::UsePppoe(documents[2]);
  for (const char* hardware : {"DSL", "ADSL", "WWanAPN", "WWan802.11"}) {
    documents.push_back(make());
    test::UseHardware(documents.back(), hardware);
  }
  return documents;
}

Version Version11() {
  return {DocumentKind::kVersion11, test::StoreSampleDevice, Documents(test::SampleDocument)};
}

Version Version10() {
  Version version = {DocumentKind::kVersion10, test::StoreVersion10Device,
                     Documents(test::Version10Document)};
  version.documents.push_back(Extender10());
  return version;
}

// The paths of an element for the radios.
std::vector<std::string> ForRadios(const std::string& path) {
  const std::size_t at = path.find("{band}");
  if (at == std::string::npos) {
    return {path};
  }
  std::vector<std::string> paths;
  for (const char* band : {"2.4", "5"}) {
    paths.push_back(path);
    paths.back().replace(at, 6, band);
  }
  return paths;
}

// A node or a variable of the page, for the radio and the rule of an element's path.
std::string ForPath(std::string name, const std::string& path) {
  const bool is_5 = path.find("Wireless5") != std::string::npos;
  const std::size_t radio = name.find("Wl2");
  if (is_5 && radio != std::string::npos) {
    name.replace(radio, 3, "Wl5");
  }
  const std::size_t band = name.find("{band}");
  if (band != std::string::npos) {
    name.replace(band, 6, is_5 ? "5" : "2.4");
  }
  const std::size_t index = name.find('?');
  return index == std::string::npos ? name : name.replace(index, 2, "00");
}

std::string Variable(const DocumentElement& element, const std::string& path) {
  return getRssVar(ForPath(element.variable, path).c_str());
}

bool Has(const Document& document, const std::string& path) {
  const std::vector<std::string> paths = document.Paths();
  return std::find(paths.begin(), paths.end(), path) != paths.end();
}

class DocumentPageTest : public test::SettingsTest, public ::testing::WithParamInterface<Version> {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    GetParam().store();
  }

  // Calls `look` for each element that `concerns` names, in each document that has it.
  template <typename Predicate, typename Function>
  void ForEach(const Predicate& concerns, const Function& look) {
    for (const DocumentElement& element : ListDocumentElements(GetParam().kind)) {
      if (!concerns(element)) {
        continue;
      }
      for (const std::string& path : ForRadios(element.path)) {
        for (const Document& document : GetParam().documents) {
          if (Has(document, path)) {
            Host().Reset();
            GetParam().store();
            // Version 1.0 verifies the provider that the record holds.
            init_RssVar();
            look(element, path, document);
          }
        }
      }
    }
  }
};

TEST_P(DocumentPageTest, ExactlyTheRequiredElementsAreMissed) {
  std::set<std::string> required;
  std::set<std::string> missed;
  for (const DocumentElement& element : ListDocumentElements(GetParam().kind)) {
    if (element.is_required) {
      const std::vector<std::string> paths = ForRadios(element.path);
      required.insert(paths.begin(), paths.end());
    }
  }
  for (const Document& document : GetParam().documents) {
    for (const std::string& path : document.Paths()) {
      Document without = document;
      Parse(without.Remove(path));
      if (rssXmlData.setResult == KIOAPP_RESULT_MISSING_ELEMENT) {
        missed.insert(path);
      }
    }
  }
  EXPECT_EQ(missed, required);
}

TEST_P(DocumentPageTest, RangesHoldAndEndWhereListed) {
  int ends = 0;
  const auto has_range = [](const DocumentElement& element) {
    return element.field != nullptr && element.field->check == Check::kInRange;
  };
  ForEach(has_range, [&ends](const DocumentElement& element, const std::string& path,
                             Document document) {
    const bool is_circuit = path.find("/DSL/") != std::string::npos || path.ends_with("/MTU");
    const bool is_dsl = document.Text().find("<HardwareType>DSL<") != std::string::npos;
    if (is_circuit && !is_dsl) {
      return;
    }
    const int low = element.field->low;
    const int high = element.field->high;
    EXPECT_EQ(element.range, std::to_string(low) + " to " + std::to_string(high));
    for (const int value : {low, high}) {
      // A switch takes 2 and 3 where they are stored already.
      if (!element.node.empty()) {
        FakeHost::Get().Set(ForPath(element.node, path), value);
      }
      Parse(document.Set(path, std::to_string(value)));
      EXPECT_NE(rssXmlData.setResult, KIOAPP_RESULT_INVALID_VALUE) << path << " " << value;
    }
    for (const int value : {low - 1, high + 1}) {
      EXPECT_EQ(Parse(document.Set(path, std::to_string(value))), 0) << path << " " << value;
      EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_INVALID_VALUE) << path << " " << value;
      ++ends;
    }
  });
  EXPECT_GT(ends, 10);
}

// The text that is read is found in the record by the field's own row.
TEST_P(DocumentPageTest, TextsAreCutAtTheirLimits) {
  std::set<std::string> cut;
  const auto is_any_text = [](const DocumentElement& element) {
    return element.limit != 0 && !element.variable.empty() && element.words.empty();
  };
  ForEach(is_any_text,
          [&cut](const DocumentElement& element, const std::string& path, Document document) {
            Parse(document.Set(path, std::string(300, '7')));
            EXPECT_THAT(Variable(element, path), SizeIs(element.limit)) << path;
            cut.insert(path);
          });
  EXPECT_GT(cut.size(), 5U);
}

TEST_P(DocumentPageTest, WordsAreTakenAndOthersRefused) {
  // Without a variable: the word of a circuit.
  const auto has_words = [](const DocumentElement& element) {
    return !element.words.empty() && !element.variable.empty();
  };
  ForEach(
      has_words, [](const DocumentElement& element, const std::string& path, Document document) {
        Parse(document.Set(path, "no such word"));
        EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_INVALID_VALUE) << path;
        std::string names = element.words + ", ";
        for (std::size_t at = names.find(", "); at != std::string::npos; at = names.find(", ")) {
          std::string word = names.substr(0, at);
          names.erase(0, at + 2);
          word = word == "nothing" ? "" : word.substr(1, word.size() - 2);
          Parse(document.Set(path, word));
          EXPECT_EQ(Variable(element, path), word) << path;
        }
      });
}

TEST_P(DocumentPageTest, ZeroInConfigurableLeavesTheBlockAlone) {
  int blocks = 0;
  for (const DocumentElement& element : ListDocumentElements(GetParam().kind)) {
    const std::string name = "/Configurable";
    if (element.path.size() < name.size() || !element.path.ends_with(name)) {
      continue;
    }
    EXPECT_FALSE(element.is_required);
    for (const std::string& path : ForRadios(element.path)) {
      const std::string block = path.substr(0, path.size() - name.size());
      Document document = GetParam().documents.front();
      document.SetMarkup(block, "<" + block.substr(block.rfind('/') + 1) +
                                    "><Configurable>0</Configurable></" +
                                    block.substr(block.rfind('/') + 1) + ">");
      EXPECT_EQ(Parse(document), 1) << path << " " << rssXmlData.setMsg;
      ++blocks;
    }
  }
  EXPECT_EQ(blocks, 4);
}

// Of what a document must hold otherwise, cloning can do without what says so.
TEST_P(DocumentPageTest, CloningNeedsNotWhatIsListedSo) {
  const std::string listed = "may be missing in cloning mode";
  for (const DocumentElement& element : ListDocumentElements(GetParam().kind)) {
    if (element.field != nullptr && element.when.find("not in cloning mode") == std::string::npos &&
        element.path.find("UpLinkConnection/") == std::string::npos &&
        element.path.find("ExtenderSite/") == std::string::npos) {
      const std::string path = ForRadios(element.path).front();
      Document document = GetParam().documents.front();
      test::ParseCloning(document.Remove(path));
      EXPECT_EQ(rssXmlData.setResult != KIOAPP_RESULT_MISSING_ELEMENT,
                element.when.find(listed) != std::string::npos)
          << path;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Versions, DocumentPageTest, ::testing::Values(Version11(), Version10()));

// The parts of the page between "```xml" and "```".
std::vector<std::string> Examples() {
  std::string error;
  const std::string page = MakePage(KIO_SOURCE_DIR, "documents", &error).value_or("");
  EXPECT_EQ(error, "");
  std::vector<std::string> examples;
  const std::string begin = "```xml\n";
  for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at)) {
    at += begin.size();
    examples.push_back(page.substr(at, page.find("```", at) - at));
  }
  return examples;
}

class ExampleTest : public test::SettingsTest {
 protected:
  const std::vector<std::string> examples_ = Examples();
};

TEST_F(ExampleTest, OfVersion11IsApplied) {
  ASSERT_THAT(examples_, SizeIs(3));
  test::StoreSampleDevice();
  EXPECT_EQ(Parse(examples_[0]), 1) << rssXmlData.setMsg;
  EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_APPLIED);
  EXPECT_EQ(Host().Text("/lan/wireless2.4:1/wirelessname"), "Sofa & garden");
}

TEST_F(ExampleTest, OfVersion10IsApplied) {
  ASSERT_THAT(examples_, SizeIs(3));
  test::StoreVersion10Device();
  EXPECT_EQ(Parse(examples_[1]), 1) << rssXmlData.setMsg;
  EXPECT_EQ(rssXmlData.setResult, KIOAPP_RESULT_APPLIED);
  EXPECT_EQ(Host().Text("/uplink/loginusername"), "line-42");
}

class FirmwareExampleTest : public ExampleTest {
 protected:
  void SetUp() override {
    ExampleTest::SetUp();
    Host().Set("/fwupgradeinfo/devicemac", "02:00:5E:10:00:01");
    Host().Set("/fwupgradeinfo/currfwfilename", "DR2400_FW1.0.2_0101.bin");
  }

  static int ParseList(std::string text) { return do_FwXml_Parser(text.data(), nullptr, nullptr); }
  // The list without the first element of a name, tags and all.
  static std::string Without(const std::string& text, const std::string& name,
                             std::size_t from = 0) {
    const std::size_t begin = text.find("<" + name + ">", from);
    const std::string end = "</" + name + ">";
    return text.substr(0, begin) + text.substr(text.find(end, begin) + end.size());
  }
};

TEST_F(FirmwareExampleTest, ChoosesTheSecondEntry) {
  ASSERT_THAT(examples_, SizeIs(3));
  EXPECT_EQ(ParseList(examples_[2]), KIOAPP_FW_LIST_MATCH);
  EXPECT_EQ(Host().Text("/fwupgradeinfo/newfw/fileurl"),
            std::string(get_FwServerWebSite()) + "/fw/DR2400_FW1.0.8_0312.bin");
}

// In the second entry, which fits.
TEST_F(FirmwareExampleTest, ExactlyTheRequiredElementsEndTheSearch) {
  ASSERT_THAT(examples_, SizeIs(3));
  const std::string& list = examples_[2];
  const std::size_t second = list.rfind("<Firmware>");
  for (const DocumentElement& element : ListDocumentElements(DocumentKind::kFirmwareList)) {
    const std::string name = element.path.substr(element.path.rfind('/') + 1);
    const bool is_of_entry = element.path.find("Firmware/") != std::string::npos;
    ASSERT_NE(list.find("<" + name + ">"), std::string::npos) << name;
    if (is_of_entry && list.find("<" + name + ">", second) == std::string::npos) {
      EXPECT_EQ(name, "MAC");
      continue;
    }
    const std::string without = Without(list, name, is_of_entry ? second : 0);
    EXPECT_EQ(ParseList(without) == KIOAPP_FW_LIST_ERROR, element.is_required) << element.path;
  }
}

TEST_F(FirmwareExampleTest, OtherVersionsAreRefused) {
  ASSERT_THAT(examples_, SizeIs(3));
  std::string list = examples_[2];
  list.replace(list.find("<minor>0"), 8, "<minor>1");
  EXPECT_EQ(ParseList(list), KIOAPP_FW_LIST_ERROR);
}

}  // namespace
}  // namespace kio::tools
