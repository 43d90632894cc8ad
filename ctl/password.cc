#include "password.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "failure.h"
#include "files.h"
#include "interrupt.h"

namespace kioctl {
namespace {

// The terminal of the user, even when input and output are redirected.
class Terminal {
 public:
  Terminal() : file_(open("/dev/tty", O_RDWR | O_CLOEXEC)) {}
  ~Terminal() {
    if (file_ >= 0) {
      close(file_);
    }
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  int file() const { return file_; }

  void Write(const std::string& text) const {
    // What a terminal does not take has nobody who would read it.
    if (write(file_, text.data(), text.size()) < 0) {
      return;
    }
  }

  // A line without its end; nothing at the end of the input.
  std::optional<std::string> ReadLine() const {
    std::string line;
    for (char c = 0;;) {
      const ssize_t got = read(file_, &c, 1);
      StopIfInterrupted();
      if (got <= 0) {
        return std::nullopt;
      }
      if (c == '\n') {
        return line;
      }
      line += c;
    }
  }

 private:
  int file_;
};

// Nothing typed is shown as long as this lives.
class Hidden {
 public:
  explicit Hidden(const Terminal& terminal) : terminal_(&terminal) {
    tcgetattr(terminal.file(), &before_);
    termios hidden = before_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(terminal.file(), TCSAFLUSH, &hidden);
  }
  ~Hidden() {
    tcsetattr(terminal_->file(), TCSAFLUSH, &before_);
    terminal_->Write("\n");
  }
  Hidden(const Hidden&) = delete;
  Hidden& operator=(const Hidden&) = delete;

 private:
  const Terminal* terminal_;
  termios before_ = {};
};

}  // namespace

std::optional<std::string> Prompt(const std::string& question) {
  const Terminal terminal;
  if (terminal.file() < 0) {
    return std::nullopt;
  }
  terminal.Write(question);
  const Hidden hidden(terminal);
  return terminal.ReadLine();
}

bool Confirms(const std::string& question) {
  const Terminal terminal;
  if (terminal.file() < 0) {
    return false;
  }
  terminal.Write(question + " [y/N] ");
  const std::optional<std::string> answer = terminal.ReadLine();
  return answer == "y" || answer == "yes" || answer == "Y";
}

std::string PrivateFile(const std::string& file) {
  constexpr mode_t kOthers = S_IRWXG | S_IRWXO;
  struct stat status = {};
  if (stat(file.c_str(), &status) != 0) {
    throw Failure{ExitCode::kLocal,
                  "the file of secrets " + file + " cannot be read: " + std::strerror(errno),
                  "name a file that holds them"};
  }
  if (!S_ISREG(status.st_mode) || (status.st_mode & kOthers) != 0) {
    throw Failure{ExitCode::kLocal, "others can read the file of secrets " + file,
                  "type: chmod 600 " + file};
  }
  return ReadInput(file);
}

std::string SecretInFile(const std::string& file) {
  const std::string text = PrivateFile(file);
  return text.substr(0, text.find('\n'));
}

std::optional<std::string> Password(const std::string& file, const std::string& router) {
  if (!file.empty()) {
    return SecretInFile(file);
  }
  if (const char* const password = getenv("KIO_PASSWORD"); password != nullptr) {
    return password;
  }
  return Prompt("Administrator password of " + router + ": ");
}

std::string Passphrase(bool is_new) {
  if (const char* const passphrase = getenv("KIO_PASSPHRASE"); passphrase != nullptr) {
    return passphrase;
  }
  const std::optional<std::string> first = Prompt("Passphrase of the backup: ");
  if (!first || first->empty()) {
    throw Failure{ExitCode::kUsage, "there is no passphrase for the secrets of the backup",
                  "type one on a terminal, set KIO_PASSPHRASE, or leave the secrets out"};
  }
  if (is_new && Prompt("The same again: ") != first) {
    throw Failure{ExitCode::kUsage, "the two passphrases differ", "try again"};
  }
  return *first;
}

}  // namespace kioctl
