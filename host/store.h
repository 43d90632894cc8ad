// The configuration store: node paths to texts, in one SQLite file.
#ifndef HOST_STORE_H
#define HOST_STORE_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sqlite.h"
#include "status.h"

namespace kiohost {

struct Node {
  std::string path;
  std::string text;

  bool operator==(const Node&) const = default;
};

// Paths have the form of node_path.h and compare without regard to ASCII case; a node keeps the
// spelling of its first write. "name" and "name:1" are two nodes. "name#" reads as the highest
// instance number in use below that name, so that a loop from 1 to "name#" meets every instance;
// it is absent when there is no instance.
class Store {
 public:
  // Longest text of a node: it fits the library's buffer of 4096 bytes.
  static constexpr size_t kMaxTextLength = 4095;

  enum class Mode { kCreate, kExisting };

  Status Open(const std::string& file, Mode mode);

  // The text of a node or count path, or nothing when it is absent.
  std::optional<std::string> Get(std::string_view path);

  // Returns false when the path is not a node path, the text is too long or holds a NUL, or the
  // file cannot be written.
  bool Set(std::string_view path, std::string_view text);

  // Has the transaction fail, as an access would that failed.
  void Break() { failed_ = true; }

  // Deletes a node and everything below it; an absent node is no error.
  bool Delete(std::string_view path);

  // The node and everything below it, all nodes when `path` is empty, in the order of their paths.
  std::vector<Node> List(std::string_view path = {});

  // Replaces everything by `nodes`, or changes nothing.
  Status Replace(const std::vector<Node>& nodes);

  // All that the store holds, but what it knows of its own file.
  struct Contents {
    std::vector<Node> nodes;
    std::vector<std::pair<std::string, int64_t>> numbers;
    std::vector<std::pair<std::string, std::optional<std::string>>> old_texts;
  };
  Contents Read();
  // Replaces all of it, in a transaction.
  void Write(const Contents& contents);

  bool IsEmpty();

  // One transaction at a time. Everything between Begin and Commit reaches the disk as a whole or
  // not at all, whatever kills the process. Commit rolls back and fails when any access since Begin
  // failed.
  Status Begin();
  void BeginReading() { Execute("BEGIN"); }
  Status Commit();
  void Rollback();

  // Whether anything was written since Begin.
  bool HasChanged() const;

  // Actions (bits of kioapp/platform.h) for settings that were applied and are not yet in force.
  // The host keeps them in a table of their own. They are added in the transaction of those
  // settings. They may be removed without a wait for the disk: after a power failure they may then
  // be due once more.
  void AddDueActions(unsigned int actions);
  void RemoveDueActions(unsigned int actions);
  unsigned int DueActions();

  // Numbers that the host keeps beside the nodes, under names of its own.
  std::optional<int64_t> Number(std::string_view name);
  void SetNumber(std::string_view name, int64_t number);
  void RemoveNumber(std::string_view name);

  // Texts from before, for a later return, in a table of their own: nothing for a node that was not
  // there. Putting them back leaves other nodes as they are.
  void KeepOldText(std::string_view path, const std::optional<std::string>& text);
  void PutBackOldTexts();
  void ForgetOldTexts();

  // Runs `write` in a transaction that does not wait for the disk: after a power failure it may not
  // have been. Returns whether it was committed.
  bool WriteWithoutWait(const std::function<void()>& write);

  // Moves the write-ahead log into the database file when that is due: when nothing was written for
  // a moment and nobody waits (`quiet`), or when the log has become long. Returns false when it
  // failed; it is tried again later. Another program's lock is no failure and is not waited for.
  bool CheckpointWhenDue(bool quiet);

  // The same at once.
  bool Checkpoint();

 private:
  static constexpr int kBusyMilliseconds = 5000;  // for another program's lock

  Status Failure(std::string_view what) const;
  bool Execute(const char* sql);
  Status Prepare();
  std::optional<std::string> GetCount(std::string_view path);
  bool RunWrite(Statement* statement);
  bool ExecuteWrite(const char* sql);
  bool TakesNoWrite() const;
  bool Fail();
  void EndNote(bool undone);
  int MoveLog();
  static int NoteCommit(void* store, sqlite3* database, const char* name, int log_pages);

  std::string file_;
  Database database_;
  Statement get_;
  Statement count_;
  Statement set_;
  Statement delete_;
  Statement list_;
  Statement get_number_;
  Statement set_number_;
  Statement remove_number_;
  Statement keep_old_;
  bool failed_ = false;       // an access failed since Begin
  bool is_begun_ = false;     // there was a Begin, and no Commit or Rollback since
  bool is_noted_ = false;     // the journal knows of the transaction
  int changes_at_begin_ = 0;  // of this connection, when the transaction began
  int log_pages_ = 0;         // of the write-ahead log that are not in the file yet
  std::chrono::steady_clock::time_point last_write_;
  std::chrono::steady_clock::time_point next_checkpoint_;
};

// What is read in the scope of a view is of one moment, whatever other connections write meanwhile.
class StoreView {
 public:
  explicit StoreView(Store* store) : store_(store) { store_->BeginReading(); }
  ~StoreView() { store_->Rollback(); }
  StoreView(const StoreView&) = delete;
  StoreView& operator=(const StoreView&) = delete;

 private:
  Store* store_;
};

// A transaction that rolls back at the end of its scope unless it was committed.
class StoreTransaction {
 public:
  explicit StoreTransaction(Store* store) : store_(store), begun_(store->Begin()) {
    open_ = begun_.ok();
  }
  ~StoreTransaction();
  StoreTransaction(const StoreTransaction&) = delete;
  StoreTransaction& operator=(const StoreTransaction&) = delete;

  // Whether the transaction could be begun.
  const Status& begun() const { return begun_; }

  Status Commit();

 private:
  Store* store_;
  Status begun_;
  bool open_;
};

}  // namespace kiohost

#endif  // HOST_STORE_H
