#include "machine.h"

#include <cstdio>

#include "transcript.h"

namespace kio::differential {
namespace {

ssize_t PrintEvent(void* name, const char* text, std::size_t size) {
  Event(static_cast<const char*>(name), {std::string_view(text, size)});
  return static_cast<ssize_t>(size);
}

}  // namespace

Machine& Machine::Get() {
  static Machine machine;
  return machine;
}

// Only `rm -f "FILE"` has an effect: it removes a file.
void RunCommand(std::string_view command) {
  constexpr std::string_view kRemove = "rm -f \"";
  if (command.starts_with(kRemove) && command.ends_with('"')) {
    command.remove_prefix(kRemove.size());
    command.remove_suffix(1);
    Machine::Get().files.erase(std::string(command));
  }
}

void WatchConsole() {
  const auto watch = [](char* name) {
    FILE* const console = fopencookie(name, "w", {nullptr, PrintEvent, nullptr, nullptr});
    std::setvbuf(console, nullptr, _IONBF, 0);
    return console;
  };
  static char names[2][8] = {"stdout", "stderr"};
  stdout = watch(names[0]);
  stderr = watch(names[1]);
}

}  // namespace kio::differential
