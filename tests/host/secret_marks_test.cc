#include "record/secret_marks.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace kiohost {
namespace {

class SecretMarksTest : public ::testing::Test {
 protected:
  SecretMarks marks_ =
      SecretMarks({{{"storeNode", "/sys/user:1/password"}, {"documentPath", "/Device/DevicePwd"}},
                   {{"storeNode", "/lan/wireless5:1/encryptionkey"},
                    {"documentPath", "/Device/Wireless5/EncryptionKey"}},
                   {{"storeNode", "/sys/user:1/password_validate"},
                    {"documentPath", "/Device/DevicePwd_Validate"}},
                   {{"storeNode", nullptr}, {"documentPath", "/Device/Other"}}});
};

TEST_F(SecretMarksTest, EachTextHasItsMark) {
  std::vector<std::pair<std::string, std::string>> told;
  marks_.set_on_new([&told](const auto& mark, const auto& text) { told.emplace_back(mark, text); });
  EXPECT_EQ(marks_.MarkOf("first"), "********(1)");
  EXPECT_EQ(marks_.MarkOf("second"), "********(2)");
  EXPECT_EQ(marks_.MarkOf("first"), "********(1)");
  EXPECT_EQ(marks_.MarkOf(""), "");
  EXPECT_EQ(marks_.MarkOf("********"), "********");
  EXPECT_EQ(told, (std::vector<std::pair<std::string, std::string>>{{"********(1)", "first"},
                                                                    {"********(2)", "second"}}));
}

TEST_F(SecretMarksTest, KnownTextsAreFoundAnywhereUnlessTheyAreShort) {
  marks_.MarkOf("pass");
  marks_.MarkOf("password-1");
  marks_.MarkOf("1");
  EXPECT_EQ(marks_.Masked("1 pass password-1 pas passpass"),
            "1 ********(1) ********(2) pas ********(1)********(1)");
}

TEST_F(SecretMarksTest, NamesAndPathsOfSecretsAreKnown) {
  for (const char* name : {"rss_DevicePwd", "xyz_devicepwd", "Device/DevicePwd",
                           "rss_Wl5_EncryptionKey", "Device/Wireless5/EncryptionKey"}) {
    EXPECT_TRUE(marks_.IsSecretName(name)) << name;
  }
  for (const char* name : {"rss_DevicePwd_Validate", "rss_DeviceName", "Other", ""}) {
    EXPECT_FALSE(marks_.IsSecretName(name)) << name;
  }
}

TEST_F(SecretMarksTest, DocumentsLoseWhatStandsInTheirElements) {
  EXPECT_EQ(marks_.MaskedBody("<root><Device><DevicePwd>a&amp;b</DevicePwd><Wireless5>"
                              "<EncryptionKey x='1'>k</EncryptionKey></Wireless5>"
                              "<EncryptionKey></EncryptionKey><Name>k a&amp;b</Name></Device>",
                              '&'),
            "<root><Device><DevicePwd>********(1)</DevicePwd><Wireless5>"
            "<EncryptionKey x='1'>********(2)</EncryptionKey></Wireless5>"
            "<EncryptionKey></EncryptionKey><Name>k ********(1)</Name></Device>");
  // Also when they are in another case, or do not end.
  EXPECT_EQ(marks_.MaskedBody("<devicepwd>secret-1</DEVICEPWD><DevicePwd>secret-2", '&'),
            "<devicepwd>********(3)</DEVICEPWD><DevicePwd>********(4)");
  EXPECT_EQ(marks_.MaskedBody("x<DevicePwd", '&'), "x<DevicePwd");
}

TEST_F(SecretMarksTest, JsonKeepsItsForm) {
  EXPECT_EQ(marks_.MaskedBody("{ \"DevicePwd\" : \"a\\\"b\",\"Name\":\"DevicePwd\",\n"
                              "\"list\":[\"x\",{\"name\":\"rss_DevicePwd\",\"value\":\"v\"},"
                              "{\"name\":\"rss_DeviceName\",\"value\":\"v\"}], \"hash\":\"00\"}",
                              '&'),
            "{ \"DevicePwd\" : \"********(1)\",\"Name\":\"DevicePwd\",\n"
            "\"list\":[\"x\",{\"name\":\"rss_DevicePwd\",\"value\":\"********(2)\"},"
            "{\"name\":\"rss_DeviceName\",\"value\":\"v\"}], \"hash\":\"00\"}");
  for (const std::string body : {"{\"DevicePwd\":\"", "{\"DevicePwd\":\"x", "{\"", "{", "[1]"}) {
    EXPECT_EQ(marks_.MaskedBody(body, '&').substr(0, 2), body.substr(0, 2)) << body;
  }
}

// By it the secrets could be guessed.
TEST_F(SecretMarksTest, TheHashOfAnArchiveWithSecretsIsOne) {
  const std::string archive = "{\"format\": \"kiohost backup\", \"secrets\": ";
  const std::string hash = ", \"hash\": \"0123456789abcdef\"}";
  EXPECT_EQ(marks_.MaskedBody(archive + "false" + hash, '&'), archive + "false" + hash);
  EXPECT_EQ(marks_.MaskedBody(archive + "true" + hash, '&'),
            archive + "true, \"hash\": \"********(1)\"}");
}

TEST_F(SecretMarksTest, BatchesLoseTheValuesOfSecrets) {
  EXPECT_EQ(marks_.MaskedBody("rss_DeviceName=a&rss_DevicePwd=b=c&rss_DevicePwd&", '&'),
            "rss_DeviceName=a&rss_DevicePwd=********(1)&rss_DevicePwd&");
  EXPECT_EQ(marks_.MaskedBody("rss_DevicePwd=d&e;rss_DeviceName=x", ';'),
            "rss_DevicePwd=********(2);rss_DeviceName=x");
}

}  // namespace
}  // namespace kiohost
