// What the router says of itself before the first case.
#ifndef CTL_CONFORM_FACTS_H
#define CTL_CONFORM_FACTS_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include "conform/value.h"

namespace kioctl::conform {

// How the settings can be brought back.
enum class WayBack {
  kNone,      // not at all: nothing is changed then
  kDevice,    // by a document of the device's own settings, which leaves radios and uplink alone
  kSettings,  // by a document of all settings but the uplink's
  kArchive,   // by the router's own archive
};

struct Facts {
  std::string model;
  std::string name;
  bool asks_for_login = false;
  std::set<std::string> offers;               // such as "PUT /vars/{name}"
  std::string archive;                        // with its secrets; empty without one
  std::string documents;                      // the version of settings documents, such as "1.1"
  Value settings;                             // those of the archive
  std::map<std::string, std::string> values;  // of the variables, with their secrets
  WayBack way_back = WayBack::kNone;
  std::string why_not;            // there is no better way back
  bool leaves_all_as_is = false;  // it answers good documents with 0 and changes nothing
  // The way of this machine to the router when another name would cut it off; empty otherwise.
  std::string dropped_link;
  std::vector<std::string> secrets;

  bool Offers(const std::string& request) const { return offers.count(request) != 0; }
  bool TakesRadios() const { return way_back >= WayBack::kSettings; }
};

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_FACTS_H
