// Firmware lists and images.
#include "buffers.h"
#include "kioapp/kioapp.h"
#include "machine.h"
#include "observe.h"
#include "scenario.h"
#include "store.h"
#include "texts.h"

namespace kio::differential {
namespace {

std::string Tagged(Random& random, const std::string& name, const std::string& content) {
  switch (random.Below(60)) {
    case 0:
      return "<" + name + "/>";
    case 1:
      return "<" + name + " />";
    case 2:
      return "<" + name + "></" + name + ">";
    case 3:
      return "<" + name + ">" + content;
    case 4:
      return "<" + MixedCase(random, name) + ">" + content + "</" + MixedCase(random, name) + ">";
    case 5:
      return "";
    case 6:
      return "<" + name + "/><" + name + ">" + content + "</" + name + ">";
    default:
      return "<" + name + ">" + content + "</" + name + ">";
  }
}

// The router's own text, one that is close to it, or a pattern that fits more texts.
std::string Pattern(Random& random, const std::string& own) {
  switch (random.Below(8)) {
    case 0:
      return own;
    case 1:
      return own.substr(0, static_cast<std::size_t>(random.Below(18))) + "*";
    case 2: {
      std::string pattern = own;
      if (!pattern.empty()) {
        pattern[static_cast<std::size_t>(random.Below(static_cast<int>(pattern.size())))] = '?';
      }
      return pattern;
    }
    case 3:
      return "*";
    case 4:
      return Odd(random, 200);
    case 5:
      return own.substr(0, 5) + Letters(random, random.Below(140));
    default:
      return Mac(random);
  }
}

std::string OwnMac() { return Store::Text("/fwupgradeinfo/devicemac").value_or(""); }
std::string OwnFile() { return Store::Text("/fwupgradeinfo/currfwfilename").value_or(""); }

int Items(Random& random) { return random.OneIn(25) ? random.Between(96, 104) : random.Below(4); }

std::string Range(Random& random) {
  const std::string mac = OwnMac();
  std::string low = mac;
  std::string high = mac;
  if (!mac.empty() && random.OneIn(2)) {
    low.back() = '0';
    high.back() = 'z';
  }
  return Tagged(random, "Start", random.OneIn(4) ? Mac(random) : low) +
         Tagged(random, "End", random.OneIn(4) ? Mac(random) : high);
}

std::string MacList(Random& random) {
  std::string list;
  for (int i = Items(random); i > 0; --i) {
    list += Tagged(random, "MAC", Pattern(random, OwnMac()));
  }
  for (int i = Items(random); i > 0; --i) {
    list += Tagged(random, "MACs", Range(random));
  }
  return Tagged(random, "MacList", list);
}

std::string MatchList(Random& random) {
  std::string list;
  for (int i = Items(random); i > 0; --i) {
    list += Tagged(random, "Match", Pattern(random, OwnFile()));
  }
  return Tagged(random, "MatchList", list);
}

std::string Entry(Random& random) {
  constexpr const char* kFiles[] = {"/fw/AB12_FW1.0.8.bin", "/fw/AB12_FW1.0.2.bin?x=1&y",
                                    "/AB12_FW2.bin",        "noslash_FW3.bin",
                                    "/a/b/c_FW1.2.bin?d/e", "/fw/&lt;x&gt;.bin"};
  std::string entry;
  if (random.Chance(80)) {
    entry += MacList(random);
  }
  if (random.Chance(50)) {
    entry += MatchList(random);
  }
  std::string file = random.OneIn(10) ? Odd(random, 200) : random.Of(kFiles);
  if (random.OneIn(10)) {
    file = "/" + OwnFile();
  }
  entry += Tagged(random, "FwURL", file);
  entry += Tagged(random, "NotesURL", random.OneIn(10) ? Odd(random, 200) : "/notes.txt");
  return entry;
}

std::string Version(Random& random) {
  if (random.OneIn(25)) {
    return Tagged(random, "major", Number(random)) + Tagged(random, "minor", Number(random));
  }
  return "<major>1</major><minor>0</minor>";
}

void RunList(Random& random) {
  std::string text = MakeFirmwareList(random);
  if (random.OneIn(4)) {
    text = Mutated(random, text, random.Between(1, 5));
  }
  const Buffer document(text);
  const Buffer file(sizeof(fwXmlData.fileUrl));
  const Buffer notes(sizeof(fwXmlData.notesUrl));
  Note("list", {text});
  const int result = do_FwXml_Parser(document.get(), random.OneIn(5) ? nullptr : file.get(),
                                     random.OneIn(5) ? nullptr : notes.get());
  Answer("do_FwXml_Parser", {result, document.bytes(), file.bytes(), notes.bytes()});
  if (random.OneIn(50)) {
    Answer("do_FwXml_Parser", {do_FwXml_Parser(nullptr, file.get(), nullptr)});
  }
}

// Lists and entries on their own, with a length.
void RunParts(Random& random) {
  std::string text;
  switch (random.Below(4)) {
    case 0:
      text = Entry(random);
      break;
    case 1:
      text = MacList(random) + MatchList(random);
      break;
    case 2:
      text = Tagged(random, "FirmwareList", Tagged(random, "Firmware", Entry(random)));
      break;
    default:
      text = Mutated(random, MakeFirmwareList(random), random.Below(4));
      break;
  }
  const int length = random.OneIn(2) ? 0 : random.Between(-1, static_cast<int>(text.size()));
  const Buffer block(text);
  Note("block", {text, length});
  if (random.OneIn(3)) {
    const int result = do_FwFirmware_Parser(block.get(), length);
    Answer("do_FwFirmware_Parser", {result, block.bytes()});
  } else {
    const int result = do_FwEntryList_Parser(block.get(), length, random.Between(-1, 4));
    Answer("do_FwEntryList_Parser", {result, block.bytes()});
  }
  if (random.OneIn(20)) {
    Answer("do_FwFirmware_Parser", {do_FwFirmware_Parser(nullptr, length)});
    Answer("do_FwEntryList_Parser", {do_FwEntryList_Parser(nullptr, length, 0)});
  }
}

void PutBigEndian(std::string& bytes, std::size_t at, unsigned value) {
  for (std::size_t i = 0; i < 4 && at + i < bytes.size(); ++i) {
    bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
  }
}

unsigned CrcOf(std::string_view bytes) {
  return crc32(0, reinterpret_cast<const unsigned char*>(bytes.data()),
               static_cast<unsigned>(bytes.size()));
}

std::string Bytes(Random& random, int count) {
  std::string bytes;
  while (static_cast<int>(bytes.size()) < count) {
    bytes += static_cast<char>(random.Next());
  }
  return bytes;
}

std::string MakeImage(Random& random) {
  constexpr int kSizes[] = {0, 1, 64, 100, 3248, 3249, 8191, 8192, 8193, 20000};
  std::string image(64, '\0');
  const std::string data = Bytes(random, random.OneIn(2) ? random.Of(kSizes) : random.Below(300));
  image.replace(28, 30, Bytes(random, 30));
  PutBigEndian(image, 0, 0x27051956);
  PutBigEndian(image, 24, CrcOf(data));
  PutBigEndian(image, 4, CrcOf(image));
  image += data;
  if (random.OneIn(3)) {
    // Flips one bit.
    const int place = random.Below(static_cast<int>(random.OneIn(2) ? 64 : image.size()));
    image[static_cast<std::size_t>(place)] =
        static_cast<char>(image[static_cast<std::size_t>(place)] ^ (1 << random.Below(8)));
  }
  return image;
}

void RunImage(Random& random) {
  const std::string image = MakeImage(random);
  const int before = random.OneIn(3) ? random.Below(600) : 0;
  const std::string path =
      random.OneIn(8) ? "/" + Letters(random, random.Below(300)) : "/tmp/upld.bin";
  Machine& machine = Machine::Get();
  File file{Bytes(random, before) + image + Bytes(random, random.OneIn(3) ? 50 : 0)};
  if (random.OneIn(8)) {
    // The file is cut after the library has asked for its size.
    file.reported_size = file.content.size();
    file.content.resize(
        static_cast<std::size_t>(random.Below(static_cast<int>(*file.reported_size))));
  } else if (random.OneIn(10)) {
    file.reported_size = random.OneIn(2) ? 0 : 40000000;
  }
  if (random.OneIn(8)) {
    file.bad_from =
        static_cast<std::size_t>(random.Below(static_cast<int>(file.content.size()) + 1));
  }
  if (!random.OneIn(15)) {
    machine.files[path] = file;
  }
  machine.gives_descriptor_0 = random.OneIn(30);
  const auto length = static_cast<unsigned>(static_cast<int>(image.size()) +
                                            (random.OneIn(5) ? random.Between(-70, 70) : 0));
  const auto offset = static_cast<unsigned>(before + (random.OneIn(8) ? random.Between(-9, 9) : 0));
  const Buffer name(path);
  const Buffer message(path.size() + 60);
  Note("image", {path, offset, length, file.content.size()});
  const int result = check(name.get(), offset, random.OneIn(20) ? 63 : length, message.get());
  Answer("check", {result, message.bytes()});
}

void RunCrc(Random& random) {
  constexpr int kSizes[] = {0, 3, 4, 7, 8, 1200, 3247, 3248, 3249, 5296, 5297, 9000};
  const int size = random.OneIn(2) ? random.Of(kSizes) : random.Below(200);
  const Buffer data(static_cast<std::size_t>(size) + 1);
  const std::string bytes = Bytes(random, size);
  bytes.copy(data.get() + 1, bytes.size());
  const auto seed = random.OneIn(2) ? 0U : static_cast<unsigned>(random.Next());
  Answer("crc32", {crc32(seed, reinterpret_cast<const unsigned char*>(data.get() + 1),
                         static_cast<unsigned>(size))});
}

std::string PartitionLine(Random& random) {
  constexpr const char* kNames[] = {"\"Kernel\"", "\"Bootloader\"", "\"Root FS\"", "Kernel"};
  std::string line = "mtd" + std::to_string(random.Below(9)) + ": ";
  line += CharactersOf(random, "0123456789abcdefABCDEF", random.Between(0, 10)) + " 00010000 ";
  line += random.Of(kNames);
  if (random.OneIn(8)) {
    line = Odd(random, 300);
  }
  if (random.OneIn(20)) {
    line = std::string(static_cast<std::size_t>(random.Between(100, 140)), ' ') + line;
  }
  return line;
}

void RunFlash(Random& random) {
  Machine& machine = Machine::Get();
  std::string partitions = "dev:    size   erasesize  name\n";
  for (int i = random.Below(6); i > 0; --i) {
    partitions += PartitionLine(random) + (random.OneIn(20) ? "" : "\n");
  }
  if (!random.OneIn(6)) {
    machine.files["/proc/mtd"] = {partitions};
  }
  if (!random.OneIn(6)) {
    machine.files["/proc/version"] = {random.OneIn(3) ? Odd(random) + "\n" + Odd(random)
                                                      : "Linux version 2.6.36 (gcc) #1\nmore"};
  }
  constexpr const char* kNames[] = {"\"Kernel\"", "\"Bootloader\"", "\"Root", "Kernel", "", "FS\""};
  Note("partitions", {partitions});
  Answer("getMTDPartSize", {getMTDPartSize(random.Of(kNames))});
  Answer("write_flash_kernel_version", {write_flash_kernel_version()});
  const Buffer path(random.OneIn(3) ? Odd(random, 600) : "/tmp/boot.bin");
  Answer("mtd_write_bootloader",
         {mtd_write_bootloader(path.get(), static_cast<int>(random.Next()), random.Below(99999))});
  Answer("mtd_write_firmware", {mtd_write_firmware()});
}

constexpr Kind kKinds[] = {
    {"firmware list", 9, RunList}, {"parts of a firmware list", 4, RunParts},
    {"image", 4, RunImage},        {"crc", 2, RunCrc},
    {"flash", 2, RunFlash},
};

}  // namespace

const std::span<const Kind> kFirmwareKinds = kKinds;

std::string MakeFirmwareList(Random& random) {
  std::string entries;
  for (int i = random.OneIn(40) ? random.Between(97, 103) : random.Between(0, 4); i > 0; --i) {
    entries += Tagged(random, "Firmware", Entry(random));
  }
  std::string text = Tagged(random, "specVersion", Version(random));
  text += Tagged(random, "FirmwareList", entries);
  return Tagged(random, "root", text) + (random.OneIn(10) ? "trailing" : "");
}

}  // namespace kio::differential
