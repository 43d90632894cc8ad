// Bodies of requests that are JSON objects.
#ifndef HOST_CONTROL_JSON_BODY_H
#define HOST_CONTROL_JSON_BODY_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "json.h"
#include "reply.h"
#include "request_view.h"

namespace kiohost {

// A member that an object may have.
struct JsonMember {
  enum class Type { kText, kNumber, kWhole, kObject, kList };
  std::string_view name;
  Type type;
};

// What is wrong with an object: a member that is unknown or of another type. Empty when nothing is.
std::string FaultOf(const Json& object, std::initializer_list<JsonMember> members);

// The object in the body of a request, with such members alone; an empty body is an object without
// any. Nothing when it is none: then the refusal is set.
std::optional<Json> JsonBody(const RequestView& request, std::initializer_list<JsonMember> members,
                             Reply* refusal);

// A refusal as 400.
Reply BadRequestReply(const std::string& reason);

}  // namespace kiohost

#endif  // HOST_CONTROL_JSON_BODY_H
