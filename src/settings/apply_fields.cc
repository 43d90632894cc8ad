#include "settings/apply_fields.h"

namespace kio::settings {

int ApplyFields(FieldTable table, Group group, void* section, platform::StorePath& nodes) {
  int changed = 0;
  for (const Field& field : table) {
    if (field.group == group && field.write == Write::kIfDifferent) {
      changed |= ApplyField(field, section, nodes.Node(field.node));
    }
  }
  return changed;
}

int ApplyFields(SectionId section, Group group) {
  SectionPath nodes(section);
  return ApplyFields(RowOf(section).fields, group, StructureOf({section}), nodes);
}

}  // namespace kio::settings
