// Writing fields of the record into the store where they differ.
#ifndef KIO_SETTINGS_APPLY_FIELDS_H
#define KIO_SETTINGS_APPLY_FIELDS_H

#include "kioapp/xml.h"
#include "platform/store.h"
#include "settings/sections.h"

namespace kio::settings {

// Writes one field to `path` if the node differs. Returns 1 if it did, else 0.
inline int ApplyField(const Field& field, void* section, const char* path) {
  return field.member.type == Member::Type::kText
             ? StrCmpWithXStr(TextOf(section, field.member), path, 0)
             : IntCmpWithXStr(IntOf(section, field.member), path, 0);
}

// Writes the fields of a group that are written where they differ, in their order. Returns 1 if any
// node differed, else 0.
int ApplyFields(FieldTable table, Group group, void* section, platform::StorePath& nodes);

// The same for the fields of a section.
int ApplyFields(SectionId section, Group group);

// Sets a switch to `value`, 0 or 1, unless the stored value is one that locks it: 2 to
// `highest_lock`. Sets `changed` to 1 if the node was written. Returns false if the switch is
// locked or the value too large; the store is then as before.
template <typename Flag>
bool ApplySwitch(int value, const char* path, int highest_lock, Flag& changed) {
  const int stored = platform::ReadStoreInt(path);
  if (stored == value) {
    return true;
  }
  if (stored >= 2 && stored <= highest_lock) {
    return false;
  }
  int too_large = 0;
  if (IntMaxCmpWithXStr(value, path, 0, 1, &too_large) != 0) {
    changed = 1;
  }
  return too_large == 0;
}

}  // namespace kio::settings

#endif
