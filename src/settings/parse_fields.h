// Reading fields of a settings document into the record.
#ifndef KIO_SETTINGS_PARSE_FIELDS_H
#define KIO_SETTINGS_PARSE_FIELDS_H

#include <cstddef>

#include "settings/field.h"
#include "settings/record.h"
#include "settings/xml/find_element.h"

namespace kio::settings {

// Reads one field from its element. Returns false when the element is incomplete.
bool ParseField(const Field& field, const Element& element, void* section);

// Reads those fields of a group that documents of the device's format version hold. Stops at the
// first required one that is missing, which is reported with the block's path.
// Quirk "failure-keeps-fields": the fields before it keep what was read.
bool ParseFields(FieldTable table, Group group, BlockReader& block, const char* path,
                 void* section);

// Whether an optional "Configurable" element is there and says 0.
bool IsNotConfigurable(BlockReader& block);

// Logs that the parser of a section was entered.
void LogSection(SectionId section, const char* parent_path);

}  // namespace kio::settings

#endif
