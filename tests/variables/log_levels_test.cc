// The levels of the messages about variables.
#include "support/log_levels.h"

#include "testing/heap_chars.h"
#include "variables/variables.h"

namespace kio::test {
namespace {

class VariableLevelsTest : public VariableTest {
 protected:
  // Runs a batch over the record of the sample device.
  static void RunBatch() {
    FillSampleRecord();
    HeapChars text("rss_DeviceName=Attic");
    EXPECT_EQ(do_RssVar_Parser(text, '&', nullptr, 0), 0);
  }
};

TEST_F(VariableLevelsTest, Batches) {
  ExpectLevels({
      {"what was received", RunBatch, kActionLevel,
       "---- Received Rss Var Data Begin ----\nrss_DeviceName=Attic\n"
       "---- Received Rss Var Data End ----\n"},
      {"the result", RunBatch, kDetailLevel, "done, ret=0\n"},
  });
}

TEST_F(VariableLevelsTest, OneVariable) {
  ExpectLevels({
      {"a call", [] { Write("rss_DeviceName", "Attic"); }, kDetailLevel,
       "Name='rss_DeviceName',Val='Attic', Act=512\n"},
      {"the name of a path", [] { Read("/Device/DeviceName"); }, kDetailLevel,
       "rssVar='rss_DeviceName'\n"},
      {"the code of a word", [] { Write("rss_Wl2_EncryptionMode", "WPA"); }, kDetailLevel,
       "Rss EncrypMode='WPA' -> 2\n"},
  });
}

TEST_F(VariableLevelsTest, FrontEnds) {
  ExpectLevels({
      {"what was read",
       [] {
         FillSampleRecord();
         HeapChars<KIOAPP_VAR_SIZE> value;
         EXPECT_EQ(get_RssVar("rss_DeviceName", value, 0), 0);
       },
       kDetailLevel, "'rss_DeviceName'='Kitchen', ret=0\n"},
      {"what is checked",
       [] {
         HeapChars value("Attic");
         validate_RssVar("rss_DeviceName", value);
       },
       kDetailLevel, "'rss_DeviceName'='Attic'\n"},
      {"what a check found",
       [] {
         HeapChars value("Attic");
         validate_RssVar("rss_Unknown", value);
       },
       kDetailLevel, "ret=2\n"},
      {"no pair at all",
       [] {
         HeapChars text("no pair");
         validate_RssVar2(text);
       },
       kDetailLevel, "Invalid data='no pair'\n"},
  });
}

TEST_F(VariableLevelsTest, SiteSurvey) {
  ExpectLevels({
      {"the survey",
       [] {
         rssXmlData.upLink.hardwareTypeCode = 3;
         EXPECT_EQ(Call("rss_Act_SiteSurvey", kWrite, "").code, 0U);
       },
       kDetailLevel, "Trigger Site Survey ...\n"},
  });
}

}  // namespace
}  // namespace kio::test
