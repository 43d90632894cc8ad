// A directory that lives as long as its owner.
#ifndef TESTS_HOST_TEMP_DIR_H
#define TESTS_HOST_TEMP_DIR_H

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

class TempDir {
 public:
  // Short, since the library's shell commands hold the directory's path.
  TempDir() {
    char name[] = "/tmp/kio.XXXXXX";
    path_ = mkdtemp(name) == nullptr ? "" : name;
  }
  ~TempDir() {
    if (!path_.empty()) {
      std::error_code ignored;
      std::filesystem::remove_all(path_, ignored);
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
