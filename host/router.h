// The table of routes. Each room of routes adds its own rows.
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
#include "route_description.h"

namespace kiohost {

struct Route {
  // Without a description there is no route.
  const RouteDescription& description;
  // Whether the request waits until the exchange before it is over and the work after its reply is
  // done.
  bool takes_turn = false;
  // Whether `handle` may run commands other than those that write the result document.
  bool runs_commands = false;
  // Whether a request that takes its turn may run beside the one whose turn it is. Asked in the
  // thread of the library, when no request waits. May be empty: it may not.
  std::function<bool(const RequestView&)> may_join = {};
  // Judges the head, before the body is read: the refusal, or nothing. May be empty.
  std::function<std::optional<Reply>(const RequestView&)> check = {};
  // Answers the whole request in the thread of the sockets, without the library and without a wait;
  // or nothing, when only `handle` can. May be empty: only `handle` can.
  std::function<std::optional<Reply>(const RequestView&)> answer = {};
  // Told once of a request that `answer` did not answer, before it waits for the thread of the
  // library. May be empty.
  std::function<void(const RequestView&)> begin = {};
  // Answers the whole request in the thread of the library. Sees of the request what it was sent,
  // and not the connection. May be empty when `answer` always answers.
  std::function<Reply(const RequestView&)> handle = {};
};

class Router {
 public:
  // Judges the head of every request, before its path is looked up: returns the refusal, or
  // nothing. A filter sees method, path, headers and the peer's address. The body was not read yet.
  using Filter = std::function<std::optional<Reply>(const RequestView&)>;

  void AddFilter(Filter filter) { filters_.push_back(std::move(filter)); }
  void Add(Route route) { routes_.push_back(std::move(route)); }

  // The descriptions of all routes, in the order in which these were added.
  std::vector<const RouteDescription*> Descriptions() const;

  // The first refusal of the filters in the order in which they were added.
  std::optional<Reply> ApplyFilters(const RequestView& request) const;

  // The route of a request, whose name it sets; or null and why there is none.
  const Route* Find(RequestView* request, Reply* refusal) const;

  // The answer to OPTIONS: the methods of a resource, or of all resources when the target is the
  // server.
  Reply DescribeMethods(const RequestView& request) const;

 private:
  std::optional<std::string_view> FindPattern(std::string_view path) const;
  // The methods of a pattern, or of all patterns without one. HEAD is listed where GET is.
  std::vector<std::string> Methods(std::optional<std::string_view> pattern) const;
  Reply NoSuchResource() const;
  Reply MethodNotAllowed(std::string_view pattern) const;

  std::vector<Filter> filters_;
  std::vector<Route> routes_;
};

}  // namespace kiohost

#endif  // HOST_ROUTER_H
