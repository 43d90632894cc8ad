// The firmware list: which of its entries fits this router.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "firmware/nodes.h"
#include "kioapp/firmware.h"
#include "kioapp/settings.h"
#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/log.h"
#include "platform/store.h"
#include "platform/text.h"
#include "platform/text_functions.h"
#include "settings/find_element.h"
#include "settings/item_reader.h"
#include "settings/xml_values.h"

FwXmlData fwXmlData = {};

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

int TestEntry(const Block& entry);

// Whether the beginning of an item, a pattern of at most `limit` characters, fits one of the
// router's own texts.
int TestPattern(const Block& item, std::size_t limit, const char* own_text) {
  const TextView pattern(item.text, std::min(static_cast<std::size_t>(item.length), limit));
  KIO_LOG(kLogDetail, "Match '%.*s' with '%s'\n", static_cast<int>(pattern.size()), pattern.data(),
          own_text);
  return platform::FitsWildcard(own_text, pattern) ? KIOAPP_FW_LIST_MATCH : KIOAPP_FW_LIST_NO_MATCH;
}

int TestRange(const Block& range) {
  char start[18];
  char end[18];
  if (!settings::ReadText(range, "Start", start, sizeof(start)) ||
      !settings::ReadText(range, "End", end, sizeof(end))) {
    return KIOAPP_FW_LIST_ERROR;
  }
  KIO_LOG(kLogDetail, "Match '%s'~'%s' with '%s'\n", start, end, fwXmlData.deviceMac);
  return strWildcardCmp(fwXmlData.deviceMac, start) >= 0 &&
                 strWildcardCmp(fwXmlData.deviceMac, end) <= 0
             ? KIOAPP_FW_LIST_MATCH
             : KIOAPP_FW_LIST_NO_MATCH;
}

int TestItem(const Block& item, int kind) {
  switch (kind) {
    case KIOAPP_FW_LIST_MAC:
      return TestPattern(item, 17, fwXmlData.deviceMac);
    case KIOAPP_FW_LIST_MACS:
      return TestRange(item);
    case KIOAPP_FW_LIST_FILE_NAME:
      return TestPattern(item, 127, fwXmlData.currFileName);
    default:
      return TestEntry(item);
  }
}

int TestItems(settings::ItemReader& items, int kind) {
  for (int i = 0; i < kMostItems; ++i) {
    const Block item = items.Next();
    if (item.text == nullptr) {
      break;
    }
    const int result = TestItem(item, kind);
    // Quirk "half-a-range-ends-the-search": an error in one item is the end of all.
    if (result != KIOAPP_FW_LIST_NO_MATCH) {
      return result;
    }
  }
  return KIOAPP_FW_LIST_NO_MATCH;
}

// The items of one list or, of a "MacList", the addresses and then the ranges.
int TestList(const Block& text, int kind, bool ranges_too = false) {
  platform::LogEntry("do_FwEntryList_Parser");
  const Element container = settings::FindElement(text, kLists[kind].container);
  if (!container.is_complete()) {
    return KIOAPP_FW_LIST_ERROR;
  }
  // An empty list has the items of the rest of the document.
  settings::ItemReader items(container.content, kLists[kind].item);
  const int result = TestItems(items, kind);
  if (result != KIOAPP_FW_LIST_NO_MATCH || !ranges_too) {
    return result;
  }
  platform::LogEntry("do_FwEntryList_Parser");
  if (items.HasNoOthers()) {
    return KIOAPP_FW_LIST_NO_MATCH;
  }
  settings::ItemReader ranges(container.content, kLists[KIOAPP_FW_LIST_MACS].item);
  return TestItems(ranges, KIOAPP_FW_LIST_MACS);
}

bool ReadAddress(const Block& entry, TextView key, char (&address)[128]) {
  TextBuffer text(address);
  text.Append(get_FwServerWebSite());
  if (!settings::ReadText(entry, key, address + text.size(), sizeof(address) - text.size())) {
    KIO_LOG(kLogAction, "%s not found\n", key.data());
    return false;
  }
  return true;
}

// Quirk "entry-without-lists-never-fits": one list at least must match.
int TestLists(const Block& entry) {
  int result = KIOAPP_FW_LIST_NO_MATCH;
  char* const macs = settings::FindTag(entry, "MacList");
  if (macs != nullptr) {
    result = TestList(entry.From(macs), KIOAPP_FW_LIST_MAC, true);
    if (result != KIOAPP_FW_LIST_MATCH) {
      return result;
    }
  }
  char* const names = settings::FindTag(entry, "MatchList");
  return names != nullptr ? TestList(entry.From(names), KIOAPP_FW_LIST_FILE_NAME) : result;
}

int TestEntry(const Block& entry) {
  platform::LogEntry("do_FwFirmware_Parser");
  const int result = TestLists(entry);
  if (result == KIOAPP_FW_LIST_MATCH && (!ReadAddress(entry, "FwURL", fwXmlData.fileUrl) ||
                                         !ReadAddress(entry, "NotesURL", fwXmlData.notesUrl))) {
    return KIOAPP_FW_LIST_ERROR;
  }
  return result;
}

int TestDocument(char* document) {
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
  RssSpecVersion& version = fwXmlData.specVersion;
  if (do_XmlSpecVersion_Parser(nullptr, content.text, content.length, &version, "specVersion") ==
      0) {
    return KIOAPP_FW_LIST_ERROR;
  }
  if (version.combined != kAcceptedVersion) {
    KIO_LOG(kLogAction, "wrong specVersion %d.%d\n", version.major, version.minor);
    return KIOAPP_FW_LIST_ERROR;
  }
  const int result = TestList({content.text, content.length, end}, KIOAPP_FW_LIST_FIRMWARE);
  if (result == KIOAPP_FW_LIST_ERROR) {
    KIO_LOG(kLogAction, "check FirmwareList fail\n");
  } else {
    KIO_LOG(kLogDetail, "done, ret=%d\n", result);
  }
  return result;
}

// Whether the file that was found is the one that runs.
bool IsRunning() {
  const char* const slash = std::strrchr(fwXmlData.fileUrl, '/');
  const char* const name = slash != nullptr ? slash + 1 : fwXmlData.fileUrl;
  const std::size_t size = std::strcspn(name, "?");
  KIO_LOG(kLogDetail, "Final Match '%s'(%d) with '%s'\n", name, static_cast<int>(size),
          fwXmlData.currFileName);
  // Quirk "running-name-may-be-longer": what stands behind the name that is offered does not count.
  return std::strncmp(name, fwXmlData.currFileName, size) == 0;
}

Block WholeOf(char* text, int length) { return {text, length, text + std::strlen(text)}; }

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
  return kio::firmware::TestList(kio::firmware::WholeOf(text, len), kind);
}

int do_FwFirmware_Parser(char* text, int len) {
  if (text == nullptr) {
    return KIOAPP_FW_LIST_ERROR;
  }
  return kio::firmware::TestEntry(kio::firmware::WholeOf(text, len));
}

int do_FwXml_Parser(char* document, char* fileUrl, char* notesUrl) {
  kio::platform::LogEntry("do_FwXml_Parser");
  KIO_LOG(kio::platform::kLogAction,
          "---- Received FW XML Data Begin ----\n%s\n---- Received FW XML Data End ----\n",
          document != nullptr ? document : "");
  XmlErrMsg_LostKey = nullptr;
  kio::platform::ReadStoreText(kio::firmware::kDeviceMacNode, fwXmlData.deviceMac);
  kio::platform::ReadStoreText(kio::firmware::kCurrentFileNode, fwXmlData.currFileName);
  int result = kio::firmware::TestDocument(document);
  if (result == KIOAPP_FW_LIST_MATCH) {
    if (kio::firmware::IsRunning()) {
      result = KIOAPP_FW_LIST_NO_MATCH;
    } else {
      kio::platform::WriteStoreText(kio::firmware::kFileUrlNode, fwXmlData.fileUrl);
      kio::platform::WriteStoreText(kio::firmware::kNotesUrlNode, fwXmlData.notesUrl);
    }
  }
  const bool found = result == KIOAPP_FW_LIST_MATCH;
  if (fileUrl != nullptr) {
    kio::platform::CopyText(fileUrl, sizeof(fwXmlData.fileUrl), found ? fwXmlData.fileUrl : "");
  }
  if (notesUrl != nullptr) {
    kio::platform::CopyText(notesUrl, sizeof(fwXmlData.notesUrl), found ? fwXmlData.notesUrl : "");
  }
  KIO_LOG(kio::platform::kLogDetail, "done, ret=%d\n", result);
  return result;
}
