// The columns of the field tables: what the library knows of one field of the settings record.
#ifndef KIO_SETTINGS_FIELD_H
#define KIO_SETTINGS_FIELD_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <type_traits>

#include "platform/text.h"

namespace kio::settings {

// A member of a section's structure.
struct Member {
  enum class Type : std::uint8_t { kNone, kInt, kByte, kText };

  std::uint16_t offset = 0;
  std::uint16_t size = 0;
  Type type = Type::kNone;
};

template <typename T>
consteval Member::Type MemberTypeOf() {
  if constexpr (std::is_same_v<T, int>) {
    return Member::Type::kInt;
  } else if constexpr (std::is_same_v<T, unsigned char>) {
    return Member::Type::kByte;
  } else if constexpr (std::is_same_v<std::remove_extent_t<T>, char>) {
    return Member::Type::kText;
  } else {
    return Member::Type::kNone;
  }
}

// offsetof takes names, so this cannot be a function.
// NOLINTNEXTLINE(cppcoreguidelines-macro-usage)
#define KIO_MEMBER(structure, member)                                \
  ::kio::settings::Member {                                          \
    static_cast<std::uint16_t>(offsetof(structure, member)),         \
        static_cast<std::uint16_t>(sizeof(structure::member)),       \
        ::kio::settings::MemberTypeOf<decltype(structure::member)>() \
  }

// How the snapshot fills a field from its node.
enum class Load : std::uint8_t {
  kNever,
  kInteger,       // a negative number becomes the field's `absent`
  kIsOne,         // 1 when the text is "1", else 0
  kIsNotZero,     // 0 when the text is "0", else 1
  kCloningLevel,  // the low byte of the number, 3 and above counting as 0
  kText,          // as it is; a field with keywords gets its code too
  kTrimmed,       // without blanks at its ends
  kRule,          // XML entities decoded
};

// Which snapshots fill a field.
enum class Snapshot : std::uint8_t { kEvery, kFullOnly };

// Which fields of a section are read, verified and written together.
enum class Group : std::uint8_t {
  kNone,        // no field has it
  kDeviceOnly,  // not part of a settings document
  kBasic,
  kDetail,
  kRoaming,   // for devices that take part in easy roaming
  kExtender,  // in documents that say whether the device extends another network
  kLogin,     // for connection types with a login
  kAddress,   // for the static connection type
  kProvider,
  kCircuit,
};

// Documents that need not hold a field.
enum class Optional : std::uint8_t {
  kNever,
  // Quirk "cloning-without-roaming-clears-it": without the element the text becomes empty.
  kWhileCloning,
  kAlways,  // without the element the value stays as it is in the store
};

// Format versions of documents that hold a field.
enum class Versions : std::uint8_t { kEvery, kOnly10, kNot10 };

// What a value must be.
enum class Check : std::uint8_t {
  kNothing,
  kInRange,         // an integer of `low` to `high`; both are unsigned, so no negative one passes
  kFilled,          // a text that is not empty
  kRule,            // a text that passes the rule in `rule`
  kKeyword,         // a word of the table
  kHostAddress,     // an IPv4 host address
  kNetmask,         // an IPv4 netmask
  kNameServer,      // a host address; an empty text is replaced by the default name server
  kEncryptionType,  // a word that goes with the radio's encryption mode
  kRadioKey,        // a key that fits the radio's encryption mode, and passes the rule
  kSiteKey,         // empty or a key of some kind, and passes the rule
  kChannel,         // a channel of the radio's list
};

// How a value reaches its node.
enum class Write : std::uint8_t {
  kNever,
  kIfDifferent,
  kSwitch,  // 0 or 1, unless the device has locked it; written by name, as each lock is different
};

// What kind of variable a field is: what it accepts.
enum class VariableKind : std::uint8_t {
  kNone,  // there is no such variable
  kReadOnly,
  kAnything,
  kFlag,    // 0 or 1
  kSwitch,  // any number, unless it would change what the device has locked
  kKeyword,
  kRule,
  kHostAddress,
  kNetmask,
  kChannel,
  kRoaming,  // the four numbers of the roaming text
};

// How a field is written in the dump of the record: as "Element=value" or, for a pair, in one line
// with the field of the next row.
enum class Dump : std::uint8_t {
  kNever,
  kPlain,
  kQuoted,
  kQuotedWithCode,
  kPlainPair,   // "First,Second=value,value"
  kQuotedPair,  // "First,Second='value,value'"
  kSlashPair,   // "First/Second=value/value"
};

constexpr bool IsPair(Dump dump) {
  return dump == Dump::kPlainPair || dump == Dump::kQuotedPair || dump == Dump::kSlashPair;
}

struct Field {
  // Name of the element and of the variable; empty when there is none. Terminated.
  platform::TextView element = {};
  // Path of the store node below the section's; empty when there is none.
  platform::TextView node = {};
  Member member = {};
  Group group = Group::kDeviceOnly;
  Versions versions = Versions::kEvery;
  Optional optional = Optional::kNever;
  // Characters that are taken from a document; 0 for as many as the member holds.
  std::uint8_t document_limit = 0;
  // Whether the value read from a document is logged.
  bool logged = false;

  Load load = Load::kNever;
  Snapshot snapshot = Snapshot::kEvery;
  std::uint8_t absent = 0;

  // Keywords and the member that takes the code; none when any text will do.
  const char* const* words = nullptr;
  Member code = {};

  Check check = Check::kNothing;
  std::uint16_t low = 0;
  std::uint16_t high = 0;
  // The member of the same structure that holds the rule.
  Member rule = {};
  // Name under which a fault is reported, when it is not the element's. Terminated.
  platform::TextView fault_name = {};

  Write write = Write::kNever;

  VariableKind variable_kind = VariableKind::kNone;
  // The path that the variable tells, below its section's; empty for a slash and its name.
  platform::TextView variable_path = {};
  // Quirk "value-for-a-path": asked for its path, the variable gives its value.
  bool hides_path = false;

  Dump dump = Dump::kNever;
  // The name in the dump, when it is not the element's. Terminated.
  platform::TextView dump_name = {};

  // Looks at `code`: the pointer `words` cannot be compared at compile time under every sanitizer.
  [[nodiscard]] constexpr bool has_words() const { return code.size != 0; }

  // A row begins with one of the kinds below (`Text`, `Flag`, ...); these functions change its
  // columns.
  template <typename Column, typename Value>
  [[nodiscard]] consteval Field With(Column Field::*column, Value value) const {
    Field field = *this;
    field.*column = value;
    return field;
  }
  [[nodiscard]] consteval Field In(Group value) const { return With(&Field::group, value); }
  [[nodiscard]] consteval Field For(Versions value) const { return With(&Field::versions, value); }
  [[nodiscard]] consteval Field NotNeeded(Optional value) const {
    return With(&Field::optional, value);
  }
  [[nodiscard]] consteval Field CutTo(std::uint8_t characters) const {
    return With(&Field::document_limit, characters);
  }
  [[nodiscard]] consteval Field Logged() const { return With(&Field::logged, true); }
  [[nodiscard]] consteval Field LoadedAs(Load value) const { return With(&Field::load, value); }
  [[nodiscard]] consteval Field StoredAt(platform::TextView path) const {
    return With(&Field::node, path).Written(Write::kIfDifferent);
  }
  [[nodiscard]] consteval Field InEverySnapshot() const {
    return With(&Field::snapshot, Snapshot::kEvery);
  }
  [[nodiscard]] consteval Field InFullSnapshots() const {
    return With(&Field::snapshot, Snapshot::kFullOnly);
  }
  [[nodiscard]] consteval Field WhenAbsent(std::uint8_t number) const {
    return With(&Field::absent, number);
  }
  [[nodiscard]] consteval Field OneOf(const char* const* table, const Member& index) const {
    Field field = Checked(Check::kKeyword).AsVariable(VariableKind::kKeyword);
    field.words = table;
    field.code = index;
    return field;
  }
  [[nodiscard]] consteval Field Checked(Check value) const { return With(&Field::check, value); }
  [[nodiscard]] consteval Field InRange(std::uint16_t lowest, std::uint16_t highest) const {
    return Checked(Check::kInRange).With(&Field::low, lowest).With(&Field::high, highest);
  }
  [[nodiscard]] consteval Field Obeying(const Member& rule_text) const {
    return Checked(Check::kRule).AsVariable(VariableKind::kRule).With(&Field::rule, rule_text);
  }
  [[nodiscard]] consteval Field CalledInFaults(platform::TextView name) const {
    return With(&Field::fault_name, name);
  }
  [[nodiscard]] consteval Field Written(Write value) const { return With(&Field::write, value); }
  [[nodiscard]] consteval Field AsVariable(VariableKind value) const {
    return With(&Field::variable_kind, value);
  }
  [[nodiscard]] consteval Field WithVariablePath(platform::TextView path) const {
    return With(&Field::variable_path, path);
  }
  [[nodiscard]] consteval Field HidingItsPath() const { return With(&Field::hides_path, true); }
  [[nodiscard]] consteval Field Dumped(Dump value, platform::TextView name = {}) const {
    return With(&Field::dump, value).With(&Field::dump_name, name);
  }
};

using FieldTable = std::span<const Field>;

// A value that only the device knows: no document holds it, every snapshot loads it.
consteval Field Known(platform::TextView element, platform::TextView node, const Member& member,
                      Load load) {
  return {.element = element, .node = node, .member = member, .load = load};
}

// The same, and a variable that is only read.
consteval Field Shown(platform::TextView element, platform::TextView node, const Member& member,
                      Load load) {
  return Known(element, node, member, load).AsVariable(VariableKind::kReadOnly);
}

// A setting: documents hold it, full snapshots load it, and it is written where it differs.
consteval Field Setting(platform::TextView element, platform::TextView node, const Member& member,
                        Load load) {
  return {.element = element,
          .node = node,
          .member = member,
          .group = Group::kBasic,
          .load = load,
          .snapshot = Snapshot::kFullOnly,
          .write = Write::kIfDifferent,
          .variable_kind = VariableKind::kAnything,
          .dump = Dump::kPlain};
}

// A text of any kind.
consteval Field Text(platform::TextView element, platform::TextView node, const Member& member) {
  return Setting(element, node, member, Load::kText).Dumped(Dump::kQuoted);
}

// 0 or 1.
consteval Field Flag(platform::TextView element, platform::TextView node, const Member& member) {
  return Setting(element, node, member, Load::kIsOne).InRange(0, 1).AsVariable(VariableKind::kFlag);
}

// 0 or 1. When the stored value is 2 or more, or absent, the device has locked the switch.
consteval Field Switch(platform::TextView element, platform::TextView node, const Member& member) {
  return Setting(element, node, member, Load::kInteger)
      .WhenAbsent(2)
      .Written(Write::kSwitch)
      .AsVariable(VariableKind::kSwitch);
}

// A number that the app sets and the snapshot does not load.
consteval Field Unloaded(platform::TextView element, const Member& member, Group group) {
  return {.element = element, .member = member, .group = group, .dump = Dump::kPlain};
}

// Access to the members of a section's structure.
inline int& IntOf(void* section, const Member& member) {
  return *reinterpret_cast<int*>(static_cast<char*>(section) + member.offset);
}
inline unsigned char& ByteOf(void* section, const Member& member) {
  return *(static_cast<unsigned char*>(section) + member.offset);
}
inline char* TextOf(void* section, const Member& member) {
  return static_cast<char*>(section) + member.offset;
}

inline bool IsIn(Versions versions, bool version10) {
  return versions == Versions::kEvery || (versions == Versions::kOnly10) == version10;
}

// The row of an element; a table without one does not compile.
template <std::size_t N>
consteval const Field& RowOf(const Field (&table)[N], platform::TextView element) {
  for (const Field& field : table) {
    if (field.element == element) {
      return field;
    }
  }
  // Not a constant expression: the compiler stops here.
  return table[N];
}

// Whether a row's columns fit each other.
consteval bool IsSound(const Field& field) {
  const bool is_text = field.member.type == Member::Type::kText;
  const bool loads_text =
      field.load == Load::kText || field.load == Load::kTrimmed || field.load == Load::kRule;
  return field.member.type != Member::Type::kNone &&
         (field.load == Load::kNever || !field.node.empty()) &&
         (field.load == Load::kNever || loads_text == is_text) &&
         (field.group == Group::kDeviceOnly || !field.element.empty()) &&
         field.document_limit < field.member.size && (!field.has_words() || is_text) &&
         (field.check != Check::kKeyword || field.has_words()) &&
         (field.check != Check::kInRange || field.low <= field.high) &&
         (field.check != Check::kRule || field.rule.size != 0) &&
         (field.write == Write::kNever || !field.node.empty()) &&
         (field.variable_kind == VariableKind::kNone || !field.element.empty()) &&
         (field.variable_kind != VariableKind::kKeyword || field.has_words()) &&
         (field.variable_kind != VariableKind::kRule || field.rule.size != 0) &&
         (field.dump == Dump::kNever || !field.element.empty()) &&
         // When a document does not hold the element, the record must have the stored value.
         (field.optional != Optional::kAlways ||
          (field.load != Load::kNever && field.snapshot == Snapshot::kEvery));
}

// Whether each row that begins a pair has a row behind it.
consteval bool HasWholePairs(FieldTable table) {
  return table.empty() || !IsPair(table.back().dump);
}

// Whether each row that is to be written is one of the given groups, whose rows are written where
// they differ, or is named. Asserted next to the code that writes them, so that it forgets none.
consteval bool AllAreWritten(FieldTable table, std::initializer_list<Group> groups,
                             std::initializer_list<platform::TextView> named = {}) {
  for (const Field& field : table) {
    bool is_written = field.write == Write::kNever;
    for (const Group group : groups) {
      is_written |= field.write == Write::kIfDifferent && field.group == group;
    }
    for (const platform::TextView element : named) {
      is_written |= field.element == element;
    }
    if (!is_written) {
      return false;
    }
  }
  return true;
}

// Whether no two rows name the same element, whatever the case of its letters. The document parser
// relies on it: it asks a block for each element once.
consteval bool HasUniqueElements(FieldTable table) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    for (std::size_t j = i + 1; j < table.size(); ++j) {
      const platform::TextView a = table[i].element;
      const platform::TextView b = table[j].element;
      if (!a.empty() && a.size() == b.size() && platform::StartsWithFold(a.data(), b)) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace kio::settings

#endif
