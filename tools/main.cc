// Prints the catalogue of the variables.
#include <cstdio>
#include <string>

#include "catalogue.h"

int main(int argc, char** argv) {
  const std::string format = argc == 2 ? argv[1] : "";
  if (format != "json" && format != "markdown") {
    std::fprintf(stderr, "usage: variable_catalogue json|markdown\n");
    return 2;
  }
  const auto entries = kio::tools::ListVariables();
  const std::string text = format == "json" ? kio::tools::CatalogueJson(entries)
                                            : kio::tools::CatalogueMarkdown(entries);
  return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
