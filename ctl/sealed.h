// Backups whose secrets a passphrase protects. libsodium does it: its functions are few and cannot
// be combined wrongly. The key comes from the passphrase by Argon2id, so guessing is slow.
#ifndef CTL_SEALED_H
#define CTL_SEALED_H

#include <optional>
#include <string>

namespace kioctl {

// A JSON text that holds the archive so that only the passphrase opens it.
std::string Seal(const std::string& archive, const std::string& passphrase);

// Whether a text is such a one.
bool IsSealed(const std::string& text);

// The archive in it. Throws a Failure when the passphrase is another, or the text was changed.
std::string Unseal(const std::string& sealed, const std::string& passphrase);

}  // namespace kioctl

#endif  // CTL_SEALED_H
