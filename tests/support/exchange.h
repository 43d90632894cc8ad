// Running settings exchanges in the tests and reading what they did.
#ifndef KIO_TESTS_SUPPORT_EXCHANGE_H
#define KIO_TESTS_SUPPORT_EXCHANGE_H

#include <gtest/gtest.h>

#include <iosfwd>
#include <string>
#include <vector>

#include "support/fake_host.h"
#include "support/sample_document.h"

namespace kio::test {

// For failure messages.
void PrintTo(const StoreCall& call, std::ostream* out);

// The six commands that write a result document to "rssset_result.xml" in `directory`.
std::vector<std::string> ResultCommands(int code, const std::string& message, int wait_sec,
                                        const std::string& directory = "/var/tmp");

// The six lines of a result document.
std::string ResultDocument(int code, const std::string& message, int wait_sec);

// The changes of the store since the calls were cleared, in order: "path=value" for a written node,
// "delete path" for a deleted one.
std::vector<std::string> Changes();

// Parse a copy of `text`, in normal and in cloning mode.
int Parse(const std::string& text);
int Parse(const Document& document);
int ParseCloning(const std::string& text);
int ParseCloning(const Document& document);

// Starts each test with an empty host, an empty record, no lost-key hook and an empty log of level
// 3, which keeps nothing.
class SettingsTest : public ::testing::Test {
 protected:
  void SetUp() override;

  static FakeHost& Host() { return FakeHost::Get(); }
};

}  // namespace kio::test

#endif
