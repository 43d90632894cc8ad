// Rows of the providers.
#include "fields/row.h"

namespace kio::test {
namespace {

FieldRow DSLCountryName() {
  return {
      .name = "DSL_CountryName",
      .section = SectionId::kDsl,
      .field = "CountryName",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.dsl.countryName); },
      .node = "/uplink/dsl/countryname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Norway", "Norway"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kAdsl},
          .element = "Device/UpLinkConnection/DSL/CountryName",
          .missing = "Device/UpLinkConnection/DSL/CountryName",
          .fault = "Device/Uplink/DSL/CountryName",
          .faults = {{"", 3}, {" ", 3}},
          .value = "Finland",
          .writes = {"/uplink/dsl/countryname=Finland"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 0},
      }},
      .dump = "         +- CountryName=Norway",
      .variables = {{
          .name = "rss_Upl_Dsl_CountryName",
          .path = "/uplink/dsl/CountryName",
          .text = "Norway",
          .value = "any 'text' %s",
          .stored = [](RssXmlData& r) { Put(r.upLink.dsl.countryName, "any 'text' %s"); },
          .read_back = "any 'text' %s",
          .stored_empty = [](RssXmlData& r) { Put(r.upLink.dsl.countryName, ""); },
          .section = Section::kUplink,
      }},
  };
}

FieldRow DSLIspName() {
  return {
      .name = "DSL_IspName",
      .section = SectionId::kDsl,
      .field = "IspName",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.dsl.ispName); },
      .node = "/uplink/dsl/ispname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Fjord DSL", "Fjord DSL"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kAdsl},
          .element = "Device/UpLinkConnection/DSL/IspName",
          .missing = "Device/UpLinkConnection/DSL/IspName",
          .fault = "Device/Uplink/DSL/IspName",
          .faults = {{"", 3}, {" ", 3}},
          .value = "Lake",
          .writes = {"/uplink/dsl/ispname=Lake"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 0},
      }},
      .dump = "         +- IspName=Fjord DSL",
      .variables = {{
          .name = "rss_Upl_Dsl_IspName",
          .path = "/uplink/dsl/IspName",
          .text = "Fjord DSL",
          .value = "any 'text' %s",
          .stored = [](RssXmlData& r) { Put(r.upLink.dsl.ispName, "any 'text' %s"); },
          .read_back = "any 'text' %s",
          .stored_empty = [](RssXmlData& r) { Put(r.upLink.dsl.ispName, ""); },
          .section = Section::kUplink,
      }},
  };
}

// The circuit: in format version 1.0 alone, and no snapshot holds it.
FieldRow DSLVPI() {
  return {
      .name = "DSL_VPI",
      .section = SectionId::kDsl,
      .field = "VPI",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.dsl.vpi); },
      .node = "/uplink/dsl/vpi",
      .documents = {{
          .scenes = {Scene::kDsl10},
          .element = "Device/UpLinkConnection/DSL/VPI",
          .missing = "Device/UpLinkConnection/DSL/VPI",
          .fault = "Device/Uplink/DSL/VPI",
          .faults = {{"9", 3}, {"-1", 3}},
          .value = "1",
          .writes = {"/uplink/dsl/vpi=1"},
      }},
      .dump = "         +- VPI/VCI=8/35",
  };
}

FieldRow DSLVCI() {
  return {
      .name = "DSL_VCI",
      .section = SectionId::kDsl,
      .field = "VCI",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.dsl.vci); },
      .node = "/uplink/dsl/vci",
      .documents = {{
          .scenes = {Scene::kDsl10},
          .element = "Device/UpLinkConnection/DSL/VCI",
          .missing = "Device/UpLinkConnection/DSL/VCI",
          .fault = "Device/Uplink/DSL/VCI",
          .faults = {{"31", 3}, {"32768", 3}},
          .value = "40",
          .writes = {"/uplink/dsl/vci=40"},
      }},
      .dump = "         +- VPI/VCI=8/35",
  };
}

// Quirk "encapsulation-fault-borrows-a-name".
FieldRow DSLEncapsulationMode() {
  return {
      .name = "DSL_EncapsulationMode",
      .section = SectionId::kDsl,
      .field = "EncapsulationMode",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.dsl.encapsulationMode); },
      .code = [](const RssXmlData& r) { return r.upLink.dsl.encapModeCode; },
      .node = "/uplink/dsl/encapsulationmode",
      .documents = {{
          .scenes = {Scene::kDsl10},
          .element = "Device/UpLinkConnection/DSL/EncapsulationMode",
          .missing = "Device/UpLinkConnection/DSL/EncapsulationMode",
          .fault = "Device/Uplink/DSL/EncryptionMode",
          .faults = {{"other", 3}, {"", 3}},
          .value = "VcMux",
          .code = 1,
          .writes = {"/uplink/dsl/encapsulationmode=VcMux"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 3},
      }},
      .dump = "         +- EncapMode='LLC',0",
  };
}

// Quirk "uplink-asp": the path of the variable has this spelling.
FieldRow APNCountryName() {
  return {
      .name = "APN_CountryName",
      .section = SectionId::kApn,
      .field = "CountryName",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.apn.countryName); },
      .node = "/uplink/apn/countryname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Sweden", "Sweden"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kApn},
          .element = "Device/UpLinkConnection/APN/CountryName",
          .missing = "Device/UpLinkConnection/APN/CountryName",
          .fault = "Device/Uplink/APN/CountryName",
          .faults = {{"", 3}, {" ", 3}},
          .value = "Estonia",
          .writes = {"/uplink/apn/countryname=Estonia"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 0},
      }},
      .dump = "         +- CountryName=Sweden",
      .variables = {{
          .name = "rss_Upl_Apn_CountryName",
          .path = "/uplink/asp/CountryName",
          .text = "Sweden",
          .value = "any 'text' %s",
          .stored = [](RssXmlData& r) { Put(r.upLink.apn.countryName, "any 'text' %s"); },
          .read_back = "any 'text' %s",
          .stored_empty = [](RssXmlData& r) { Put(r.upLink.apn.countryName, ""); },
          .section = Section::kUplink,
      }},
  };
}

FieldRow APNIspName() {
  return {
      .name = "APN_IspName",
      .section = SectionId::kApn,
      .field = "IspName",
      .record = [](const RssXmlData& r) { return Shown(r.upLink.apn.ispName); },
      .node = "/uplink/apn/ispname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Berg Mobile", "Berg Mobile"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kApn},
          .element = "Device/UpLinkConnection/APN/IspName",
          .missing = "Device/UpLinkConnection/APN/IspName",
          .fault = "Device/Uplink/APN/IspName",
          .faults = {{"", 3}, {" ", 3}},
          .value = "Bog",
          .writes = {"/uplink/apn/ispname=Bog"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 0},
      }},
      .dump = "         +- IspName=Berg Mobile",
      .variables = {{
          .name = "rss_Upl_Apn_IspName",
          .path = "/uplink/asp/IspName",
          .text = "Berg Mobile",
          .value = "any 'text' %s",
          .stored = [](RssXmlData& r) { Put(r.upLink.apn.ispName, "any 'text' %s"); },
          .read_back = "any 'text' %s",
          .stored_empty = [](RssXmlData& r) { Put(r.upLink.apn.ispName, ""); },
          .section = Section::kUplink,
      }},
  };
}

}  // namespace

std::vector<FieldRow> DslRows() {
  return {
      DSLCountryName(), DSLIspName(), DSLVPI(), DSLVCI(), DSLEncapsulationMode(),
  };
}

std::vector<FieldRow> ApnRows() {
  return {
      APNCountryName(),
      APNIspName(),
  };
}

}  // namespace kio::test
