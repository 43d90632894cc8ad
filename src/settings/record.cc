#include "settings/record.h"

#include <cstddef>

#include "kioapp/xml.h"
#include "settings/field_tables.h"
#include "settings/find_element.h"

RssXmlData rssXmlData = {};

namespace kio::settings {

// A parsed version can stand for the first members of the record.
static_assert(offsetof(RssXmlData, specMajor) == offsetof(RssSpecVersion, major) &&
              offsetof(RssXmlData, specMinor) == offsetof(RssSpecVersion, minor) &&
              offsetof(RssXmlData, specName) == offsetof(RssSpecVersion, path) &&
              offsetof(RssXmlData, specVer) == offsetof(RssSpecVersion, combined));

RadioPath::RadioPath(int radio, const char* rest)
    : StorePath("/lan/wireless", RadioWord(radio), ":1", rest) {}

const char* RadioWord(int radio) { return WirelessTypeArray[radio]; }

void SetUplinkPaths() {
  RssUpLink& uplink = rssXmlData.upLink;
  JoinPath(uplink.dsl.path, uplink.path, "DSL");
  JoinPath(uplink.apn.path, uplink.path, "APN");
  JoinPath(uplink.extenderSite.path, uplink.path, "ExtenderSite");
}

}  // namespace kio::settings
