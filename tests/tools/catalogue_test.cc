// The catalogue says what the library does.
#include "catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"
#include "support/sample_device.h"

namespace kio::tools {
namespace {

using test::FakeHost;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;
using Kind = CatalogueEntry::Kind;

constexpr int kIndex = 1;

std::string Replaced(std::string text, const std::string& part, const std::string& by) {
  const std::size_t at = text.find(part);
  return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

// A name or a document path for one index.
std::string Named(const std::string& text) {
  return Replaced(text, "??", "0" + std::to_string(kIndex));
}

// A node for one index.
std::string NodeOf(std::string text) {
  for (int offset = 0; offset <= 2; ++offset) {
    text = Replaced(text,
                    "(?"
                    "?+" +
                        std::to_string(offset) + ")",
                    std::to_string(kIndex + offset));
  }
  return Replaced(text, "??", std::to_string(kIndex));
}

struct Reading {
  int code;
  std::string text;
};

Reading Read(const std::string& name, bool path = false) {
  char value[KIOAPP_VAR_SIZE] = "";
  const int code = get_RssVar(name.c_str(), value, path ? 1 : 0);
  return {code, value};
}

unsigned int Set(const std::string& name, std::string value) {
  value.resize(KIOAPP_VAR_SIZE);
  return set_RssVar(name.c_str(), value.data());
}

int Validate(const std::string& name, std::string value) {
  value.resize(KIOAPP_VAR_SIZE);
  return validate_RssVar(name.c_str(), value.data());
}

// Values of which each writable variable takes one at least.
std::vector<std::string> Candidates(const CatalogueEntry& entry) {
  std::vector<std::string> values = entry.words;
  values.insert(values.end(), {Read(Named(entry.name)).text, "1", "192.0.2.7", "255.255.255.0",
                               "-70 0 1 1", "abcdefgh12"});
  return values;
}

class CatalogueTest : public ::testing::Test {
 protected:
  void SetUp() override {
    FakeHost::Get().Reset();
    test::StoreSampleDevice();
    FakeHost::Get().Set("/wirelesssitesurvey/site#", kIndex + 1);
    Configure(1);
    for (const char* radio : {"2.4", "5"}) {
      FakeHost::Get().Set(std::string("/lan/wireless") + radio + ":1/configurable/acrule#",
                          kIndex + 1);
    }
    test::ClearRecord();
    init_RssVar();
  }

  static void Configure(int configurable) {
    for (const char* section : {"/uplink", "/lan/wireless2.4:1", "/lan/wireless5:1"}) {
      FakeHost::Get().Set(std::string(section) + "/configurable", configurable);
    }
  }

  const std::vector<CatalogueEntry> entries_ = ListVariables();
};

TEST_F(CatalogueTest, NamesAreUniqueAndConvertBothWays) {
  EXPECT_GT(entries_.size(), 80U);
  std::set<std::string> names;
  for (const CatalogueEntry& entry : entries_) {
    EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    EXPECT_STREQ(cvtRss_XmlPathVsVarName(entry.document_path.c_str(), 0), entry.name.c_str());
  }
  for (const CatalogueEntry& entry : entries_) {
    if (entry.is_indexed) {
      EXPECT_THAT(names, Contains(entry.index_count)) << entry.name;
    }
  }
}

TEST_F(CatalogueTest, EachIsReadByNameAndByDocumentPath) {
  for (const CatalogueEntry& entry : entries_) {
    const Reading by_name = Read(Named(entry.name));
    const Reading by_path = Read(Named(entry.document_path));
    EXPECT_EQ(by_name.code, 0) << entry.name;
    EXPECT_EQ(by_path.code, 0) << entry.name;
    EXPECT_EQ(by_name.text, by_path.text) << entry.name;
  }
}

TEST_F(CatalogueTest, APathIsReadAsListed) {
  for (const CatalogueEntry& entry : entries_) {
    const std::string name = Named(entry.name);
    const std::string expected =
        entry.path_answer.empty() ? Read(name).text : NodeOf(entry.path_answer);
    EXPECT_EQ(Read(name, true).text, expected);
  }
}

TEST_F(CatalogueTest, ValuesComeFromTheNode) {
  int count = 0;
  for (const CatalogueEntry& entry : entries_) {
    if (entry.store_node.empty()) {
      continue;
    }
    std::vector<std::string> values = entry.words;
    if (entry.kind == Kind::kInteger) {
      values = {"1", "0"};
    } else if (entry.kind == Kind::kText) {
      values = {"value " + std::to_string(++count), "other"};
    }
    SetUp();
    for (const std::string& value : values) {
      FakeHost::Get().Set(NodeOf(entry.store_node), value);
      init_RssVar();
      EXPECT_EQ(Read(Named(entry.name)).text, value) << entry.name;
    }
  }
}

TEST_F(CatalogueTest, WhatHasNoNodeIsTheNumberOfRules) {
  for (const CatalogueEntry& entry : entries_) {
    if (entry.store_node.empty()) {
      EXPECT_TRUE(entry.name.ends_with("_Acl_AcRuleNo")) << entry.name;
    }
  }
}

TEST_F(CatalogueTest, OnlyTheWritableAreSetAndValidated) {
  for (const CatalogueEntry& entry : entries_) {
    const std::string name = Named(entry.name);
    SetUp();
    std::set<unsigned int> set;
    std::set<int> validated;
    for (const std::string& value : Candidates(entry)) {
      validated.insert(Validate(name, value));
      set.insert(Set(name, value));
    }
    if (!entry.is_writable) {
      EXPECT_EQ(set, std::set<unsigned int>{2}) << name;
      EXPECT_EQ(validated, std::set<int>{2}) << name;
      continue;
    }
    EXPECT_THAT(set, Contains(0U)) << name;
    if (entry.kind == Kind::kKeyword) {
      EXPECT_EQ(validated, (std::set<int>{2, 10})) << name;
    } else {
      EXPECT_THAT(validated, Contains(0)) << name;
    }
    EXPECT_THAT(entry.check, Not(IsEmpty())) << name;
  }
}

TEST_F(CatalogueTest, OnlyTheListedNeedAConfigurableSection) {
  Configure(0);
  init_RssVar();
  for (const CatalogueEntry& entry : entries_) {
    if (entry.is_writable) {
      EXPECT_EQ(Set(Named(entry.name), "1") == 1U, entry.needs_configurable) << entry.name;
    }
  }
}

// Whether the conditions of a variable hold.
bool IsConfigurable(const CatalogueEntry& entry) {
  return std::all_of(entry.configurable_when.begin(), entry.configurable_when.end(),
                     [](const CatalogueEntry::Condition& condition) {
                       const auto text = FakeHost::Get().Text(condition.node);
                       const auto& texts = condition.texts;
                       const bool is_one =
                           text && std::find(texts.begin(), texts.end(), *text) != texts.end();
                       return is_one == condition.is_one;
                     });
}

TEST_F(CatalogueTest, ASectionIsConfigurableWhileTheConditionsHold) {
  std::set<std::pair<std::string, bool>> seen;
  std::set<std::string> nodes;
  for (const CatalogueEntry& entry : entries_) {
    for (const CatalogueEntry::Condition& condition : entry.configurable_when) {
      nodes.insert(condition.node);
    }
  }
  EXPECT_EQ(nodes.size(), 5U);
  for (const std::string& node : nodes) {
    for (const char* text : {"0", "1", "2", "3", "4", "", "(absent)"}) {
      SetUp();
      if (text == std::string("(absent)")) {
        FakeHost::Get().Delete(node);
      } else {
        FakeHost::Get().Set(node, text);
      }
      init_RssVar();
      for (const CatalogueEntry& entry : entries_) {
        if (entry.is_writable) {
          const unsigned int code = Set(Named(entry.name), Read(Named(entry.name)).text);
          EXPECT_EQ(code != KIOAPP_VAR_NOT_CONFIGURABLE, IsConfigurable(entry))
              << entry.name << ", " << node << " is '" << text << "'";
          seen.insert({node, IsConfigurable(entry)});
        }
      }
    }
  }
  EXPECT_EQ(seen.size(), 2 * nodes.size());
}

TEST_F(CatalogueTest, TheRuleOfAValueIsItselfAVariable) {
  std::set<std::string> names;
  for (const CatalogueEntry& entry : entries_) {
    names.insert(entry.name);
  }
  int rules = 0;
  for (const CatalogueEntry& entry : entries_) {
    if (!entry.rule_in.empty()) {
      EXPECT_THAT(names, Contains(entry.rule_in)) << entry.name;
      EXPECT_NE(entry.check.find(entry.rule_in), std::string::npos) << entry.name;
      ++rules;
    }
  }
  EXPECT_EQ(rules, 10);
}

TEST_F(CatalogueTest, TextsAreCutToTheCapacity) {
  const std::string text(KIOAPP_VAR_SIZE - 1, 'x');
  for (const CatalogueEntry& entry : entries_) {
    if (entry.check == "none" && entry.kind == Kind::kText) {
      EXPECT_EQ(Set(Named(entry.name), text), 0U) << entry.name;
      EXPECT_EQ(Read(Named(entry.name)).text, text.substr(0, entry.capacity)) << entry.name;
    }
  }
}

TEST_F(CatalogueTest, KeywordsAreTheWordsThatAreTaken) {
  for (const CatalogueEntry& entry : entries_) {
    if (entry.kind == Kind::kKeyword) {
      EXPECT_GE(entry.words.size(), 2U) << entry.name;
      EXPECT_EQ(Set(entry.name, "no such word"), 10U) << entry.name;
      for (const std::string& word : entry.words) {
        EXPECT_EQ(Set(entry.name, word), 0U) << entry.name << " " << word;
      }
    }
  }
}

}  // namespace
}  // namespace kio::tools
