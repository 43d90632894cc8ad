#include "neighbours.h"

#include <fstream>
#include <sstream>

namespace kiohost {

std::string MacOf(const std::string& address, const std::string& table) {
  std::ifstream stream(table);
  std::string line;
  std::getline(stream, line);  // the names of the columns
  while (std::getline(stream, line)) {
    std::istringstream columns(line);
    std::string ip;
    std::string type;
    std::string flags;
    std::string mac;
    // An entry without the flag 2 is not complete.
    if (columns >> ip >> type >> flags >> mac && ip == address && flags != "0x0") {
      return mac;
    }
  }
  return {};
}

}  // namespace kiohost
