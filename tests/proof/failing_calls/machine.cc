#include "machine.h"

#include "testing/memory_store.h"

namespace kio::proof {
namespace {

// The texts between the double quotes of a command.
std::vector<std::string> Quoted(const std::string& command) {
  std::vector<std::string> texts;
  for (std::size_t at = command.find('"'); at != std::string::npos;) {
    const std::size_t end = command.find('"', at + 1);
    if (end == std::string::npos) {
      break;
    }
    texts.push_back(command.substr(at + 1, end - at - 1));
    at = command.find('"', end + 1);
  }
  return texts;
}

// echo 'TEXT' > FILE, or >> FILE.
void Echo(const std::string& command, std::map<std::string, std::string>& files) {
  constexpr std::string_view kBegin = "echo '";
  const std::size_t end = command.rfind("' >");
  if (end == std::string::npos) {
    return;
  }
  const std::string line = command.substr(kBegin.size(), end - kBegin.size()) + "\n";
  const bool appends = command.compare(end + 2, 2, ">>") == 0;
  std::string& file = files[command.substr(command.find_first_not_of("> ", end + 2))];
  file = appends ? file + line : line;
}

}  // namespace

Machine& Machine::Get() {
  static Machine machine;
  return machine;
}

void Machine::Note(std::string_view what, std::string_view text) {
  trace.push_back(std::string(what) + " " + std::string(text));
}

int Machine::LowestDescriptor() const {
  int descriptor = 3;
  while (open_files.contains(descriptor) || sockets.contains(descriptor)) {
    ++descriptor;
  }
  return descriptor;
}

void Machine::RunCommand(const std::string& command) {
  const std::vector<std::string> quoted = Quoted(command);
  if (command.starts_with("echo '")) {
    Echo(command, files);
  } else if (command.starts_with("rm -f ")) {
    for (const std::string& file : quoted) {
      files.erase(file);
    }
  } else if (command.starts_with("cp -f ") && quoted.size() == 2 && files.contains(quoted[0])) {
    files[quoted[1]] = files[quoted[0]];
  } else if (command.starts_with("wget -O ") && quoted.size() == 2) {
    const auto found = server.find(quoted[1]);
    files[quoted[0]] = found != server.end() ? found->second : "";
  } else if (command.starts_with("echo `ps aux") && quoted.size() == 2) {
    files[quoted[1]] = processes;
  } else if (command.starts_with("wlctl -i wl0 staassoclist")) {
    files["/var/tmp_assoc"] =
        "assoclist 02:00:5E:00:00:01 -41\nnothing\nassoclist 02:00:5E:00:00:02 -67\n";
  } else if (command.starts_with("wlctl -i wl1 staassoclist")) {
    files["/var/tmp_assoc"] = "assoclist 02:00:5E:00:00:03 -50\n";
  }
}

std::map<std::string, std::string> Machine::Store() {
  std::map<std::string, std::string> nodes;
  VisitNodes(
      [](void* context, const char* path, const char* text) {
        (*static_cast<std::map<std::string, std::string>*>(context))[path] = text;
      },
      &nodes);
  return nodes;
}

}  // namespace kio::proof
