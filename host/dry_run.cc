#include "dry_run.h"

#include <kioapp/xml.h>

#include <cstring>

namespace kiohost {

DryRun::DryRun(Store* store)
    : store_(store), transaction_(store), before_(store->List()), on_lost_key_(XmlErrMsg_LostKey) {
  // Byte for byte, with what lies between the members.
  std::memcpy(record_.data(), &rssXmlData, record_.size());
}

DryRun::~DryRun() {
  std::memcpy(&rssXmlData, record_.data(), record_.size());
  XmlErrMsg_LostKey = on_lost_key_;
}

}  // namespace kiohost
