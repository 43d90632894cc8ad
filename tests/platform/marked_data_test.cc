// Where exported data lie: what the host has under the same name is left alone.
#include "platform/marked_data.h"

#include <gtest/gtest.h>

namespace kio::platform {
namespace {

TEST(ChooseData, MarkedDataAreTakenAndTheirMarkCleared) {
  unsigned own[2] = {kMark, 7};
  unsigned copy[2] = {kMark, 8};
  void* place = own;
  void* const bound = copy;
  ChooseData(&place, &bound, 1);
  EXPECT_EQ(place, copy);
  EXPECT_EQ(copy[0], 0U);
  EXPECT_EQ(copy[1], 8U);
  EXPECT_EQ(own[0], kMark);
}

TEST(ChooseData, DataOfTheHostsAreLeftAlone) {
  // Each byte of the mark counts.
  for (unsigned byte = 0; byte < sizeof(kMark); ++byte) {
    unsigned own[2] = {kMark, 7};
    const unsigned hosts = kMark ^ (1U << (8 * byte));
    unsigned theirs = hosts;
    void* place = own;
    void* const bound = &theirs;
    ChooseData(&place, &bound, 1);
    EXPECT_EQ(place, own);
    EXPECT_EQ(own[0], 0U);
    EXPECT_EQ(own[1], 7U);
    EXPECT_EQ(theirs, hosts);
  }
}

}  // namespace
}  // namespace kio::platform
