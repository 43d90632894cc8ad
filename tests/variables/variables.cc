#include "variables/variables.h"

#include <algorithm>
#include <cstring>
#include <ostream>

#include "../platform/guarded.h"
#include "support/guarded_text.h"

namespace kio::test {
namespace {

constexpr std::size_t kBufferSize = 128;

// The bytes of a record without what stands behind the terminators of its texts.
std::string Contents(const RssXmlData& record) {
  std::string bytes = RecordBytes(record);
  const char* const begin = reinterpret_cast<const char*>(&record);
  for (const TextMember& member : TextMembers(record)) {
    const std::size_t length = strnlen(member.text, member.capacity);
    const auto offset = static_cast<std::size_t>(member.text - begin);
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset + length),
                member.capacity - length, '\0');
  }
  return bytes;
}

void ExpectSame(const RssXmlData& expected, const std::string& what) {
  const std::string wanted = Contents(expected);
  const std::string found = Contents(rssXmlData);
  const auto difference = std::mismatch(wanted.begin(), wanted.end(), found.begin());
  EXPECT_TRUE(wanted == found) << what << ": the record differs at byte "
                               << difference.first - wanted.begin();
}

}  // namespace

void PrintTo(const Answer& answer, std::ostream* out) {
  *out << answer.code << " '" << answer.text << "'";
}

Answer Call(const std::string& name, int mode, const std::string& value) {
  const GuardedText guarded_name(name);
  const Guarded buffer(std::max(kBufferSize, value.size() + 1));
  std::memcpy(buffer.data(), value.c_str(), value.size() + 1);
  const unsigned code = setget_RssVar(guarded_name.get(), buffer.data(), mode);
  return {code, buffer.Bytes().c_str()};
}

Answer Read(const std::string& name) { return Call(name, kRead, "stale"); }

Answer ReadPath(const std::string& name) { return Call(name, kRead | kPath, "stale"); }

Answer Write(const std::string& name, const std::string& value) {
  return Call(name, kWrite, value);
}

Answer Validate(const std::string& name, const std::string& value) {
  return Call(name, kValidate, value);
}

RecordWatch::RecordWatch() : before_() { std::memcpy(&before_, &rssXmlData, sizeof(before_)); }

void RecordWatch::ExpectUnchanged(const std::string& what) const { ExpectSame(before_, what); }

void RecordWatch::ExpectOnly(const Change& change, const std::string& what) const {
  RssXmlData expected;
  std::memcpy(&expected, &before_, sizeof(expected));
  change(expected);
  ExpectSame(expected, what);
}

void RecordWatch::Restore() const { std::memcpy(&rssXmlData, &before_, sizeof(before_)); }

void VariableTest::SetUp() {
  SettingsTest::SetUp();
  FillSampleRecord();
}

}  // namespace kio::test
