#include "request_target.h"

#include <microhttpd.h>
#include <strings.h>

#include <algorithm>
#include <cstring>

namespace kiohost {
namespace {

std::string PercentDecoded(std::string text) {
  // The decoded text may hold a NUL byte, so its length is taken from the function.
  text.resize(MHD_http_unescape(text.data()));
  return text;
}

std::string DecodedArgument(std::string_view part) {
  std::string text(part);
  std::replace(text.begin(), text.end(), '+', ' ');
  return PercentDecoded(std::move(text));
}

// Takes what comes before the first `separator` off the front of `text`, and the separator.
std::string_view TakeUntil(char separator, std::string_view* text) {
  const size_t end = std::min(text->find(separator), text->size());
  const std::string_view part = text->substr(0, end);
  text->remove_prefix(std::min(end + 1, text->size()));
  return part;
}

void ParseArguments(std::string_view query, RequestTarget* target) {
  while (!query.empty()) {
    if (target->arguments.size() == RequestTarget::kMostArguments) {
      target->arguments.clear();
      target->too_many_arguments = true;
      return;
    }
    std::string_view value = TakeUntil('&', &query);
    const std::string_view name = TakeUntil('=', &value);
    target->arguments.emplace_back(DecodedArgument(name), DecodedArgument(value));
  }
}

// Takes "http://host:port" off the front of a target; nothing when it begins otherwise.
std::optional<std::string> TakeAuthority(std::string_view* target) {
  constexpr std::string_view kScheme = "http://";
  if (target->size() < kScheme.size() ||
      strncasecmp(target->data(), kScheme.data(), kScheme.size()) != 0) {
    return std::nullopt;
  }
  target->remove_prefix(kScheme.size());
  const size_t end = std::min(target->find_first_of("/?"), target->size());
  std::string authority(target->substr(0, end));
  target->remove_prefix(end);
  return authority;
}

}  // namespace

RequestTarget ParseTarget(std::string_view target) {
  RequestTarget parsed;
  parsed.authority = TakeAuthority(&target);
  parsed.is_server = parsed.authority ? target.empty() : target == "*";
  const std::string_view path = TakeUntil('?', &target);
  parsed.nul_in_path = path.find("%00") != std::string_view::npos;
  parsed.path = parsed.authority && path.empty() ? "/" : PercentDecoded(std::string(path));
  parsed.path.resize(std::strlen(parsed.path.c_str()));
  ParseArguments(target, &parsed);
  return parsed;
}

}  // namespace kiohost
