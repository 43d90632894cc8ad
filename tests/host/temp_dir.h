// A directory that lives as long as its owner.
#ifndef TESTS_HOST_TEMP_DIR_H
#define TESTS_HOST_TEMP_DIR_H

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>

#include "../../testing/temporary_root.h"

class TempDir {
 public:
  TempDir() : path_(std::string(TemporaryRoot()) + KIO_TEMPORARY_NAME) {
    if (mkdtemp(path_.data()) == nullptr) {
      path_.clear();
    }
  }
  ~TempDir() {
    if (path_.empty()) {
      return;
    }
    // The scripts of a host that was killed may still write there, and a file that comes meanwhile
    // keeps the directory.
    constexpr int kTries = 500;
    constexpr auto kPause = std::chrono::milliseconds(10);
    std::error_code error;
    for (int i = 0; i < kTries; ++i) {
      std::filesystem::remove_all(path_, error);
      if (!error) {
        return;
      }
      std::this_thread::sleep_for(kPause);
    }
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }

  // Makes a directory in it that is for this user alone.
  std::string MakeDirectory(const std::string& name) const {
    std::filesystem::create_directory(File(name));
    std::filesystem::permissions(File(name), std::filesystem::perms::owner_all);
    return File(name);
  }

 private:
  std::string path_;
};

#endif  // TESTS_HOST_TEMP_DIR_H
