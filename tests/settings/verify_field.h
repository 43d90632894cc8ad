// Verification of single fields.
#ifndef KIO_TESTS_SETTINGS_VERIFY_FIELD_H
#define KIO_TESTS_SETTINGS_VERIFY_FIELD_H

#include <cstring>
#include <functional>
#include <ostream>
#include <string>

#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {

using Change = std::function<void(RssXmlData&)>;

// One change of a valid record, and what verification makes of it.
struct Fault {
  const char* name;
  Change change;
  int code;  // 0 when the change is still valid
  const char* message;
};

inline void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

// Verifies the sample record after the change of the parameter.
class VerifyFieldTest : public SettingsTest, public ::testing::WithParamInterface<Fault> {
 protected:
  static void ExpectJudged();
};

inline void VerifyFieldTest::ExpectJudged() {
  const Fault& fault = GetParam();
  FillSampleRecord();
  fault.change(rssXmlData);
  RssXmlData before;
  std::memcpy(&before, &rssXmlData, sizeof(before));
  const int result = Verify_RssXml();
  EXPECT_TRUE(Host().Writes().empty());
  if (fault.code == 0) {
    EXPECT_EQ(result, 1) << rssXmlData.setMsg;
    EXPECT_TRUE(Host().commands().empty());
  } else {
    EXPECT_EQ(result, 0);
    EXPECT_EQ(Host().commands(), ResultCommands(fault.code, fault.message, 0));
    before.setResult = fault.code;
    std::memcpy(before.setMsg, rssXmlData.setMsg, sizeof(before.setMsg));
  }
  EXPECT_TRUE(RecordBytes(before) == RecordBytes(rssXmlData)) << "the record was changed";
}

}  // namespace kio::test

#endif
