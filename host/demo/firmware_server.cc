// firmware_server DIRECTORY [BYTES_PER_SECOND]: the firmware server of the demo and the tests. It
// serves the files below a directory on a free loopback port, says which, and runs until SIGTERM.
// Images (*.bin) are sent at so many bytes a second, so that a download takes its time; 0, the
// default, is as fast as it goes. Asked as a proxy it answers for every server.
#include <arpa/inet.h>
#include <fcntl.h>
#include <microhttpd.h>
#include <netinet/in.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr useconds_t kMicroseconds = 1000000;
constexpr size_t kPiecesPerSecond = 20;
constexpr size_t kBlock = 65536;

struct Server {
  std::string root;
  size_t bytes_per_second;
};

// The path of a request's target, which names a server before it when a proxy is asked.
std::string_view PathOf(std::string_view target) {
  constexpr std::string_view kScheme = "http://";
  if (target.starts_with(kScheme)) {
    target.remove_prefix(kScheme.size());
    target.remove_prefix(std::min(target.find('/'), target.size()));
  }
  return target;
}

// A file below the root; -1 without one.
int OpenFile(const std::string& root, std::string_view path, struct stat* status) {
  if (!path.starts_with('/') || path.find("/..") != std::string_view::npos) {
    return -1;
  }
  const int file = open((root + std::string(path)).c_str(), O_RDONLY | O_CLOEXEC);
  if (file >= 0 && (fstat(file, status) != 0 || !S_ISREG(status->st_mode))) {
    close(file);
    return -1;
  }
  return file;
}

struct SlowFile {
  int file;
  size_t piece;
};

ssize_t ReadPiece(void* slow_file, uint64_t position, char* data, size_t size) {
  const auto* const slow = static_cast<SlowFile*>(slow_file);
  usleep(kMicroseconds / kPiecesPerSecond);
  const ssize_t got =
      pread(slow->file, data, std::min(size, slow->piece), static_cast<off_t>(position));
  return got > 0 ? got : static_cast<ssize_t>(MHD_CONTENT_READER_END_WITH_ERROR);
}

void CloseSlowFile(void* slow_file) {
  auto* const slow = static_cast<SlowFile*>(slow_file);
  close(slow->file);
  delete slow;
}

MHD_Response* FileResponse(int file, size_t size, size_t bytes_per_second) {
  if (bytes_per_second == 0) {
    return MHD_create_response_from_fd(size, file);
  }
  const size_t piece = std::max<size_t>(bytes_per_second / kPiecesPerSecond, 1);
  return MHD_create_response_from_callback(size, kBlock, ReadPiece, new SlowFile{file, piece},
                                           CloseSlowFile);
}

MHD_Result Answer(void* self, MHD_Connection* connection, const char* target, const char* method,
                  const char* /*version*/, const char* /*body*/, size_t* /*body_size*/,
                  void** /*request*/) {
  const auto& server = *static_cast<Server*>(self);
  const std::string_view path = PathOf(target);
  struct stat status = {};
  int file = -1;
  unsigned int code = MHD_HTTP_OK;
  if (std::string_view(method) != MHD_HTTP_METHOD_GET) {
    code = MHD_HTTP_METHOD_NOT_ALLOWED;
  } else if ((file = OpenFile(server.root, path, &status)) < 0) {
    code = MHD_HTTP_NOT_FOUND;
  }
  MHD_Response* const response =
      file < 0 ? MHD_create_response_from_buffer(0, nullptr, MHD_RESPMEM_PERSISTENT)
               : FileResponse(file, static_cast<size_t>(status.st_size),
                              path.ends_with(".bin") ? server.bytes_per_second : 0);
  const MHD_Result queued = MHD_queue_response(connection, code, response);
  MHD_destroy_response(response);
  return queued;
}

// Blocks the signals that end the program, for the server's threads too, and returns them.
sigset_t BlockedSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  return signals;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: firmware_server DIRECTORY [BYTES_PER_SECOND]\n");
    return 2;
  }
  Server server = {argv[1], argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0};
  const sigset_t signals = BlockedSignals();
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  MHD_Daemon* const daemon =
      MHD_start_daemon(MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION, 0, nullptr,
                       nullptr, Answer, &server, MHD_OPTION_SOCK_ADDR, &address, MHD_OPTION_END);
  const MHD_DaemonInfo* const info =
      daemon == nullptr ? nullptr : MHD_get_daemon_info(daemon, MHD_DAEMON_INFO_BIND_PORT);
  if (info == nullptr) {
    std::fprintf(stderr, "firmware_server: the server could not be started\n");
    return 1;
  }
  std::printf("listening on http://127.0.0.1:%d/\n", info->port);
  std::fflush(stdout);
  int signal_number = 0;
  sigwait(&signals, &signal_number);
  MHD_stop_daemon(daemon);
  return 0;
}
