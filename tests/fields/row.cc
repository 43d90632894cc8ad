#include "fields/row.h"

#include <ostream>

namespace kio::test {

void PrintTo(const FieldRow& row, std::ostream* out) { *out << row.name; }

std::vector<FieldRow> AllRows() {
  std::vector<FieldRow> all;
  for (const auto& part :
       {VersionRows(), FeatureRows(), DeviceRows(), DeviceRuleRows(), UplinkRows(), AddressRows(),
        UplinkRuleRows(), DslRows(), ApnRows(), SiteRows(), Radio24Rows(), Network24Rows(),
        Access24Rows(), Rule24Rows(), Radio5Rows(), Network5Rows(), Access5Rows(), Rule5Rows(),
        SafetyRows()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace kio::test
