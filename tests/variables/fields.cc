#include "variables/fields.h"

#include <ostream>

namespace kio::test {

void SetConfigurable(Section section, int configurable) {
  const int others = configurable == 0 ? 1 : 0;
  RssXmlData& record = rssXmlData;
  record.configurable = others;
  record.upLink.configurable = section == Section::kUplink ? configurable : others;
  record.wlan[0].configurable = section == Section::kWireless24 ? configurable : others;
  record.wlan[1].configurable = section == Section::kWireless5 ? configurable : others;
}

void PrintTo(const StoredField& field, std::ostream* out) { *out << field.name; }

void PrintTo(const ReadOnlyField& field, std::ostream* out) { *out << field.name; }

}  // namespace kio::test
