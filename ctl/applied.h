// Changes: what is sent, what the router says of it, and the wait.
#ifndef CTL_APPLIED_H
#define CTL_APPLIED_H

#include "commands.h"

namespace kioctl {

// Adds the settings that a change was made for, when the options name them.
void AddIfMatch(const Options& options, Request* request);

// Sends a change that is answered by a result document; prints what became of it, and waits when
// the options say so.
void SendChange(Context* context, Request request);

// The same for a change that has been answered already. `device` is what the router said before.
void ReportChange(Context* context, const Reply& reply, const ResultDocument& result,
                  const std::string& boot_id);

}  // namespace kioctl

#endif  // CTL_APPLIED_H
