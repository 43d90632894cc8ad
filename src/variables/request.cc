#include "variables/request.h"

#include "platform/exported_data.h"
#include "settings/record.h"

namespace kio::variables {
namespace {

using platform::TextBuffer;

void AppendSection(TextBuffer& path, const SectionInstance& instance) {
  const settings::Section& row = settings::RowOf(instance.section);
  if (row.variable_path != nullptr) {
    path.Append(row.variable_path);
  } else {
    settings::RowText(row.node, instance.radio).AppendTo(path);
  }
  if (row.first_instance > 0) {
    path.AppendNumber(instance.index + row.first_instance);
  }
}

TextView VariablePathOf(const Variable& variable) {
  if (variable.is_live()) {
    return variable.live().variable_path;
  }
  if (!variable.field().variable_path.empty()) {
    return variable.field().variable_path;
  }
  // The device's fields have whole paths as their nodes.
  return variable.section() == SectionId::kDevice ? variable.field().node : TextView();
}

}  // namespace

void AppendPath(TextBuffer& path, const Variable& variable, const SectionInstance& instance) {
  AppendSection(path, instance);
  const TextView variable_path = VariablePathOf(variable);
  if (!variable_path.empty()) {
    path.Append(variable_path);
  } else {
    path.Append('/').Append(variable.name());
  }
}

void* StructureOfVariable(const Variable& variable, const SectionInstance& instance) {
  return variable.in_record() ? &Record() : settings::StructureOf(instance);
}

}  // namespace kio::variables
