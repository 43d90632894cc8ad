#include "firmware_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sstream>
#include <thread>
#include <vector>

#include "host_process.h"

namespace {

sockaddr_in Loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int FreePort() {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = Loopback(0);
  socklen_t length = sizeof address;
  const bool bound = bind(fd, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                     getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0;
  close(fd);
  return bound ? ntohs(address.sin_port) : 0;
}

bool IsListening(int port) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = Loopback(port);
  const bool listening =
      connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(fd);
  return listening;
}

std::string Configuration(const std::string& dir, int port, int bytes_per_second) {
  std::ostringstream text;
  text << "daemon off;\nmaster_process off;\npid " << dir << "/pid;\nerror_log " << dir
       << "/error.log;\nevents {}\nhttp {\n  access_log off;\n";
  for (const char* const kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"}) {
    text << "  " << kind << "_temp_path " << dir << "/temp;\n";
  }
  text << "  server {\n    listen 127.0.0.1:" << port << ";\n    root " << dir
       << "/www;\n    location ~ \\.bin$ { limit_rate " << bytes_per_second << "; }\n  }\n}\n";
  return text.str();
}

pid_t StartNginx(const std::string& dir) {
  std::vector<std::string> words = {
      "nginx", "-p", dir, "-e", dir + "/error.log", "-c", dir + "/nginx.conf"};
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  const pid_t pid = fork();
  if (pid == 0) {
    execvp(argv[0], argv.data());
    execv("/usr/sbin/nginx", argv.data());
    _exit(127);
  }
  return pid;
}

}  // namespace

FirmwareServer::~FirmwareServer() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

bool FirmwareServer::Start(int bytes_per_second) {
  std::filesystem::create_directories(dir_.File("www"));
  // Another program may take the port before nginx does.
  for (int attempt = 0; attempt < 5; ++attempt) {
    port_ = FreePort();
    WriteFile(dir_.File("nginx.conf"), Configuration(dir_.path(), port_, bytes_per_second));
    pid_ = StartNginx(dir_.path());
    for (int i = 0; i < 1000 && waitpid(pid_, nullptr, WNOHANG) == 0; ++i) {
      if (IsListening(port_)) {
        return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    pid_ = -1;
  }
  return false;
}

void FirmwareServer::Put(const std::string& path, const std::string& content) const {
  const std::filesystem::path file = dir_.File("www") + path;
  std::filesystem::create_directories(file.parent_path());
  WriteFile(file, content);
}

std::string MakeImage(size_t size) {
  const TempDir dir;
  std::mt19937 random(static_cast<unsigned int>(size));
  std::string data(size, '\0');
  for (char& byte : data) {
    byte = static_cast<char>(random());
  }
  WriteFile(dir.File("data"), data);
  const std::string command = "mkimage -A mips -O linux -T kernel -C none -a 0x80000000 -e " +
                              std::string("0x80000400 -n DR2400 -d ") + dir.File("data") + " " +
                              dir.File("image") + " >" + dir.File("said");
  return std::system(command.c_str()) == 0 ? ReadFile(dir.File("image")) : "";
}

std::string ListWith(const std::string& file_url, const std::string& notes_url) {
  return "<?xml version=\"1.0\"?>\n<root>\n <specVersion>\n  <major>1</major>\n  <minor>0</minor>\n"
         " </specVersion>\n <FirmwareList>\n  <Firmware>\n   <MacList>\n"
         "    <MAC>00:00:5E:00:00:01</MAC>\n    <MAC>02:00:5E:*</MAC>\n   </MacList>\n"
         "   <MatchList>\n    <Match>DR2400_FW1.0.?_*</Match>\n   </MatchList>\n   <FwURL>" +
         file_url + "</FwURL>\n   <NotesURL>" + notes_url +
         "</NotesURL>\n  </Firmware>\n </FirmwareList>\n</root>\n";
}
