// Variables one by one and in batches.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <utility>

#include "buffers.h"
#include "device.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "observe.h"
#include "scenario.h"
#include "texts.h"
#include "variable_names.h"

namespace kio::differential {
namespace {

std::string Batch(Random& random, char separator);

std::string ValueOf(Random& random, const NamedMaker& variable) {
  if (variable.make == nullptr) {
    return Batch(random, '&');
  }
  if (random.OneIn(8)) {
    return random.OneIn(2) ? Odd(random) : Number(random);
  }
  return variable.make(random);
}

// How a call names the variable: by its name, by an odd name, or by its path.
std::string CalledName(Random& random, const std::string& name) {
  if (random.OneIn(6)) {
    return OddName(random, name);
  }
  if (random.OneIn(5)) {
    const char* const path = cvtRss_XmlPathVsVarName(name.c_str(), 1);
    return path != nullptr ? path : name;
  }
  return name;
}

// A value buffer holds at least KIOAPP_VAR_SIZE bytes.
Buffer ValueBuffer(std::string_view value) {
  Buffer buffer(std::max<std::size_t>(KIOAPP_VAR_SIZE, value.size() + 1));
  value.copy(buffer.get(), value.size());
  buffer.get()[value.size()] = '\0';
  return buffer;
}

void CallVariable(Random& random) {
  constexpr int kModes[] = {0x001, 0x001, 0x101, 0x101, 0x200, 0x200, 0x200, 0x400, 0x400,
                            0x201, 0x600, 0x401, 0x100, 0x300, 0x701, 0,     2,     -1};
  const NamedMaker variable = PickVariable(random);
  const Buffer name(CalledName(random, variable.name));
  const Buffer value = ValueBuffer(ValueOf(random, variable));
  Note("variable", {name.text(), value.get()});
  switch (random.Below(9)) {
    case 0:
      Answer("getRssVar", {getRssVar(name.get())});
      break;
    case 1: {
      const int code = get_RssVar(name.get(), value.get(), random.Below(3));
      Answer("get_RssVar", {code, value.bytes()});
      break;
    }
    case 2: {
      const unsigned code = set_RssVar(name.get(), value.get());
      Answer("set_RssVar", {code, value.bytes()});
      break;
    }
    case 3: {
      const int code = validate_RssVar(name.get(), value.get());
      Answer("validate_RssVar", {code, value.bytes()});
      break;
    }
    default: {
      const unsigned code = setget_RssVar(name.get(), value.get(), random.Of(kModes));
      Answer("setget_RssVar", {code, value.bytes()});
      break;
    }
  }
}

// Runs the handler of the alarm, if a deferred commit has set one.
void LetAlarmRing() {
  if (void (*const handler)(int) = std::exchange(Machine::Get().handler, nullptr)) {
    handler(SIGALRM);
    Answer("alarm rang", {});
  }
}

void RunVariables(Random& random) {
  if (random.Chance(80)) {
    init_RssVar();
    Answer("init_RssVar", {});
  }
  if (random.OneIn(2)) {
    for (RssWlan& wlan : rssXmlData.wlan) {
      wlan.wlAcRuleNo = random.Between(0, 44);
    }
    AcceptChanges();
  }
  for (int i = random.Between(1, 12); i > 0; --i) {
    CallVariable(random);
    LetAlarmRing();
    if (random.OneIn(8)) {
      ChangeDevice(random);
    }
  }
}

std::string Batch(Random& random, char separator) {
  const std::string between(1, separator);
  constexpr const char* kSeparators[] = {"\n", "\r\n", "&", ";", "  ", "\t", ""};
  std::string text = random.OneIn(6) ? CharactersOf(random, " \t\r\n&", random.Below(5)) : "";
  for (int i = random.OneIn(12) ? random.Between(10, 60) : random.Below(6); i > 0; --i) {
    NamedMaker variable = random.Chance(92) ? PickSettable(random) : PickVariable(random);
    // No batch inside a batch.
    if (variable.make == nullptr) {
      variable = {"rss_DeviceName", Name};
    }
    text += random.OneIn(40) ? OddName(random, variable.name) : variable.name;
    text += random.OneIn(40) ? CharactersOf(random, " =\t", random.Below(3)) : "=";
    text += random.OneIn(20) ? " \t" : "";
    text += random.OneIn(20) ? ValueOf(random, variable) : variable.make(random);
    text += random.OneIn(8) ? random.Of(kSeparators) : between.c_str();
  }
  return text;
}

void RunBatch(Random& random) {
  constexpr char kSeparators[] = {'&', '&', ';', '\n', ',', '=', ' ', 'e', '\0'};
  if (random.Chance(85)) {
    init_RssVar();
    Answer("init_RssVar", {});
  }
  for (int i = random.Between(1, 3); i > 0; --i) {
    const char separator = random.Of(kSeparators);
    std::string batch = Batch(random, separator == '\0' ? '&' : separator);
    if (random.OneIn(6)) {
      batch = Mutated(random, batch, random.Between(1, 5));
    }
    const Buffer text(batch);
    const Buffer name(std::size_t{KIOAPP_VAR_SIZE});
    Note("batch", {batch});
    const int code = do_RssVar_Parser(text.get(), separator, random.OneIn(5) ? nullptr : name.get(),
                                      random.Below(2));
    Answer("do_RssVar_Parser", {code, text.bytes(), name.bytes()});
    LetAlarmRing();
    if (random.OneIn(3)) {
      Commit(random);
    }
  }
}

// "name=value" in a buffer without room behind it.
void RunValidateInPlace(Random& random) {
  init_RssVar();
  Answer("init_RssVar", {});
  for (int i = random.Between(1, 6); i > 0; --i) {
    const NamedMaker variable = PickVariable(random);
    std::string pair = variable.name + (random.OneIn(15) ? "" : "=") + ValueOf(random, variable);
    if (random.OneIn(5)) {
      pair.insert(0, Letters(random, random.Between(29, 33)) + "=");
    }
    const Buffer text(pair);
    Note("pair", {pair});
    const int code = validate_RssVar2(text.get());
    Answer("validate_RssVar2", {code, text.bytes()});
  }
}

void RunNames(Random& random) {
  constexpr const char* kPaths[] = {"/Device/",
                                    "/Device/UpLinkConnection/DSL/IspName",
                                    "/Device/Wireless2.4/AccessControl/WlAcLists/AcRule:03/MAC",
                                    "/Device/Wireless5/AccessControl/WlAcLists/AcRule#",
                                    "/Device/Wireless5/AccessControl/WlAcEnbl",
                                    "/Device/SafetyVyr/UrlDetectEnbl",
                                    "/FwUpgradeInfo/Vendor",
                                    "/WirelessSiteSurvey/Site:01/BSSID",
                                    "/WirelessSiteSurvey/Site#",
                                    "/APCloningInfo/x",
                                    "/SafetyVyrInfo/",
                                    "/DslIspList/a/b",
                                    "/ApnIspList/",
                                    "/specVersion/major"};
  for (int i = random.Between(1, 6); i > 0; --i) {
    std::string text = random.OneIn(2) ? random.Of(kPaths) : PickVariable(random).name;
    if (random.OneIn(2)) {
      text = OddName(random, text);
    }
    const Buffer name(text);
    Answer("cvtRss_XmlPathVsVarName",
           {text, cvtRss_XmlPathVsVarName(name.get(), random.Between(-1, 1))});
    if (random.OneIn(20)) {
      Answer("cvtRss_XmlPathVsVarName", {cvtRss_XmlPathVsVarName(nullptr, random.Below(2))});
      Answer("setget_RssVar", {setget_RssVar(nullptr, name.get(), 1)});
      Answer("setget_RssVar", {setget_RssVar(name.get(), nullptr, random.Below(2))});
      Answer("get_RssVar", {get_RssVar(nullptr, nullptr, 0)});
      Answer("validate_RssVar", {validate_RssVar(nullptr, nullptr)});
    }
  }
}

constexpr Kind kKinds[] = {
    {"variables", 14, RunVariables},
    {"batch", 8, RunBatch},
    {"validation in place", 2, RunValidateInPlace},
    {"names", 3, RunNames},
};

}  // namespace

const std::span<const Kind> kVariableKinds = kKinds;

}  // namespace kio::differential
