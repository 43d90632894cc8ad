// A JSON value of an answer. What is absent, or of another kind, reads as empty: a case says itself
// what it expects.
#ifndef CTL_CONFORM_VALUE_H
#define CTL_CONFORM_VALUE_H

#include <cstddef>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace kioctl::conform {

class Value {
 public:
  enum class Kind { kAbsent, kNull, kFlag, kNumber, kText, kList, kObject };

  Value() = default;
  // Absent when the text is no JSON.
  static Value Parse(const std::string& text);

  Kind kind() const;
  bool Is(Kind kind) const { return this->kind() == kind; }
  bool IsAbsent() const { return kind() == Kind::kAbsent; }

  Value operator[](const std::string& member) const;
  Value operator[](const char* member) const { return (*this)[std::string(member)]; }
  Value At(size_t place) const;
  size_t size() const;
  std::vector<std::string> Names() const;

  std::string Text() const;
  long Number() const;
  bool Flag() const;
  std::string Dump() const;

  // A copy in which the text stands at a path of members, with slashes between them.
  Value With(const std::string& path, const std::string& text) const;

 private:
  std::shared_ptr<const nlohmann::json> root_;
  const nlohmann::json* node_ = nullptr;
};

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_VALUE_H
