// Reading fields of a settings document into the record.
#ifndef KIO_SETTINGS_PARSE_FIELDS_H
#define KIO_SETTINGS_PARSE_FIELDS_H

#include <cstddef>

#include "settings/field.h"
#include "settings/find_element.h"
#include "settings/record.h"

namespace kio::settings {

// Reads one field from its element. Returns false when the element is incomplete.
bool ParseField(const Field& field, const Element& element, void* section);

// Reads one field from its element in `block`. Returns false when there is none.
bool ParseField(const Field& field, BlockReader& block, void* section);

// The same for a required field: a missing element is reported with the block's path.
bool ParseRequiredField(const Field& field, BlockReader& block, const char* path, void* section);

// Reads the required fields of a group that the device's format version has. Stops at the first
// missing one.
// Quirk "failure-keeps-fields": those before it keep what was read.
template <std::size_t N>
bool ParseFields(const Field (&table)[N], Group group, BlockReader& block, const char* path,
                 void* section) {
  for (const Field& field : table) {
    if (field.group == group && IsIn(field.versions, IsVersion10()) &&
        !ParseRequiredField(field, block, path, section)) {
      return false;
    }
  }
  return true;
}

// Notes that a section's parser was entered.
void LogSection(const char* parser, const char* parent_path);

// The sections. Each returns false for a missing element, which is then reported.
bool ParseUplink(const char* parent_path, const Block& device);
bool ParseProvider(const char* parent_path, const Block& block, RssIsp& isp,
                   platform::TextView key);
bool ParseSite(const char* parent_path, const Block& block, RssExtenderSite& site);
bool ParseRadio(const char* parent_path, const Block& device, int radio);

}  // namespace kio::settings

#endif
