#include "sealed.h"

#include <sodium.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "failure.h"

namespace kioctl {
namespace {

using nlohmann::json;
using Bytes = std::vector<unsigned char>;

constexpr char kFormat[] = "kioctl sealed backup";
constexpr int kVersion = 1;

Failure NotSealed(const std::string& why) {
  return {ExitCode::kLocal, "the sealed backup cannot be opened: " + why,
          "check the passphrase and that the file is whole"};
}

void Begin() {
  if (sodium_init() < 0) {
    throw Failure{ExitCode::kLocal, "the system gives no random numbers", "try again later"};
  }
}

std::string Digits(const Bytes& bytes) {
  constexpr int kVariant = sodium_base64_VARIANT_ORIGINAL;
  std::string text(sodium_base64_encoded_len(bytes.size(), kVariant), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), kVariant);
  text.resize(text.find('\0'));
  return text;
}

Bytes BytesOf(const json& sealed, const char* member, size_t wanted) {
  const std::string text = sealed.value(member, "");
  Bytes bytes(text.size());
  size_t size = 0;
  if (sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &size,
                        nullptr, sodium_base64_VARIANT_ORIGINAL) != 0 ||
      (wanted > 0 && size != wanted)) {
    throw NotSealed(std::string("its ") + member + " is damaged");
  }
  bytes.resize(size);
  return bytes;
}

Bytes KeyFrom(const std::string& passphrase, const Bytes& salt) {
  Bytes key(crypto_secretbox_KEYBYTES);
  if (crypto_pwhash(key.data(), key.size(), passphrase.data(), passphrase.size(), salt.data(),
                    crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE,
                    crypto_pwhash_ALG_ARGON2ID13) != 0) {
    throw Failure{ExitCode::kLocal, "there is no memory for the key of the backup",
                  "64 MiB are needed; end other programs"};
  }
  return key;
}

Bytes Random(size_t size) {
  Bytes bytes(size);
  randombytes_buf(bytes.data(), bytes.size());
  return bytes;
}

}  // namespace

std::string Seal(const std::string& archive, const std::string& passphrase) {
  constexpr int kIndent = 2;
  Begin();
  const Bytes salt = Random(crypto_pwhash_SALTBYTES);
  const Bytes nonce = Random(crypto_secretbox_NONCEBYTES);
  Bytes key = KeyFrom(passphrase, salt);
  const Bytes plain(archive.begin(), archive.end());
  Bytes box(plain.size() + crypto_secretbox_MACBYTES);
  crypto_secretbox_easy(box.data(), plain.data(), plain.size(), nonce.data(), key.data());
  sodium_memzero(key.data(), key.size());
  const json sealed = {{"format", kFormat},     {"formatVersion", kVersion},
                       {"key", "argon2id"},     {"box", "xsalsa20-poly1305"},
                       {"salt", Digits(salt)},  {"nonce", Digits(nonce)},
                       {"archive", Digits(box)}};
  return sealed.dump(kIndent) + "\n";
}

bool IsSealed(const std::string& text) {
  const json sealed = json::parse(text, nullptr, false);
  return sealed.is_object() && sealed.contains("format") && sealed["format"] == kFormat;
}

std::string Unseal(const std::string& sealed_text, const std::string& passphrase) {
  Begin();
  const json sealed = json::parse(sealed_text, nullptr, false);
  if (sealed.value("formatVersion", json()) != kVersion) {
    throw NotSealed("it is of another version of kioctl");
  }
  const Bytes salt = BytesOf(sealed, "salt", crypto_pwhash_SALTBYTES);
  const Bytes nonce = BytesOf(sealed, "nonce", crypto_secretbox_NONCEBYTES);
  const Bytes box = BytesOf(sealed, "archive", 0);
  if (box.size() < crypto_secretbox_MACBYTES) {
    throw NotSealed("its archive is damaged");
  }
  Bytes key = KeyFrom(passphrase, salt);
  std::string archive(box.size() - crypto_secretbox_MACBYTES, '\0');
  const int failed = crypto_secretbox_open_easy(reinterpret_cast<unsigned char*>(archive.data()),
                                                box.data(), box.size(), nonce.data(), key.data());
  sodium_memzero(key.data(), key.size());
  if (failed != 0) {
    throw NotSealed("the passphrase is another, or the file was changed");
  }
  return archive;
}

}  // namespace kioctl
