// A disk in memory on which SQLite keeps its files: it notes each step that changes it, and can
// fail any call. What it holds after a loss of power is made of the steps that were synced and of
// any choice of the others.
#ifndef TESTS_PROOF_POWER_LOSS_DISK_H
#define TESTS_PROOF_POWER_LOSS_DISK_H

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

using Files = std::map<std::string, std::string>;

// A step that changes the disk, or makes changes last.
struct DiskStep {
  enum class Kind { kCreate, kWrite, kTruncate, kSync, kDelete };
  Kind kind;
  std::string file;
  size_t at = 0;  // of a write; the size of a truncate
  std::string data = {};
};

// The calls of SQLite that a disk can fail.
enum class DiskCall { kOpen, kRead, kWrite, kTruncate, kSync, kSize, kDelete, kMemory };
inline constexpr const char* kDiskCallNames[] = {"open", "read", "write",  "truncate",
                                                 "sync", "size", "delete", "shared memory"};
inline constexpr size_t kDiskCalls = 8;

// How a call fails.
struct DiskFault {
  const char* name;
  DiskCall call;
  int code;  // of SQLite; SQLITE_OK: the call says that all is well
  enum class Effect {
    kNothing,  // nothing is done
    kHalf      // of a write: its first half
  } effect;
};

class Disk {
 public:
  // The one that SQLite uses.
  static Disk& Get();

  // Makes SQLite use it, for all databases that are opened from now on.
  static void Install();

  // What the files hold for who reads them now.
  Files files;
  // The steps so far, when they are noted.
  bool notes = false;
  std::vector<DiskStep> steps;
  // Asked before each call; null: it does not fail.
  std::function<const DiskFault*(DiskCall call, const std::string& file)> fails;

  void Do(DiskStep step);
};

// What is on a disk after a loss of power.
class Remains {
 public:
  Remains() = default;

  // A step was begun and done, and the power is still there.
  void Take(const DiskStep& step, int number, bool sync_is_lost = false);

  // The steps that no sync has made last.
  const std::vector<std::pair<int, const DiskStep*>>& open_steps() const { return open_; }

  // How often something was made to last.
  int version() const { return version_; }

  enum class Piece { kNone, kAll, kFirstHalf, kSecondHalf, kFirstSector };
  // The files, with a piece of each open step. Returns nothing when a piece is no other than all or
  // none of it.
  Files With(const std::vector<Piece>& pieces) const;

  // Whether there is such a piece of a step.
  static bool HasPiece(const DiskStep& step, Piece piece);

 private:
  static void Apply(const DiskStep& step, Piece piece, Files* files, std::set<std::string>* names);

  Files durable_;                // by name, whether or not the directory knows of it
  std::set<std::string> names_;  // that the directory knows of after a loss of power
  std::vector<std::pair<int, const DiskStep*>> open_;
  int version_ = 0;
};

#endif  // TESTS_PROOF_POWER_LOSS_DISK_H
