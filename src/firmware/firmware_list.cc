// The firmware list: which of its entries fits this router.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "firmware/exported_data.h"
#include "firmware/nodes.h"
#include "kioapp/firmware.h"
#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "platform/store.h"
#include "platform/text.h"
#include "platform/text_functions.h"
#include "settings/xml/find_element.h"
#include "settings/xml/item_reader.h"
#include "settings/xml/values.h"

namespace kio::firmware {
namespace {

using platform::kLogAction;
using platform::kLogDetail;
using platform::TextBuffer;
using platform::TextView;
using settings::Block;
using settings::Element;

constexpr int kMostItems = 100;
constexpr int kAcceptedVersion = 100;

constexpr TextView kServer = KIO_FIRMWARE_SERVER;
static_assert(!kServer.empty() && kServer.back() != '/', "addresses begin with a slash");
static_assert(kServer.size() < sizeof(FwXmlData::fileUrl) / 2, "addresses need room");

// How a list is named, by its kind.
struct ListNames {
  TextView container;
  TextView item;
};
constexpr ListNames kLists[] = {
    {"FirmwareList", "Firmware"},  // KIOAPP_FW_LIST_FIRMWARE
    {"MacList", "MAC"},            // KIOAPP_FW_LIST_MAC
    {"MacList", "MACs"},           // KIOAPP_FW_LIST_MACS
    {"MatchList", "Match"},        // KIOAPP_FW_LIST_FILE_NAME
};
constexpr int kListKinds = static_cast<int>(sizeof(kLists) / sizeof(kLists[0]));

// Whether the beginning of an item, a pattern of at most `limit` characters, fits one of the
// router's own texts.
int MatchPattern(const Block& item, std::size_t limit, const char* own_text) {
  const TextView pattern(item.text, std::min(static_cast<std::size_t>(item.length), limit));
  KIO_LOG(kLogDetail, "Match '%.*s' with '%s'\n", static_cast<int>(pattern.size()), pattern.data(),
          own_text);
  return platform::FitsWildcard(own_text, pattern) ? KIOAPP_FW_LIST_MATCH : KIOAPP_FW_LIST_NO_MATCH;
}

// One end of a range. Ranges without closing tags find the same element: what was found is kept for
// all ranges that begin before its tag.
class Bound {
 public:
  // Reads the text of the element `key`. Returns false when the range has no such element.
  [[gnu::noinline]] bool Read(const Block& range, TextView key) {
    if (range.text < begin_ || range.text > tag_) {
      const Element element = settings::FindElement(range, key);
      if (!settings::ReadText(element, text_, sizeof(text_))) {
        return false;
      }
      begin_ = range.text;
      tag_ = element.tag;
    }
    return true;
  }

  [[nodiscard]] const char* text() const { return text_; }

 private:
  const char* begin_ = nullptr;
  const char* tag_ = nullptr;
  char text_[18];
};

bool ReadAddress(const Block& entry, TextView key, char (&address)[128]) {
  TextBuffer text(address);
  text.Append(get_FwServerWebSite());
  if (!settings::ReadText(settings::FindElement(entry, key), address + text.size(),
                          sizeof(address) - text.size())) {
    KIO_LOG(kLogAction, "%s not found\n", key.data());
    return false;
  }
  return true;
}

// A search through one document. Lists can share their end, and then they share their items: all
// empty lists reach to the end of the document, and entries without closing tags to the same
// closing tag. The result of one list is kept for the others with the same end. At the log level at
// which each test of an item is logged, all tests are made.
class ListSearch {
 public:
  // Compares the items of one list. With `ranges_too` the list is a "MacList": the addresses, then
  // the ranges.
  int MatchList(const Block& text, int kind, bool ranges_too = false);
  int MatchEntry(const Block& entry);

 private:
  static constexpr int kNoList = -1;

  // The result of a list. It is also that of each list with the same end that begins at `first` or
  // behind it, but before `before`.
  struct Known {
    const char* end = nullptr;
    const char* first = nullptr;
    const char* before = nullptr;
    int result = 0;

    [[nodiscard]] bool Covers(const char* begin, const char* list_end) const {
      return list_end == end && first <= begin && begin < before && !platform::IsLogged(kLogDetail);
    }
  };

  int MatchRange(const Block& range);
  int MatchItem(const Block& item, int kind);
  int MatchItems(const Block& list, settings::ItemReader& items, int kind);
  int MatchListOf(const Block& entry, int kind, Known& known);
  int MatchLists(const Block& entry);

  Known lists_[kListKinds];
  // The same for the entries in which a list was looked for.
  Known mac_entries_;
  Known name_entries_;
  Bound start_;
  Bound end_;
};

int ListSearch::MatchRange(const Block& range) {
  if (!start_.Read(range, "Start") || !end_.Read(range, "End")) {
    return KIOAPP_FW_LIST_ERROR;
  }
  KIO_LOG(kLogDetail, "Match '%s'~'%s' with '%s'\n", start_.text(), end_.text(),
          FirmwareData().deviceMac);
  return strWildcardCmp(FirmwareData().deviceMac, start_.text()) >= 0 &&
                 strWildcardCmp(FirmwareData().deviceMac, end_.text()) <= 0
             ? KIOAPP_FW_LIST_MATCH
             : KIOAPP_FW_LIST_NO_MATCH;
}

int ListSearch::MatchItem(const Block& item, int kind) {
  switch (kind) {
    case KIOAPP_FW_LIST_MAC:
      return MatchPattern(item, 17, FirmwareData().deviceMac);
    case KIOAPP_FW_LIST_MACS:
      return MatchRange(item);
    case KIOAPP_FW_LIST_FILE_NAME:
      return MatchPattern(item, 127, FirmwareData().currFileName);
    default:
      return MatchEntry(item);
  }
}

int ListSearch::MatchItems(const Block& list, settings::ItemReader& items, int kind) {
  Known& known = lists_[kind];
  if (known.Covers(list.text, items.end())) {
    return known.result;
  }
  known = {items.end(), list.text, nullptr, KIOAPP_FW_LIST_NO_MATCH};
  for (int i = 0; i < kMostItems; ++i) {
    const Block item = items.Next();
    if (item.text == nullptr) {
      known.before = items.position();
      break;
    }
    const int result = MatchItem(item, kind);
    // Quirk "half-a-range-ends-the-search": an error in one item is the end of all.
    if (result != KIOAPP_FW_LIST_NO_MATCH) {
      known.before = item.text;
      known.result = result;
      break;
    }
    if (i == 0) {
      // If there turn out to be too many items, a list that begins behind the first has other ones.
      known.before = item.text;
    }
  }
  return known.result;
}

int ListSearch::MatchList(const Block& text, int kind, bool ranges_too) {
  platform::LogEntry("do_FwEntryList_Parser");
  const Element container = settings::FindElement(text, kLists[kind].container);
  if (!container.is_complete()) {
    return KIOAPP_FW_LIST_ERROR;
  }
  // An empty list takes its items from the rest of the document.
  settings::ItemReader items(container.content, kLists[kind].item);
  const int result = MatchItems(container.content, items, kind);
  if (result != KIOAPP_FW_LIST_NO_MATCH || !ranges_too) {
    return result;
  }
  platform::LogEntry("do_FwEntryList_Parser");
  if (items.HasNoOthers()) {
    return KIOAPP_FW_LIST_NO_MATCH;
  }
  settings::ItemReader ranges(container.content, kLists[KIOAPP_FW_LIST_MACS].item);
  return MatchItems(container.content, ranges, KIOAPP_FW_LIST_MACS);
}

// The result of the entry's list of a kind, kNoList when it has none.
int ListSearch::MatchListOf(const Block& entry, int kind, Known& known) {
  const char* const end = entry.text + entry.length;
  if (!known.Covers(entry.text, end)) {
    char* const list = settings::FindTag(entry, kLists[kind].container);
    const int result =
        list == nullptr ? kNoList : MatchList(entry.From(list), kind, kind == KIOAPP_FW_LIST_MAC);
    known = {end, entry.text, list == nullptr ? end : list, result};
  }
  return known.result;
}

// Quirk "entry-without-lists-never-fits": one list at least must match.
int ListSearch::MatchLists(const Block& entry) {
  const int macs = MatchListOf(entry, KIOAPP_FW_LIST_MAC, mac_entries_);
  if (macs != kNoList && macs != KIOAPP_FW_LIST_MATCH) {
    return macs;
  }
  const int names = MatchListOf(entry, KIOAPP_FW_LIST_FILE_NAME, name_entries_);
  if (names != kNoList) {
    return names;
  }
  return macs == kNoList ? int{KIOAPP_FW_LIST_NO_MATCH} : macs;
}

int ListSearch::MatchEntry(const Block& entry) {
  platform::LogEntry("do_FwFirmware_Parser");
  const int result = MatchLists(entry);
  if (result == KIOAPP_FW_LIST_MATCH &&
      (!ReadAddress(entry, "FwURL", FirmwareData().fileUrl) ||
       !ReadAddress(entry, "NotesURL", FirmwareData().notesUrl))) {
    return KIOAPP_FW_LIST_ERROR;
  }
  return result;
}

int MatchDocument(char* document) {
  platform::LogEntry("do_FwRoot_Parser");
  if (document == nullptr) {
    return KIOAPP_FW_LIST_ERROR;
  }
  const Element root = settings::FindElement({document, 0, nullptr}, "root");
  if (!root.is_complete()) {
    return KIOAPP_FW_LIST_ERROR;
  }
  const Block& content = root.content;
  char* const end = content.text + content.length;
  *end = '\0';
  RssSpecVersion& version = FirmwareData().specVersion;
  if (do_XmlSpecVersion_Parser(nullptr, content.text, content.length, &version, "specVersion") ==
      0) {
    return KIOAPP_FW_LIST_ERROR;
  }
  if (version.combined != kAcceptedVersion) {
    KIO_LOG(kLogAction, "wrong specVersion %d.%d\n", version.major, version.minor);
    return KIOAPP_FW_LIST_ERROR;
  }
  const int result =
      ListSearch().MatchList({content.text, content.length, end}, KIOAPP_FW_LIST_FIRMWARE);
  if (result == KIOAPP_FW_LIST_ERROR) {
    KIO_LOG(kLogAction, "check FirmwareList fail\n");
  } else {
    KIO_LOG(kLogDetail, "done, ret=%d\n", result);
  }
  return result;
}

// Whether the file that was found is the one that runs.
bool IsRunning() {
  const char* const slash = std::strrchr(FirmwareData().fileUrl, '/');
  const char* const name = slash != nullptr ? slash + 1 : FirmwareData().fileUrl;
  const std::size_t size = std::strcspn(name, "?");
  KIO_LOG(kLogDetail, "Final Match '%s'(%d) with '%s'\n", name, static_cast<int>(size),
          FirmwareData().currFileName);
  // Quirk "running-name-may-be-longer": what the running name has beyond the other one does not
  // count.
  return std::strncmp(name, FirmwareData().currFileName, size) == 0;
}

Block WholeText(char* text, int length) { return {text, length, text + std::strlen(text)}; }

}  // namespace
}  // namespace kio::firmware

const char* get_FwServerWebSite(void) {
  // Quirk "one-firmware-server": the node is read and makes no difference.
  const kio::platform::StoreText ignored("/fwupgradeinfo/isEngFwServer");
  return KIO_FIRMWARE_SERVER;
}

int do_FwEntryList_Parser(char* text, int len, int kind) {
  if (text == nullptr || kind < 0 || kind >= kio::firmware::kListKinds) {
    kio::platform::LogEntry("do_FwEntryList_Parser");
    return KIOAPP_FW_LIST_ERROR;
  }
  return kio::firmware::ListSearch().MatchList(kio::firmware::WholeText(text, len), kind);
}

int do_FwFirmware_Parser(char* text, int len) {
  if (text == nullptr) {
    return KIOAPP_FW_LIST_ERROR;
  }
  return kio::firmware::ListSearch().MatchEntry(kio::firmware::WholeText(text, len));
}

int do_FwXml_Parser(char* document, char* fileUrl, char* notesUrl) {
  kio::platform::LogEntry("do_FwXml_Parser");
  KIO_LOG(kio::platform::kLogAction,
          "---- Received FW XML Data Begin ----\n%s\n---- Received FW XML Data End ----\n",
          document != nullptr ? document : "");
  kio::OnLostKey() = nullptr;
  kio::platform::ReadStoreText(kio::firmware::kDeviceMacNode, kio::FirmwareData().deviceMac);
  kio::platform::ReadStoreText(kio::firmware::kCurrentFileNode, kio::FirmwareData().currFileName);
  int result = kio::firmware::MatchDocument(document);
  if (result == KIOAPP_FW_LIST_MATCH) {
    if (kio::firmware::IsRunning()) {
      result = KIOAPP_FW_LIST_NO_MATCH;
    } else {
      kio::platform::WriteStoreText(kio::firmware::kFileUrlNode, kio::FirmwareData().fileUrl);
      kio::platform::WriteStoreText(kio::firmware::kNotesUrlNode, kio::FirmwareData().notesUrl);
    }
  }
  const bool found = result == KIOAPP_FW_LIST_MATCH;
  if (fileUrl != nullptr) {
    kio::platform::CopyText(fileUrl, sizeof(kio::FirmwareData().fileUrl),
                            found ? kio::FirmwareData().fileUrl : "");
  }
  if (notesUrl != nullptr) {
    kio::platform::CopyText(notesUrl, sizeof(kio::FirmwareData().notesUrl),
                            found ? kio::FirmwareData().notesUrl : "");
  }
  KIO_LOG(kio::platform::kLogDetail, "done, ret=%d\n", result);
  return result;
}
