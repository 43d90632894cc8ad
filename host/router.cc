#include "router.h"

#include <algorithm>

namespace kiohost {
namespace {

// The part of `path` that '*' stands for, empty when the pattern has none; nothing when the pattern
// does not fit.
std::optional<std::string_view> Match(std::string_view pattern, std::string_view path) {
  const size_t star = pattern.find('*');
  if (star == std::string_view::npos) {
    return pattern == path ? std::optional<std::string_view>("") : std::nullopt;
  }
  const std::string_view before = pattern.substr(0, star);
  const std::string_view after = pattern.substr(star + 1);
  if (path.size() < pattern.size() || !path.starts_with(before) || !path.ends_with(after)) {
    return std::nullopt;
  }
  return path.substr(star, path.size() - before.size() - after.size());
}

// "a, b and c", or with another separator and last separator.
std::string Join(const std::vector<std::string>& words, const char* last_separator) {
  std::string text;
  for (size_t i = 0; i < words.size(); ++i) {
    text += i == 0 ? "" : i + 1 < words.size() ? ", " : last_separator;
    text += words[i];
  }
  return text;
}

void AddOnce(std::vector<std::string>* words, std::string word) {
  if (std::find(words->begin(), words->end(), word) == words->end()) {
    words->push_back(std::move(word));
  }
}

}  // namespace

std::optional<Reply> Router::ApplyFilters(const RequestView& request) const {
  for (const Filter& filter : filters_) {
    if (std::optional<Reply> refusal = filter(request)) {
      return refusal;
    }
  }
  return std::nullopt;
}

const Route* Router::Find(RequestView* request, Reply* refusal) const {
  const std::optional<std::string_view> pattern = FindPattern(request->path());
  if (!pattern) {
    *refusal = NoSuchResource();
    return nullptr;
  }
  request->set_name(Match(*pattern, request->path()).value_or(""));
  const std::string method = request->IsGet() ? MHD_HTTP_METHOD_GET : request->method();
  for (const Route& route : routes_) {
    if (route.description.pattern == *pattern && route.description.method == method) {
      return &route;
    }
  }
  *refusal = MethodNotAllowed(*pattern);
  return nullptr;
}

Reply Router::DescribeMethods(const RequestView& request) const {
  std::optional<std::string_view> pattern;
  if (!request.target().is_server) {
    pattern = FindPattern(request.path());
    if (!pattern) {
      return NoSuchResource();
    }
  }
  std::vector<std::string> methods = Methods(pattern);
  methods.emplace_back(MHD_HTTP_METHOD_OPTIONS);
  Reply reply;
  reply.status = MHD_HTTP_NO_CONTENT;
  reply.headers.emplace_back(MHD_HTTP_HEADER_ALLOW, Join(methods, ", "));
  return reply;
}

std::vector<const RouteDescription*> Router::Descriptions() const {
  std::vector<const RouteDescription*> descriptions;
  for (const Route& route : routes_) {
    descriptions.push_back(&route.description);
  }
  return descriptions;
}

std::optional<std::string_view> Router::FindPattern(std::string_view path) const {
  std::optional<std::string_view> best;
  for (const Route& route : routes_) {
    const std::string_view pattern = route.description.pattern;
    const bool closer =
        !best || (best->find('*') != std::string_view::npos && pattern.size() > best->size());
    if (Match(pattern, path) && (closer || pattern == path)) {
      best = pattern;
    }
  }
  return best;
}

// Lists the resources by the first steps of their paths.
Reply Router::NoSuchResource() const {
  std::vector<std::string> roots;
  for (const Route& route : routes_) {
    const std::string_view pattern = route.description.pattern;
    if (pattern != "/") {
      AddOnce(&roots, std::string(pattern.substr(0, pattern.find('/', 1))));
    }
  }
  return ErrorReply(MHD_HTTP_NOT_FOUND, "there is only " + Join(roots, " and "));
}

std::vector<std::string> Router::Methods(std::optional<std::string_view> pattern) const {
  std::vector<std::string> methods;
  for (const Route& route : routes_) {
    if (!pattern || route.description.pattern == *pattern) {
      AddOnce(&methods, std::string(route.description.method));
      if (route.description.method == MHD_HTTP_METHOD_GET) {
        AddOnce(&methods, MHD_HTTP_METHOD_HEAD);
      }
    }
  }
  return methods;
}

Reply Router::MethodNotAllowed(std::string_view pattern) const {
  const std::vector<std::string> methods = Methods(pattern);
  Reply reply = ErrorReply(MHD_HTTP_METHOD_NOT_ALLOWED,
                           std::string(pattern) + " takes " + Join(methods, " and ") + " only");
  reply.headers.emplace_back(MHD_HTTP_HEADER_ALLOW, Join(methods, ", "));
  return reply;
}

}  // namespace kiohost
