// Flash partitions, and what is written to flash by tools of the router.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "kioapp/firmware.h"
#include "kioapp/log.h"
#include "platform/command.h"
#include "platform/line_reader.h"
#include "platform/shell_text.h"
#include "platform/text.h"

namespace kio::firmware {
namespace {

using platform::TextView;

// Takes the next word from what is left of a line; empty at the line's end.
TextView TakeWord(TextView* line) {
  constexpr TextView kBlanks = " \t\n\v\f\r";
  const std::size_t begin = line->find_first_not_of(kBlanks);
  if (begin == TextView::npos) {
    *line = {};
    return {};
  }
  line->remove_prefix(begin);
  const std::size_t end = line->find_first_of(kBlanks);
  const TextView word(line->data(), end != TextView::npos ? end : line->size());
  line->remove_prefix(word.size());
  return word;
}

}  // namespace
}  // namespace kio::firmware

int getMTDPartSize(const char* name) {
  using kio::platform::TextView;
  constexpr std::size_t kLineSize = 128;
  constexpr int kHexadecimal = 16;
  kio::platform::LineReader<kLineSize> lines("/proc/mtd");
  if (!lines.ok()) {
    std::fputs("mtd support not enable?", stderr);
    return 0;
  }
  char line[kLineSize];
  while (lines.Next(line)) {
    TextView rest(line);
    kio::firmware::TakeWord(&rest);  // the device
    const TextView size = kio::firmware::TakeWord(&rest);
    kio::firmware::TakeWord(&rest);  // the size of an erase block
    // Quirk "partition-names-are-quoted": the quotes belong to the name, which ends at a blank.
    const TextView partition = kio::firmware::TakeWord(&rest);
    if (!partition.empty() && partition == kio::platform::ViewOf(name)) {
      return static_cast<int>(std::strtoul(size.data(), nullptr, kHexadecimal));
    }
  }
  return 0;
}

int mtd_write_bootloader(const char* file, int offset, int length) {
  char command[512];
  kio::platform::TextBuffer(command)
      .Append("/bin/mtd_write -o ")
      .AppendNumber(offset)
      .Append(" -l ")
      .AppendNumber(length)
      .Append(" write ")
      .Append(kio::platform::ViewOf(file))
      .Append(" Bootloader");
  msgPrintf("write bootloader");
  return kio::platform::RunCommand(command);
}

int mtd_write_firmware(void) { return 0; }

int write_flash_kernel_version(void) {
  constexpr std::size_t kLineSize = 512;
  char version[kLineSize];
  kio::platform::LineReader<kLineSize> lines("/proc/version");
  if (!lines.Next(version)) {
    return -1;
  }
  // Each character may need an escape before it.
  char command[2 * kLineSize + 64];
  kio::platform::TextBuffer text(command);
  text.Append("nvram_set 2860 old_firmware \"");
  // Quirk "kernel-version-ends-its-line": the value ends with the line end.
  kio::platform::AppendShellText(text, kio::platform::ShellQuotes::kDouble, version);
  text.Append('"');
  return kio::platform::RunCommand(command);
}
