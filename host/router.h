// Which requests there are, and who answers them. Each room of routes adds its own.
#ifndef HOST_ROUTER_H
#define HOST_ROUTER_H

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reply.h"
#include "request_view.h"

namespace kiohost {

// What a route does with a body. A body of the wrong length or with a NUL byte is refused.
struct BodyRule {
  static constexpr size_t kMaxBody = size_t{64} * 1024;

  enum class Need {
    kNone,      // read and dropped
    kAnything,  // an empty one, too
    kFilled,
  };
  Need need = Need::kNone;
  const char* noun = "body";  // as errors call it
  size_t limit = kMaxBody;
};

struct Route {
  // "/settings", "/vars/*" or "/vars/*/validate": '*' stands for one character or more, slashes
  // included. The pattern with the most other characters serves a path.
  std::string pattern = {};
  std::string method = {};
  BodyRule body = {};
  // Whether the request waits until the exchange before it is over, and the work
  // after its reply.
  bool takes_turn = false;
  // A request that takes its turn runs beside the one whose turn it is when this says so and none
  // waits already. May be empty.
  std::function<bool(const RequestView&)> may_join = {};
  // Judges the head, before the body is read: the refusal, or nothing. May be empty.
  std::function<std::optional<Reply>(const RequestView&)> check = {};
  // Answers the whole request.
  std::function<Reply(const RequestView&)> handle = {};
};

class Router {
 public:
  // Judges the head of every request before anything else is looked at, its path included: the
  // refusal, or nothing. Knows method, path, headers and the peer's address; nothing was read of
  // the body.
  using Filter = std::function<std::optional<Reply>(const RequestView&)>;

  void AddFilter(Filter filter) { filters_.push_back(std::move(filter)); }
  void Add(Route route) { routes_.push_back(std::move(route)); }

  // The first refusal of the filters in the order in which they were added.
  std::optional<Reply> ApplyFilters(const RequestView& request) const;

  // The route of a request, whose name it sets; or null and why there is none.
  const Route* Find(RequestView* request, Reply* refusal) const;

  // The answer to OPTIONS: the methods of a resource, or of all resources when the target is the
  // server.
  Reply DescribeMethods(const RequestView& request) const;

 private:
  const std::string* FindPattern(std::string_view path) const;
  // Those of a pattern, or of all without one. HEAD is there where GET is.
  std::vector<std::string> Methods(const std::string* pattern) const;
  Reply NoSuchResource() const;
  Reply MethodNotAllowed(const std::string& pattern) const;

  std::vector<Filter> filters_;
  std::vector<Route> routes_;
};

}  // namespace kiohost

#endif  // HOST_ROUTER_H
