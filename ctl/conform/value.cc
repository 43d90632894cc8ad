#include "conform/value.h"

#include <nlohmann/json.hpp>

namespace kioctl::conform {

using nlohmann::json;

Value Value::Parse(const std::string& text) {
  Value value;
  json parsed = json::parse(text, nullptr, false);
  if (!parsed.is_discarded()) {
    value.root_ = std::make_shared<const json>(std::move(parsed));
    value.node_ = value.root_.get();
  }
  return value;
}

Value::Kind Value::kind() const {
  if (node_ == nullptr) {
    return Kind::kAbsent;
  }
  switch (node_->type()) {
    case json::value_t::object:
      return Kind::kObject;
    case json::value_t::array:
      return Kind::kList;
    case json::value_t::string:
      return Kind::kText;
    case json::value_t::boolean:
      return Kind::kFlag;
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
    case json::value_t::number_float:
      return Kind::kNumber;
    default:
      return Kind::kNull;
  }
}

Value Value::operator[](const std::string& member) const {
  Value value;
  if (node_ != nullptr && Is(Kind::kObject)) {
    if (const auto found = node_->find(member); found != node_->end()) {
      value.root_ = root_;
      value.node_ = &*found;
    }
  }
  return value;
}

Value Value::At(size_t place) const {
  Value value;
  if (node_ != nullptr && Is(Kind::kList) && place < node_->size()) {
    value.root_ = root_;
    value.node_ = &(*node_)[place];
  }
  return value;
}

size_t Value::size() const { return node_ == nullptr ? 0 : node_->size(); }

std::vector<std::string> Value::Names() const {
  std::vector<std::string> names;
  if (node_ != nullptr && Is(Kind::kObject)) {
    for (const auto& [name, value] : node_->items()) {
      names.push_back(name);
    }
  }
  return names;
}

std::string Value::Text() const {
  return node_ != nullptr && Is(Kind::kText) ? node_->get<std::string>() : "";
}

long Value::Number() const {
  return node_ != nullptr && Is(Kind::kNumber) ? node_->get<long>() : 0;
}

bool Value::Flag() const { return node_ != nullptr && Is(Kind::kFlag) && node_->get<bool>(); }

std::string Value::Dump() const {
  return node_ == nullptr ? "nothing" : node_->dump(-1, ' ', false, json::error_handler_t::replace);
}

Value Value::With(const std::string& path, const std::string& text) const {
  json copy = node_ == nullptr ? json::object() : *node_;
  copy[json::json_pointer("/" + path)] = text;
  Value value;
  value.root_ = std::make_shared<const json>(std::move(copy));
  value.node_ = value.root_.get();
  return value;
}

}  // namespace kioctl::conform
