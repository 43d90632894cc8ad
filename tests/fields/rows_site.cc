// Rows of the upstream network.
#include "fields/row.h"

namespace kio::test {
namespace {

// A survey excludes every other change.
FieldRow ExtenderSiteSurvey() {
  return {
      .name = "ExtenderSite_Survey",
      .section = SectionId::kSite,
      .field = "Survey",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.extenderSite.survey); },
      .node = "/uplink/extendersite/survey",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0", "0"}, {"1", "1"}, {"2", "0"}, {kAbsent, "0"}},
      .documents = {{
                        .scenes = {Scene::kSite, Scene::kSite10},
                        .element = "Device/UpLinkConnection/ExtenderSite/Survey",
                        .missing = "Device/UpLinkConnection/ExtenderSite/Survey",
                        .fault = "Device/Uplink/ExtenderSite/Survey",
                        .faults = {{"2", 3}, {"-1", 3}},
                        .value = "1",
                        .writes = {"/uplink/extendersite/survey=1"},
                    },
                    {
                        .scenes = {Scene::kExtender10},
                        .element = "Device/ExtenderSite/Survey",
                        .missing = "Device/ExtenderSite/Survey",
                        .fault = "Device/Uplink/ExtenderSite/Survey",
                        .faults = {{"2", 3}, {"-1", 3}},
                        .value = "1",
                        .writes = {"/uplink/extendersite/survey=1"},
                    }},
      .dump = "         +- Survey=0",
      .variables = {{
          .name = "rss_Upl_Ets_Survey",
          .path = "/uplink/extendersite/Survey",
          .text = "0",
          .value = "1",
          .stored = [](RssXmlData& r) { r.upLink.extenderSite.survey = 1; },
          .read_back = "1",
          .refused = {{"2", 2}, {"-1", 2}, {"10", 2}},
          .stored_empty = [](RssXmlData& r) { r.upLink.extenderSite.survey = 0; },
          .section = Section::kUplink,
      }},
  };
}

FieldRow ExtenderSiteConnRefSiteBSSID() {
  return {
      .name = "ExtenderSite_ConnRefSiteBSSID",
      .section = SectionId::kSite,
      .field = "ConnRefSiteBSSID",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.extenderSite.connRefSiteBssid); },
      .node = "/uplink/extendersite/connrefsitebssid",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"02:00:00:00:99:01", "02:00:00:00:99:01"},
                {kAbsent, ""},
                {kLong, kLong.substr(0, 17)}},
      .documents = {{
                        .scenes = {Scene::kSite, Scene::kSite10},
                        .element = "Device/UpLinkConnection/ExtenderSite/ConnRefSiteBSSID",
                        .missing = "Device/UpLinkConnection/ExtenderSite/ConnRefSiteBSSID",
                        .fault = "Device/Uplink/ExtenderSite/ConnRefSiteBSSID",
                        .faults = {{"", 3}, {" ", 3}},
                        .value = "02:98",
                        .writes = {"/uplink/extendersite/connrefsitebssid=02:98"},
                        .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
                    },
                    {
                        .scenes = {Scene::kExtender10},
                        .element = "Device/ExtenderSite/ConnRefSiteBSSID",
                        .missing = "Device/ExtenderSite/ConnRefSiteBSSID",
                        .fault = "Device/Uplink/ExtenderSite/ConnRefSiteBSSID",
                        .faults = {{"", 3}, {" ", 3}},
                        .value = "02:98",
                        .writes = {"/uplink/extendersite/connrefsitebssid=02:98"},
                        .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
                    }},
      .dump = "         +- ConnRefSiteBSSID=02:00:00:00:99:01",
      .variables = {{
          .name = "rss_Upl_Ets_ConnRefSiteBSSID",
          .path = "/uplink/extendersite/ConnRefSiteBSSID",
          .text = "02:00:00:00:99:01",
          .value = "any 'text' %s",
          .stored =
              [](RssXmlData& r) { Put(r.upLink.extenderSite.connRefSiteBssid, "any 'text' %s"); },
          .read_back = "any 'text' %s",
          .stored_empty = [](RssXmlData& r) { Put(r.upLink.extenderSite.connRefSiteBssid, ""); },
          .section = Section::kUplink,
      }},
  };
}

FieldRow ExtenderSiteWirelessType() {
  return {
      .name = "ExtenderSite_WirelessType",
      .section = SectionId::kSite,
      .field = "WirelessType",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.extenderSite.wirelessType); },
      .code = [](const RssXmlData& r) { return r.upLink.extenderSite.wirelessTypeCode; },
      .node = "/uplink/extendersite/wirelesstype",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"2.4", "2.4", 0},
                {"5", "5", 1},
                {"6", "6", -1},
                {kAbsent, "", -1},
                {kLong, kLong.substr(0, 31), -1}},
      .documents = {{
                        .scenes = {Scene::kSite, Scene::kSite10},
                        .element = "Device/UpLinkConnection/ExtenderSite/WirelessType",
                        .missing = "Device/UpLinkConnection/ExtenderSite/WirelessType",
                        .fault = "Device/Uplink/ExtenderSite/WirelessType",
                        .faults = {{"6", 3}, {"", 3}},
                        .value = "5",
                        .code = 1,
                        .writes = {"/uplink/extendersite/wirelesstype=5"},
                        .too_long = TooLong{std::string(31, ' ') + "5", "", 3},
                    },
                    {
                        .scenes = {Scene::kExtender10},
                        .element = "Device/ExtenderSite/WirelessType",
                        .missing = "Device/ExtenderSite/WirelessType",
                        .fault = "Device/Uplink/ExtenderSite/WirelessType",
                        .faults = {{"6", 3}, {"", 3}},
                        .value = "5",
                        .code = 1,
                        .writes = {"/uplink/extendersite/wirelesstype=5"},
                        .too_long = TooLong{std::string(31, ' ') + "5", "", 3},
                    }},
      .dump = "         +- WirelessType='2.4',0",
      .variables = {{
          .name = "rss_Upl_Ets_WirelessType",
          .path = "/uplink/extendersite/WirelessType",
          .text = "2.4",
          .value = "5",
          .stored =
              [](RssXmlData& r) {
                Put(r.upLink.extenderSite.wirelessType, "5");
                r.upLink.extenderSite.wirelessTypeCode = 1;
              },
          .read_back = "5",
          .refused = {{"", 10}, {"2", 10}, {"5.0", 10}, {"6", 10}},
          .empty_code = 10,
          .is_keyword = true,
          .section = Section::kUplink,
      }},
  };
}

// Quirk "site-texts-of-17": of a document; the store may hold more.
FieldRow ExtenderSiteWirelessName() {
  return {
      .name = "ExtenderSite_WirelessName",
      .section = SectionId::kSite,
      .field = "WirelessName",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.extenderSite.wirelessName); },
      .node = "/uplink/extendersite/wirelessname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Upstream", "Upstream"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
                        .scenes = {Scene::kSite, Scene::kSite10},
                        .element = "Device/UpLinkConnection/ExtenderSite/WirelessName",
                        .missing = "Device/UpLinkConnection/ExtenderSite/WirelessName",
                        .fault = "Device/Uplink/ExtenderSite/WirelessName",
                        .faults = {{"", 10}, {"a\x7F", 11}},
                        .value = "Other",
                        .writes = {"/uplink/extendersite/wirelessname=Other"},
                        .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
                    },
                    {
                        .scenes = {Scene::kExtender10},
                        .element = "Device/ExtenderSite/WirelessName",
                        .missing = "Device/ExtenderSite/WirelessName",
                        .fault = "Device/Uplink/ExtenderSite/WirelessName",
                        .faults = {{"", 10}, {"a\x7F", 11}},
                        .value = "Other",
                        .writes = {"/uplink/extendersite/wirelessname=Other"},
                        .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
                    }},
      .dump = "         +- WirelessName=Upstream",
      .variables = {{
          .name = "rss_Upl_Ets_WirelessName",
          .path = "/uplink/extendersite/WirelessName",
          .text = "Upstream",
          .value = "any 'text' %s",
          .stored = [](RssXmlData& r) { Put(r.upLink.extenderSite.wirelessName, "any 'text' %s"); },
          .read_back = "any 'text' %s",
          .stored_empty = [](RssXmlData& r) { Put(r.upLink.extenderSite.wirelessName, ""); },
          .section = Section::kUplink,
      }},
  };
}

FieldRow ExtenderSiteEncryptionKey() {
  return {
      .name = "ExtenderSite_EncryptionKey",
      .section = SectionId::kSite,
      .field = "EncryptionKey",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.extenderSite.encryptionKey); },
      .node = "/uplink/extendersite/encryptionkey",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"upstream-key", "upstream-key"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
                        .scenes = {Scene::kSite, Scene::kSite10},
                        .element = "Device/UpLinkConnection/ExtenderSite/EncryptionKey",
                        .missing = "Device/UpLinkConnection/ExtenderSite/EncryptionKey",
                        .fault = "Device/Uplink/ExtenderSite/EncryptionKey",
                        .faults = {{"1234567", 3}, {"12345678\xFF", 11}},
                        .value = "other-key",
                        .writes = {"/uplink/extendersite/encryptionkey=other-key"},
                        .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
                    },
                    {
                        .scenes = {Scene::kExtender10},
                        .element = "Device/ExtenderSite/EncryptionKey",
                        .missing = "Device/ExtenderSite/EncryptionKey",
                        .fault = "Device/Uplink/ExtenderSite/EncryptionKey",
                        .faults = {{"1234567", 3}, {"12345678\xFF", 11}},
                        .value = "other-key",
                        .writes = {"/uplink/extendersite/encryptionkey=other-key"},
                        .too_long = TooLong{kLong, kLong.substr(0, 17), 0},
                    }},
      .dump = "         +- EncryptionKey=upstream-key",
      .variables = {{
          .name = "rss_Upl_Ets_EncryptionKey",
          .path = "/uplink/extendersite/EncryptionKey",
          .text = "upstream-key",
          .value = "any 'text' %s",
          .stored =
              [](RssXmlData& r) { Put(r.upLink.extenderSite.encryptionKey, "any 'text' %s"); },
          .read_back = "any 'text' %s",
          .stored_empty = [](RssXmlData& r) { Put(r.upLink.extenderSite.encryptionKey, ""); },
          .section = Section::kUplink,
      }},
  };
}

}  // namespace

std::vector<FieldRow> SiteRows() {
  return {
      ExtenderSiteSurvey(),       ExtenderSiteConnRefSiteBSSID(), ExtenderSiteWirelessType(),
      ExtenderSiteWirelessName(), ExtenderSiteEncryptionKey(),
  };
}

}  // namespace kio::test
