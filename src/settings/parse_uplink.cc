#include "settings/parse_uplink.h"

#include "kioapp/settings.h"
#include "platform/exported_data.h"
#include "settings/parse_fields.h"
#include "settings/xml/required.h"

namespace kio::settings {
namespace {

bool ParseHardwareSection(const Block& block, const char* path, RssUpLink& uplink) {
  const SectionId section = HardwareSection();
  if (section == SectionId::kCount) {
    return true;
  }
  if (section == SectionId::kSite) {
    return ParseSite(path, block, uplink.extenderSite);
  }
  return ParseProvider(path, block, *static_cast<RssIsp*>(StructureOf({section})),
                       RowOf(section).element);
}

}  // namespace

bool ParseUplink(const char* parent_path, const Block& device) {
  LogSection(SectionId::kUplink, parent_path);
  RssUpLink& uplink = Record().upLink;
  char path[128];
  const Block block =
      FindRequiredBlock(parent_path, device, RowOf(SectionId::kUplink).element, path);
  if (block.text == nullptr) {
    return false;
  }
  BlockReader reader(block);
  if (IsNotConfigurable(reader)) {
    uplink.configurable = 0;
    return true;
  }
  return ParseFields(kUplinkFields, Group::kBasic, reader, path, &uplink) &&
         ParseFields(kUplinkFields, ConnectionGroup(), reader, path, &uplink) &&
         ParseHardwareSection(block, path, uplink);
}

bool ParseProvider(const char* parent_path, const Block& block, RssIsp& isp,
                   platform::TextView key) {
  LogSection(SectionId::kDsl, parent_path);
  const Block content = FindRequiredBlock(parent_path, block, key, isp.path);
  if (content.text == nullptr) {
    return false;
  }
  BlockReader provider(content);
  // The table serves mobile providers as well: their rows are the first ones of it.
  return ParseFields(kDslFields, HardwareGroupRead(), provider, isp.path, &isp);
}

bool ParseSite(const char* parent_path, const Block& block, RssExtenderSite& site) {
  LogSection(SectionId::kSite, parent_path);
  const Block content =
      FindRequiredBlock(parent_path, block, RowOf(SectionId::kSite).element, site.path);
  BlockReader reader(content);
  if (content.text == nullptr ||
      !ParseFields(kSiteFields, Group::kBasic, reader, site.path, &site)) {
    return false;
  }
  return site.survey != 0 || ParseFields(kSiteFields, Group::kDetail, reader, site.path, &site);
}

}  // namespace kio::settings

int do_RssISP_Parser(const char* parentPath, char* block, int len, RssIsp* isp, const char* key) {
  return static_cast<int>(
      isp != nullptr &&
      kio::settings::ParseProvider(parentPath, {block, len}, *isp, kio::platform::TextOf(key)));
}

int do_RssExtender_Parser(const char* parentPath, char* block, int len, RssExtenderSite* site) {
  return static_cast<int>(site != nullptr &&
                          kio::settings::ParseSite(parentPath, {block, len}, *site));
}
