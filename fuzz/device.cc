#include "device.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "kioapp/kioapp.h"
#include "support/fake_host.h"
#include "support/sample_device.h"
#include "testing/memory_store.h"

namespace kio::fuzz {
namespace {

bool g_store_has_changed = true;

void NoteWrite(StoreFunction function, const char* /*path*/, const char* /*text*/) {
  g_store_has_changed = g_store_has_changed || (function != kXgetStr && function != kXgetInt);
}

// Such a path, or one that says itself how many instances there are.
bool HasLargeNumber(std::string_view path) {
  constexpr std::size_t kMostDigits = 2;
  if (path.find('#') != std::string_view::npos) {
    return true;
  }
  for (std::size_t colon = path.find(':'); colon != std::string_view::npos;
       colon = path.find(':', colon + 1)) {
    if (std::min(path.find('/', colon), path.size()) - colon - 1 > kMostDigits) {
      return true;
    }
  }
  return false;
}

}  // namespace

void ResetDevice(std::size_t input_size) {
  test::FakeHost& host = test::FakeHost::Get();
  host.ClearCommands();
  host.uptime = test::FakeHost().uptime;
  if (g_store_has_changed) {
    g_store_behaviour.watch = NoteWrite;
    g_store_behaviour.absent_leaves_buffer = 1;
    g_store_behaviour.absent_result = -1;
    ClearStore();
    test::StoreSampleDevice();
    g_store_has_changed = false;
  }
  test::ClearRecord();
  XmlErrMsg_LostKey = nullptr;
  daemon_log_file_size_k = 0;
  daemon_log_level = input_size % 8 == 0 ? 7 : 0;
}

void ChangeNode(const std::string& line) {
  // The library offers the store 4096 bytes for a text.
  constexpr std::size_t kLongestText = 4095;
  g_store_has_changed = true;
  const std::size_t equals = line.find('=');
  if (HasLargeNumber(std::string_view(line).substr(0, equals))) {
    return;
  }
  if (equals == std::string::npos) {
    DeleteNode(line.c_str());
  } else {
    SetNode(line.substr(0, equals).c_str(), line.substr(equals + 1, kLongestText).c_str());
  }
}

void ChangeNodes(Input* input) {
  constexpr int kMostLines = 400;
  for (int i = 0; i < kMostLines && input->front() == '/'; ++i) {
    ChangeNode(input->Line());
  }
}

void StartVariables() {
  static RssXmlData record;
  static bool has_record = false;
  if (g_store_has_changed || !has_record) {
    init_RssVar();
  } else {
    std::memcpy(&rssXmlData, &record, sizeof(record));
  }
  if (!g_store_has_changed && !has_record) {
    std::memcpy(&record, &rssXmlData, sizeof(record));
    has_record = true;
  }
}

void CheckRecord() {
  // The members stand at the same places each time.
  static const std::vector<test::TextMember> members = test::TextMembers(rssXmlData);
  for (const test::TextMember& member : members) {
    if (member.text[member.capacity - 1] != '\0' &&
        std::memchr(member.text, '\0', member.capacity) == nullptr) {
      Report("a text of the record has no terminator");
    }
  }
}

}  // namespace kio::fuzz
