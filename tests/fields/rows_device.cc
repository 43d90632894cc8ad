// Rows of the device.
#include "fields/row.h"

namespace kio::test {
namespace {

FieldRow DeviceTempdirecory() {
  return {
      .name = "Device_tempdirecory",
      .section = SectionId::kDevice,
      .field = "/zentrolinks/tempdirecory",
      .record = [](const RssXmlData& r) { return Shown(r.tmpPath); },
      .node = "/zentrolinks/tempdirecory",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"/var/tmp", "/var/tmp"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .dump = "+- tmpPath=/var/tmp",
  };
}

FieldRow DeviceScriptdirecory() {
  return {
      .name = "Device_scriptdirecory",
      .section = SectionId::kDevice,
      .field = "/zentrolinks/scriptdirecory",
      .record = [](const RssXmlData& r) { return Shown(r.scriptPath); },
      .node = "/zentrolinks/scriptdirecory",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"/etc/scripts", "/etc/scripts"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .dump = "+- scriptPath=/etc/scripts",
  };
}

FieldRow DeviceConfigurable() {
  return {
      .name = "Device_configurable",
      .section = SectionId::kDevice,
      .field = "/zentrolinks/configurable",
      .record = [](const RssXmlData& r) { return Shown(r.configurable); },
      .node = "/zentrolinks/configurable",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"1", "1"}, {"0", "0"}, {"2", "1"}, {kAbsent, "1"}},
      .dump = " +- Configurable=1",
  };
}

FieldRow DeviceDeviceName() {
  return {
      .name = "Device_DeviceName",
      .section = SectionId::kDevice,
      .field = "DeviceName",
      .record = [](const RssXmlData& r) { return Shown(r.deviceName); },
      .node = "/sys/friendlyname",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Kitchen", "Kitchen"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/DeviceName",
          .missing = "Device/DeviceName",
          .fault = "Device/DeviceName",
          .faults = {{"", 10}, {std::string(33, 'n'), 10}, {"a\x7F", 11}},
          .value = "Hall",
          .writes = {"/sys/friendlyname=Hall"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 10},
      }},
      .dump = " +- DeviceName='Kitchen'",
      .variables = {{
          .name = "rss_DeviceName",
          .path = "/sys/friendlyname",
          .text = "Kitchen",
          .value = "Attic 2",
          .stored = [](RssXmlData& r) { Put(r.deviceName, "Attic 2"); },
          .read_back = "Attic 2",
          .refused =
              {{"", 10}, {"123456789012345678901234567890123", 10}, {"tab\tbed", 11}, {"\x80", 11}},
          .empty_code = 10,
      }},
  };
}

FieldRow DeviceDevicePwd() {
  return {
      .name = "Device_DevicePwd",
      .section = SectionId::kDevice,
      .field = "DevicePwd",
      .record = [](const RssXmlData& r) { return Shown(r.devicePwd); },
      .node = "/sys/user:1/password",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"secret12", "secret12"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/DevicePwd",
          .missing = "Device/DevicePwd",
          .fault = "Device/DevicePwd",
          .faults = {{"abc", 10}, {std::string(33, 'p'), 10}, {"abc\xE9", 11}},
          .value = "other",
          .writes = {"/sys/user:1/password=other"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 10},
      }},
      .dump = " +- DevicePwd='secret12'",
      .variables = {{
          .name = "rss_DevicePwd",
          .path = "/sys/user:1/password",
          .text = "secret12",
          .value = "four",
          .stored = [](RssXmlData& r) { Put(r.devicePwd, "four"); },
          .read_back = "four",
          .refused = {{"abc", 10},
                      {"", 10},
                      {"123456789012345678901234567890123", 10},
                      {"line\nfeed", 11}},
          .empty_code = 10,
      }},
  };
}

// The variable of this name is read live.
FieldRow DeviceDeviceType() {
  return {
      .name = "Device_DeviceType",
      .section = SectionId::kDevice,
      .field = "DeviceType",
      .record = [](const RssXmlData& r) { return Shown(r.deviceType); },
      .node = "/sys/devicetype",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"Router", "Router"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .dump = " +- DeviceType='Router'",
  };
}

FieldRow DeviceRouterEnbl() {
  return {
      .name = "Device_RouterEnbl",
      .section = SectionId::kDevice,
      .field = "RouterEnbl",
      .record = [](const RssXmlData& r) { return Shown(r.routerEnbl); },
      .node = "/sys/routerenbl",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetInt,
      .loads = {{"1", "1"}, {"0", "0"}, {"3", "3"}, {kAbsent, "2"}, {"-3", "2"}},
      .documents = {{
          .scenes = {Scene::kDhcp, Scene::kDhcp10},
          .element = "Device/RouterEnbl",
          .missing = "Device/RouterEnbl",
          .fault = "Device/RouterEnbl",
          .faults = {{"2", 3}, {"100", 3}},
          .value = "0",
          .writes = {"/sys/routerenbl=0"},
      }},
      .dump = " +- RouterEnbl=1",
      .variables = {{
          .name = "rss_RouterEnbl",
          .path = "/sys/RouterEnbl",
          .text = "1",
          .value = "0",
          .stored = [](RssXmlData& r) { r.routerEnbl = 0; },
          .read_back = "0",
          .stored_empty = [](RssXmlData& r) { r.routerEnbl = 0; },
      }},
  };
}

FieldRow DeviceEasyRoaming() {
  return {
      .name = "Device_EasyRoaming",
      .section = SectionId::kDevice,
      .field = "EasyRoaming",
      .versions = Versions::kNot10,
      .record = [](const RssXmlData& r) { return Shown(r.easyRoaming); },
      .node = "/zentrolinks/easyroaminginfo",
      .snapshots = Snapshots::kFull,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"roam-1", "roam-1"}, {kAbsent, ""}, {kLong, kLong.substr(0, 127)}},
      .documents = {{
          .scenes = {Scene::kDhcp},
          .element = "Device/EasyRoaming",
          .without = Without::kRefusedButInCloning,
          .missing = "Device/EasyRoaming",
          .value = "roam-2",
          .writes = {"/zentrolinks/easyroaminginfo=roam-2"},
          .too_long = TooLong{kLong, kLong.substr(0, 127), 0},
      }},
      .dump = " +- EasyRoaming=roam-1",
      .variables = {{
          .name = "rss_EasyRoaming",
          .path = "/zentrolinks/easyroaminginfo",
          .text = "roam-1",
          .value = "-70 0 1 1",
          .stored = [](RssXmlData& r) { Put(r.easyRoaming, "-70 0 1 1"); },
          .read_back = "-70 0 1 1",
          .refused = {{"70 0 1 1", 2},
                      {"0 0 1 1", 2},
                      {"-70 -1 1 1", 2},
                      {"-70 0 0 1", 2},
                      {"-70 0 1 0", 2},
                      {"-70 0 1", 2},
                      {"-70 0", 2},
                      {"-70", 2},
                      {"-70 0 1 x", 2},
                      {"-70,0,1,1", 2},
                      {"x", 2},
                      {" ", 2},
                      {"", 2}},
          .empty_code = 2,
      }},
  };
}

// No node holds it.
FieldRow DeviceExtenderEnbl() {
  return {
      .name = "Device_ExtenderEnbl",
      .section = SectionId::kDevice,
      .field = "ExtenderEnbl",
      .versions = Versions::kOnly10,
      .record = [](const RssXmlData& r) { return Shown(r.extenderEnbl); },
      .documents = {{
          .scenes = {Scene::kDhcp10},
          .element = "Device/ExtenderEnbl",
          .missing = "Device/ExtenderEnbl",
          .value = "2",
      }},
      .dump = " +- ExtenderEnbl=0",
  };
}

FieldRow DeviceDeviceNameValidate() {
  return {
      .name = "Device_DeviceName_Validate",
      .section = SectionId::kDevice,
      .field = "DeviceName_Validate",
      .record = [](const RssXmlData& r) { return Shown(r.friendlyNameValidate); },
      .node = "/sys/friendlyname_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,32,1", "0,32,1"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_DeviceName_Validate",
          .path = "/sys/friendlyname_validate",
          .text = "0,32,1",
      }},
  };
}

FieldRow DeviceDevicePwdValidate() {
  return {
      .name = "Device_DevicePwd_Validate",
      .section = SectionId::kDevice,
      .field = "DevicePwd_Validate",
      .record = [](const RssXmlData& r) { return Shown(r.passwordValidate); },
      .node = "/sys/user:1/password_validate",
      .snapshots = Snapshots::kEvery,
      .read_by = StoreCall::Kind::kGetText,
      .loads = {{"0,32,4", "0,32,4"},
                {kAbsent, ""},
                {"0,9,1,0,0,&lt;", "0,9,1,0,0,<"},
                {kLong, kLong.substr(0, 127)}},
      .dump = kNotDumped,
      .shown = {{
          .name = "rss_DevicePwd_Validate",
          .path = "/sys/user:1/password_validate",
          .text = "0,32,4",
      }},
  };
}

}  // namespace

std::vector<FieldRow> DeviceRows() {
  return {
      DeviceTempdirecory(), DeviceScriptdirecory(), DeviceConfigurable(),
      DeviceDeviceName(),   DeviceDevicePwd(),      DeviceDeviceType(),
      DeviceRouterEnbl(),   DeviceEasyRoaming(),    DeviceExtenderEnbl(),
  };
}

std::vector<FieldRow> DeviceRuleRows() {
  return {
      DeviceDeviceNameValidate(),
      DeviceDevicePwdValidate(),
  };
}

}  // namespace kio::test
