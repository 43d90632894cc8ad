// Files that stand in the program.
#ifndef CTL_EMBEDDED_H
#define CTL_EMBEDDED_H

namespace kioctl {

extern const char kElementsJson[];    // docs/elements.json
extern const char kFactoryProfile[];  // host/profiles/dual-band-router.profile

}  // namespace kioctl

#endif  // CTL_EMBEDDED_H
