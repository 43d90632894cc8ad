// The walks over tables of fields, by a table of the test's own.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

#include "kioapp/kioapp.h"
#include "settings/field.h"
#include "settings/lost_keys.h"
#include "settings/parse_fields.h"
#include "settings/verify_fields.h"
#include "settings/verify_wlan.h"
#include "support/exchange.h"
#include "support/guarded_text.h"

namespace kio::test {
namespace {

struct Walked {
  char kept[8];
  int old_flag;
  int flag;
};

constexpr settings::Field kWalkedFields[] = {
    settings::Text("Kept", "/kept", KIO_MEMBER(Walked, kept))
        .InEverySnapshot()
        .NotNeeded(settings::Optional::kAlways),
    settings::Flag("OldFlag", "/old", KIO_MEMBER(Walked, old_flag))
        .For(settings::Versions::kOnly10),
    settings::Flag("Flag", "/flag", KIO_MEMBER(Walked, flag)),
};

class FieldWalkTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    Reports().clear();
    XmlErrMsg_LostKey = test::Record;
    rssXmlData.specVer = 101;
  }

  bool ParseWalked(const std::string& document) {
    const GuardedText text(document);
    const settings::Block block = {text.get(), static_cast<int>(document.size()),
                                   text.get() + document.size()};
    settings::BlockReader reader(block);
    return settings::ParseFields(kWalkedFields, settings::Group::kBasic, reader, "Walked",
                                 &walked_);
  }
  bool VerifyWalked() {
    return settings::VerifyFields(kWalkedFields, settings::Group::kBasic,
                                  {&walked_, nullptr, "Walked"});
  }

  Walked walked_ = {"before", 5, 5};
};

TEST_F(FieldWalkTest, ElementThatIsNeverNeededKeepsItsValue) {
  EXPECT_TRUE(ParseWalked("<Flag>1</Flag>"));
  EXPECT_STREQ(walked_.kept, "before");
  EXPECT_EQ(walked_.flag, 1);
  EXPECT_TRUE(ParseWalked("<Kept>after</Kept><Flag>0</Flag>"));
  EXPECT_STREQ(walked_.kept, "after");
  EXPECT_EQ(walked_.flag, 0);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(FieldWalkTest, AnyOtherElementIsReported) {
  EXPECT_FALSE(ParseWalked("<Kept>after</Kept>"));
  EXPECT_EQ(Reports(), (std::vector<Report>{{"Walked", "Flag"}}));
}

TEST_F(FieldWalkTest, FieldsOfOtherVersionsAreNotVerified) {
  walked_.flag = 1;
  EXPECT_TRUE(VerifyWalked());
  EXPECT_TRUE(Host().commands().empty());
  rssXmlData.specVer = 100;
  EXPECT_FALSE(VerifyWalked());
  EXPECT_EQ(Host().commands(),
            ResultCommands(KIOAPP_RESULT_INVALID_VALUE, "Walked/OldFlag", 0, ""));
  walked_.old_flag = 0;
  EXPECT_TRUE(VerifyWalked());
}

// The codes may be anything: the host sets the record too.
TEST(EncryptionTypeTest, CodesOutOfTheirTablesAreRefused) {
  RssWlan wlan = {};
  for (const auto& [mode, type, result] :
       {std::tuple{0, 0, KIOAPP_RESULT_APPLIED}, std::tuple{0, 5, KIOAPP_RESULT_APPLIED},
        std::tuple{0, 6, KIOAPP_RESULT_INVALID_VALUE},
        std::tuple{0, -1, KIOAPP_RESULT_INVALID_VALUE},
        std::tuple{-1, 0, KIOAPP_RESULT_INVALID_VALUE},
        std::tuple{4, 1, KIOAPP_RESULT_INVALID_VALUE}, std::tuple{5, 1, KIOAPP_RESULT_APPLIED},
        std::tuple{5, 6, KIOAPP_RESULT_APPLIED}, std::tuple{5, -1, KIOAPP_RESULT_INVALID_VALUE}}) {
    wlan.encryptionModeCode = mode;
    wlan.encryptionTypeCode = type;
    EXPECT_EQ(settings::CheckEncryptionType(wlan), result) << mode << " " << type;
  }
}

}  // namespace
}  // namespace kio::test
