#include "profile.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
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

// Reads a line that is not blank; returns what is wrong with it, or an empty text.
std::string ParseLine(std::string_view line, Node* node) {
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

}  // namespace

Status ParseProfile(std::string_view text, std::vector<Node>* nodes) {
  std::vector<Node> read;
  std::set<std::string> seen;
  for (size_t number = 1; !text.empty(); ++number) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const std::string_view content = Trim(line);
    if (content.empty() || content[0] == '#') {
      continue;
    }
    Node node;
    std::string fault = ParseLine(content, &node);
    if (fault.empty() && !seen.insert(Lower(node.path)).second) {
      fault = node.path + " stands here a second time";
    }
    if (!fault.empty()) {
      return {ExitCode::kProfile, "line " + std::to_string(number) + ": " + fault};
    }
    read.push_back(std::move(node));
  }
  *nodes = std::move(read);
  return {};
}

Status ReadProfile(const std::string& file, std::vector<Node>* nodes) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) {
    return {ExitCode::kProfile, "cannot read the profile " + file};
  }
  Status status = ParseProfile(text.str(), nodes);
  return status.ok() ? status : Status(status.code(), file + ": " + status.reason());
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
