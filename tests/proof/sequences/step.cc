#include "step.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace kio::sequences {
namespace {

std::string Written(const std::string& value) {
  std::string written;
  for (const char c : value) {
    if (c <= ' ' || c == '%') {
      char code[4];
      std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(c) & 0xFFU);
      written += code;
    } else {
      written += c;
    }
  }
  return written;
}

std::string Read(const std::string& written) {
  constexpr int kHexadecimal = 16;
  std::string value;
  for (size_t i = 0; i < written.size(); ++i) {
    if (written[i] == '%' && i + 2 < written.size()) {
      value +=
          static_cast<char>(std::strtol(written.substr(i + 1, 2).c_str(), nullptr, kHexadecimal));
      i += 2;
    } else {
      value += written[i];
    }
  }
  return value;
}

}  // namespace

std::string Step::Get(const std::string& name, const std::string& otherwise) const {
  const auto word = words.find(name);
  return word == words.end() ? otherwise : word->second;
}

long Step::Number(const std::string& name) const {
  constexpr int kDecimal = 10;
  return std::strtol(Get(name).c_str(), nullptr, kDecimal);
}

std::string TextOf(const Step& step) {
  std::string text = step.kind;
  for (const auto& [name, value] : step.words) {
    text += " " + name + "=" + Written(value);
  }
  return text;
}

std::string TextOf(const Sequence& sequence) {
  std::string text;
  for (const Step& step : sequence) {
    text += TextOf(step) + "\n";
  }
  return text;
}

Sequence ReadSequence(const std::string& text) {
  Sequence sequence;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    std::istringstream words(line);
    Step step;
    words >> step.kind;
    for (std::string word; words >> word;) {
      const size_t equals = word.find('=');
      step.words[word.substr(0, equals)] =
          equals == std::string::npos ? "" : Read(word.substr(equals + 1));
    }
    sequence.push_back(step);
  }
  return sequence;
}

}  // namespace kio::sequences
