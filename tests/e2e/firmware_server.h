// The demo's firmware server on the loopback address, with a list, release notes and an image.
#ifndef TESTS_E2E_FIRMWARE_SERVER_H
#define TESTS_E2E_FIRMWARE_SERVER_H

#include <sys/types.h>

#include <string>

#include "../host/temp_dir.h"

class FirmwareServer {
 public:
  FirmwareServer() = default;
  ~FirmwareServer();
  FirmwareServer(const FirmwareServer&) = delete;
  FirmwareServer& operator=(const FirmwareServer&) = delete;

  // Serves what is put on it from then on, images at so many bytes a second (0: as fast as it
  // goes). Returns false when it does not come to listen.
  bool Start(int bytes_per_second);

  // Puts a file below its root.
  void Put(const std::string& path, const std::string& content) const;

  // A host that is started with this in its environment fetches whatever address from this server.
  std::string Proxy() const { return "http://127.0.0.1:" + std::to_string(port_); }

 private:
  TempDir dir_;
  int port_ = 0;
  pid_t pid_ = -1;
};

// An image of `size` bytes of data, made by mkimage.
std::string MakeImage(size_t size);

// A firmware list with one entry for every router of this model.
std::string ListWith(const std::string& file_url, const std::string& notes_url);

#endif  // TESTS_E2E_FIRMWARE_SERVER_H
