#include "variables/fields.h"

namespace kio::test {

void SetConfigurable(Section section, int configurable) {
  const int others = configurable == 0 ? 1 : 0;
  RssXmlData& record = rssXmlData;
  record.configurable = others;
  record.upLink.configurable = section == Section::kUplink ? configurable : others;
  record.wlan[0].configurable = section == Section::kWireless24 ? configurable : others;
  record.wlan[1].configurable = section == Section::kWireless5 ? configurable : others;
}

std::vector<StoredField> Joined(std::initializer_list<std::vector<StoredField>> parts) {
  std::vector<StoredField> all;
  for (const std::vector<StoredField>& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace kio::test
