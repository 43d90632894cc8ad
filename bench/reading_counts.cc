// Counts of instructions of reading every leaf of a document, for callgrind:
//
//     valgrind --tool=callgrind --instr-atstart=no kio_reading_counts READER RULES
//
// READER is library, pugixml, rapidxml or expat. The document is the full one with at most RULES
// rules for each radio; its size is printed. The second reading is counted.
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "figures.h"
#include "toolkit_reader.h"
#include "tree_readers.h"

namespace {

using kio::bench::Settings;

Settings g_settings;

bool ReadByLibrary(const char* document, std::size_t /*size*/, Settings& out) {
  // The finders take a writable text and never change it.
  ReadByToolkit(kio::bench::kLibraryToolkit, const_cast<char*>(document), out);
  return true;
}

struct Reader {
  const char* name;
  bool (*read)(const char* document, std::size_t size, Settings& out);
};

constexpr Reader kReaders[] = {
    {"library", ReadByLibrary},
    {"pugixml", kio::bench::ReadByPugixml},
    {"rapidxml", kio::bench::ReadByRapidxml},
    {"expat", kio::bench::ReadByExpat},
};

const Reader* FindReader(const std::string& name) {
  for (const Reader& reader : kReaders) {
    if (name == reader.name) {
      return &reader;
    }
  }
  return nullptr;
}

std::string DocumentWithRules(int rules) {
  std::string document = kio::bench::ReadFile(KIO_SAMPLE_DOCUMENTS "/full.xml");
  const std::string rule_begin = "    <AcRule>";
  const std::string rule_end = "</AcRule>\n";
  std::size_t list = document.find("<AccessControl>");
  while (list != std::string::npos) {
    std::size_t rule = document.find(rule_begin, list);
    for (int seen = 0; rule < document.find("</AccessControl>", list); ++seen) {
      const std::size_t end = document.find(rule_end, rule) + rule_end.size();
      if (seen >= rules) {
        document.erase(rule, end - rule);
      }
      rule = document.find(rule_begin, seen < rules ? end : rule);
    }
    list = document.find("<AccessControl>", list + 1);
  }
  return document;
}

}  // namespace

int main(int argc, char** argv) {
  const Reader* const reader = argc == 3 ? FindReader(argv[1]) : nullptr;
  if (reader == nullptr) {
    std::fprintf(stderr, "usage: kio_reading_counts library|pugixml|rapidxml|expat RULES\n");
    return 2;
  }
  const int rules = static_cast<int>(std::strtol(argv[2], nullptr, 10));
  const std::string document = DocumentWithRules(rules);
  for (const bool counted : {false, true}) {
    g_settings = {};
    if (counted) {
      CALLGRIND_START_INSTRUMENTATION;
    }
    const bool is_read = reader->read(document.data(), document.size(), g_settings);
    CALLGRIND_STOP_INSTRUMENTATION;
    if (!is_read || g_settings.radios[0].rule_count != rules ||
        g_settings.radios[1].rule_count != rules) {
      std::fprintf(stderr, "%s does not read the document with %d rules\n", reader->name, rules);
      return 1;
    }
  }
  std::printf("%zu\n", document.size());
  return 0;
}
