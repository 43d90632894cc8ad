#include "node_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "secrets.h"

namespace kiohost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(NodeChangesTest, TellsWhatIsNewWhatIsGoneAndWhatIsDifferent) {
  const std::vector<Node> before = {{"/a", "1"}, {"/B", "2"}, {"/c", ""}};
  const std::vector<Node> after = {{"/A", "1"}, {"/b", "3"}, {"/d", ""}};
  EXPECT_THAT(ChangesOf(before, after),
              ElementsAre(NodeChange{"/b", "2", "3"}, NodeChange{"/c", "", std::nullopt},
                          NodeChange{"/d", std::nullopt, ""}));
  EXPECT_THAT(ChangesOf(before, before), IsEmpty());
  EXPECT_EQ(TextIn(before, "/b"), "2");
  EXPECT_EQ(TextIn(before, "/e"), "");
}

// Each variable that an app sets and that sounds like a secret is one, and its rule is none.
TEST(SecretsTest, CoverThePasswordsAndKeysOfTheCatalogue) {
  std::ifstream file(KIO_HOST_DIR "/../docs/variables.json");
  const auto catalogue = nlohmann::json::parse(file);
  int secrets = 0;
  for (const auto& variable : catalogue["variables"]) {
    if (!variable["access"]["write"] || !variable["storeNode"].is_string()) {
      continue;
    }
    const std::string name = variable["name"];
    const bool sounds = name.ends_with("Pwd") || name.find("Password") != std::string::npos ||
                        name.ends_with("Key");
    EXPECT_EQ(IsSecret(variable["storeNode"].get<std::string>()), sounds) << name;
    secrets += sounds ? 1 : 0;
  }
  EXPECT_GE(secrets, 4);
  EXPECT_TRUE(IsSecret("/lan/wireless5:1/EncryptionKey"));
  EXPECT_FALSE(IsSecret("/sys/user:1/password_validate"));
  EXPECT_FALSE(IsSecret("/sys/user:1/name"));
}

}  // namespace
}  // namespace kiohost
