// Answers that a client need not fetch again when it has them.
#ifndef HOST_ENTITY_TAG_H
#define HOST_ENTITY_TAG_H

#include "reply.h"
#include "request_view.h"

namespace kiohost {

// Gives a reply the tag of its content: 304 without a body for a client that names this tag in
// If-None-Match. Others may keep the reply, and ask each time whether it is still good.
Reply WithEntityTag(Reply reply, const RequestView& request);

}  // namespace kiohost

#endif  // HOST_ENTITY_TAG_H
