// The calls of the library that can fail, and the ways in which each of them does.
#ifndef KIO_TESTS_PROOF_FAILING_CALLS_WAYS_H
#define KIO_TESTS_PROOF_FAILING_CALLS_WAYS_H

#include <array>
#include <cerrno>
#include <cstddef>
#include <span>

namespace kio::proof {

enum class Call {
  kAccess,
  kCalloc,
  kClose,
  kFstat,
  kFwrite,
  kIoctl,
  kMmap,
  kMunmap,
  kOpen,
  kPread,
  kRead,
  kSignal,
  kSnprintf,
  kSocket,
  kStat,
  kSysinfo,
  kSystem,
  kTime,
  kVprintf,
  kVsnprintf,
  kWrite,
  kXdel,
  kXgetInt,
  kXgetStr,
  kXsetInt,
  kXsetStr,
};

inline constexpr std::array<const char*, 26> kCallNames = {
    "access", "calloc",   "close",    "fstat",    "fwrite",  "ioctl",     "mmap",
    "munmap", "open",     "pread",    "read",     "signal",  "snprintf",  "socket",
    "stat",   "sysinfo",  "system",   "time",     "vprintf", "vsnprintf", "write",
    "xdel",   "xget_int", "xget_str", "xset_int", "xset_str"};

// What may be different behind a call that failed.
enum class Effect {
  kNone,   // nothing at all: the library tries again, or goes on
  kCall,   // what the call itself should have brought about, and nothing else
  kOnward  // what the library does from there on, which is then the same in all of these ways
};

struct Way {
  Call call;
  const char* name;
  int error;  // what errno is; for `system`, the status when it is not -1
  enum class How {
    kFails,
    kShort,      // moves one byte
    kFull,       // moves one byte, and no more from then on
    kEnd,        // reads the end of the file
    kUntouched,  // xget_str leaves its buffer alone
    kEmptied,    // xget_str empties it
    kStatus      // `system` returns `error`
  } how;
  Effect effect;
};

std::span<const Way> Ways();

inline const char* NameOf(Call call) { return kCallNames[static_cast<std::size_t>(call)]; }

}  // namespace kio::proof

#endif
