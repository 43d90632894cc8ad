#include "route_description.h"

namespace kiohost {

std::string PathTemplate(const RouteDescription& route) {
  std::string path(route.pattern);
  if (const size_t star = path.find('*'); star != std::string::npos) {
    path.replace(star, 1, "{" + std::string(route.star) + "}");
  }
  return path;
}

}  // namespace kiohost
