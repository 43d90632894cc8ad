// Files that stand in the program.
#ifndef CTL_EMBEDDED_H
#define CTL_EMBEDDED_H

#include <cstddef>

namespace kioctl {

struct EmbeddedFile {
  const char* name;
  const char* text;
};

extern const char kElementsJson[];      // docs/elements.json
extern const char kVariablesJson[];     // docs/variables.json
extern const EmbeddedFile kProfiles[];  // host/profiles
extern const size_t kProfileCount;

}  // namespace kioctl

#endif  // CTL_EMBEDDED_H
