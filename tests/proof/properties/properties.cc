#include "properties.h"

#include <kioapp/kioapp.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

#include "../../../tools/differential/device.h"
#include "../../../tools/differential/store.h"
#include "../../../tools/differential/texts.h"
#include "../../../tools/differential/variable_names.h"
#include "settings_table.h"
#include "values.h"

namespace kio::properties {
namespace {

using differential::Element;
using differential::Random;

bool Parse(const Case& drawn) {
  std::string text = drawn.text;
  return (drawn.cloning ? do_RssXml_Parser_for_ApCloning(text.data())
                        : do_RssXml_Parser(text.data())) == 1;
}

void BeginWith(const Nodes& device) {
  BeginAnew();
  SetAllNodes(device);
  TakeWrites();
}

std::string TextOf(const std::vector<Write>& writes) {
  std::string text;
  for (const Write& write : writes) {
    text += write.path + (write.deletes ? " is deleted" : " = " + write.text) + "\n";
  }
  return text;
}

bool Is(const std::string& path, const char* end) { return path.ends_with(end); }

// The first `limit` characters of what stands in a document, with the five special characters and
// the blank as they were before they were encoded.
std::string Decoded(const std::string& raw, size_t limit) {
  static const std::pair<const char*, char> kEntities[] = {
      {"&nbsp;", ' '}, {"&lt;", '<'},    {"&gt;", '>'},   {"&amp;", '&'},
      {"&quot;", '"'}, {"&apos;", '\''}, {"&#160;", ' '}, {"&#60;", '<'},
      {"&#62;", '>'},  {"&#38;", '&'},   {"&#34;", '"'},  {"&#39;", '\''}};
  const std::string cut = raw.substr(0, limit);
  std::string decoded;
  for (size_t i = 0; i < cut.size();) {
    const auto* const entity =
        std::find_if(std::begin(kEntities), std::end(kEntities), [&](const auto& known) {
          return cut.compare(i, std::string(known.first).size(), known.first) == 0;
        });
    if (entity != std::end(kEntities)) {
      decoded += entity->second;
      i += std::string(entity->first).size();
    } else {
      decoded += cut[i++];
    }
  }
  return decoded;
}

// The first element of a path of names below `element`; null without it.
const Element* Below(const Element& element, const std::string& path) {
  const std::string name = path.substr(0, path.find('/'));
  for (const Element& child : element.children) {
    if (child.name == name) {
      return name == path ? &child : Below(child, path.substr(name.size() + 1));
    }
  }
  return nullptr;
}

// Those of the name at any depth below `element`, in order.
void Collect(const Element& element, const std::string& name, std::vector<const Element*>* found) {
  for (const Element& child : element.children) {
    if (child.name == name) {
      found->push_back(&child);
    } else {
      Collect(child, name, found);
    }
  }
}

// What the document has for a node: as it stands there.
std::vector<std::string> Sent(const Element& document, const std::string& path,
                              const Setting* setting) {
  std::vector<std::string> values;
  const auto take = [&](const std::string& where) {
    const Element* const element = Below(document, where);
    if (element != nullptr) {
      values.push_back(element->value);
    }
  };
  if (setting != nullptr) {
    take(std::string(setting->block) + "/" + setting->element);
    // Where version 1.0 has it.
    const std::string block = setting->block;
    if (block.ends_with("/ExtenderSite")) {
      take(std::string("Device/ExtenderSite/") + setting->element);
    }
    return values;
  }
  const size_t rule = path.find("/acrule:");
  if (rule != std::string::npos) {
    const std::string radio = path.starts_with("/lan/wireless2.4") ? "2.4" : "5";
    const Element* const access = Below(document, "Device/Wireless" + radio + "/AccessControl");
    std::vector<const Element*> rules;
    if (access != nullptr) {
      Collect(*access, "AcRule", &rules);
    }
    const size_t number = static_cast<size_t>(ToInt(path.substr(rule + 8)));
    const Element* const value =
        number >= 1 && number <= rules.size()
            ? Below(*rules[number - 1], Is(path, "/mac") ? "MAC" : "Active")
            : nullptr;
    if (value != nullptr) {
      values.push_back(value->value);
    }
  }
  return values;
}

bool HasMarkup(const Element& element) {
  return element.value.find('<') != std::string::npos || !element.markup.empty() ||
         std::any_of(element.children.begin(), element.children.end(), HasMarkup);
}

// Whether what was sent has become the text that was written.
bool IsStoredAs(const Setting* setting, const Write& write, const std::string& raw) {
  constexpr size_t kMac = 17;
  constexpr size_t kNumber = 127;
  if (setting != nullptr ? setting->form == Form::kNumber : Is(write.path, "/active")) {
    return std::to_string(ToInt(Decoded(raw, kNumber))) == write.text;
  }
  const std::string text =
      Decoded(raw, setting != nullptr ? static_cast<size_t>(setting->capacity) : kMac);
  return setting != nullptr && setting->form == Form::kWord
             ? Lower(Trimmed(text)) == Lower(write.text)
             : text == write.text || Trimmed(text) == write.text;
}

}  // namespace

Case Draw(std::uint64_t seed) {
  Random device(seed, 1);
  Random document(seed, 2);
  Case drawn;
  BeginAnew();
  differential::MakeDevice(device, device.OneIn(2) ? 0 : 20);
  drawn.device = AllNodes();
  // A store counts its rules by itself: no node says how many there are.
  for (const char* const radio : {"2.4", "5"}) {
    drawn.device.erase(std::string("/lan/wireless") + radio + ":1/accesscontrol/acrule#");
  }
  SetAllNodes(drawn.device);
  drawn.cloning = document.OneIn(5);
  drawn.plain = !document.OneIn(5);
  drawn.document = MakeDocument(document, drawn.plain ? 0 : document.Between(1, 2));
  drawn.plain = drawn.plain && !HasMarkup(drawn.document);
  Rewrite(seed, &drawn);
  return drawn;
}

void Rewrite(std::uint64_t seed, Case* drawn) {
  Random random(seed, 3);
  drawn->text = TextOf(random, drawn->document);
}

std::string Violation(std::uint64_t seed, const Case& drawn, Tally* tally) {
  BeginWith(drawn.device);
  ++(*tally)["cases"];
  std::string wrong = ValidIsTaken(seed, tally);
  BeginWith(drawn.device);
  if (!Parse(drawn)) {
    return wrong + RefusalWritesNothing(drawn, tally);
  }
  ++(*tally)["accepted documents"];
  if (drawn.plain && !drawn.cloning) {
    wrong += StoredAsSent(drawn, tally);
  }
  TakeWrites();
  wrong += AppliedTwice(drawn, tally);
  if (!drawn.cloning) {
    wrong += DumpVariablesAndStoreAgree(tally);
    wrong += VariablesDoTheSame(drawn, tally);
  }
  return wrong;
}

std::string AppliedTwice(const Case& drawn, Tally* tally) {
  ++(*tally)["applied twice"];
  const Nodes before = AllNodes();
  if (!Parse(drawn)) {
    return "the document is refused the second time\n";
  }
  std::vector<Write> more;
  bool restarts = false;  // a radio or the uplink, for a write that makes no difference
  for (const Write& write : TakeWrites()) {
    const char* exception = nullptr;
    if (Is(write.path, "/accesscontrol/wlacmode")) {
      exception = "access-mode-always-written";
    } else if (drawn.cloning && write.path.starts_with("/runtime/apcloninginfo/extendersite/")) {
      exception = "cloning-information-always-written";
    } else if (drawn.cloning && Is(write.path, "/accesscontrol/wlacenbl") && write.text == "0") {
      exception = "cloned-access-zero-rewritten";
      restarts = true;
    } else if (drawn.cloning && write.path.starts_with("/uplink/extendersite/")) {
      exception = "cloned-site-of-the-last-radio";
      restarts = true;
    } else if (restarts && write.path == "/sys/factorydefault" && write.text == "0") {
      exception = "factory default written after a restart that makes no difference";
    }
    const auto node = before.find(write.path);
    if (exception != nullptr && !write.deletes && node != before.end() &&
        (node->second == write.text || drawn.cloning)) {
      ++(*tally)[std::string("exception ") + exception];
    } else {
      more.push_back(write);
    }
  }
  return more.empty() ? "" : "written the second time:\n" + TextOf(more);
}

std::string RefusalWritesNothing(const Case& drawn, Tally* tally) {
  ++(*tally)["refused documents"];
  const std::vector<Write> writes = TakeWrites();
  if (writes.empty()) {
    return {};
  }
  // A switch that is locked is refused when others are written already.
  const std::string message = rssXmlData.setMsg;
  const bool is_switch = Is(message, "/RouterEnbl") || Is(message, "/WlEnbl") ||
                         Is(message, "/WlSchedule") || Is(message, "/WlAcEnbl");
  if (rssXmlData.setResult == 3 && is_switch && !drawn.cloning) {
    ++(*tally)["exception refusal-keeps-earlier-writes"];
    return {};
  }
  return "a refused document (" + std::to_string(rssXmlData.setResult) + " " + message +
         ") writes\n" + TextOf(writes);
}

std::string ValidIsTaken(std::uint64_t seed, Tally* tally) {
  Random random(seed, 4);
  init_RssVar();
  constexpr int kVariables = 4;
  for (int i = 0; i < kVariables; ++i) {
    const differential::NamedMaker variable = PickSettable(random);
    if (variable.make == nullptr || variable.name.find("rss_Act_") == 0) {
      continue;
    }
    std::string value = random.OneIn(4) ? differential::Odd(random, 127) : variable.make(random);
    value = value.substr(0, value.find('\0')).substr(0, 127);
    const std::string name = variable.name;
    ++(*tally)["values validated"];
    if (validate_RssVar(name.c_str(), value.data()) != 0) {
      continue;
    }
    ++(*tally)["valid values"];
    const unsigned code = set_RssVar(name.c_str(), value.data());
    if (code == 1) {
      ++(*tally)["exception refused-before-it-is-known"];
    } else if (code != 0) {
      return std::string(name).append("=").append(value).append(" is valid, and refused with ") +
             std::to_string(code) + "\n";
    }
  }
  return {};
}

std::string StoredAsSent(const Case& drawn, Tally* tally) {
  std::string wrong;
  for (const Write& write : TakeWrites()) {
    const Setting* const setting = SettingOf(write.path);
    if (write.deletes || write.path == "/sys/factorydefault") {
      continue;
    }
    ++(*tally)["stored texts"];
    const std::vector<std::string> sent = Sent(drawn.document, write.path, setting);
    if (std::any_of(sent.begin(), sent.end(),
                    [&](const std::string& raw) { return IsStoredAs(setting, write, raw); })) {
      continue;
    }
    if (write.path == "/uplink/dns" && write.text == "8.8.8.8") {
      ++(*tally)["exception default-name-server"];
    } else if (Is(write.path, "/encryptiontype") && write.text == "AUTO" &&
               rssXmlData.specVer == 100) {
      ++(*tally)["exception version-10-writes-auto"];
    } else if (write.path == "/uplink/extendersite/survey" && write.text == "1") {
      ++(*tally)["exception a survey is asked for by 1, whatever was sent"];
    } else {
      wrong.append(write.path).append(" = ").append(write.text).append(", but sent was ");
      wrong.append(sent.empty() ? "nothing" : sent[0]).append("\n");
    }
  }
  return wrong;
}

}  // namespace kio::properties
