#include "firmware_server.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "host_process.h"

namespace {

pid_t StartProgram(const std::string& root, const std::string& rate, const std::string& output) {
  const pid_t test = getpid();
  const pid_t pid = fork();
  if (pid == 0) {
    // It ends with the test, however that ends.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    constexpr mode_t kMode = 0600;
    dup2(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, kMode), STDOUT_FILENO);
    if (getppid() == test) {
      execl(KIO_SERVER_PROGRAM, "firmware_server", root.c_str(), rate.c_str(), nullptr);
    }
    _exit(127);
  }
  return pid;
}

// The port that it says; 0 while it has not said it.
int PortIn(const std::string& output) {
  const size_t end = output.rfind("/\n");
  const size_t colon = output.rfind(':', end);
  return end == std::string::npos || colon == std::string::npos
             ? 0
             : std::stoi(output.substr(colon + 1, end - colon - 1));
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
  pid_ = StartProgram(dir_.File("www"), std::to_string(bytes_per_second), dir_.File("out"));
  WaitFor([this] {
    if (waitpid(pid_, nullptr, WNOHANG) != 0) {
      pid_ = -1;
      return true;
    }
    port_ = PortIn(ReadFile(dir_.File("out")));
    return port_ > 0;
  });
  return port_ > 0;
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
