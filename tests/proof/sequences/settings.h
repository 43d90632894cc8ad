// The settings of the model: what a document or the variables ask for, whether that passes, and
// what applying it makes of the store.
#ifndef TESTS_PROOF_SEQUENCES_SETTINGS_H
#define TESTS_PROOF_SEQUENCES_SETTINGS_H

#include <array>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "step.h"

namespace kio::sequences {

using Nodes = std::map<std::string, std::string>;

// A setting that sequences change.
struct Field {
  const char* key;       // its word in a step
  const char* block;     // of a settings document; empty: the device itself
  const char* element;   // in the block
  const char* node;      // of the store
  const char* variable;  // its name
};

std::span<const Field> Fields();
const Field* FieldOf(const std::string& key);
const Field* FieldOfVariable(const std::string& variable);

// What the library says of settings: 0, or a code and the element at fault.
struct Verdict {
  int code = 0;
  std::string element;
};

inline constexpr unsigned kWan = 1;
inline constexpr unsigned kDevice = 16;
inline constexpr unsigned kSave = 32;

// The actions of a mask, in the order in which they run, and the seconds that an app is told.
std::vector<std::string> ActionsOf(unsigned mask);
int WaitOf(unsigned mask);

class Settings {
 public:
  // As variables see them: what the store holds, without access rules.
  static Settings OfStore(const Nodes& store);
  // What a step of the kind `document` asks for.
  static Settings OfDocument(const Step& step);

  std::string Get(const std::string& key) const;
  void Set(const std::string& key, const std::string& value);

  // Whether a variable takes a value: 0, or the library's code.
  int Check(const Field& field, const std::string& value) const;

  // Whether they pass as a whole.
  Verdict Verify() const;

  // Writes them. `mask` gets the actions that this asks for. After a refusal the store holds what
  // was written before it.
  Verdict Apply(Nodes* store, unsigned* mask) const;

  // Whether applying them writes something in any case.
  bool AlwaysWrites() const { return access_[0].on == "1" || access_[1].on == "1"; }

 private:
  struct Access {
    std::string on;
    std::string mode = "0";
    std::vector<std::pair<std::string, std::string>> rules;  // switch and address
  };

  std::map<std::string, std::string> values_;  // by the keys of the fields
  std::array<Access, 2> access_;
};

// The document of a step, and what it is refused for before its values are looked at.
std::string DocumentOf(const Step& step);
Verdict FormOf(const Step& step);

}  // namespace kio::sequences

#endif  // TESTS_PROOF_SEQUENCES_SETTINGS_H
