// Parts of requests and replies that several rooms share.
#ifndef HOST_JSON_REPLY_H
#define HOST_JSON_REPLY_H

#include <optional>
#include <string>

#include "json.h"
#include "reply.h"
#include "request_view.h"

namespace kiohost {

Reply JsonReply(const Json& value);

// Adds the id of what was applied; an empty one is left out.
void AddApplyId(const std::string& id, Reply* reply);

// The refusal of a request whose parameter `dry-run` is not valid.
std::optional<Reply> CheckDryRun(const RequestView& request);

}  // namespace kiohost

#endif  // HOST_JSON_REPLY_H
