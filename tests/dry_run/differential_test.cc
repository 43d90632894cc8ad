// What follows a dry run behaves as if it had never been.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kioapp/kioapp.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "../../tools/differential/device.h"
#include "../../tools/differential/document.h"
#include "scenario.h"

namespace {

using kio::differential::MakeDocument;
using kio::differential::Random;
using kiohost::CommitKind;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using Transcript = std::vector<std::string>;

// The first line in which they differ; empty when they are the same.
std::string FirstDifference(const Transcript& a, const Transcript& b) {
  const auto [in_a, in_b] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  if (in_a == a.end() && in_b == b.end()) {
    return {};
  }
  return "without: " + (in_a == a.end() ? "(end)" : *in_a) +
         "\nwith:    " + (in_b == b.end() ? "(end)" : *in_b);
}

int FromEnvironment(const char* name, int otherwise) {
  const char* const text = std::getenv(name);
  constexpr int kDecimal = 10;
  return text != nullptr ? static_cast<int>(std::strtol(text, nullptr, kDecimal)) : otherwise;
}

TEST(DryRunDifferentialTest, WhatFollowsIsAsIfItHadNeverBeen) {
  constexpr int kFew = 200;
  const int scenarios = FromEnvironment("KIO_DRY_RUN_SCENARIOS", kFew);
  const int first = FromEnvironment("KIO_DRY_RUN_FIRST", 1);
  int applied = 0;
  int deferred = 0;
  for (int seed = first; seed < first + scenarios; ++seed) {
    const auto run = [seed](bool with_dry_runs) {
      return InOwnProcess([seed, with_dry_runs](Bench* bench) {
        RunScenario(static_cast<std::uint64_t>(seed), with_dry_runs, bench);
      });
    };
    const Transcript without = run(false);
    ASSERT_EQ(FirstDifference(without, run(true)), "") << "seed " << seed;
    for (const std::string& line : without) {
      applied += line.starts_with("commit: ") && !line.ends_with(" 0") ? 1 : 0;
      deferred += line.starts_with("deferred commit: ") ? 1 : 0;
    }
  }
  EXPECT_GT(applied, scenarios / 10) << "the scenarios change too little";
  EXPECT_GT(deferred, scenarios / 100);
}

// A device and a document that changes much of it.
std::string ChangingDocument(Bench* bench) {
  Random random(7, 1);
  const std::string directory = bench->store()->Get("/zentrolinks/tempdirecory").value_or("");
  kio::differential::MakeDevice(random, 0);
  bench->store()->Set("/zentrolinks/tempdirecory", directory);
  bench->store()->Set("/zentrolinks/configurable", "1");
  bench->store()->Set("/zentrolinks/specversion/major", "1");
  bench->store()->Set("/zentrolinks/specversion/minor", "1");
  return TextOf(random, MakeDocument(random, 0));
}

// The library forgets the actions that an earlier apply left behind when it sees its first
// document. A dry run must not be that document.
TEST(DryRunDifferentialTest, TheFirstDocumentIsTheFirstThatIsNotDry) {
  const auto run = [](bool with_dry_run) {
    return InOwnProcess([with_dry_run](Bench* bench) {
      const std::string document = ChangingDocument(bench);
      bench->Write("rss_DeviceName", "Another");
      bench->Act(kiohost::Variables::Action::kApplyAll);
      bench->Act(kiohost::Variables::Action::kApplyAll);
      if (with_dry_run) {
        bench->DryExchange(document, CommitKind::kSettings);
      }
      bench->Note("to forget", rssXmlData.pre_exeflag != 0 ? "something" : "nothing");
      bench->Exchange("<root></root>", CommitKind::kSettings);
      bench->Note("left", std::to_string(rssXmlData.pre_exeflag));
    });
  };
  const Transcript without = run(false);
  EXPECT_EQ(FirstDifference(without, run(true)), "");
  EXPECT_THAT(without, IsSupersetOf({"to forget: something", "left: 0"}));
}

// The same for the first time that it loads the record for variables.
TEST(DryRunDifferentialTest, TheFirstSeriesIsTheFirstThatIsNotDry) {
  const auto run = [](bool with_dry_run) {
    return InOwnProcess([with_dry_run](Bench* bench) {
      const std::string document = ChangingDocument(bench);
      bench->Exchange(document, CommitKind::kSettings);
      rssXmlData.pre_exeflag = KIOAPP_SYNC_WAN;
      if (with_dry_run) {
        bench->DryBatch("rss_DeviceName=Attic", '&');
      }
      bench->Note("to forget", std::to_string(rssXmlData.pre_exeflag));
      bench->Write("rss_DeviceName", "Loft");
      bench->Note("left", std::to_string(rssXmlData.pre_exeflag));
    });
  };
  const Transcript without = run(false);
  EXPECT_EQ(FirstDifference(without, run(true)), "");
  EXPECT_THAT(without, IsSupersetOf({"to forget: 1", "left: 0"}));
}

TEST(DryRunDifferentialTest, ABatchThatCommitsLeavesNoAlarm) {
  const Transcript lines = InOwnProcess([](Bench* bench) {
    ChangingDocument(bench);
    const kiohost::Forecast forecast = bench->DryBatch(
        "rss_DeviceName=Attic&rss_Act_ApplyAllRssVars=&rss_Act_CommitRssVars=", '&');
    bench->Note("foretold", std::to_string(forecast.code) +
                                (forecast.batch->applies ? " applies" : "") +
                                (forecast.batch->commits ? " commits" : ""));
  });
  EXPECT_THAT(lines, IsSupersetOf({"foretold: 0 applies commits", "alarm: 0"}));
  EXPECT_THAT(lines, Not(Contains(HasSubstr("command: "))));
}

}  // namespace
