// What the tests expect of each section of the library's table, written out section by section.
#ifndef KIO_TESTS_FIELDS_SECTION_ROW_H
#define KIO_TESTS_FIELDS_SECTION_ROW_H

#include <iosfwd>
#include <string>
#include <vector>

#include "fields/scene.h"
#include "settings/sections.h"

namespace kio::test {

struct SectionRow {
  std::string name = {};  // of its tests
  settings::SectionId section = settings::SectionId::kCount;
  int radio = 0;

  // In documents: nothing for a section that no document has.
  std::string element = {};
  std::vector<Scene> scenes = {};
  std::string missing = {};  // the message of a document without it; empty: it may be missing
  std::string parser = {};   // the function that the log names when it is read

  // What its variables and their document paths begin with.
  std::string variables = {};
  std::string paths = {};
  // What its nodes begin with.
  std::string nodes = {};
};

void PrintTo(const SectionRow& row, std::ostream* out);

std::vector<SectionRow> AllSections();

}  // namespace kio::test

#endif
