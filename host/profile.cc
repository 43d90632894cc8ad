#include "profile.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>

#include "node_path.h"
#include "text.h"

namespace kiohost {
namespace {

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// Reads the escape that follows a backslash at the start of `text`, and returns its length; 0 when
// it is none.
size_t ReadEscape(std::string_view text, char* byte) {
  constexpr size_t kHexLength = 3;
  constexpr int kHexadecimal = 16;
  if (text.starts_with('"') || text.starts_with('\\')) {
    *byte = text[0];
    return 1;
  }
  if (!text.starts_with('x') || text.size() < kHexLength) {
    return 0;
  }
  unsigned char value = 0;
  const auto [end, error] =
      std::from_chars(text.data() + 1, text.data() + kHexLength, value, kHexadecimal);
  *byte = static_cast<char>(value);
  return error == std::errc() && end == text.data() + kHexLength && value != 0 ? kHexLength : 0;
}

// The text between quotes, or nothing when quotes or escapes are broken.
std::optional<std::string> Unquote(std::string_view text) {
  if (text.size() < 2 || text.back() != '"') {
    return std::nullopt;
  }
  text = text.substr(1, text.size() - 2);
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    char byte = text[i];
    if (byte == '"') {
      return std::nullopt;
    }
    if (byte == '\\') {
      const size_t length = ReadEscape(text.substr(i + 1), &byte);
      if (length == 0) {
        return std::nullopt;
      }
      i += length;
    }
    plain.push_back(byte);
  }
  return plain;
}

bool IsPrintable(char c) { return static_cast<unsigned char>(c) >= ' ' && c != '\x7f'; }

bool NeedsQuotes(std::string_view text) {
  return text != Trim(text) || text.starts_with('"') ||
         !std::all_of(text.begin(), text.end(), IsPrintable);
}

std::string Quote(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (IsPrintable(c)) {
      quoted += c;
    } else {
      char escape[sizeof "\\xHH"];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(c));
      quoted += escape;
    }
  }
  return quoted + '"';
}

bool IsSamePath(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

bool IsAtOrBelow(std::string_view path, std::string_view top) {
  return IsSamePath(path.substr(0, top.size()), top) &&
         (path.size() == top.size() || path[top.size()] == '/');
}

// What stands behind a word and a blank; nothing when the line begins with something else.
std::optional<std::string_view> Behind(std::string_view word, std::string_view line) {
  if (!line.starts_with(word) || line.size() == word.size() ||
      Trim(line.substr(word.size(), 1)) != "") {
    return std::nullopt;
  }
  return Trim(line.substr(word.size()));
}

std::optional<std::string> ReadText(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return std::nullopt;
  }
  return text.str();
}

// Reads the lines of one file, and by readers of their own the files that it includes.
class ProfileReader {
 public:
  // `file` is empty for a text that no file holds, which can include none.
  ProfileReader(const ProfileFiles& files, std::string file, int depth,
                std::vector<ProfileNode>* nodes)
      : files_(files), file_(std::move(file)), depth_(depth), nodes_(nodes) {}

  Status Read(std::string_view text) {
    for (size_t number = 1; !text.empty(); ++number) {
      const std::string_view line = text.substr(0, text.find('\n'));
      text.remove_prefix(std::min(line.size() + 1, text.size()));
      const std::string_view content = Trim(line);
      if (content.empty() || content[0] == '#') {
        continue;
      }
      place_ = (file_.empty() ? "line " : file_ + ": line ") + std::to_string(number);
      Status status = ReadLine(content);
      if (!status.ok()) {
        return status;
      }
    }
    return {};
  }

 private:
  Status ReadLine(std::string_view line) {
    if (!file_.empty()) {
      if (const auto file = Behind("include", line)) {
        return Include(*file);
      }
      if (const auto path = Behind("without", line)) {
        return Remove(*path);
      }
    }
    ProfileNode node{.node = {}, .place = place_};
    std::string fault = ParseNode(line, &node.node);
    if (fault.empty() && !seen_.insert(Lower(node.node.path)).second) {
      fault = node.node.path + " stands here a second time";
    }
    if (!fault.empty()) {
      return Broken(fault);
    }
    PutNode(std::move(node), nodes_);
    return {};
  }

  Status Include(std::string_view name) {
    constexpr int kDeepest = 8;
    if (!seen_.empty()) {
      return Broken("an include stands before all nodes");
    }
    if (depth_ == kDeepest) {
      return Broken("more than " + std::to_string(kDeepest) +
                    " files include each other; or does one include itself?");
    }
    const std::string file = std::filesystem::path(file_).parent_path() / name;
    const std::optional<std::string> text = files_(file);
    if (!text) {
      return Broken("cannot read the profile " + file);
    }
    return ProfileReader(files_, file, depth_ + 1, nodes_).Read(*text);
  }

  Status Remove(std::string_view path) {
    const size_t removed = std::erase_if(
        *nodes_, [path](const ProfileNode& node) { return IsAtOrBelow(node.node.path, path); });
    return removed == 0 ? Broken("there is no " + std::string(path) + " to leave out") : Status();
  }

  Status Broken(const std::string& fault) const {
    return {ExitCode::kProfile, place_ + ": " + fault};
  }

  const ProfileFiles& files_;
  const std::string file_;
  const int depth_;
  std::vector<ProfileNode>* const nodes_;
  std::string place_;
  std::set<std::string> seen_;  // in this file
};

}  // namespace

std::string ParseNode(std::string_view line, Node* node) {
  const size_t equals = line.find('=');
  if (equals == std::string_view::npos) {
    return "expected \"path = text\"";
  }
  const std::string_view path = Trim(line.substr(0, equals));
  if (!IsNodePath(path)) {
    return "\"" + std::string(path) + "\" is not a node path, or has an instance number above " +
           std::to_string(kMaxInstance);
  }
  const std::string_view raw = Trim(line.substr(equals + 1));
  const std::optional<std::string> text = raw.starts_with('"') ? Unquote(raw) : std::string(raw);
  if (!text) {
    return "broken quotes or escape";
  }
  if (text->size() > Store::kMaxTextLength || text->find('\0') != std::string::npos) {
    return "the text is too long or holds a NUL byte";
  }
  *node = {std::string(path), *text};
  return {};
}

void PutNode(ProfileNode node, std::vector<ProfileNode>* nodes) {
  const auto found = std::find_if(nodes->begin(), nodes->end(), [&node](const ProfileNode& other) {
    return IsSamePath(other.node.path, node.node.path);
  });
  if (found == nodes->end()) {
    nodes->push_back(std::move(node));
  } else {
    *found = std::move(node);
  }
}

const ProfileNode* FindNode(const std::vector<ProfileNode>& nodes, std::string_view path) {
  const auto found = std::find_if(nodes.begin(), nodes.end(), [path](const ProfileNode& node) {
    return IsSamePath(node.node.path, path);
  });
  return found == nodes.end() ? nullptr : &*found;
}

std::vector<Node> PlainNodes(const std::vector<ProfileNode>& nodes) {
  std::vector<Node> plain;
  plain.reserve(nodes.size());
  for (const ProfileNode& node : nodes) {
    plain.push_back(node.node);
  }
  return plain;
}

Status ParseProfile(std::string_view text, std::vector<Node>* nodes) {
  std::vector<ProfileNode> read;
  Status status = ProfileReader(ReadText, "", 0, &read).Read(text);
  if (status.ok()) {
    *nodes = PlainNodes(read);
  }
  return status;
}

Status ReadProfile(const std::string& file, std::vector<ProfileNode>* nodes) {
  return ReadProfileOf(ReadText, file, nodes);
}

Status ReadProfileOf(const ProfileFiles& files, const std::string& file,
                     std::vector<ProfileNode>* nodes) {
  const std::optional<std::string> text = files(file);
  if (!text) {
    return {ExitCode::kProfile, "cannot read the profile " + file};
  }
  std::vector<ProfileNode> read;
  Status status = ProfileReader(files, file, 0, &read).Read(*text);
  if (status.ok()) {
    *nodes = std::move(read);
  }
  return status;
}

std::string FormatProfile(const std::vector<Node>& nodes) {
  std::string text;
  for (const Node& node : nodes) {
    text += node.path + " =";
    if (!node.text.empty()) {
      text += ' ' + (NeedsQuotes(node.text) ? Quote(node.text) : node.text);
    }
    text += '\n';
  }
  return text;
}

}  // namespace kiohost
