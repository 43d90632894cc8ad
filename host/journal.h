// What has happened, for test benches to read. It is kept only when there is a control port.
#ifndef HOST_JOURNAL_H
#define HOST_JOURNAL_H

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "json.h"

namespace kiohost {

// Any thread may use it.
class Journal {
 public:
  static constexpr size_t kMost = 10000;  // older entries are dropped

  // From now on entries are kept. Without `show_secrets` the texts of secrets are masked, wherever
  // they stand.
  void Begin(bool show_secrets);
  bool is_on() const { return is_on_; }

  // What is called after entries were added or have settled, in the thread that does so. Null:
  // none. To be set while one thread alone knows the journal.
  void set_listener(std::function<void()> listener) { listener_ = std::move(listener); }

  // A text that is masked from now on. Short ones are not: they stand in too many other texts.
  void AddSecret(const std::string& text);

  // Adds an entry.
  void Add(std::string_view kind, Json about);

  // The same of a node that the library has read, written or deleted.
  void AddRead(const std::string& path, const std::optional<std::string>& text);
  void AddWrite(const std::string& path, const std::optional<std::string>& before,
                const std::optional<std::string>& after, bool done);

  // A line that the host has printed, and a line of the library's log.
  void AddOutput(std::string_view line);
  void AddLogLine(const std::string& line);

  // A transaction of writes begins and ends. When it is undone, its writes are marked so.
  void BeginWrites();
  void EndWrites(bool undone);

  // The number of the last entry, which counts from 1; and how many were dropped.
  uint64_t last() const;
  uint64_t dropped() const;
  // The number of the last entry that does not change any more: those of a transaction may be
  // undone.
  uint64_t settled() const;

  // The entry of a number, if it is kept.
  std::optional<Json> Find(uint64_t number) const;

  // The entries behind one of a number, which have their number, the uptime and their kind first.
  std::vector<Json> Since(uint64_t number) const;

 private:
  struct Entry {
    Json json;
    bool is_write = false;
    bool is_undone = false;
  };

  static Json AsJson(const Entry& entry);
  std::string Masked(std::string text) const;
  Json NodeText(const std::string& path, const std::optional<std::string>& text);

  std::atomic<bool> is_on_ = false;
  bool show_secrets_ = false;
  mutable std::mutex mutex_;
  std::set<std::string> secrets_;
  uint64_t last_ = 0;
  std::deque<Entry> entries_;
  std::optional<uint64_t> writes_behind_;  // the last entry before the transaction that is open
  std::function<void()> listener_;
};

// The library knows its store and its commands by functions without a context argument.
Journal& TheJournal();

// As long as one lives, reads and writes of the library are not noted: the host's own look at it is
// nothing that has happened.
class UnnotedStore {
 public:
  UnnotedStore();
  ~UnnotedStore();
  UnnotedStore(const UnnotedStore&) = delete;
  UnnotedStore& operator=(const UnnotedStore&) = delete;
};

// Whether accesses of the library to the store are to be noted.
bool NotesStore();

}  // namespace kiohost

#endif  // HOST_JOURNAL_H
