#include "settings/parse_fields.h"

#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/exported_data.h"
#include "platform/log.h"
#include "settings/xml/required.h"
#include "settings/xml/values.h"

namespace kio::settings {
namespace {

bool ParseInteger(const Field& field, const Element& element, void* section) {
  int& value = IntOf(section, field.member);
  if (!ReadInt(element, value)) {
    return false;
  }
  if (field.logged) {
    KIO_LOG(platform::kLogDetail, "Rss %s=%d\n", field.element.data(), value);
  }
  return true;
}

bool ParseText(const Field& field, const Element& element, void* section) {
  char* const text = TextOf(section, field.member);
  const std::size_t size =
      field.document_limit != 0 ? field.document_limit + std::size_t{1} : field.member.size;
  if (!ReadText(element, text, size)) {
    return false;
  }
  if (field.has_words()) {
    int& code = IntOf(section, field.code);
    code = SearchKeyArray(trim(text), field.words);
    if (field.logged) {
      KIO_LOG(platform::kLogDetail, "Rss %s='%s' -> %d\n", field.element.data(), text, code);
    }
  }
  return true;
}

bool IsRequired(const Field& field) {
  return field.optional == Optional::kNever || Record().apCloningOnly == 0;
}

}  // namespace

bool ParseField(const Field& field, const Element& element, void* section) {
  return field.member.type == Member::Type::kText ? ParseText(field, element, section)
                                                  : ParseInteger(field, element, section);
}

bool ParseFields(FieldTable table, Group group, BlockReader& block, const char* path,
                 void* section) {
  for (const Field& field : table) {
    if (field.group != group || !IsIn(field.versions, IsVersion10())) {
      continue;
    }
    const Element element = block.Find(field.element);
    if (!element.is_complete() && field.optional == Optional::kAlways) {
      continue;
    }
    if (!ParseField(field, element, section) && IsRequired(field)) {
      ReportLostKey(path, field.element);
      return false;
    }
  }
  return true;
}

// Quirk "configurable-zero-leaves-out": the section is neither verified nor written.
bool IsNotConfigurable(BlockReader& block) {
  int configurable = 1;
  return ReadInt(block.Find("Configurable"), configurable) && configurable == 0;
}

void LogSection(SectionId section, const char* parent_path) {
  KIO_LOG_NAMED(RowOf(section).parser, "%s\n", parent_path != nullptr ? parent_path : "");
}

}  // namespace kio::settings
