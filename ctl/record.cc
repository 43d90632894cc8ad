#include "record.h"

#include <nettle/base64.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "failure.h"
#include "password.h"

namespace kioctl {
namespace {

using nlohmann::json;

constexpr int kRecordFormat = 1;
constexpr char kFirstMark[] = "********(1)";

Failure BadLine(size_t line, const std::string& what) {
  return {ExitCode::kUsage, "line " + std::to_string(line) + " of the record: " + what,
          "name a file that kiohost --record has written"};
}

std::string Decoded(const std::string& digits) {
  base64_decode_ctx context;
  base64_decode_init(&context);
  std::string bytes(BASE64_DECODE_LENGTH(digits.size()), '\0');
  size_t length = bytes.size();
  if (base64_decode_update(&context, &length, reinterpret_cast<uint8_t*>(bytes.data()),
                           digits.size(), digits.data()) == 0 ||
      base64_decode_final(&context) == 0) {
    throw json::other_error::create(0, "its base64 is not valid", nullptr);
  }
  bytes.resize(length);
  return bytes;
}

std::string BodyOf(const json& entry) {
  return entry.contains("base64") ? Decoded(entry["base64"].get<std::string>())
                                  : entry.value("body", "");
}

// The reader of JSON throws when a member is missing or of another type.
RecordedRequest ReadRequest(const json& entry) {
  RecordedRequest request;
  request.number = entry.at("n").get<size_t>();
  request.milliseconds = entry.at("ms").get<long>();
  request.from = entry.at("from").get<std::string>();
  request.connection = entry.at("connection").get<long>();
  request.method = entry.at("method").get<std::string>();
  request.target = entry.at("target").get<std::string>();
  for (const auto& [name, value] : entry.at("headers").items()) {
    request.headers.push_back(name + ": " + value.get<std::string>());
  }
  request.body = BodyOf(entry);
  request.bytes = entry.value("bytes", size_t{0});
  request.is_malformed = entry.value("malformed", false);
  if (entry.contains("password")) {
    request.password = entry["password"].get<std::string>();
  }
  const json& answer = entry.at("answer");
  request.answer.status = answer.at("status").get<int>();
  for (const auto& [name, value] : answer.at("headers").items()) {
    request.answer.headers[name] = value.get<std::string>();
  }
  request.answer.body = BodyOf(answer);
  request.has_stream = answer.value("stream", false);
  return request;
}

}  // namespace

std::vector<RecordedRequest> ReadRecord(const std::string& text) {
  std::istringstream lines(text);
  std::vector<RecordedRequest> requests;
  size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    try {
      const json entry = json::parse(line);
      if (number > 1) {
        requests.push_back(ReadRequest(entry));
      } else if (entry.at("record") != kRecordFormat) {
        throw BadLine(number, "it has another format");
      }
    } catch (const json::exception& error) {
      throw BadLine(number, error.what());
    }
  }
  if (number == 0) {
    throw BadLine(1, "the file is empty");
  }
  return requests;
}

std::optional<FoundMark> FindMark(const std::string& text, size_t from) {
  constexpr std::string_view kBegin = "********(";
  for (size_t begin = text.find(kBegin, from); begin != std::string::npos;
       begin = text.find(kBegin, begin + 1)) {
    const size_t digits = begin + kBegin.size();
    const size_t end = text.find_first_not_of("0123456789", digits);
    if (end != std::string::npos && end > digits && text[end] == ')') {
      return FoundMark{begin, end + 1 - begin};
    }
  }
  return std::nullopt;
}

Secrets::Secrets(const std::string& file, std::function<std::string()> password)
    : password_(std::move(password)) {
  if (file.empty()) {
    return;
  }
  std::istringstream lines(PrivateFile(file));
  size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    try {
      const json entry = json::parse(line);
      texts_[entry.at("mark").get<std::string>()] = entry.at("text").get<std::string>();
    } catch (const json::exception& error) {
      // The message may quote the line.
      throw Failure{ExitCode::kUsage,
                    "line " + std::to_string(number) + " of " + file + " has no mark and text",
                    "name a file that kiohost --record-secrets has written"};
    }
  }
}

const std::string& Secrets::TextOf(const std::string& mark) {
  const auto known = texts_.find(mark);
  if (known != texts_.end()) {
    return known->second;
  }
  if (mark == kFirstMark) {
    return texts_[mark] = password_();
  }
  throw Failure{ExitCode::kUsage, "the record wants a password or key that it calls " + mark,
                "give --secrets FILE; kiohost --record-secrets writes that file"};
}

std::string Secrets::PutBack(const std::string& text,
                             const std::function<std::string(const std::string&)>& form) {
  std::string whole;
  size_t at = 0;
  for (auto mark = FindMark(text, 0); mark; mark = FindMark(text, at)) {
    const std::string& secret = TextOf(text.substr(mark->begin, mark->length));
    whole.append(text, at, mark->begin - at).append(form ? form(secret) : secret);
    at = mark->begin + mark->length;
  }
  return whole.append(text, at, std::string::npos);
}

}  // namespace kioctl
