// Rows of the version and of what the device can do.
#include "fields/row.h"

namespace kio::test {
namespace {

// Quirk "missing-version-is-11".
FieldRow SpecVersionMajor() {
  return {
      .name = "specVersion_major",
      .section = SectionId::kVersion,
      .field = "major",
      .record = [](const RssXmlData& r) { return Shown(r.specMajor); },
      .node = "/zentrolinks/specversion/major",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {kAbsent, "1"}, {"-2", "1"}, {"3", "3"}},
      .dump = " +- Ver=1.1",
      .shown = {{
          .name = "rss_Ver_major",
          .path = "/specversion/major",
          .text = "1",
      }},
  };
}

FieldRow SpecVersionMinor() {
  return {
      .name = "specVersion_minor",
      .section = SectionId::kVersion,
      .field = "minor",
      .record = [](const RssXmlData& r) { return Shown(r.specMinor); },
      .node = "/zentrolinks/specversion/minor",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {kAbsent, "1"}, {"-2", "1"}, {"3", "3"}},
      .dump = " +- Ver=1.1",
      .shown = {{
          .name = "rss_Ver_minor",
          .path = "/specversion/minor",
          .text = "7",
      }},
  };
}

FieldRow DeviceApcloning() {
  return {
      .name = "Device_apcloning",
      .section = SectionId::kDevice,
      .field = "/zentrolinks/apcloning",
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.apCloningFeature); },
      .node = "/zentrolinks/apcloning",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"2", "2"}, {"3", "0"}, {"-1", "0"}, {"256", "0"}, {kAbsent, "0"}},
      .dump = "+- apCloningFeature=1",
  };
}

FieldRow DeviceEasyroaming() {
  return {
      .name = "Device_easyroaming",
      .section = SectionId::kDevice,
      .field = "/zentrolinks/easyroaming",
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.easyRoamingFeature); },
      .node = "/zentrolinks/easyroaming",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"1", "1"}, {"0", "0"}, {"2", "0"}, {kAbsent, "0"}},
      .dump = "+- easyRoamingFeature=1",
  };
}

FieldRow DeviceFwupgrade() {
  return {
      .name = "Device_fwupgrade",
      .section = SectionId::kDevice,
      .field = "/zentrolinks/fwupgrade",
      .record = [](const RssXmlData& r) { return Shown(r.fwUpgradeFeature); },
      .node = "/zentrolinks/fwupgrade",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"1", "1"}, {"0", "0"}, {"2", "1"}, {kAbsent, "1"}},
      .dump = "+- fwUpgradeFeature=1",
  };
}

FieldRow DeviceSafetyvyr() {
  return {
      .name = "Device_safetyvyr",
      .section = SectionId::kDevice,
      .field = "/zentrolinks/safetyvyr",
      .record = [](const RssXmlData& r) { return Shown(r.safetyVyrFeature); },
      .node = "/zentrolinks/safetyvyr",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"1", "1"}, {"0", "0"}, {"2", "0"}, {kAbsent, "0"}},
      .dump = "+- safetyVyrFeature=1",
  };
}

}  // namespace

std::vector<FieldRow> VersionRows() {
  return {
      SpecVersionMajor(),
      SpecVersionMinor(),
  };
}

std::vector<FieldRow> FeatureRows() {
  return {
      DeviceApcloning(),
      DeviceEasyroaming(),
      DeviceFwupgrade(),
      DeviceSafetyvyr(),
  };
}

}  // namespace kio::test
