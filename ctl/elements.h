// The elements of settings documents, as the library's rows have them (docs/elements.json).
#ifndef CTL_ELEMENTS_H
#define CTL_ELEMENTS_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace kioctl {

struct Element {
  std::string path;    // below the root: "Device/Wireless2.4/Channel"
  std::string parent;  // the path of its block, empty at the top
  std::string name;
  bool is_block = false;
  bool is_required = false;
  std::string when;  // the condition for reading it, in words
  std::string type;
  size_t limit = 0;  // characters that are taken; 0 for as many as there are
  std::string range;
  std::vector<std::string> words;
  std::optional<int> minimum;
  std::optional<int> maximum;
  std::string node;
  std::string variable;
  std::string fault;  // how result documents name it when its value is refused
  std::string meaning;

  // Whether nobody else may read its value.
  bool IsSecret() const;

  // The path of the element that decides whether this one is read, empty without one; and the
  // values of that with which it is.
  std::string Governor() const;
  std::vector<std::string> GovernedBy() const;
};

// Those of a kind: "settings 1.1", "settings 1.0" or "firmware list", with a row for each radio.
std::vector<Element> ElementsOf(const std::string& kind);

// The same as JSON, as the library's rows have them.
const nlohmann::json& AllElements();

// That of a path, in any case; null when there is none.
const Element* FindElement(const std::vector<Element>& elements, const std::string& path);

// Whether two names are the same to a device, which does not look at case.
bool SameName(const std::string& one, const std::string& other);

}  // namespace kioctl

#endif  // CTL_ELEMENTS_H
