#include "record/secret_marks.h"

#include <algorithm>
#include <cctype>

#include "secrets.h"

namespace kiohost {
namespace {

constexpr size_t kLeastAnywhere = 4;

std::string LowerCased(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// The end of the JSON string that begins at a quote: behind its last quote, or the end of the text.
size_t EndOfString(std::string_view text, size_t begin) {
  for (size_t i = begin + 1; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text[i] == '"') {
      return i + 1;
    }
  }
  return text.size();
}

// Whether a member of an object is there with the value true.
bool IsTrue(std::string_view body, std::string_view member) {
  constexpr std::string_view kTrue = "true";
  const size_t name = body.find(member);
  const size_t value =
      body.find_first_not_of(": \t\r\n", std::min(name, body.size() - 1) + member.size());
  return name != std::string_view::npos && value != std::string_view::npos &&
         body.substr(value).starts_with(kTrue);
}

bool IsMask(std::string_view text) { return text.starts_with(kMasked); }

}  // namespace

SecretMarks::SecretMarks(const Json& variables) {
  for (const Json& variable : variables) {
    if (variable["storeNode"].is_string() && variable["documentPath"].is_string() &&
        IsSecret(variable["storeNode"].get<std::string>())) {
      const auto path = variable["documentPath"].get<std::string>();
      names_.push_back(LowerCased(path.substr(path.rfind('/') + 1)));
    }
  }
}

std::string SecretMarks::MarkOf(const std::string& text) {
  if (text.empty() || IsMask(text)) {
    return text;
  }
  const auto known = marks_.find(text);
  if (known != marks_.end()) {
    return known->second;
  }
  std::string mark = std::string(kMasked) + "(" + std::to_string(marks_.size() + 1) + ")";
  marks_[text] = mark;
  if (text.size() >= kLeastAnywhere) {
    longest_first_.push_back(text);
    std::stable_sort(
        longest_first_.begin(), longest_first_.end(),
        [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
  }
  if (on_new_) {
    on_new_(mark, text);
  }
  return mark;
}

// A path and the name of a variable both end with the name of the element.
bool SecretMarks::IsSecretName(std::string_view name) const {
  const std::string lower = LowerCased(name);
  return std::any_of(names_.begin(), names_.end(),
                     [&lower](const std::string& element) { return lower.ends_with(element); });
}

std::string SecretMarks::Masked(std::string text) const {
  for (const std::string& secret : longest_first_) {
    const std::string& mark = marks_.at(secret);
    for (size_t at = text.find(secret); at != std::string::npos;
         at = text.find(secret, at + mark.size())) {
      text.replace(at, secret.size(), mark);
    }
  }
  return text;
}

std::string SecretMarks::MaskedBody(std::string body, char separator) {
  const size_t first = body.find_first_not_of(" \t\r\n");
  const char begin = first == std::string::npos ? '\0' : body[first];
  if (begin == '{' || begin == '[') {
    body = MaskJson(body);
  } else if (body.find('<') != std::string::npos) {
    body = MaskXml(std::move(body));
  } else {
    body = MaskBatch(body, separator);
  }
  return Masked(std::move(body));
}

std::string SecretMarks::MaskXml(std::string body) {
  for (const std::string& name : names_) {
    std::string lower = LowerCased(body);
    const std::string end_tag = "</" + name;
    for (size_t tag = lower.find("<" + name); tag != std::string::npos;
         tag = lower.find("<" + name, tag + 1)) {
      const size_t begin = std::min(lower.find('>', tag), lower.size() - 1) + 1;
      const size_t end = std::min(lower.find(end_tag, begin), lower.size());
      const std::string mark = MarkOf(body.substr(begin, end - begin));
      body.replace(begin, end - begin, mark);
      lower.replace(begin, end - begin, mark);
    }
  }
  return body;
}

// Looks at its strings alone, so that all else stays as it was sent.
std::string SecretMarks::MaskJson(const std::string& body) {
  // An archive with secrets has a hash by which they could be guessed.
  const bool has_hash =
      body.find("\"kiohost backup\"") != std::string::npos && IsTrue(body, "\"secrets\"");
  std::string masked;
  std::string key;   // of the member that a value belongs to
  std::string name;  // the last value of a member "name"
  size_t at = 0;
  for (size_t begin = body.find('"'); begin != std::string::npos; begin = body.find('"', at)) {
    masked.append(body, at, begin - at);
    at = EndOfString(body, begin);
    const std::string text = body.substr(begin + 1, at - begin - (at - begin >= 2 ? 2 : 1));
    const size_t next = body.find_first_not_of(" \t\r\n", at);
    if (next != std::string::npos && body[next] == ':') {
      key = text;
      masked.append(body, begin, at - begin);
      continue;
    }
    const bool is_secret =
        IsSecretName(key) || (key == "value" && IsSecretName(name)) || (key == "hash" && has_hash);
    masked += is_secret ? "\"" + MarkOf(text) + "\"" : body.substr(begin, at - begin);
    name = key == "name" ? text : name;
  }
  return masked + body.substr(std::min(at, body.size()));
}

std::string SecretMarks::MaskBatch(const std::string& body, char separator) {
  std::string masked;
  for (size_t at = 0; at < body.size();) {
    const size_t end = std::min(body.find(separator, at), body.size());
    const std::string part = body.substr(at, end - at);
    const size_t equals = part.find('=');
    masked += equals != std::string::npos && IsSecretName(part.substr(0, equals))
                  ? part.substr(0, equals + 1) + MarkOf(part.substr(equals + 1))
                  : part;
    masked += body.substr(end, 1);
    at = end + 1;
  }
  return masked;
}

}  // namespace kiohost
