#include "store.h"

#include <cstdlib>
#include <utility>

#include "fault_points.h"
#include "journal.h"
#include "node_path.h"

namespace kiohost {
namespace {

// The id of the host's databases: that of another program is not taken for a store.
constexpr char kApplicationId[] = "1263095631";

constexpr char kSchema[] =
    "PRAGMA application_id=1263095631;"
    "CREATE TABLE IF NOT EXISTS node("
    "path TEXT PRIMARY KEY COLLATE NOCASE, text TEXT NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE IF NOT EXISTS state("
    "name TEXT PRIMARY KEY, number INTEGER NOT NULL) WITHOUT ROWID;"
    "CREATE TABLE IF NOT EXISTS old_node("
    "path TEXT PRIMARY KEY COLLATE NOCASE, text TEXT) WITHOUT ROWID;";

// The number of tables in the file, its application id, and how many tables of the schema it has.
constexpr char kIdentity[] =
    "SELECT (SELECT count(*) FROM sqlite_schema), application_id,"
    " (SELECT count(*) FROM sqlite_schema WHERE name IN ('node', 'state', 'old_node'))"
    " FROM pragma_application_id";
constexpr char kAllTables[] = "3";

// What lies below a path sorts between path + '/' and path + '0', the character after '/'; the
// instances of a name between name + ':' and name + ';'. Queries use these ranges and no wildcards,
// in which '_' and '%' would have a meaning.
constexpr char kGet[] = "SELECT text FROM node WHERE path = ?1";
constexpr char kCount[] =
    "SELECT max(CAST(substr(path, length(?1) + 2) AS INTEGER)) FROM node"
    " WHERE path > ?1 || ':' AND path < ?1 || ';'"
    " AND CAST(substr(path, length(?1) + 2) AS INTEGER) <= CAST(?2 AS INTEGER)";
// A text that is there already is no change.
constexpr char kSet[] =
    "INSERT INTO node VALUES(?1, ?2) ON CONFLICT(path) DO UPDATE SET text = excluded.text"
    " WHERE text <> excluded.text";
constexpr char kDelete[] =
    "DELETE FROM node WHERE path = ?1 OR (path > ?1 || '/' AND path < ?1 || '0')";
constexpr char kList[] =
    "SELECT path, text FROM node WHERE ?1 = '' OR path = ?1"
    " OR (path > ?1 || '/' AND path < ?1 || '0') ORDER BY path";
constexpr char kGetNumber[] = "SELECT number FROM state WHERE name = ?1";
constexpr char kSetNumber[] =
    "INSERT INTO state VALUES(?1, ?2) ON CONFLICT(name) DO UPDATE SET number = excluded.number";
constexpr char kRemoveNumber[] = "DELETE FROM state WHERE name = ?1";
constexpr char kKeepOld[] = "INSERT INTO old_node VALUES(?1, ?2)";
constexpr char kPutBackOld[] =
    "DELETE FROM node WHERE path IN (SELECT path FROM old_node WHERE text IS NULL);"
    "INSERT INTO node SELECT path, text FROM old_node WHERE text IS NOT NULL"
    " ON CONFLICT(path) DO UPDATE SET text = excluded.text";
// The count of checkpoints belongs to the file.
constexpr char kListNumbers[] = "SELECT name, number FROM state WHERE name <> 'checkpoints'";
constexpr char kListOld[] = "SELECT path, text FROM old_node";
constexpr char kDeleteContents[] =
    "DELETE FROM node; DELETE FROM state WHERE name <> 'checkpoints'; DELETE FROM old_node";
constexpr int kDecimal = 10;
constexpr char kDueActions[] = "due actions";

}  // namespace

Status Store::Open(const std::string& file, Mode mode) {
  file_ = file;
  const int flags = SQLITE_OPEN_READWRITE | (mode == Mode::kCreate ? SQLITE_OPEN_CREATE : 0);
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &database, flags, nullptr);
  database_.reset(database);
  if (code != SQLITE_OK) {
    return Failure("open");
  }
  sqlite3_busy_timeout(database, kBusyMilliseconds);
  // Checkpoints are made when nobody waits, and not by a commit.
  sqlite3_wal_hook(database, NoteCommit, this);
  Statement identity;
  if (!identity.Prepare(database, kIdentity) || identity.Step() != SQLITE_ROW) {
    return Failure("read");
  }
  if (identity.Text(0) != "0" && identity.Text(1) != kApplicationId) {
    return {ExitCode::kStore, file_ + " is a database of another program"};
  }
  const bool complete = identity.Text(2) == kAllTables;
  identity.Reset();
  if (!Execute("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL")) {
    return Failure("write");
  }
  // The transaction proves that the store can be written. A query waits for no disk.
  if ((mode == Mode::kCreate || !complete) &&
      (!Execute("BEGIN IMMEDIATE") || (!complete && !Execute(kSchema)) || !Execute("COMMIT"))) {
    return Failure("write");
  }
  return Prepare();
}

Status Store::Prepare() {
  sqlite3* database = database_.get();
  if (!get_.Prepare(database, kGet) || !count_.Prepare(database, kCount) ||
      !set_.Prepare(database, kSet) || !delete_.Prepare(database, kDelete) ||
      !list_.Prepare(database, kList) || !get_number_.Prepare(database, kGetNumber) ||
      !set_number_.Prepare(database, kSetNumber) ||
      !remove_number_.Prepare(database, kRemoveNumber) || !keep_old_.Prepare(database, kKeepOld)) {
    return Failure("use");
  }
  return {};
}

std::optional<std::string> Store::Get(std::string_view path) {
  if (IsCountPath(path)) {
    path.remove_suffix(1);
    return GetCount(path);
  }
  const StatementRun run(&get_);
  get_.Bind(1, path);
  const int code = get_.Step();
  if (code == SQLITE_ROW) {
    return get_.Text(0);
  }
  if (code != SQLITE_DONE) {
    Fail();
  }
  return std::nullopt;
}

std::optional<std::string> Store::GetCount(std::string_view path) {
  const std::string highest = std::to_string(kMaxInstance);
  const StatementRun run(&count_);
  count_.Bind(1, path);
  count_.Bind(2, highest);
  if (count_.Step() != SQLITE_ROW) {
    Fail();
    return std::nullopt;
  }
  return count_.IsNull(0) ? std::nullopt : std::optional(count_.Text(0));
}

bool Store::Set(std::string_view path, std::string_view text) {
  if (!IsNodePath(path) || text.size() > kMaxTextLength ||
      text.find('\0') != std::string_view::npos) {
    return Fail();
  }
  set_.Bind(1, path);
  set_.Bind(2, text);
  return RunWrite(&set_);
}

bool Store::Delete(std::string_view path) {
  if (!IsNodePath(path)) {
    return Fail();
  }
  delete_.Bind(1, path);
  return RunWrite(&delete_);
}

std::vector<Node> Store::List(std::string_view path) {
  const StatementRun run(&list_);
  list_.Bind(1, path);
  std::vector<Node> nodes;
  int code = list_.Step();
  for (; code == SQLITE_ROW; code = list_.Step()) {
    nodes.push_back({list_.Text(0), list_.Text(1)});
  }
  if (code != SQLITE_DONE) {
    Fail();
  }
  return nodes;
}

Status Store::Replace(const std::vector<Node>& nodes) {
  StoreTransaction transaction(this);
  if (!transaction.begun().ok()) {
    return transaction.begun();
  }
  if (!Execute("DELETE FROM node; DELETE FROM state; DELETE FROM old_node")) {
    Fail();
  }
  for (const Node& node : nodes) {
    Set(node.path, node.text);
  }
  return transaction.Commit();
}

Store::Contents Store::Read() {
  Contents contents;
  contents.nodes = List();
  Statement numbers;
  Statement old_texts;
  bool read = numbers.Prepare(database_.get(), kListNumbers) &&
              old_texts.Prepare(database_.get(), kListOld);
  int code = SQLITE_DONE;
  while (read && (code = numbers.Step()) == SQLITE_ROW) {
    contents.numbers.emplace_back(numbers.Text(0),
                                  std::strtoll(numbers.Text(1).c_str(), nullptr, kDecimal));
  }
  read = read && code == SQLITE_DONE;
  while (read && (code = old_texts.Step()) == SQLITE_ROW) {
    contents.old_texts.emplace_back(
        old_texts.Text(0), old_texts.IsNull(1) ? std::nullopt : std::optional(old_texts.Text(1)));
  }
  if (!read || code != SQLITE_DONE) {
    Fail();
  }
  return contents;
}

void Store::Write(const Contents& contents) {
  if (!Execute(kDeleteContents)) {
    Fail();
  }
  for (const Node& node : contents.nodes) {
    Set(node.path, node.text);
  }
  for (const auto& [name, number] : contents.numbers) {
    SetNumber(name, number);
  }
  for (const auto& [path, text] : contents.old_texts) {
    KeepOldText(path, text);
  }
}

bool Store::IsEmpty() { return List().empty(); }

Status Store::Begin() {
  failed_ = false;
  changes_at_begin_ = sqlite3_total_changes(database_.get());
  if (FaultPoints* const faults = LibraryFaults(); faults != nullptr && faults->IsStoreLocked()) {
    return {ExitCode::kStore, "cannot write the store " + file_ + ": database is locked"};
  }
  if (!Execute("BEGIN IMMEDIATE")) {
    return Failure("write");
  }
  is_begun_ = true;
  is_noted_ = TheJournal().is_on();
  if (is_noted_) {
    TheJournal().BeginWrites();
  }
  return {};
}

Status Store::Commit() {
  if (failed_) {
    Rollback();
    return {ExitCode::kStore, "a node of the store " + file_ + " could not be read or written"};
  }
  if (!Execute("COMMIT")) {
    Status failure = Failure("write");
    Rollback();
    return failure;
  }
  EndNote(false);
  is_begun_ = false;
  return {};
}

void Store::Rollback() {
  // Some errors make SQLite roll back by itself; there is then nothing left to do.
  if (sqlite3_get_autocommit(database_.get()) == 0) {
    Execute("ROLLBACK");
  }
  EndNote(true);
  failed_ = false;
  is_begun_ = false;
}

// Other connections read, which is no transaction of the journal.
void Store::EndNote(bool undone) {
  if (std::exchange(is_noted_, false)) {
    TheJournal().EndWrites(undone);
  }
}

bool Store::HasChanged() const {
  return sqlite3_total_changes(database_.get()) != changes_at_begin_;
}

std::optional<int64_t> Store::Number(std::string_view name) {
  const StatementRun run(&get_number_);
  get_number_.Bind(1, name);
  const int code = get_number_.Step();
  if (code == SQLITE_ROW) {
    return std::strtoll(get_number_.Text(0).c_str(), nullptr, kDecimal);
  }
  if (code != SQLITE_DONE) {
    Fail();
  }
  return std::nullopt;
}

void Store::SetNumber(std::string_view name, int64_t number) {
  const std::string text = std::to_string(number);
  set_number_.Bind(1, name);
  set_number_.Bind(2, text);
  RunWrite(&set_number_);
}

void Store::RemoveNumber(std::string_view name) {
  remove_number_.Bind(1, name);
  RunWrite(&remove_number_);
}

void Store::KeepOldText(std::string_view path, const std::optional<std::string>& text) {
  keep_old_.Bind(1, path);
  if (text) {
    keep_old_.Bind(2, *text);
  }
  RunWrite(&keep_old_);
}

void Store::PutBackOldTexts() { ExecuteWrite(kPutBackOld); }

void Store::ForgetOldTexts() { ExecuteWrite("DELETE FROM old_node"); }

bool Store::WriteWithoutWait(const std::function<void()>& write) {
  bool written = Execute("PRAGMA synchronous=NORMAL");
  if (written) {
    StoreTransaction transaction(this);
    written = transaction.begun().ok();
    if (written) {
      write();
      written = transaction.Commit().ok();
    }
  }
  return Execute("PRAGMA synchronous=FULL") && written;
}

unsigned int Store::DueActions() {
  return static_cast<unsigned int>(Number(kDueActions).value_or(0));
}

void Store::AddDueActions(unsigned int actions) {
  const unsigned int due = DueActions();
  if ((actions & ~due) != 0) {
    SetNumber(kDueActions, due | actions);
  }
}

void Store::RemoveDueActions(unsigned int actions) {
  const unsigned int due = DueActions();
  if ((due & actions) != 0) {
    SetNumber(kDueActions, due & ~actions);
  }
}

Status Store::Failure(std::string_view what) const {
  return {ExitCode::kStore, "cannot " + std::string(what) + " the store " + file_ + ": " +
                                sqlite3_errmsg(database_.get())};
}

bool Store::Execute(const char* sql) {
  return sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool Store::RunWrite(Statement* statement) {
  const StatementRun run(statement);
  return (!TakesNoWrite() && statement->Step() == SQLITE_DONE) || Fail();
}

bool Store::ExecuteWrite(const char* sql) { return (!TakesNoWrite() && Execute(sql)) || Fail(); }

bool Store::TakesNoWrite() const {
  // An error of the disk makes SQLite undo the transaction by itself. What follows would be written
  // alone, and would stay.
  if (is_begun_ && sqlite3_get_autocommit(database_.get()) != 0) {
    return true;
  }
  FaultPoints* const faults = LibraryFaults();
  // A lock keeps out what is no transaction, too.
  return faults != nullptr &&
         (faults->IsStoreFull() ||
          (sqlite3_get_autocommit(database_.get()) != 0 && faults->IsStoreLocked()));
}

bool Store::Fail() {
  failed_ = true;
  return false;
}

StoreTransaction::~StoreTransaction() {
  if (open_) {
    store_->Rollback();
  }
}

Status StoreTransaction::Commit() {
  open_ = false;
  return store_->Commit();
}

}  // namespace kiohost
