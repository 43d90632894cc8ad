#include "accept.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <string>

#include "text.h"

namespace kiohost {
namespace {

constexpr int kFullQuality = 1000;

bool IsSameType(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

// Cuts the part before the separator off a text.
std::string_view TakePart(std::string_view* text, char separator) {
  const std::string_view part = text->substr(0, text->find(separator));
  text->remove_prefix(std::min(part.size() + 1, text->size()));
  return Trim(part);
}

// Thousandths. What is no quality counts as the highest one.
int QualityOf(std::string_view text) {
  if (text.empty() || (text.front() != '0' && text.front() != '1')) {
    return kFullQuality;
  }
  int quality = (text.front() - '0') * kFullQuality;
  int unit = kFullQuality / 10;
  for (size_t i = 2; i < text.size() && text[1] == '.' && unit > 0; ++i, unit /= 10) {
    if (std::isdigit(static_cast<unsigned char>(text[i])) == 0) {
      return kFullQuality;
    }
    quality += (text[i] - '0') * unit;
  }
  return std::min(quality, kFullQuality);
}

// How a client names a type: the closest of its ranges counts.
struct Wish {
  enum class By { kNothing, kAnything, kGroup, kName };
  By by = By::kNothing;
  int quality = 0;
};

Wish::By Closeness(std::string_view range, std::string_view type) {
  if (IsSameType(range, type)) {
    return Wish::By::kName;
  }
  const std::string_view group = type.substr(0, type.find('/') + 1);
  if (IsSameType(range, std::string(group) + "*")) {
    return Wish::By::kGroup;
  }
  return range == "*/*" ? Wish::By::kAnything : Wish::By::kNothing;
}

Wish WishFor(std::string_view accept, std::string_view type) {
  Wish wish;
  while (!accept.empty()) {
    std::string_view item = TakePart(&accept, ',');
    const Wish::By by = Closeness(TakePart(&item, ';'), type);
    int quality = kFullQuality;
    while (!item.empty()) {
      const std::string_view parameter = TakePart(&item, ';');
      if (parameter.size() > 2 && IsSameType(parameter.substr(0, 2), "q=")) {
        quality = QualityOf(parameter.substr(2));
      }
    }
    if (by > wish.by) {
      wish = {by, quality};
    }
  }
  return wish;
}

}  // namespace

bool Prefers(std::string_view accept, std::string_view type, std::string_view otherwise) {
  const Wish wish = WishFor(accept, type);
  const Wish other = WishFor(accept, otherwise);
  return wish.quality > other.quality ||
         (wish.quality == other.quality && wish.quality > 0 && wish.by > other.by);
}

bool PrefersProblem(std::string_view accept, std::string_view otherwise) {
  const Wish problem = WishFor(accept, kProblemType);
  const bool names_it = problem.by == Wish::By::kName && problem.quality > 0 &&
                        problem.quality >= WishFor(accept, otherwise).quality;
  return names_it || Prefers(accept, kProblemType, otherwise) ||
         Prefers(accept, kJsonType, otherwise);
}

}  // namespace kiohost
