// XML entities.
#include "platform/xml_coding.h"

#include "kioapp/text.h"

namespace kio::platform {
namespace {

constexpr std::size_t kLongestEntity = 5;

// The name stands in the row itself: so the table has no addresses, which the loader would set.
struct Entity {
  char characters[kLongestEntity + 1];  // what follows the '&'
  char character;

  [[nodiscard]] constexpr TextView name() const { return characters; }
};

// No entry begins another, so their order does not matter.
// Quirk "non-breaking-space-is-a-space": both forms of it stand for an ordinary one.
constexpr Entity kDecodedEntities[] = {
    {"nbsp;", ' '}, {"lt;", '<'},  {"gt;", '>'},  {"amp;", '&'}, {"quot;", '"'}, {"apos;", '\''},
    {"#160;", ' '}, {"#60;", '<'}, {"#62;", '>'}, {"#38;", '&'}, {"#34;", '"'},  {"#39;", '\''},
};

// What follows the '&' that stands for a character; empty when it stands for itself.
constexpr TextView EncodedEntity(char character) {
  switch (character) {
    case '"':
      return "quot;";
    case '&':
      return "amp;";
    case '\'':
      return "#39;";
    case '<':
      return "lt;";
    case '>':
      return "gt;";
    default:
      return {};
  }
}

// The entity that `text` begins with; null when there is none.
const Entity* FindEntity(TextView text) {
  for (const Entity& entity : kDecodedEntities) {
    const TextView name = entity.name();
    if (text.size() >= name.size() && std::memcmp(text.data(), name.data(), name.size()) == 0) {
      return &entity;
    }
  }
  return nullptr;
}

// Writes at most `limit` characters; the terminator only when it is reached within them.
void EncodeXml(char* dst, const char* src, std::size_t limit) {
  // Counted, as the limit may reach behind the end of the address space.
  for (std::size_t room = limit; room > 0; ++src) {
    const TextView entity = EncodedEntity(*src);
    --room;
    if (entity.empty()) {
      *dst++ = *src;
      if (*src == '\0') {
        return;
      }
      continue;
    }
    *dst++ = '&';
    // Quirk "encoded-entity-cut": the limit may fall inside an entity.
    const std::size_t count = entity.size() < room ? entity.size() : room;
    std::memcpy(dst, entity.data(), count);
    dst += count;
    room -= count;
  }
}

}  // namespace

std::size_t DecodeXml(char* dst, TextView src, std::size_t limit) {
  char* out = dst;
  std::size_t position = 0;
  while (position < limit) {
    const char* const run = src.data() + position;
    const void* const ampersand = std::memchr(run, '&', limit - position);
    const std::size_t size =
        ampersand == nullptr ? limit - position
                             : static_cast<std::size_t>(static_cast<const char*>(ampersand) - run);
    std::memmove(out, run, size);
    out += size;
    position += size;
    if (ampersand == nullptr) {
      break;
    }
    ++position;
    // Quirk "entity-past-the-limit": only its & must lie within the limit.
    const Entity* const entity = FindEntity(TextView(src.data() + position, src.size() - position));
    *out++ = entity == nullptr ? '&' : entity->character;
    position += entity == nullptr ? 0 : entity->name().size();
  }
  return static_cast<std::size_t>(out - dst);
}

}  // namespace kio::platform

char* strncpy_XmlDecode(char* dst, const char* src, int n) {
  using kio::platform::TextView;
  if (dst == nullptr) {
    return nullptr;
  }
  if (src == nullptr || n < 1) {
    *dst = '\0';
    return dst;
  }
  const auto limit = static_cast<std::size_t>(n);
  const std::size_t size = strnlen(src, limit + kio::platform::kLongestEntity);
  if (size >= limit) {
    kio::platform::DecodeXml(dst, TextView(src, size), limit);
  } else {
    dst[kio::platform::DecodeXml(dst, TextView(src, size))] = '\0';
  }
  return dst;
}

char* strncpy_XmlEncode(char* dst, const char* src, int n) {
  if (dst == nullptr) {
    return nullptr;
  }
  if (src == nullptr || n < 1) {
    *dst = '\0';
  } else {
    kio::platform::EncodeXml(dst, src, static_cast<std::size_t>(n));
  }
  return dst;
}
