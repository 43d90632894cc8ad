// Prints a page of docs/, or the table of nodes that the host has.
#include <cstdio>
#include <string>

#include "page.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr,
                 "usage: reference_pages SOURCE_DIR "
                 "store|documents|actions|known_nodes.inc|elements.json\n");
    return 2;
  }
  std::string error;
  const auto page = kio::tools::MakePage(argv[1], argv[2], &error);
  if (!page) {
    std::fprintf(stderr, "reference_pages: %s\n", error.c_str());
    return 1;
  }
  return std::fputs(page->c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
