// A sample device: its store, and the settings record that mirrors it.
#ifndef KIO_TESTS_SUPPORT_SAMPLE_DEVICE_H
#define KIO_TESTS_SUPPORT_SAMPLE_DEVICE_H

#include <cstddef>
#include <string>
#include <vector>

#include "kioapp/kioapp.h"

namespace kio::test {

// Fills the store with the sample device in use (testing/sample_device.h): WPA2 and access control
// on both radios (two rules on 2.4 GHz, one on 5 GHz).
void StoreSampleDevice();

// The same router with format version 1.0.
void StoreVersion10Device();

// Empties `rssXmlData` and fills it with exactly the settings, rules and features that
// StoreSampleDevice stores.
void FillSampleRecord();

// Empties `rssXmlData`.
void ClearRecord();

// Copies `text` into a member of the record.
template <std::size_t size>
void Put(char (&member)[size], const std::string& text) {
  const std::size_t length = text.copy(member, size - 1);
  member[length] = '\0';
}

// The bytes of a record, to compare whole records.
std::string RecordBytes(const RssXmlData& record);

// One text member of a record.
struct TextMember {
  std::string name;
  const char* text;
  std::size_t capacity;  // in bytes
};

// Every text member of `record`.
std::vector<TextMember> TextMembers(const RssXmlData& record);

// Names of the text members of `rssXmlData` that hold no terminator; none in a sound record.
std::vector<std::string> UnterminatedMembers();

}  // namespace kio::test

#endif
