#include "testing/plain_validators.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "kioapp/settings.h"

namespace kio::test {
namespace {

using Octets = std::array<int, 4>;

// Numbers are clamped to the range of int.
int ReadNumber(const char* text, char** end) {
  const long long number = std::strtoll(text, end, 10);
  return static_cast<int>(std::clamp<long long>(number, INT_MIN, INT_MAX));
}

Octets OctetsOf(const std::string& text) {
  Octets octets = {-1, -1, -1, -1};
  const char* rest = text.c_str();
  for (std::size_t i = 0; i < octets.size(); ++i) {
    if (i > 0 && *rest++ != '.') {
      break;
    }
    char* end = nullptr;
    const int number = ReadNumber(rest, &end);
    if (end == rest) {
      break;
    }
    octets[i] = number;
    rest = end;
  }
  return octets;
}

bool IsBetween(int number, int least, int most) { return number >= least && number <= most; }

bool IsKeyDigit(char digit) {
  return (digit >= '0' && digit <= '9') || (digit >= 'A' && digit <= 'F');
}

bool AreKeyDigits(const std::string& text) {
  return std::all_of(text.begin(), text.end(), IsKeyDigit);
}

std::vector<std::string> FieldsOf(const std::string& rule) {
  constexpr std::size_t kMostFields = 32;
  std::vector<std::string> fields(1);
  for (std::size_t i = 0; i < rule.size(); ++i) {
    const char next = i + 1 < rule.size() ? rule[i + 1] : '\0';
    if (rule[i] == '\\' && (next == ',' || next == '\\')) {
      fields.back() += next;
      ++i;
    } else if (rule[i] != ',') {
      fields.back() += rule[i];
    } else if (fields.size() == kMostFields) {
      break;
    } else {
      fields.emplace_back();
    }
  }
  return fields;
}

int NumberOf(const std::vector<std::string>& fields, std::size_t field, int otherwise) {
  return field < fields.size() ? ReadNumber(fields[field].c_str(), nullptr) : otherwise;
}

float RealOf(const std::string& text) {
  return static_cast<float>(std::atof(text.c_str()));  // NOLINT(cert-err34-c)
}

int ValidateNumber(const std::string& value, const std::vector<std::string>& fields) {
  const float most = fields.size() > 1 ? RealOf(fields[1]) : 1e38F;
  const float least = fields.size() > 2 ? RealOf(fields[2]) : -1e38F;
  const float number = RealOf(value);
  if (number > most) {
    return KIOAPP_RESULT_ABOVE_MAXIMUM;
  }
  return number < least ? KIOAPP_RESULT_BELOW_MINIMUM : KIOAPP_RESULT_APPLIED;
}

bool IsInRange(char character, const std::string& range) {
  const auto code = static_cast<signed char>(character);
  const auto first = static_cast<signed char>(range[0]);
  if (range.size() < 2 || range[1] != '-') {
    return code == first;
  }
  const auto last = static_cast<signed char>(range.size() > 2 ? range[2] : '\0');
  return code >= first && code <= last;
}

int ValidateText(const std::string& value, const std::vector<std::string>& fields) {
  const auto length = static_cast<int>(value.size());
  if (length > NumberOf(fields, 1, 9999) || length < NumberOf(fields, 2, 1)) {
    return KIOAPP_RESULT_BAD_LENGTH;
  }
  const bool prints =
      std::all_of(value.begin(), value.end(), [](char c) { return c >= 0x20 && c <= 0x7E; });
  if (NumberOf(fields, 3, 0) == 0 && !prints) {
    return KIOAPP_RESULT_BAD_CHARACTER;
  }
  const bool allows = NumberOf(fields, 4, 0) != 0;
  for (const char character : value) {
    bool is_listed = false;
    for (std::size_t field = 5; field < fields.size(); ++field) {
      is_listed = is_listed || (!fields[field].empty() && IsInRange(character, fields[field]));
    }
    if (is_listed != allows) {
      return KIOAPP_RESULT_BAD_CHARACTER;
    }
  }
  return KIOAPP_RESULT_APPLIED;
}

}  // namespace

bool PlainIsIp(const std::string& text) {
  const Octets octets = OctetsOf(text);
  return IsBetween(octets[0], 1, 223) && octets[0] != 127 && IsBetween(octets[1], 0, 255) &&
         IsBetween(octets[2], 0, 255) && IsBetween(octets[3], 1, 255);
}

bool PlainIsNetmask(const std::string& text) {
  std::uint32_t mask = 0;
  for (const int octet : OctetsOf(text)) {
    if (!IsBetween(octet, 0, 255)) {
      return false;
    }
    mask = mask * 256 + static_cast<std::uint32_t>(octet);
  }
  // The zeros below the ones, as ones, and one more give a power of two.
  const std::uint32_t zeros = ~mask;
  return (zeros & (zeros + 1)) == 0;
}

bool PlainIsIpCheckMask(const std::string& mask, const std::string& a, const std::string& b) {
  if (!PlainIsIp(a) || !PlainIsIp(b) || !PlainIsNetmask(mask)) {
    return false;
  }
  for (std::size_t i = 0; i < 4; ++i) {
    if (((OctetsOf(a)[i] ^ OctetsOf(b)[i]) & OctetsOf(mask)[i]) != 0) {
      return false;
    }
  }
  return true;
}

bool PlainIsWpaPskKey(const std::string& key) {
  return (key.size() >= 8 && key.size() <= 63) || (key.size() == 64 && AreKeyDigits(key));
}

bool PlainIsWepKey(const std::string& key, int n) {
  const auto size = static_cast<std::size_t>(n);
  return key.size() == size || (key.size() == 2 * size && AreKeyDigits(key));
}

int PlainValidate(const std::string& value, const std::string& rule) {
  const std::vector<std::string> fields = FieldsOf(rule);
  switch (NumberOf(fields, 0, 0)) {
    case 0:
      return ValidateText(value, fields);
    case 1:
      return ValidateNumber(value, fields);
    default:
      return KIOAPP_RESULT_APPLIED;
  }
}

}  // namespace kio::test
