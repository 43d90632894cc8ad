// The lines that the library adds to its log.
#ifndef HOST_CONTROL_LOG_TAIL_H
#define HOST_CONTROL_LOG_TAIL_H

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace kiohost {

class LogTail {
 public:
  // Begins at the end of the file, which need not be there.
  explicit LogTail(std::string file);

  // Gives the whole lines that were added since. A file that has become shorter is another one, and
  // is read from its beginning.
  void ReadNew(const std::function<void(const std::string& line)>& take);

 private:
  std::string file_;
  uint64_t place_ = 0;
};

}  // namespace kiohost

#endif  // HOST_CONTROL_LOG_TAIL_H
