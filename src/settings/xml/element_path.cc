#include "settings/xml/element_path.h"

namespace kio::settings {

void JoinPath(char (&path)[128], const char* parent, platform::TextView key) {
  platform::TextBuffer buffer(path);
  if (parent != nullptr && parent[0] != '\0') {
    buffer.Append(parent).Append('/');
  }
  buffer.Append(key);
}

}  // namespace kio::settings
