// Checking single fields of the record.
#ifndef KIO_SETTINGS_VERIFY_FIELDS_H
#define KIO_SETTINGS_VERIFY_FIELDS_H

#include "settings/field.h"
#include "settings/record.h"

namespace kio::settings {

// A section of the record that is verified.
struct Checked {
  void* section;
  // The structure that holds the rules of the section's texts.
  void* rules;
  // The section's path, for the message.
  const char* path;
};

// Checks one field. Returns false for a fault, which is then written to the result document. Texts
// are trimmed in place.
bool VerifyField(const Field& field, const Checked& checked);

// Checks those fields of a table that the device's format version has, in their order.
bool VerifyFields(FieldTable table, const Checked& checked);

// The same for one group of the table.
bool VerifyFields(FieldTable table, Group group, const Checked& checked);

// Checks a text by a rule and leaves the result in errno as well.
int CheckRule(const char* text, const char* rule);

}  // namespace kio::settings

#endif
