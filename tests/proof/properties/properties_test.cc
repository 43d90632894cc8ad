// The properties over random devices and documents.
#include "properties.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using kio::differential::Element;
using kio::properties::Case;
using kio::properties::Tally;

unsigned long FromEnvironment(const char* name, unsigned long otherwise) {
  constexpr int kDecimal = 10;
  const char* const text = std::getenv(name);
  return text != nullptr ? std::strtoul(text, nullptr, kDecimal) : otherwise;
}

// Leaves out elements as long as the case still fails.
void Shrink(unsigned long seed, Case* failing, Element* element) {
  for (size_t i = element->children.size(); i > 0; --i) {
    const Case before = *failing;
    Tally tally;
    // What is left out may be what is looked at: both are of the case.
    Element left_out = element->children[i - 1];
    element->children.erase(element->children.begin() + static_cast<long>(i) - 1);
    Rewrite(seed, failing);
    if (Violation(seed, *failing, &tally).empty()) {
      element->children.insert(element->children.begin() + static_cast<long>(i) - 1, left_out);
      Rewrite(seed, failing);
      Shrink(seed, failing, &element->children[i - 1]);
    }
  }
}

TEST(PropertiesTest, HoldOfRandomDevicesAndDocuments) {
  constexpr unsigned long kFew = 500;
  const unsigned long cases = FromEnvironment("KIO_PROPERTIES", kFew);
  const unsigned long first = FromEnvironment("KIO_PROPERTIES_FIRST", 1);
  const unsigned long most = FromEnvironment("KIO_PROPERTIES_FAILURES", 1);
  Tally tally;
  unsigned long failed = 0;
  for (unsigned long seed = first; seed < first + cases && failed < most; ++seed) {
    Case drawn = kio::properties::Draw(seed);
    if (const std::string wrong = Violation(seed, drawn, &tally); !wrong.empty()) {
      ++failed;
      Shrink(seed, &drawn, &drawn.document);
      Tally others;
      ADD_FAILURE() << "seed " << seed << ": " << wrong
                    << "of this document there is left: " << Violation(seed, drawn, &others)
                    << drawn.text;
    }
  }
  for (const auto& [what, count] : tally) {
    std::printf("count: %s\t%ld\n", what.c_str(), count);
  }
  EXPECT_GT(tally["accepted documents"], static_cast<long>(cases / 10));
  EXPECT_GT(tally["refused documents"], static_cast<long>(cases / 10));
  EXPECT_GT(tally["valid values"], static_cast<long>(cases / 10));
  EXPECT_GT(tally["sent as variables"], static_cast<long>(cases / 50));
}

}  // namespace
