// What is known of one field of the settings record: the columns of the field tables.
#ifndef KIO_SETTINGS_FIELD_H
#define KIO_SETTINGS_FIELD_H

#include <cstddef>
#include <cstdint>
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
  kDeviceOnly,  // not part of a settings document
  kBasic,
  kDetail,
  kLogin,    // for connection types with a login
  kAddress,  // for the static connection type
  kProvider,
  kCircuit,
};

// Format versions of documents that hold a field.
enum class Versions : std::uint8_t { kEvery, kOnly10, kNot10 };

// What a value must be.
enum class Check : std::uint8_t {
  kNothing,
  kInRange,      // an integer of `low` to `high`; `low` is not negative, so no negative one passes
  kFilled,       // a text that is not empty
  kRule,         // a text that passes the rule in `rule`
  kKeyword,      // a word of the table
  kHostAddress,  // an IPv4 host address
  kNetmask,      // an IPv4 netmask
  kNameServer,   // a host address; an empty text is replaced by the default name server
  kEncryptionType,  // a word that goes with the radio's encryption mode
  kRadioKey,        // a key that fits the radio's encryption mode, and passes the rule
  kSiteKey,         // empty or a key of some kind, and passes the rule
  kChannel,         // a channel of the radio's list
};

// How a value reaches its node.
enum class Write : std::uint8_t {
  kNever,
  kIfDifferent,
  kSwitch,  // 0 or 1, unless the device has locked it
};

// What the variable of a field takes.
enum class Offer : std::uint8_t {
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

struct Field {
  // Name of the element and of the variable; empty when there is none. Terminated.
  platform::TextView element = {};
  // Path of the store node below the section's; empty when there is none.
  platform::TextView node = {};
  Member member = {};
  Group group = Group::kDeviceOnly;
  Versions versions = Versions::kEvery;
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

  Offer offer = Offer::kNone;
  // The path of the variable below its section's, when it is not its name's.
  platform::TextView located = {};
  // Quirk "value-for-a-path": asked for its path, the variable gives its value.
  bool hides_path = false;

  // The code tells: a pointer cannot be compared at compile time under every sanitizer.
  [[nodiscard]] constexpr bool has_words() const { return code.size != 0; }
};

// The members of a section's structure.
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
constexpr bool IsSound(const Field& field) {
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
         (field.offer == Offer::kNone || !field.element.empty()) &&
         (field.offer != Offer::kKeyword || field.has_words()) &&
         (field.offer != Offer::kRule || field.rule.size != 0);
}

// Whether no two rows name the same element in any case. The document parser rests on it: it asks a
// block for each element once.
template <std::size_t N>
consteval bool HasUniqueElements(const Field (&table)[N]) {
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t j = i + 1; j < N; ++j) {
      const platform::TextView a = table[i].element;
      const platform::TextView b = table[j].element;
      if (!a.empty() && a.size() == b.size() && platform::StartsWithFold(a.data(), b)) {
        return false;
      }
    }
  }
  return true;
}

// Whether the rows of tables and some members of their own tile a structure: every byte that is not
// alignment belongs to exactly one of them.
template <typename Structure>
class Coverage {
 public:
  template <std::size_t N>
  constexpr Coverage& Add(const Field (&table)[N]) {
    for (const Field& field : table) {
      sound_ = sound_ && IsSound(field);
      Mark(field.member);
      if (field.has_words()) {
        Mark(field.code);
      }
    }
    return *this;
  }
  constexpr Coverage& Add(const Member& member) {
    Mark(member);
    return *this;
  }

  [[nodiscard]] constexpr bool IsComplete() const {
    // Alignment is narrower than an integer and ends where one may begin.
    std::size_t gap = 0;
    for (std::size_t i = 0; i <= sizeof(Structure); ++i) {
      if (i < sizeof(Structure) && !marked_[i]) {
        ++gap;
      } else if (gap > 0) {
        if (gap >= alignof(int) || i % alignof(int) != 0) {
          return false;
        }
        gap = 0;
      }
    }
    return sound_;
  }

 private:
  constexpr void Mark(const Member& member) {
    for (std::size_t i = member.offset; i < member.offset + std::size_t{member.size}; ++i) {
      sound_ = sound_ && !marked_[i];
      marked_[i] = true;
    }
  }

  bool marked_[sizeof(Structure)] = {};
  bool sound_ = true;
};

}  // namespace kio::settings

#endif
