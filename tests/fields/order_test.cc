// The fields one after another: the reads of a snapshot and the lines of the dump.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "fields/row.h"
#include "kioapp/kioapp.h"
#include "support/exchange.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

using Kind = StoreCall::Kind;
using Calls = std::vector<std::pair<Kind, std::string>>;
using Lines = std::vector<std::string>;
using Rows = std::vector<FieldRow>;

template <typename Part>
Part Joined(std::initializer_list<Part> parts) {
  Part all;
  for (const Part& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

class ReadOrderTest : public SettingsTest {
 protected:
  // Takes a snapshot; tells the reads.
  static Calls Restore(int full) {
    StoreSampleDevice();
    Host().Set("/lan/wireless2.4:1/configurable/acrule#", 2);
    restore_XmlRssStatus(full);
    Calls reads;
    for (const StoreCall& call : Host().calls()) {
      reads.emplace_back(call.kind, call.path);
    }
    return reads;
  }

  // The reads of those fields that such a snapshot adds.
  static Calls Reads(const Rows& rows, Snapshots snapshots) {
    Calls reads;
    for (const FieldRow& row : rows) {
      if (!row.loads.empty() && row.snapshots == snapshots) {
        reads.emplace_back(row.read_by, row.node);
      }
    }
    return reads;
  }

  static Calls Every(const Rows& rows) { return Reads(rows, Snapshots::kEvery); }
  static Calls Full(const Rows& rows) { return Reads(rows, Snapshots::kFull); }

  // Whether the radio exists, and whether it can be changed.
  static Calls State(const std::string& radio) {
    return {{Kind::kGetInt, radio + "/wlenbl"}, {Kind::kGetText, radio + "/configurable"}};
  }

  const Rows radio24_ = Joined({Radio24Rows(), Network24Rows()});
  const Rows radio5_ = Joined({Radio5Rows(), Network5Rows()});
  const Rows uplink_ = Joined({UplinkRows(), AddressRows()});
};

TEST_F(ReadOrderTest, OfASnapshot) {
  EXPECT_EQ(Restore(0),
            Joined({Every(VersionRows()), Every(FeatureRows()), State("/lan/wireless2.4:1"),
                    Every(radio24_), State("/lan/wireless5:1"), Every(radio5_), Every(DeviceRows()),
                    Every(DeviceRuleRows()), Every(uplink_), Every(UplinkRuleRows())}));
}

TEST_F(ReadOrderTest, OfAFullSnapshot) {
  const Calls count24 = {{Kind::kGetInt, "/lan/wireless2.4:1/configurable/acrule#"}};
  const Calls rule2 = {{Kind::kGetInt, "/lan/wireless2.4:1/accesscontrol/acrule:2/active"},
                       {Kind::kGetText, "/lan/wireless2.4:1/accesscontrol/acrule:2/mac"}};
  const Calls count5 = {{Kind::kGetInt, "/lan/wireless5:1/configurable/acrule#"}};
  EXPECT_EQ(Restore(1),
            Joined({Every(VersionRows()), Every(FeatureRows()),
                    Joined({State("/lan/wireless2.4:1"), Every(radio24_), Full(radio24_),
                            Full(Access24Rows()), count24, Full(Rule24Rows()), rule2}),
                    Joined({State("/lan/wireless5:1"), Every(radio5_), Full(radio5_),
                            Full(Access5Rows()), count5}),
                    Every(DeviceRows()), Full(DeviceRows()), Every(DeviceRuleRows()),
                    Every(uplink_), Every(UplinkRuleRows()), Full(uplink_), Full(DslRows()),
                    Full(ApnRows()), Full(SiteRows()), Full(SafetyRows())}));
}

class DumpOrderTest : public SettingsTest {
 protected:
  void SetUp() override {
    SettingsTest::SetUp();
    FillSampleRecord();
  }

  static Lines Dump() {
    log_file::Start(6);
    dump_RssXmlData();
    return log_file::Lines();
  }

  // The lines of those fields that documents of a version hold; two fields may share one.
  static Lines Of(const Rows& rows, Versions other_version = Versions::kOnly10) {
    Lines lines;
    for (const FieldRow& row : rows) {
      const std::string line = row.dump.value_or("(the row does not say)");
      // The address of a radio is shown in version 1.0, too.
      const bool is_shown = row.versions != other_version || row.field == "WirelessBSSID";
      if (is_shown && line != kNotDumped && (lines.empty() || lines.back() != line)) {
        lines.push_back(line);
      }
    }
    return lines;
  }

  // Device rows behind those that are shown elsewhere: directories and "Configurable".
  static Rows ShownDeviceRows() {
    Rows rows = DeviceRows();
    rows.erase(rows.begin(), rows.begin() + 3);
    return rows;
  }

  static Lines Uplink() {
    return Joined({Lines{" +- Device/Uplink"}, Of(Joined({UplinkRows(), AddressRows()})),
                   Lines{"     +- restart='0'"}});
  }

  static Lines Radio(const std::string& name, const Rows& switches, const Rows& network,
                     Versions other_version = Versions::kOnly10) {
    return Joined({Lines{" +- Device/" + name, "     +- Configurable=1"},
                   Of(Joined({switches, network}), other_version)});
  }

  static Lines AccessControl24() {
    const Lines rules = Of(Rule24Rows());
    const std::string path = "Device/Wireless2.4/AccessControl";
    return Joined({Lines{"     +- restart=0", "     +- " + path}, Of(Access24Rows()),
                   Lines{"         +- " + path + "/AcRule:1", rules.at(0),
                         "         +- " + path + "/AcRule:2", rules.at(1)}});
  }

  static Lines AccessControl5() {
    const std::string path = "Device/Wireless5/AccessControl";
    return Joined({Lines{"     +- restart=0", "     +- " + path}, Of(Access5Rows()),
                   Lines{"         +- " + path + "/AcRule:1"}, Of(Rule5Rows())});
  }

  static Lines Radios() {
    return Joined({Radio("Wireless2.4", Radio24Rows(), Network24Rows()), AccessControl24(),
                   Radio("Wireless5", Radio5Rows(), Network5Rows()), AccessControl5()});
  }

  static Lines Safety() {
    return Joined({Lines{" +- Device/SafetyVyr"}, Of(SafetyRows()), Lines{"     +- restart=0"}});
  }

  static Lines Head(const std::string& version) {
    return {"----RSSXML_BGN----", "specVersion", " +- Ver=" + version, "Device",
            " +- Configurable=1"};
  }

  static Lines Flags(const std::string& cloning = "0") {
    return {"+- apCloningOnly=" + cloning, "+- apCloningFeature=1",
            "+- fwUpgradeFeature=1",       "+- easyRoamingFeature=1",
            "+- safetyVyrFeature=1",       "+- wlan24Feature=1",
            "+- wlan5Feature=1",           "+- tmpPath=/var/tmp",
            "+- scriptPath=/etc/scripts",  "+- saveflag=0",
            "----RSSXML_END----"};
  }
};

TEST_F(DumpOrderTest, OfTheWholeRecord) {
  EXPECT_EQ(Dump(), Joined({Head("1.1"), Of(ShownDeviceRows()), Lines{" +- wlanSurveyRestart=0"},
                            Uplink(), Radios(), Safety(), Flags()}));
}

TEST_F(DumpOrderTest, OfVersion10) {
  rssXmlData.specMinor = 0;
  rssXmlData.specVer = 100;
  rssXmlData.extenderEnbl = 2;
  rssXmlData.wlan[0].configurable = 0;
  Lines device = Of(ShownDeviceRows(), Versions::kNot10);
  std::replace(device.begin(), device.end(), std::string(" +- ExtenderEnbl=0"),
               std::string(" +- ExtenderEnbl=2"));
  Lines radio24 = Radio("Wireless2.4", Radio24Rows(), Network24Rows(), Versions::kNot10);
  radio24[1] = "     +- Configurable=0";
  EXPECT_EQ(Dump(),
            Joined({Head("1.0"), device, Lines{" +- wlanSurveyRestart=0"}, Uplink(), radio24,
                    Radio("Wireless5", Radio5Rows(), Network5Rows(), Versions::kNot10), Safety(),
                    Flags()}));
}

TEST_F(DumpOrderTest, OfCloningShowsNoDeviceAndNoUplink) {
  rssXmlData.apCloningOnly = 1;
  EXPECT_EQ(Dump(),
            Joined({Head("1.1"), Lines{" +- EasyRoaming=roam-1"}, Radios(), Safety(), Flags("1")}));
}

}  // namespace
}  // namespace kio::test
