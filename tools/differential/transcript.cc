#include "transcript.h"

#include <cstring>

namespace kio::differential {

void Transcript::Begin(bool keep_text) {
  keeps_text_ = keep_text;
  digest_ = 0x243F6A8885A308D3;
  text_.clear();
}

void Transcript::Mix(std::string_view bytes) {
  constexpr std::uint64_t kFactor = 0x9FB21C651E98DF25;
  const auto step = [this](std::uint64_t word) {
    digest_ = (digest_ ^ word) * kFactor;
    digest_ ^= digest_ >> 29;
  };
  step(bytes.size());
  std::uint64_t word = 0;
  while (bytes.size() >= sizeof(word)) {
    std::memcpy(&word, bytes.data(), sizeof(word));
    step(word);
    bytes.remove_prefix(sizeof(word));
  }
  word = 0;
  if (!bytes.empty()) {
    std::memcpy(&word, bytes.data(), bytes.size());
    step(word);
  }
}

void Transcript::Event(std::string_view name, Parts parts) {
  Mix(name);
  for (const Part& part : parts) {
    Mix(part.view());
  }
  if (keeps_text_) {
    AppendLine("", name, parts);
  }
}

void Transcript::Note(std::string_view name, Parts parts) {
  if (keeps_text_) {
    AppendLine("# ", name, parts);
  }
}

void Transcript::AppendLine(std::string_view mark, std::string_view name, Parts parts) {
  text_.append(mark).append(name);
  for (const Part& part : parts) {
    text_ += ' ';
    if (part.is_number()) {
      text_.append(part.view());
    } else {
      text_.append("\"").append(Escaped(part.view())).append("\"");
    }
  }
  text_ += '\n';
}

Transcript& TheTranscript() {
  static Transcript transcript;
  return transcript;
}

std::string Escaped(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string escaped;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '\n') {
      escaped += "\\n";
    } else if (character == '\\' || character == '"') {
      escaped.append("\\").append(1, character);
    } else if (byte < ' ' || byte > '~') {
      escaped.append("\\x").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
    } else {
      escaped += character;
    }
  }
  return escaped;
}

}  // namespace kio::differential
