// A connection to the router on which a case sends what no client of HTTP would.
#ifndef CTL_CONFORM_RAW_H
#define CTL_CONFORM_RAW_H

#include <chrono>
#include <string>

namespace kioctl::conform {

class RawConnection {
 public:
  // Throws a Failure when there is none.
  RawConnection(const std::string& url, std::chrono::milliseconds patience);
  ~RawConnection();
  RawConnection(const RawConnection&) = delete;
  RawConnection& operator=(const RawConnection&) = delete;

  void Send(const std::string& bytes);
  // What comes until the router closes the connection, or says nothing for as long as the patience.
  std::string Read();
  // The same until an answer is whole, as its head tells.
  std::string ReadAnswer();

 private:
  std::string ReadUntil(bool one_answer);

  void* handle_;
  int socket_ = -1;
  std::chrono::milliseconds patience_;
};

}  // namespace kioctl::conform

#endif  // CTL_CONFORM_RAW_H
