#include "figures.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace kio::bench {
namespace {

std::vector<Figure>& MutableFigures() {
  static std::vector<Figure> figures;
  return figures;
}

std::string LimitText(const Figure& figure) {
  if (figure.bound == Bound::kNone) {
    return "";
  }
  char text[64];
  std::snprintf(text, sizeof(text), "%s %g",
                figure.bound == Bound::kAtMost ? "<=" : ">=", figure.limit);
  return text;
}

}  // namespace

void AddFigure(const Figure& figure) { MutableFigures().push_back(figure); }

const std::vector<Figure>& Figures() { return MutableFigures(); }

void PrintFigures() {
  std::printf("\n%-58s %12s %-12s %-10s\n", "figure", "value", "unit", "limit");
  for (const Figure& figure : Figures()) {
    std::printf("%-58s %12.3f %-12s %-10s %s\n", figure.name.c_str(), figure.value, figure.unit,
                LimitText(figure).c_str(), figure.IsMissed() ? "MISSED" : "");
  }
}

bool WriteFigures(const char* path) {
  std::ofstream file(path);
  file << "[";
  const char* separator = "\n";
  for (const Figure& figure : Figures()) {
    file << separator << R"( {"name": ")" << figure.name << R"(", "value": )" << figure.value
         << R"(, "unit": ")" << figure.unit << R"(", "limit": ")" << LimitText(figure)
         << R"(", "missed": )" << (figure.IsMissed() ? "true" : "false") << "}";
    separator = ",\n";
  }
  file << "\n]\n";
  file.close();
  return !file.fail();
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

std::string ReadFile(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) {
    std::fprintf(stderr, "cannot read %s\n", path.c_str());
    std::exit(1);
  }
  return text.str();
}

}  // namespace kio::bench
