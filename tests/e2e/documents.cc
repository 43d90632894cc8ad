#include "documents.h"

#include <cstdio>

#include "host_process.h"

namespace {

struct Range {
  size_t begin;
  size_t length;
};

// The content of the first element `name` from `from` on. A missing element is a mistake in the
// test: the range then lies beyond the text, where replacing throws.
Range Content(const std::string& document, const std::string& name, size_t from = 0) {
  const std::string tag = "<" + name + ">";
  const size_t at = document.find(tag, from);
  const size_t end = document.find("</" + name + ">", at);
  if (at == std::string::npos || end == std::string::npos) {
    return {document.size() + 1, 0};
  }
  return {at + tag.size(), end - at - tag.size()};
}

}  // namespace

std::string FactoryDocument() { return ReadFile(KIO_E2E_DIR "/data/factory.xml"); }

std::string With(const std::string& document, const std::string& name, const std::string& content) {
  const Range range = Content(document, name);
  return std::string(document).replace(range.begin, range.length, content);
}

std::string WithIn(const std::string& document, const std::string& block, const std::string& name,
                   const std::string& content) {
  const Range range = Content(document, name, Content(document, block).begin);
  return std::string(document).replace(range.begin, range.length, content);
}

std::string Without(const std::string& document, const std::string& name) {
  const Range range = Content(document, name);
  const size_t tags = name.size() + 2;
  return std::string(document).replace(range.begin - tags, range.length + 2 * tags + 1, "");
}

std::string StaticUplink(const std::string& address) {
  return "<HardwareType>Ethernet</HardwareType><ConnType>Static</ConnType><IP>" + address +
         "</IP><NetMask>255.255.255.0</NetMask><Gateway>192.0.2.1</Gateway><DNS>192.0.2.1</DNS>";
}

std::string AccessRules(int count) {
  std::string rules = "<WlAcEnbl>1</WlAcEnbl><WlAcMode>1</WlAcMode>";
  for (int i = 1; i <= count; ++i) {
    char rule[96];
    std::snprintf(rule, sizeof rule,
                  "<AcRule><Active>1</Active><MAC>02:00:5E:BB:00:%02X</MAC></AcRule>",
                  static_cast<unsigned int>(i));
    rules += rule;
  }
  return rules;
}

std::string ResultDocument(int code, const std::string& message, int wait_seconds) {
  return "<?xml version=\"1.0\" ?>\n<root>\n <RssSetResult>" + std::to_string(code) +
         "</RssSetResult>\n <RssSetMsg>" + message + "</RssSetMsg>\n <RssGetWaitSec>" +
         std::to_string(wait_seconds) + "</RssGetWaitSec>\n</root>\n";
}
