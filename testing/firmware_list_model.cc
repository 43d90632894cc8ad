#include "testing/firmware_list_model.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <optional>

#include "kioapp/text.h"

namespace kio::test {
namespace {

constexpr const char* kServer = "http://firmware.kioapp.example";
constexpr std::size_t kAddressRoom = 128;

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

// A document and a copy of it in lower case.
struct Text {
  explicit Text(const std::string& whole) : own(whole), lower(Lower(whole)) {}
  std::string own;
  std::string lower;
};

struct Found {
  std::size_t tag = std::string::npos;
  std::size_t content = std::string::npos;  // of a complete element
  std::size_t size = 0;
  bool has_tag() const { return tag != std::string::npos; }
  bool is_complete() const { return content != std::string::npos; }
};

std::size_t FindIn(const std::string& text, const std::string& what, std::size_t begin,
                   std::size_t end) {
  const std::size_t hit = text.find(what, begin);
  return hit != std::string::npos && hit + what.size() <= end ? hit : std::string::npos;
}

// The first element in [begin, end). An `end` at or before `begin` stands for the end of the text.
Found Find(const Text& text, std::size_t begin, std::size_t end, const std::string& key) {
  const std::string name = Lower(key);
  end = end <= begin ? text.lower.size() : std::min(end, text.lower.size());
  Found found;
  found.tag = FindIn(text.lower, "<" + name + ">", begin, end);
  if (found.has_tag()) {
    const std::size_t content = found.tag + name.size() + 2;
    const std::size_t close = FindIn(text.lower, "</" + name + ">", content, end);
    if (close != std::string::npos) {
      found.content = content;
      found.size = close - content;
    }
    return found;
  }
  for (const char* const form : {"/>", " />"}) {
    found.tag = FindIn(text.lower, "<" + name + form, begin, end);
    if (found.has_tag()) {
      found.content = found.tag;
      return found;
    }
  }
  return found;
}

// Results and kinds of lists are the numbers of kioapp/firmware.h.
class Reader {
 public:
  Reader(const std::string& document, std::string mac, std::string file)
      : text_(document), mac_(std::move(mac)), file_(std::move(file)) {}

  ListResult Read() {
    ListResult result;
    const Found root = Find(text_, 0, 0, "root");
    if (!root.is_complete()) {
      return result;
    }
    const std::size_t end = root.content + root.size;
    text_ = Text(text_.own.substr(0, end));
    const Found version = Find(text_, root.content, end, "specVersion");
    if (!version.is_complete() || Version(version) != 100) {
      return result;
    }
    result.result = List(root.content, end, 0);
    if (result.result != 2) {
      return result;
    }
    const std::string name = file_url_.substr(file_url_.rfind('/') + 1);
    const std::size_t size = std::min(name.find('?'), name.size());
    if (file_.compare(0, size, name, 0, size) == 0) {
      result.result = 1;
      return result;
    }
    result.file_url = file_url_;
    result.notes_url = notes_url_;
    return result;
  }

 private:
  std::optional<std::string> Value(std::size_t begin, std::size_t end, const std::string& key,
                                   std::size_t room) const {
    const Found found = Find(text_, begin, end, key);
    if (!found.is_complete()) {
      return std::nullopt;
    }
    const std::string raw = text_.own.substr(found.content, std::min(found.size, room));
    std::string decoded(raw.size() + 1, '\0');
    strncpy_XmlDecode(decoded.data(), raw.c_str(), static_cast<int>(raw.size()));
    return std::string(decoded.c_str());
  }

  long Version(const Found& version) const {
    const std::size_t end = version.content + version.size;
    const auto major = Value(version.content, end, "major", 127);
    const auto minor = Value(version.content, end, "minor", 127);
    if (!major.has_value() || !minor.has_value()) {
      return -1;
    }
    const auto number = [](const std::string& text) {
      return std::clamp(std::strtol(text.c_str(), nullptr, 10), -2147483647L - 1, 2147483647L);
    };
    return static_cast<int>(static_cast<unsigned>(number(*major)) * 100U +
                            static_cast<unsigned>(number(*minor)));
  }

  int List(std::size_t begin, std::size_t end, int kind) {
    static constexpr const char* kContainers[] = {"FirmwareList", "MacList", "MacList",
                                                  "MatchList"};
    static constexpr const char* kItems[] = {"Firmware", "MAC", "MACs", "Match"};
    const std::string key = Lower(kItems[kind]);
    const Found container = Find(text_, begin, end, kContainers[kind]);
    if (!container.is_complete()) {
      return 0;
    }
    const std::size_t list_end = container.content + container.size;
    std::size_t position = container.content;
    for (int i = 0; i < 100; ++i) {
      const Found item = Find(text_, position, list_end, key);
      if (!item.is_complete() || item.size == 0 || HasEmptyBefore(position, item.tag, key)) {
        return 1;
      }
      position = item.content;
      const int result = Item(item.content, item.content + item.size, kind);
      if (result != 1) {
        return result;
      }
    }
    return 1;
  }

  bool HasEmptyBefore(std::size_t begin, std::size_t end, const std::string& key) const {
    return FindIn(text_.lower, "<" + key + "/>", begin, end) != std::string::npos ||
           FindIn(text_.lower, "<" + key + " />", begin, end) != std::string::npos;
  }

  int Item(std::size_t begin, std::size_t end, int kind) {
    const std::string item = text_.own.substr(begin, end - begin);
    if (kind == 0) {
      return Entry(begin, end);
    }
    if (kind == 2) {
      const auto first = Value(begin, end, "Start", 17);
      const auto last = Value(begin, end, "End", 17);
      if (!first.has_value() || !last.has_value()) {
        return 0;
      }
      return strWildcardCmp(mac_.c_str(), first->c_str()) >= 0 &&
                     strWildcardCmp(mac_.c_str(), last->c_str()) <= 0
                 ? 2
                 : 1;
    }
    const std::string pattern = item.substr(0, kind == 1 ? 17 : 127);
    return strWildcardCmp(kind == 1 ? mac_.c_str() : file_.c_str(), pattern.c_str()) == 0 ? 2 : 1;
  }

  int Entry(std::size_t begin, std::size_t end) {
    int result = 1;
    const Found macs = Find(text_, begin, end, "MacList");
    if (macs.has_tag()) {
      result = List(macs.tag, end, 1);
      if (result == 1) {
        result = List(macs.tag, end, 2);
      }
      if (result != 2) {
        return result;
      }
    }
    const Found names = Find(text_, begin, end, "MatchList");
    if (names.has_tag()) {
      result = List(names.tag, end, 3);
    }
    if (result != 2) {
      return result;
    }
    const std::size_t room = kAddressRoom - std::string(kServer).size() - 1;
    const auto file = Value(begin, end, "FwURL", room);
    const auto notes = Value(begin, end, "NotesURL", room);
    if (!file.has_value() || !notes.has_value()) {
      return 0;
    }
    file_url_ = kServer + *file;
    notes_url_ = kServer + *notes;
    return 2;
  }

  Text text_;
  std::string mac_;
  std::string file_;
  std::string file_url_;
  std::string notes_url_;
};

}  // namespace

ListResult ModelFirmwareList(const std::string& text, const std::string& mac,
                             const std::string& file_name) {
  return Reader(text.c_str(), mac.substr(0, 17), file_name.substr(0, 129)).Read();
}

}  // namespace kio::test
