// Random sequences of requests, faults and moves of the clock: the router does what the model says.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "draw.h"
#include "player.h"
#include "shrink.h"

namespace {

using kio::sequences::Counts;
using kio::sequences::Difference;
using kio::sequences::Player;
using kio::sequences::Sequence;
using kio::sequences::Step;

constexpr int kLength = 200;
constexpr int kShrinkTries = 600;

unsigned long FromEnvironment(const char* name, unsigned long otherwise) {
  constexpr int kDecimal = 10;
  const char* const text = std::getenv(name);
  return text != nullptr ? std::strtoul(text, nullptr, kDecimal) : otherwise;
}

std::optional<Difference> Play(const Sequence& sequence, Counts* counts) {
  return Player(counts).Play(sequence);
}

// What is left of a sequence that fails, and how it fails.
std::string Smallest(Sequence sequence, const Difference& difference) {
  Counts counts;
  sequence.resize(std::min(sequence.size(), difference.step + 1));
  const Sequence smallest = Shrink(
      sequence, [&counts](const Sequence& shorter) { return Play(shorter, &counts).has_value(); },
      kShrinkTries);
  const std::optional<Difference> left = Play(smallest, &counts);
  return TextOf(smallest) + (left ? "# step " + std::to_string(left->step + 1) + ": " + left->what
                                  : "# not each time; at first: " + difference.what);
}

TEST(SequencesTest, RandomOnesGoAsTheModelSays) {
  const unsigned long sequences = FromEnvironment("KIO_SEQUENCES", 2);
  const unsigned long first = FromEnvironment("KIO_SEQUENCES_FIRST", 1);
  Counts counts;
  unsigned long failed = 0;
  const unsigned long stride = FromEnvironment("KIO_SEQUENCES_STRIDE", 1);
  for (unsigned long i = 0; i < sequences; ++i) {
    const unsigned long seed = first + i * stride;
    const Sequence sequence = kio::sequences::Draw(seed, kLength);
    if (const std::optional<Difference> difference = Play(sequence, &counts)) {
      ADD_FAILURE() << "seed " << seed << ", step " << difference->step + 1 << ": "
                    << difference->what << "\n"
                    << Smallest(sequence, *difference);
      if (++failed >= FromEnvironment("KIO_SEQUENCES_FAILURES", 1)) {
        break;
      }
    }
  }
  for (const auto& [what, count] : counts) {
    std::printf("count: %s\t%ld\n", what.c_str(), count);
  }
  EXPECT_GE(counts["status 200"], counts["steps"] / 4) << "too little comes about";
}

// Those that once failed, and some that reach far.
TEST(SequencesTest, KeptOnesGoAsTheModelSays) {
  Counts counts;
  int kept = 0;
  for (const auto& file : std::filesystem::directory_iterator(KIO_SEQUENCES_DIR)) {
    SCOPED_TRACE(file.path().filename());
    const Sequence sequence = kio::sequences::ReadSequence(ReadFile(file.path()));
    EXPECT_FALSE(sequence.empty());
    const std::optional<Difference> difference = Play(sequence, &counts);
    EXPECT_FALSE(difference) << "step " << difference->step + 1 << ": " << difference->what;
    ++kept;
  }
  EXPECT_GT(kept, 0);
}

TEST(SequenceTextTest, IsReadAsItWasWritten) {
  for (unsigned long seed = 1; seed < 20; ++seed) {
    const std::string text = TextOf(kio::sequences::Draw(seed, kLength));
    EXPECT_EQ(TextOf(kio::sequences::ReadSequence("# words\n\n" + text)), text);
  }
  const Step step{"put", {{"value", "100 %\n"}}};
  EXPECT_EQ(TextOf(step), "put value=100%20%25%0A");
  EXPECT_EQ(kio::sequences::ReadSequence(TextOf(step))[0].words, step.words);
}

TEST(ShrinkTest, WhatMattersIsLeft) {
  const auto fails = [](const Sequence& sequence) {
    const auto is = [](const char* kind) {
      return [kind](const Step& step) { return step.kind == kind; };
    };
    const auto reset = std::find_if(sequence.begin(), sequence.end(), is("reset"));
    return std::find_if(reset, sequence.end(), is("logout")) != sequence.end();
  };
  Sequence sequence = kio::sequences::Draw(3, kLength);
  sequence.push_back({"reset", {}});
  sequence.push_back({"logout", {{"client", "1"}, {"why", "x"}}});
  EXPECT_EQ(
      TextOf(Shrink(sequence, fails, kShrinkTries)),
      "reset\nlogout client=" + Shrink(sequence, fails, kShrinkTries)[1].Get("client") + "\n");
}

}  // namespace
