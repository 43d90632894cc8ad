// The key handshake: a digest against OpenSSL's, a wrong key against a digest.
#include <openssl/md5.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "figures.h"
#include "kioapp/kioapp.h"
#include "memory_store.h"

namespace kio::bench {
namespace {

// As long as the source of a key usually is: slot, address, "admin" and a password.
constexpr char kSource[] = "1234567192.168.100.123adminHome-Router-12345!!";
static_assert(sizeof(kSource) - 1 == 46);

constexpr char kIp[] = "192.168.100.123";
constexpr char kPasswordNode[] = "/sys/user:1/password";

void TakeDigest(unsigned char* digest) {
  MD5Digest(kSource, sizeof(kSource) - 1, digest);
  benchmark::DoNotOptimize(*digest);
}

// OpenSSL marks its plain MD5 as deprecated in favour of one that looks its algorithm up first.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void TakeOpenSslDigest(unsigned char* digest) {
  MD5_CTX context;
  MD5_Init(&context);
  MD5_Update(&context, kSource, sizeof(kSource) - 1);
  MD5_Final(digest, &context);
  benchmark::DoNotOptimize(*digest);
}

void Digest(benchmark::State& state) {
  unsigned char ours[MD5_DIGEST_LENGTH];
  unsigned char theirs[MD5_DIGEST_LENGTH];
  TakeDigest(ours);
  TakeOpenSslDigest(theirs);
  if (std::memcmp(ours, theirs, sizeof(ours)) != 0) {
    std::fprintf(stderr, "the digest and OpenSSL's differ\n");
    std::exit(1);
  }
  const Pair whole = MeasurePair(
      state, [&] { TakeDigest(ours); }, [&] { TakeOpenSslDigest(theirs); });
  AddFigure({"auth: digest of 46 bytes / OpenSSL's", whole.ratio, "x time", Bound::kAtMost, 1.0});
  AddFigure({"auth: digest of 46 bytes", whole.first, "ns"});
}

// The whole digest, its padding and the clearing of its stack included, against one bare block.
void DigestAndBlock(benchmark::State& state) {
  unsigned char digest[MD5_DIGEST_LENGTH];
  unsigned char block[MD5_CBLOCK] = {};
  MD5_CTX context;
  MD5_Init(&context);
  const Pair pair = MeasurePair(
      state, [&] { TakeDigest(digest); },
      [&] {
        MD5_Transform(&context, block);
        benchmark::DoNotOptimize(context);
      });
  AddFigure({"auth: digest of 46 bytes / OpenSSL's block alone", pair.ratio, "x time",
             Bound::kAtMost, 1.0});
}

#pragma GCC diagnostic pop

// What the check of a key reads by itself: the password from the host's store, the uptime from the
// system.
void AskHost() {
  char password[4096];
  xget_str(password, "%s", kPasswordNode);
  benchmark::DoNotOptimize(password);
  benchmark::DoNotOptimize(sys_uptime_seconds());
}

double g_host_share = 0;  // of the check of a key, in digests

void HostShare(benchmark::State& state) {
  StoreFactoryDevice();
  xset_str("Home-Router-12345!!", "%s", kPasswordNode);
  unsigned char digest[MD5_DIGEST_LENGTH];
  g_host_share = MeasurePair(state, AskHost, [&] { TakeDigest(digest); }).ratio;
}

void WrongKey(benchmark::State& state) {
  StoreFactoryDevice();
  xset_str("Home-Router-12345!!", "%s", kPasswordNode);
  unsigned char digest[MD5_DIGEST_LENGTH];
  const Pair pair = MeasurePair(
      state,
      [] {
        const int result =
            starter_auth_check("kioAppKey= 0123456789abcdef0123456789abcdef", kIp, "");
        if (result != -1) {
          std::fprintf(stderr, "a wrong key is good\n");
          std::exit(1);
        }
      },
      [&] { TakeDigest(digest); });
  // The limit is one of instructions (bench/check.sh).
  AddFigure({"auth: wrong key, all five slots, without the host's share", pair.ratio - g_host_share,
             "digests"});
  AddFigure({"auth: wrong key with the host's share", pair.ratio, "digests"});
  AddFigure({"auth: wrong key with the host's share", pair.first, "ns"});
}

}  // namespace

void RegisterAuth() {
  RegisterPaired("auth/digest", Digest);
  RegisterPaired("auth/digest and block", DigestAndBlock);
  RegisterPaired("auth/host share", HostShare);
  RegisterPaired("auth/wrong key", WrongKey);
}

}  // namespace kio::bench
