#include "variables/place.h"

#include "settings/record.h"

namespace kio::variables {
namespace {

using platform::TextBuffer;

void AppendSection(TextBuffer& path, const Place& place) {
  const settings::Section& row = settings::RowOf(place.section);
  if (row.located != nullptr) {
    path.Append(row.located);
  } else {
    settings::RowText(row.node, place.radio).AppendTo(path);
  }
  if (row.first_instance > 0) {
    path.AppendNumber(place.index + row.first_instance);
  }
}

TextView LocatedOf(const Variable& variable) {
  if (variable.field == nullptr) {
    return variable.live->located;
  }
  if (!variable.field->located.empty()) {
    return variable.field->located;
  }
  // The nodes of the device's own fields are whole paths.
  return variable.section == SectionId::kDevice ? variable.field->node : TextView();
}

}  // namespace

void AppendPath(TextBuffer& path, const Variable& variable, const Place& place) {
  AppendSection(path, place);
  const TextView located = LocatedOf(variable);
  if (!located.empty()) {
    path.Append(located);
  } else {
    path.Append('/').Append(variable.name);
  }
}

void* HolderOf(const Variable& variable, const Place& place) {
  return variable.in_record ? &rssXmlData : settings::StructureOf(place);
}

}  // namespace kio::variables
