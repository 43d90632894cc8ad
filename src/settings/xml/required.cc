#include "settings/xml/required.h"

#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/xml/element_path.h"

namespace kio::settings {

using platform::TextView;

void ReportLostKey(const char* path, TextView key) {
  if (OnLostKey() != nullptr) {
    OnLostKey()(path, key.data());
  }
}

Block FindRequiredBlock(const char* parent_path, const Block& block, TextView key,
                        char (&path)[128]) {
  platform::LogEntry("prepareXmlBlockData");
  const Element element = block.text != nullptr ? FindElement(block, key) : Element{};
  if (!element.is_complete()) {
    ReportLostKey(nullptr, key);
    return {};
  }
  JoinPath(path, parent_path, key);
  return element.content;
}

}  // namespace kio::settings
