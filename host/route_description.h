// What is told of a route: the index of the resources and docs/openapi.json are made of it.
#ifndef HOST_ROUTE_DESCRIPTION_H
#define HOST_ROUTE_DESCRIPTION_H

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

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
  const char* noun = "body";  // what errors call it
  size_t limit = kMaxBody;
};

// A parameter of the query or a header.
struct RouteParameter {
  enum class Kind { kFlag, kSeconds, kNumber, kCharacter, kText };
  const char* name = nullptr;
  Kind kind = Kind::kFlag;
  const char* meaning = nullptr;
  bool is_header = false;
};

// An answer that is no refusal.
struct RouteAnswer {
  const char* type = nullptr;    // of the content
  const char* schema = nullptr;  // the name of its form in docs/openapi.json
};

struct RouteDescription {
  // "/settings", "/vars/*" or "/vars/*/validate": '*' stands for one character or more, slashes
  // included. The pattern with the most other characters serves a path.
  std::string_view pattern;
  std::string_view method;
  const char* summary;  // one sentence
  BodyRule body = {};
  std::array<RouteParameter, 5> parameters = {};
  std::array<RouteAnswer, 2> answers = {};
  // Statuses of refusals beside those that every route has.
  std::array<unsigned int, 7> refusals = {};
  bool is_open = false;         // to clients that are not logged in
  bool has_entity_tag = false;  // and answers 304 to a client that has this one
  const char* star = "name";    // what the '*' is called
};

// The path with a name in braces for the '*': "/vars/{name}".
std::string PathTemplate(const RouteDescription& route);

}  // namespace kiohost

#endif  // HOST_ROUTE_DESCRIPTION_H
