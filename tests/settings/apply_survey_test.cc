// Applying a request for a site survey.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/changes.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

class ApplySurveyTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    StoreSampleDevice();
    FillSampleRecord();
    Up().extenderSite.survey = 1;
    Up().hardwareTypeCode = 3;
    Put(Rec().deviceName, "not written");
    log_file::Start(6);
  }

  static RssXmlData& Rec() { return rssXmlData; }
  static RssUpLink& Up() { return rssXmlData.upLink; }
};

constexpr const char* kSurveyLog =
    "done,ret=1,Restart:wlan2.4=0,wlan5=0,uplink=0,survey=1,roaming=0\n";

TEST_F(ApplySurveyTest, RequestIsWrittenAndNothingElse) {
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{"/uplink/extendersite/survey=1"}));
  EXPECT_EQ(Rec().wlanSurveyRestart, 1);
  EXPECT_EQ(Rec().saveflag, 0);
  EXPECT_EQ(Rec().deviceRestart, 0);
  EXPECT_THAT(log_file::Contents(), ::testing::HasSubstr(kSurveyLog));
}

TEST_F(ApplySurveyTest, CloningInformationIsDeleted) {
  Host().Set("/runtime/apcloninginfo/extendersite/wirelesstype", "5");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(),
            (Texts{"/uplink/extendersite/survey=1", "delete /runtime/apcloninginfo/extendersite"}));
}

TEST_F(ApplySurveyTest, EmptyCloningInformationIsKept) {
  Host().Set("/runtime/apcloninginfo/extendersite/wirelesstype", "");
  Host().Set("/runtime/apcloninginfo/extendersite/channel", "6");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Changes(), (Texts{"/uplink/extendersite/survey=1"}));
}

TEST_F(ApplySurveyTest, RequestThatStandsIsNotRepeated) {
  Host().Set("/uplink/extendersite/survey", "1");
  Host().Set("/runtime/apcloninginfo/extendersite/wirelesstype", "5");
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_TRUE(Changes().empty());
  EXPECT_EQ(Rec().wlanSurveyRestart, 0);
  EXPECT_THAT(
      log_file::Contents(),
      ::testing::HasSubstr("done,ret=1,Restart:wlan2.4=0,wlan5=0,uplink=0,survey=0,roaming=0\n"));
}

TEST_F(ApplySurveyTest, NeedsAnExtenderUplink) {
  Up().hardwareTypeCode = 0;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Host().Text("/sys/friendlyname"), "not written") << "the rest is applied as usual";
  EXPECT_EQ(Host().Text("/uplink/extendersite/survey"), "0");
  for (const int extender : {1, 3}) {
    StoreSampleDevice();
    Rec().specVer = 100;
    Rec().extenderEnbl = extender;
    EXPECT_EQ(Apply_RssXmlToDevice(), 1);
    EXPECT_EQ(Host().Text("/uplink/extendersite/survey"), "1");
    EXPECT_EQ(Host().Text("/sys/friendlyname"), "Kitchen");
  }
}

TEST_F(ApplySurveyTest, CloningTakesNoSurvey) {
  Rec().apCloningOnly = 1;
  EXPECT_EQ(Apply_RssXmlToDevice(), 1);
  EXPECT_EQ(Rec().wlanSurveyRestart, 0);
  EXPECT_EQ(Host().Text("/uplink/extendersite/survey"), "0");
}

}  // namespace
}  // namespace kio::test
