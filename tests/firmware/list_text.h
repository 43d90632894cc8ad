// Firmware lists made by the tests.
#ifndef KIO_TESTS_FIRMWARE_LIST_TEXT_H
#define KIO_TESTS_FIRMWARE_LIST_TEXT_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"
#include "testing/heap_chars.h"

namespace kio::test {

constexpr const char* kServer = "http://firmware.kioapp.example";

// Copies `text` into a member of the record.
template <std::size_t size>
void Put(char (&member)[size], const std::string& text) {
  member[text.copy(member, size - 1)] = '\0';
}

// <name>content</name>
std::string Element(const std::string& name, const std::string& content);

// <MacList> with a <MAC> for each pattern; <MatchList> with a <Match> for each.
std::string MacList(const std::vector<std::string>& patterns);
std::string MatchList(const std::vector<std::string>& patterns);
// One <MACs>.
std::string Range(const std::string& start, const std::string& end);

// <Firmware> with these lists and the addresses "/NAME.bin" and "/NAME.txt".
std::string Entry(const std::string& lists, const std::string& name);

// A list of format 1.0 with these entries.
std::string FirmwareList(const std::string& entries);

// Starts each test with an empty host, a router's MAC and firmware in the store, and empty records.
class FirmwareTest : public ::testing::Test {
 protected:
  FirmwareTest();
  ~FirmwareTest() override;

  static constexpr const char* kMac = "00:1A:2B:3C:4D:5E";
  static constexpr const char* kRunning = "AB12_FW1.0.2.bin";

  // The result for a copy of `text`; the addresses go to file_url_ and notes_url_.
  int Parse(const std::string& text);
  // The result of a list by itself, without the document around it.
  static int ParseList(const std::string& text, int kind, int length = 0);

  FakeHost& host_ = FakeHost::Get();
  HeapChars<128> file_url_{"before"};
  HeapChars<128> notes_url_{"before"};
};

}  // namespace kio::test

#endif
