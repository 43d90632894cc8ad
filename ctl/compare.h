// The differences of two sides, setting by setting.
#ifndef CTL_COMPARE_H
#define CTL_COMPARE_H

#include <optional>
#include <string>
#include <vector>

#include "side.h"

namespace kioctl {

struct SettingDifference {
  enum class Kind {
    kDiffers,
    kSecret,       // it differs, and is not shown
    kOneSide,      // the other side cannot hold it, or has no use for it
    kNotCompared,  // a secret that a side does not tell
  };

  // What a side has: a text, or why there is none.
  struct Part {
    std::optional<std::string> text;
    std::string note = {};  // "not used: ConnType is DHCP"
  };

  Kind kind = Kind::kDiffers;
  std::string name;      // of the setting
  std::string variable;  // empty for what is none
  std::string node;
  std::string meaning;
  Part a;
  Part b;

  // Whether the sides are not the same because of it.
  bool Counts() const { return kind == Kind::kDiffers || kind == Kind::kSecret; }
};

// The settings in the order of the catalogue; of each radio the rules behind the others.
std::vector<SettingDifference> Compare(const Side& a, const Side& b);

// The word for a kind.
const char* WordOf(SettingDifference::Kind kind);

}  // namespace kioctl

#endif  // CTL_COMPARE_H
