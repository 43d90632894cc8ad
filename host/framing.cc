#include "framing.h"

#include <strings.h>

#include <algorithm>
#include <cctype>

namespace kiohost {
namespace {

bool IsSameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

std::vector<std::string_view> Values(const HeaderLines& headers, std::string_view name) {
  std::vector<std::string_view> values;
  for (const auto& [line_name, value] : headers) {
    if (IsSameName(line_name, name)) {
      values.push_back(value);
    }
  }
  return values;
}

bool IsTokenCharacter(char c) {
  constexpr std::string_view kMarks = "!#$%&'*+-.^_`|~";
  return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
         kMarks.find(c) != std::string_view::npos;
}

// A blank before the colon is refused: "Content-Length : 5" is a length to some readers only.
bool IsHeaderName(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), IsTokenCharacter);
}

bool Differ(const std::vector<std::string_view>& values) {
  return std::any_of(values.begin(), values.end(),
                     [&values](std::string_view value) { return value != values.front(); });
}

}  // namespace

std::optional<std::string> FramingFault(std::string_view version, const HeaderLines& headers) {
  const bool is_old = version == "HTTP/1.0";
  const std::vector<std::string_view> hosts = Values(headers, "Host");
  const std::vector<std::string_view> lengths = Values(headers, "Content-Length");
  const std::vector<std::string_view> codings = Values(headers, "Transfer-Encoding");
  if (!std::all_of(headers.begin(), headers.end(),
                   [](const auto& line) { return IsHeaderName(line.first); })) {
    return "a header has no proper name";
  }
  if (hosts.empty() && !is_old) {
    return "the Host header is missing";
  }
  if (hosts.size() > 1) {
    return "there is more than one Host header";
  }
  if (Differ(lengths)) {
    return "there are two different Content-Length headers";
  }
  if (!codings.empty() && !lengths.empty()) {
    return "Content-Length and Transfer-Encoding exclude each other";
  }
  if (!codings.empty() &&
      (is_old || codings.size() > 1 || !IsSameName(codings.front(), "chunked"))) {
    return "a body is sent as it is, or chunked in HTTP/1.1";
  }
  return std::nullopt;
}

}  // namespace kiohost
