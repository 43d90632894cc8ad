#include "settings/parse_fields.h"

#include "kioapp/text.h"
#include "kioapp/xml.h"
#include "platform/log.h"
#include "settings/xml_values.h"

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

}  // namespace

bool ParseField(const Field& field, const Element& element, void* section) {
  return field.member.type == Member::Type::kText ? ParseText(field, element, section)
                                                  : ParseInteger(field, element, section);
}

bool ParseField(const Field& field, BlockReader& block, void* section) {
  return ParseField(field, block.Find(field.element), section);
}

bool ParseRequiredField(const Field& field, BlockReader& block, const char* path, void* section) {
  if (!ParseField(field, block, section)) {
    ReportLostKey(path, field.element);
    return false;
  }
  return true;
}

void LogSection(const char* parser, const char* parent_path) {
  platform::LogName(parser);
  KIO_LOG(platform::kLogDetail, "%s\n", parent_path != nullptr ? parent_path : "");
}

}  // namespace kio::settings
