#include "support/exchange.h"

#include <ostream>

#include "kioapp/kioapp.h"
#include "support/sample_device.h"

namespace kio::test {
namespace {

constexpr std::size_t kCommandLimit = 127;

std::vector<char> Writable(const std::string& text) {
  std::vector<char> buffer(text.begin(), text.end());
  buffer.push_back('\0');
  return buffer;
}

}  // namespace

void PrintTo(const StoreCall& call, std::ostream* out) {
  static constexpr const char* kNames[] = {"xget_str", "xset_str", "xget_int", "xset_int", "xdel"};
  *out << kNames[static_cast<int>(call.kind)] << " " << call.path << " '" << call.value << "'";
}

std::vector<std::string> ResultCommands(int code, const std::string& message, int wait_sec,
                                        const std::string& directory) {
  const std::string path = (directory + "/rssset_result.xml").substr(0, kCommandLimit);
  std::vector<std::string> commands = {
      "echo '<?xml version=\"1.0\" ?>' > " + path,
      "echo '<root>' >> " + path,
      "echo ' <RssSetResult>" + std::to_string(code) + "</RssSetResult>' >> " + path,
      "echo ' <RssSetMsg>" + message + "</RssSetMsg>' >> " + path,
      "echo ' <RssGetWaitSec>" + std::to_string(wait_sec) + "</RssGetWaitSec>' >> " + path,
      "echo '</root>' >> " + path,
  };
  for (std::string& command : commands) {
    command = command.substr(0, kCommandLimit);
  }
  return commands;
}

std::string ResultDocument(int code, const std::string& message, int wait_sec) {
  return "<?xml version=\"1.0\" ?>\n<root>\n <RssSetResult>" + std::to_string(code) +
         "</RssSetResult>\n <RssSetMsg>" + message + "</RssSetMsg>\n <RssGetWaitSec>" +
         std::to_string(wait_sec) + "</RssGetWaitSec>\n</root>\n";
}

std::vector<std::string> Changes() {
  std::vector<std::string> changes;
  for (const StoreCall& call : FakeHost::Get().Writes()) {
    const bool is_delete = call.kind == StoreCall::Kind::kDelete;
    changes.push_back(is_delete ? "delete " + call.path : call.path + "=" + call.value);
  }
  return changes;
}

int Parse(const std::string& text) { return do_RssXml_Parser(Writable(text).data()); }

int Parse(const Document& document) { return Parse(document.Text()); }

int ParseCloning(const std::string& text) {
  return do_RssXml_Parser_for_ApCloning(Writable(text).data());
}

int ParseCloning(const Document& document) { return ParseCloning(document.Text()); }

void SettingsTest::SetUp() {
  Host().Reset();
  ClearRecord();
  XmlErrMsg_LostKey = nullptr;
  log_file::Start(3);
}

}  // namespace kio::test
