#include "document.h"

#include <algorithm>
#include <utility>

#include "device.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

std::string Stored(const std::string& path, const char* absent) {
  return Store::Text(path).value_or(absent);
}

// A value for the node: mostly what the device has.
std::string Value(Random& random, const std::string& node) {
  if (random.Chance(60)) {
    return XmlEncoded(Stored(node, "0").substr(0, 400));
  }
  if (random.OneIn(300)) {
    return random.OneIn(2) ? Odd(random) : Number(random);
  }
  return XmlEncoded(ValueFor(random, node));
}

Element Leaf(std::string name, std::string value) {
  return {std::move(name), std::move(value), {}, {}};
}

// Elements that are named as their nodes are.
Element Section(Random& random, const std::string& name, const std::string& stem,
                std::initializer_list<const char*> names) {
  Element section{name, "", {}, {}};
  for (const char* const child : names) {
    section.children.push_back(Leaf(child, Value(random, stem + "/" + child)));
  }
  return section;
}

void Append(Element& element, Element other) {
  for (Element& child : other.children) {
    element.children.push_back(std::move(child));
  }
}

bool IsVersion10() {
  return Stored("/zentrolinks/specversion/major", "1") == "1" &&
         Stored("/zentrolinks/specversion/minor", "1") == "0";
}

// At times the section says itself whether it may be changed.
void AddConfigurable(Random& random, Element& section) {
  if (random.OneIn(25)) {
    section.children.insert(
        section.children.begin() + random.Below(static_cast<int>(section.children.size()) + 1),
        Leaf("Configurable", Switch(random)));
  }
}

Element MakeSite(Random& random) {
  Element site =
      Section(random, "ExtenderSite", "/uplink/extendersite",
              {"Survey", "ConnRefSiteBSSID", "WirelessType", "WirelessName", "EncryptionKey"});
  if (random.Chance(80)) {
    site.children[0].value = "0";
  }
  return site;
}

Element MakeUplink(Random& random) {
  Element uplink = Section(random, "UpLinkConnection", "/uplink", {"HardwareType", "ConnType"});
  if (IsVersion10() || random.OneIn(10)) {
    uplink.children.push_back(
        Leaf("MTU", random.OneIn(30) ? Number(random) : std::to_string(random.Between(1, 1493))));
  }
  // The blocks of all types: which of them a document needs depends on its types.
  Append(uplink, Section(random, "", "/uplink", {"LoginUserName", "LoginPassword"}));
  Append(uplink, Section(random, "", "/uplink", {"IP", "NetMask", "Gateway", "DNS"}));
  if (random.OneIn(8)) {
    uplink.children.back().value.clear();
  }
  Element dsl = Section(random, "DSL", "/uplink/dsl", {"CountryName", "IspName"});
  Append(dsl, Section(random, "", "/uplink/dsl", {"VPI", "VCI", "EncapsulationMode"}));
  uplink.children.push_back(std::move(dsl));
  uplink.children.push_back(Section(random, "APN", "/uplink/apn", {"CountryName", "IspName"}));
  uplink.children.push_back(MakeSite(random));
  AddConfigurable(random, uplink);
  return uplink;
}

void SetEncryption(const Encryption& good, Element& radio) {
  for (Element& child : radio.children) {
    if (child.name == "EncryptionMode") {
      child.value = good.mode;
    } else if (child.name == "EncryptionType") {
      child.value = good.type;
    } else if (child.name == "EncryptionKey") {
      child.value = good.key;
    }
  }
}

Element MakeAccess(Random& random, const std::string& stem) {
  Element access =
      Section(random, "AccessControl", stem + "/accesscontrol", {"WlAcEnbl", "WlAcMode"});
  if (random.Chance(70)) {
    access.children[0].value = "1";
  }
  Element rules{"WlAcLists", "", {}, {}};
  const int count = random.OneIn(4) ? random.Between(36, 45) : random.Below(7);
  for (int i = 1; i <= count; ++i) {
    rules.children.push_back(Section(
        random, "AcRule", stem + "/accesscontrol/acrule:" + std::to_string(i), {"Active", "MAC"}));
    if (random.OneIn(40)) {
      std::reverse(rules.children.back().children.begin(), rules.children.back().children.end());
    }
  }
  if (random.OneIn(3)) {
    access.children.push_back(std::move(rules));
  } else {
    Append(access, std::move(rules));
  }
  return access;
}

Element MakeRadio(Random& random, const std::string& word) {
  const std::string stem = "/lan/wireless" + word + ":1";
  Element radio = Section(random, "Wireless" + word, stem,
                          {"WlEnbl", "WlSchedule", "WirelessBSSID", "WirelessName",
                           "EncryptionMode", "EncryptionType", "EncryptionKey", "Channel"});
  const std::string mode = Stored(stem + "/encryptionmode", "");
  const std::string type = Stored(stem + "/encryptiontype", "");
  const std::string key = XmlEncoded(Stored(stem + "/encryptionkey", ""));
  if (random.Chance(50)) {
    SetEncryption(GoodEncryption(random), radio);
  } else if (random.Chance(90)) {
    SetEncryption({mode.c_str(), type.c_str(), key.c_str()}, radio);
  }
  radio.children.push_back(MakeAccess(random, stem));
  AddConfigurable(random, radio);
  return radio;
}

Element MakeDeviceElement(Random& random) {
  Element device = Section(random, "Device", "/sys", {"RouterEnbl"});
  device.children.push_back(Leaf("DeviceName", Value(random, "/sys/friendlyname")));
  device.children.push_back(Leaf("DevicePwd", Value(random, "/sys/user:1/password")));
  device.children.push_back(MakeUplink(random));
  if (IsVersion10()) {
    device.children.push_back(Leaf("ExtenderEnbl", WideSwitch(random)));
    if (!random.OneIn(20)) {
      device.children.push_back(MakeSite(random));
    }
  }
  if (!IsVersion10() || random.OneIn(10)) {
    device.children.push_back(Leaf("EasyRoaming", Value(random, "/zentrolinks/easyroaminginfo")));
  }
  device.children.push_back(MakeRadio(random, "2.4"));
  device.children.push_back(MakeRadio(random, "5"));
  device.children.push_back(
      Section(random, "SafetyVyr", "/safetyvyr",
              {"SafetyVyrEnbl", "UrlDetectEnbl", "SafetyNotifyEnbl", "ToolRecommendEnbl"}));
  AddConfigurable(random, device);
  return device;
}

// Any element below `root`, and its parent.
Element* AnyElement(Random& random, Element& root, Element*& parent) {
  parent = &root;
  Element* element = &root;
  while (!element->children.empty() && (element == &root || !random.OneIn(4))) {
    const auto count = static_cast<int>(element->children.size());
    // The last element of the root holds nearly all elements.
    const int index = element == &root && random.Chance(85) ? count - 1 : random.Below(count);
    parent = element;
    element = &element->children[static_cast<std::size_t>(index)];
  }
  return element;
}

std::string OddMarkup(Random& random, const Element& element) {
  const std::string& name = element.name;
  const std::string& value = element.value;
  switch (random.Below(10)) {
    case 0:
      return "<" + name + "/>";
    case 1:
      return "<" + name + " />";
    case 2:
      return "<" + name + "></" + name + ">";
    case 3:
      return "<" + name + ">" + value;
    case 4:
      return "<" + name + " a=\"1\">" + value + "</" + name + ">";
    case 5:
      return "<!-- <" + name + ">x</" + name + "> -->";
    case 6:
      return "<" + name + "/><" + name + ">" + value + "</" + name + ">";
    case 7:
      return "</" + name + "><" + name + ">" + value + "</" + name + " >";
    case 8:
      return value + "</" + name + ">";
    default:
      return "<" + MixedCase(random, name) + ">" + value + "</" + MixedCase(random, name) + ">";
  }
}

void AppendText(const Element& element, const char* blank, std::string& text) {
  if (!element.markup.empty()) {
    text += element.markup;
    return;
  }
  text += "<" + element.name + ">" + element.value;
  if (!element.children.empty()) {
    text += blank;
  }
  for (const Element& child : element.children) {
    AppendText(child, blank, text);
  }
  text += "</" + element.name + ">" + blank;
}

}  // namespace

Element MakeDocument(Random& random, int faults) {
  Element version{"specVersion", "", {}, {}};
  version.children.push_back(Leaf("major", Stored("/zentrolinks/specversion/major", "1")));
  version.children.push_back(Leaf("minor", Stored("/zentrolinks/specversion/minor", "1")));
  if (random.OneIn(50)) {
    version.children[static_cast<std::size_t>(random.Below(2))].value = Number(random);
  }
  Element root{"root", "", {}, {}};
  root.children.push_back(std::move(version));
  root.children.push_back(MakeDeviceElement(random));
  for (; faults > 0; --faults) {
    Spoil(random, root);
  }
  return root;
}

void Spoil(Random& random, Element& root) {
  if (root.children.empty()) {
    return;
  }
  Element* parent = nullptr;
  Element* const element = AnyElement(random, root, parent);
  const auto index = element - parent->children.data();
  switch (random.Below(9)) {
    case 0:
      parent->children.erase(parent->children.begin() + index);
      break;
    case 1:
      element->value = Odd(random);
      break;
    case 2:
      element->value = Number(random);
      break;
    case 3:
      element->markup = OddMarkup(random, *element);
      break;
    case 4: {
      Element copy = *element;
      copy.value = random.OneIn(2) ? Odd(random) : copy.value;
      parent->children.insert(parent->children.begin() + random.Below(static_cast<int>(index) + 1),
                              copy);
      break;
    }
    case 5:
      std::swap(*element, parent->children[static_cast<std::size_t>(
                              random.Below(static_cast<int>(parent->children.size())))]);
      break;
    case 6:
      parent->children.insert(parent->children.begin() + index,
                              Leaf("Configurable", random.OneIn(2) ? "0" : Number(random)));
      break;
    case 7:
      element->value = CharactersOf(random, " \t\r\n", random.Between(1, 3)) + element->value +
                       CharactersOf(random, " \t", random.Below(3));
      break;
    default:
      *element = {"Wrapped", "", {*element}, {}};
      break;
  }
}

std::string TextOf(Random& random, const Element& root) {
  constexpr const char* kBlanks[] = {"\n", "\n", "", "\r\n  ", " "};
  constexpr const char* kHeads[] = {"<?xml version=\"1.0\" ?>\n", "", "<?xml?><rootless>\n"};
  constexpr const char* kTails[] = {"", "\n", "<root>x</root>", "trailing"};
  std::string text = random.OneIn(3) ? random.Of(kHeads) : kHeads[0];
  AppendText(root, random.Of(kBlanks), text);
  return text + (random.OneIn(4) ? random.Of(kTails) : "");
}

std::string MutatedDocument(Random& random) {
  const std::string text = TextOf(random, MakeDocument(random, random.Below(3)));
  return Mutated(random, text, random.Between(1, 6));
}

}  // namespace kio::differential
