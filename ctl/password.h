// Where secrets come from: never from the command line, which other users of a machine can read.
#ifndef CTL_PASSWORD_H
#define CTL_PASSWORD_H

#include <optional>
#include <string>

namespace kioctl {

// Asks on the terminal, without showing what is typed. Nothing when there is no terminal.
std::optional<std::string> Prompt(const std::string& question);

// Asks a question on the terminal that is answered by yes or no. No when there is no terminal.
bool Confirms(const std::string& question);

// A file that only its owner can read, and its first line. They throw a Failure.
std::string PrivateFile(const std::string& file);
std::string SecretInFile(const std::string& file);

// The administrator password: of the file when one is named, of KIO_PASSWORD, or from a prompt.
std::optional<std::string> Password(const std::string& file, const std::string& router);

// The passphrase of a sealed backup: of KIO_PASSPHRASE, or from a prompt. It is asked for twice
// when it is a new one. Throws a Failure without any.
std::string Passphrase(bool is_new);

}  // namespace kioctl

#endif  // CTL_PASSWORD_H
