// All settings of a router in the words of the catalogue, whatever version of documents has them.
#ifndef CTL_CATALOGUE_H
#define CTL_CATALOGUE_H

#include <string>
#include <vector>

#include "elements.h"

namespace kioctl {

struct Setting {
  enum class Kind { kText, kNumber, kWord };

  // Where sides are compared: the node in lower case, or "element:" and the path for what no router
  // stores.
  std::string key;
  std::string name;  // the path of the element: "Device/Wireless2.4/Channel"
  std::string variable;
  std::string meaning;
  Kind kind = Kind::kText;
  bool is_secret = false;
  // It can be set by an app. Other properties of a device are compared where both sides tell them.
  bool is_settable = true;
  // A document holds it, but does not set it.
  bool is_for_show = false;
};

// The settings in the order of the documents, then what else the variables tell. Rules of the
// access control have "{n}" for their number.
const std::vector<Setting>& Catalogue();

// That of a key, or of a node in any case; null when there is none.
const Setting* FindSetting(const std::string& key);

// The elements of all versions by which settings depend on each other.
const std::vector<Element>& AllKnownElements();

// The key of an element.
std::string KeyOf(const Element& element);

// The name of a node as the catalogue has it, with the number of a rule; the node itself when the
// catalogue does not know it.
std::string NameOfNode(const std::string& node);

// Whether what a node tells comes and goes by itself.
bool IsPassing(const std::string& node);

}  // namespace kioctl

#endif  // CTL_CATALOGUE_H
