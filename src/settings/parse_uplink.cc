// Reading the uplink of a settings document.

#include "kioapp/settings.h"
#include "settings/field_tables.h"
#include "settings/parse_fields.h"
#include "settings/xml_values.h"

namespace kio::settings {
namespace {

bool ParseConnection(BlockReader& block, const char* path, RssUpLink& uplink) {
  switch (uplink.connTypeCode) {
    case kConnPppoe:
    case kConnPppoa:
      return ParseFields(kUplinkFields, Group::kLogin, block, path, &uplink);
    case kConnStatic:
      return ParseFields(kUplinkFields, Group::kAddress, block, path, &uplink);
    default:
      return true;
  }
}

bool ParseHardwareSection(const Block& block, const char* path, RssUpLink& uplink) {
  switch (uplink.hardwareTypeCode) {
    case kHardwareAdsl:
    case kHardwareVdsl:
    case kHardwareDsl:
      return ParseProvider(path, block, uplink.dsl, "DSL");
    case kHardwareApn:
      return ParseProvider(path, block, uplink.apn, "APN");
    case kHardwareWireless:
      return ParseSite(path, block, uplink.extenderSite);
    default:
      return true;
  }
}

}  // namespace

bool ParseUplink(const char* parent_path, const Block& device) {
  LogSection("do_RssUpLink_Parser", parent_path);
  RssUpLink& uplink = rssXmlData.upLink;
  char path[128];
  const Block block = FindRequiredBlock(parent_path, device, "UpLinkConnection", path);
  if (block.text == nullptr) {
    return false;
  }
  BlockReader reader(block);
  if (IsLeftAlone(reader)) {
    uplink.configurable = 0;
    return true;
  }
  return ParseFields(kUplinkFields, Group::kBasic, reader, path, &uplink) &&
         ParseConnection(reader, path, uplink) && ParseHardwareSection(block, path, uplink);
}

bool ParseProvider(const char* parent_path, const Block& block, RssIsp& isp,
                   platform::TextView key) {
  LogSection("do_RssISP_Parser", parent_path);
  const Block content = FindRequiredBlock(parent_path, block, key, isp.path);
  if (content.text == nullptr) {
    return false;
  }
  BlockReader provider(content);
  if (!IsVersion10()) {
    return ParseFields(kIspFields, Group::kProvider, provider, isp.path, &isp);
  }
  return rssXmlData.upLink.hardwareTypeCode != kHardwareDsl ||
         ParseFields(kCircuitFields, Group::kCircuit, provider, isp.path, &isp);
}

bool ParseSite(const char* parent_path, const Block& block, RssExtenderSite& site) {
  LogSection("do_RssExtender_Parser", parent_path);
  const Block content = FindRequiredBlock(parent_path, block, "ExtenderSite", site.path);
  BlockReader reader(content);
  if (content.text == nullptr ||
      !ParseFields(kSiteFields, Group::kBasic, reader, site.path, &site)) {
    return false;
  }
  return site.survey != 0 || ParseFields(kSiteFields, Group::kDetail, reader, site.path, &site);
}

}  // namespace kio::settings

int do_RssISP_Parser(const char* parentPath, char* block, int len, RssIsp* isp, const char* key) {
  return static_cast<int>(kio::settings::ParseProvider(parentPath, {block, len}, *isp, key));
}

int do_RssExtender_Parser(const char* parentPath, char* block, int len, RssExtenderSite* site) {
  return static_cast<int>(kio::settings::ParseSite(parentPath, {block, len}, *site));
}
