#include "settings/record.h"

#include <cstddef>

#include "platform/exported_data.h"
#include "settings/xml/element_path.h"

namespace kio::settings {

// A parsed version can stand for the first members of the record.
static_assert(offsetof(RssXmlData, specMajor) == offsetof(RssSpecVersion, major) &&
              offsetof(RssXmlData, specMinor) == offsetof(RssSpecVersion, minor) &&
              offsetof(RssXmlData, specName) == offsetof(RssSpecVersion, path) &&
              offsetof(RssXmlData, specVer) == offsetof(RssSpecVersion, combined));

SectionId HardwareSection() {
  switch (Record().upLink.hardwareTypeCode) {
    case kHardwareAdsl:
    case kHardwareVdsl:
    case kHardwareDsl:
      return SectionId::kDsl;
    case kHardwareApn:
      return SectionId::kApn;
    case kHardwareWireless:
      return SectionId::kSite;
    default:
      return SectionId::kCount;
  }
}

Group HardwareGroupRead() {
  if (!IsVersion10()) {
    return Group::kProvider;
  }
  return Record().upLink.hardwareTypeCode == kHardwareDsl ? Group::kCircuit : Group::kNone;
}

Group HardwareGroupUsed() {
  if (Record().upLink.hardwareTypeCode != kHardwareDsl) {
    return Group::kProvider;
  }
  return IsVersion10() ? Group::kCircuit : Group::kNone;
}

Group HardwareGroupDumped() {
  return IsVersion10() && HardwareSection() == SectionId::kDsl ? Group::kCircuit : Group::kProvider;
}

Group ConnectionGroup() {
  switch (Record().upLink.connTypeCode) {
    case kConnPppoe:
    case kConnPppoa:
      return Group::kLogin;
    case kConnStatic:
      return Group::kAddress;
    default:
      return Group::kNone;
  }
}

void SetUplinkPaths() {
  RssUpLink& uplink = Record().upLink;
  JoinPath(uplink.dsl.path, uplink.path, RowOf(SectionId::kDsl).element);
  JoinPath(uplink.apn.path, uplink.path, RowOf(SectionId::kApn).element);
  JoinPath(uplink.extenderSite.path, uplink.path, RowOf(SectionId::kSite).element);
}

}  // namespace kio::settings
