#include "variables/live_variables.h"

#include "platform/store.h"
#include "platform/text_functions.h"

namespace kio::variables {
namespace {

using platform::StoreText;

// In an address, keywords are replaced by the router's own address and port.
void AnswerAddress(const char* node, const Request& request) {
  char address[256];
  platform::ReadStoreText(node, address);
  platform::ReplaceRssKeywords(address, sizeof(address));
  request.Answer(address);
}

}  // namespace

unsigned int ServeLive(const Variable& variable, const SectionInstance& instance,
                       const Request& request) {
  if (!request.reads()) {
    return KIOAPP_VAR_REFUSED;
  }
  char path[KIOAPP_VAR_SIZE];
  platform::TextBuffer buffer(path);
  AppendPath(buffer, variable, instance);
  if (request.reads_path()) {
    request.Answer(buffer.view());
    return KIOAPP_VAR_DONE;
  }
  const LiveNode& live = variable.live();
  const char* const node = live.node.empty() ? path : live.node.data();
  switch (live.kind) {
    case LiveNode::Kind::kText:
      request.Answer(StoreText(node).view());
      break;
    case LiveNode::Kind::kNumber:
      request.AnswerNumber(platform::ReadStoreInt(node));
      break;
    case LiveNode::Kind::kNumberOrOne:
      request.AnswerNumber(platform::ReadStoreInt(node, 1));
      break;
    case LiveNode::Kind::kAddress:
      AnswerAddress(node, request);
      break;
  }
  return KIOAPP_VAR_DONE;
}

}  // namespace kio::variables
