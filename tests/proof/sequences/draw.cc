#include "draw.h"

#include <span>

#include "../../../tools/differential/random.h"
#include "settings.h"

namespace kio::sequences {
namespace {

using differential::Random;
using Values = std::vector<const char*>;

// Good values and bad ones.
const std::map<std::string, Values> kValues = {
    {"name",
     {"Attic", "Den", "Home router", "Fish & chips", "", "0123456789012345678901234567890123"}},
    {"pwd", {"change-me-soon", "another-one", "shrt", "with a blank"}},
    {"router", {"0", "1", "1", "2"}},
    {"conn", {"DHCP", "Static", "Carrier pigeon"}},
    {"ip", {"192.0.2.10", "192.0.2.77", "nonsense"}},
    {"mask", {"255.255.255.0", "255.255.0.0", "1.2.3.4"}},
    {"gate", {"192.0.2.1", "192.0.2.2"}},
    {"dns", {"192.0.2.1", "192.0.2.53"}},
    {"on2", {"0", "1", "1", "2"}},
    {"on5", {"0", "1", "1", "3"}},
    {"ssid2", {"HomeNet", "Sofa", "A < B", ""}},
    {"ssid5", {"HomeNet-5G", "Sofa-5G"}},
    {"key2", {"correct-horse-24", "battery staple", "short"}},
    {"key5", {"correct-horse-50", "battery staple"}},
    {"chan2", {"0", "1", "6", "11", "99"}},
    {"chan5", {"36", "40", "44", "7"}},
    {"notify", {"0", "1", "1", "2"}},
    {"tools", {"0", "1"}},
};

template <typename T>
const T& OneOf(Random& random, const std::vector<T>& list) {
  return list[static_cast<size_t>(random.Below(static_cast<int>(list.size())))];
}

std::string AnyKey(Random& random) {
  const std::span<const Field> fields = Fields();
  return fields[static_cast<size_t>(random.Below(static_cast<int>(fields.size())))].key;
}

std::string AnyValue(Random& random, const std::string& key) {
  return OneOf(random, kValues.at(key));
}

// Now and then a step meets a fault.
void AddFault(Random& random, Step* step, const Values& faults) {
  if (random.OneIn(4)) {
    step->words["fault"] = OneOf(random, faults);
  }
}

void AddMatch(Random& random, Step* step) {
  if (random.OneIn(6)) {
    step->words["if-match"] = random.OneIn(3) ? "old" : "now";
  }
}

Step DrawDocument(Random& random) {
  Step step{"document", {}};
  for (int i = random.Below(4); i > 0; --i) {
    // The elements of a static uplink come together.
    const std::string key = AnyKey(random);
    if (key == "conn" || key == "ip" || key == "mask" || key == "gate" || key == "dns") {
      step.words["uplink"] = random.OneIn(4) ? "nonsense" : "192.0.2.77";
    } else {
      step.words[key] = AnyValue(random, key);
    }
  }
  if (random.OneIn(6)) {
    step.words[random.OneIn(2) ? "acl2" : "acl5"] = std::to_string(random.Below(6));
  }
  if (random.OneIn(25)) {
    step.words["without"] = random.OneIn(2) ? "RouterEnbl" : "DeviceName";
    step.words.erase(step.words["without"] == "RouterEnbl" ? "router" : "name");
  } else if (random.OneIn(30)) {
    step.words["version"] = "0";
  }
  if (random.OneIn(6)) {
    step.words["dry-run"] = "1";
  }
  if (random.OneIn(5)) {
    step.words["confirm-within"] = random.OneIn(2) ? "60" : "5";
  }
  AddMatch(random, &step);
  if (!step.Has("dry-run")) {
    AddFault(
        random, &step,
        {"answer-500", "answer-503", "cut", "reset", "store-fails", "store-full", "store-locked",
         "result-unwritable", "script-fails", "power-off-write", "power-off-script"});
  }
  return step;
}

Step DrawBatch(Random& random) {
  Step step{"batch", {}};
  for (int i = random.Below(4); i > 0; --i) {
    const std::string key = AnyKey(random);
    step.words[key] = AnyValue(random, key);
  }
  AddMatch(random, &step);
  AddFault(random, &step, {"answer-500", "store-locked"});
  return step;
}

Step DrawVariable(Random& random, const std::string& kind) {
  Step step{kind, {}};
  step.words["key"] = random.OneIn(20) ? "none" : AnyKey(random);
  if (kind != "get") {
    step.words["value"] = step.Get("key") == "none" ? "x" : AnyValue(random, step.Get("key"));
  }
  return step;
}

Step DrawAction(Random& random) {
  static const Values kActions = {"VerifyAllRssVars", "ApplyAllRssVars", "ApplyAllRssVars",
                                  "CommitRssVars"};
  Step step{"action", {{"action", OneOf(random, kActions)}}};
  AddMatch(random, &step);
  return step;
}

Step DrawFirmware(Random& random) {
  // Mostly along the way of an upgrade.
  static const Values kActions = {"0", "1", "1", "2", "2", "9", "4", "4"};
  Step step{"firmware", {{"action", OneOf(random, kActions)}}};
  if (step.Get("action") == "1") {
    AddFault(random, &step, {"firmware-missing"});
  } else if (step.Get("action") == "2") {
    AddFault(random, &step, {"firmware-missing", "firmware-changed"});
  }
  return step;
}

Step OfClient(Random& random) {
  const int kind = random.Below(100);
  if (kind < 10) {
    return {"login", {{"how", random.OneIn(4) ? "wrong" : random.OneIn(3) ? "short" : "right"}}};
  }
  if (kind < 12) {
    return {"logout", {}};
  }
  if (kind < 36) {
    return DrawDocument(random);
  }
  if (kind < 46) {
    return DrawBatch(random);
  }
  if (kind < 64) {
    return DrawVariable(random, kind < 54 ? "put" : kind < 58 ? "validate" : "get");
  }
  if (kind < 66) {
    return {"discard", {}};
  }
  if (kind < 78) {
    return DrawAction(random);
  }
  if (kind < 86) {
    return {kind < 83 ? "confirm" : "withdraw", {}};
  }
  return kind < 89 ? Step{"result", {}} : kind < 92 ? Step{"values", {}} : DrawFirmware(random);
}

Step OfBench(Random& random) {
  const int kind = random.Below(20);
  if (kind < 14) {
    static const Values kSeconds = {"1", "1", "2", "3", "5", "20", "60", "100", "301"};
    return {"advance", {{"seconds", OneOf(random, kSeconds)}}};
  }
  if (kind < 16) {
    return {"restart", {{"how", random.OneIn(2) ? "stop" : "kill"}}};
  }
  return {kind < 17 ? "reset" : kind < 19 ? "snapshot" : "return", {}};
}

}  // namespace

Sequence Draw(std::uint64_t seed, int length) {
  Random random(seed, 1);
  Sequence sequence;
  while (static_cast<int>(sequence.size()) < length) {
    if (random.OneIn(8)) {
      const Step step = OfBench(random);
      sequence.push_back(step);
      // Most who have lost the login come back at once.
      if (step.kind != "advance" && random.Chance(80)) {
        sequence.push_back({"login", {{"client", "1"}, {"how", "right"}}});
        sequence.push_back({"login", {{"client", "2"}, {"how", "short"}}});
      }
      continue;
    }
    Step step = OfClient(random);
    step.words["client"] = random.OneIn(3) ? "2" : "1";
    sequence.push_back(step);
    // Who has lost the login soon comes back.
    if (random.OneIn(10)) {
      sequence.push_back({"login", {{"client", step.Get("client")}, {"how", "right"}}});
    }
  }
  sequence.resize(static_cast<size_t>(length));
  return sequence;
}

}  // namespace kio::sequences
