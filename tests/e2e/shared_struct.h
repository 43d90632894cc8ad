// A C structure in a file that a host and the test share.
#ifndef TESTS_E2E_SHARED_STRUCT_H
#define TESTS_E2E_SHARED_STRUCT_H

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "host_process.h"

template <typename Struct>
class SharedStruct {
 public:
  // Begins with zeros.
  explicit SharedStruct(const std::string& file) {
    WriteFile(file, std::string(sizeof(Struct), '\0'));
    const int opened = open(file.c_str(), O_RDWR | O_CLOEXEC);
    void* const map = mmap(nullptr, sizeof(Struct), PROT_READ | PROT_WRITE, MAP_SHARED, opened, 0);
    close(opened);
    if (map == MAP_FAILED) {
      std::abort();
    }
    struct_ = static_cast<Struct*>(map);
  }
  ~SharedStruct() { munmap(const_cast<Struct*>(struct_), sizeof(Struct)); }
  SharedStruct(const SharedStruct&) = delete;
  SharedStruct& operator=(const SharedStruct&) = delete;

  volatile Struct* operator->() const { return struct_; }

 private:
  volatile Struct* struct_;
};

#endif  // TESTS_E2E_SHARED_STRUCT_H
