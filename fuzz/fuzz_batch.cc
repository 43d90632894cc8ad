// A batch, compared with the variables set one by one as a plain reading cuts it. The input is
// lines that begin with '/' for nodes of the store, a line that begins with the separator, and the
// batch.
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "device.h"
#include "input.h"
#include "kioapp/kioapp.h"

namespace {

struct Pair {
  std::string name;
  std::string value;
};

std::vector<Pair> PairsOf(const std::string& text, char separator) {
  constexpr std::size_t kLongestName = 31;
  constexpr std::size_t kLongestValue = 127;
  const std::string blanks = " \t\r\n";
  const std::string ends = std::string("\r\n") + separator;
  std::vector<Pair> pairs;
  for (std::size_t at = text.find_first_not_of(blanks + separator); at != std::string::npos;) {
    const std::size_t equals = text.find('=', at);
    if (equals == std::string::npos) {
      break;
    }
    const std::size_t begin = std::min(text.find_first_not_of(" \t", equals + 1), text.size());
    const std::size_t end = std::min(text.find_first_of(ends, begin), text.size());
    std::string name = text.substr(at, equals - at);
    name.resize(name.find_last_not_of(blanks) + 1);
    std::string value = text.substr(begin, end - begin);
    value.resize(value.find_last_not_of(blanks + separator) + 1);
    pairs.push_back({name.substr(0, kLongestName), value.substr(0, kLongestValue)});
    at = text.find_first_not_of(blanks + separator, end);
  }
  return pairs;
}

std::string_view BytesOf(const RssXmlData& record) {
  return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

int SetOneByOne(const std::vector<Pair>& pairs) {
  for (const Pair& pair : pairs) {
    std::vector<char> value(KIOAPP_VAR_SIZE);
    pair.value.copy(value.data(), value.size() - 1);
    const auto code = static_cast<int>(set_RssVar(pair.name.c_str(), value.data()));
    if (code != 0) {
      write_RssXml_ResultXml(code, pair.name.c_str(), 0);
      return code;
    }
  }
  if (Verify_RssXml() == 1) {
    write_RssXml_ResultXml(KIOAPP_RESULT_APPLIED, "", 0);
  }
  return rssXmlData.setResult;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kio::fuzz::Input input(data, size);
  kio::fuzz::ResetDevice(size);
  kio::fuzz::ChangeNodes(&input);
  const std::string first = input.Line();
  const char separator = first.empty() ? '&' : first[0];
  const std::string batch = input.Rest();
  const std::vector<Pair> pairs = PairsOf(batch, separator);
  bool has_actions = false;
  for (const Pair& pair : pairs) {
    // The first four characters of a name are not looked at.
    has_actions =
        has_actions || (pair.name.size() > 4 && strncasecmp(&pair.name[4], "Act", 3) == 0);
  }
  kio::fuzz::StartVariables();
  // As bytes: they are compared with what stands between the members, too.
  static RssXmlData before;
  std::memcpy(&before, &rssXmlData, sizeof(before));
  const kio::fuzz::GuardedText text(batch);
  const kio::fuzz::GuardedBuffer message(KIOAPP_VAR_SIZE);
  // With actions the batch is applied; they change the store, so it is not compared then.
  const int code = do_RssVar_Parser(text.get(), separator, message.get(), has_actions ? 1 : 0);
  alarm(0);
  kio::fuzz::CheckRecord();
  if (std::memchr(message.get(), '\0', KIOAPP_VAR_SIZE) == nullptr) {
    kio::fuzz::Report("the message has lost its terminator");
  }
  if (!has_actions) {
    static RssXmlData after;
    std::memcpy(&after, &rssXmlData, sizeof(after));
    std::memcpy(&rssXmlData, &before, sizeof(before));
    if (SetOneByOne(pairs) != code || BytesOf(after) != BytesOf(rssXmlData)) {
      kio::fuzz::Report("a batch does something else than its variables one by one");
    }
  }
  return 0;
}
