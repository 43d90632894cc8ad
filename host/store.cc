#include "store.h"

#include "node_path.h"

namespace kiohost {
namespace {

// Marks the file as ours, so that no other program's database is taken for a store.
constexpr char kApplicationId[] = "1263095631";

constexpr char kSchema[] =
    "PRAGMA application_id=1263095631;"
    "CREATE TABLE IF NOT EXISTS node("
    "path TEXT PRIMARY KEY COLLATE NOCASE, text TEXT NOT NULL) WITHOUT ROWID;";

// What lies below a path sorts between path + '/' and path + '0', the character after '/'; the
// instances of a name between name + ':' and name + ';'. Ranges need no wildcards, so a '_' or '%'
// in a name is only itself.
constexpr char kGet[] = "SELECT text FROM node WHERE path = ?1";
constexpr char kCount[] =
    "SELECT max(CAST(substr(path, length(?1) + 2) AS INTEGER)) FROM node"
    " WHERE path > ?1 || ':' AND path < ?1 || ';'";
constexpr char kSet[] =
    "INSERT INTO node VALUES(?1, ?2) ON CONFLICT(path) DO UPDATE SET text = excluded.text";
constexpr char kDelete[] =
    "DELETE FROM node WHERE path = ?1 OR (path > ?1 || '/' AND path < ?1 || '0')";
constexpr char kList[] =
    "SELECT path, text FROM node WHERE ?1 = '' OR path = ?1"
    " OR (path > ?1 || '/' AND path < ?1 || '0') ORDER BY path";

}  // namespace

Status Store::Open(const std::string& file, Mode mode) {
  constexpr int kBusyMilliseconds = 5000;
  file_ = file;
  const int flags = SQLITE_OPEN_READWRITE | (mode == Mode::kCreate ? SQLITE_OPEN_CREATE : 0);
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &database, flags, nullptr);
  database_.reset(database);
  if (code != SQLITE_OK) {
    return Failure("open");
  }
  sqlite3_busy_timeout(database, kBusyMilliseconds);
  Statement identity;
  if (!identity.Prepare(database,
                        "SELECT (SELECT count(*) FROM sqlite_schema), application_id"
                        " FROM pragma_application_id") ||
      identity.Step() != SQLITE_ROW) {
    return Failure("read");
  }
  if (identity.Text(0) != "0" && identity.Text(1) != kApplicationId) {
    return {ExitCode::kStore, file_ + " is a database of another program"};
  }
  identity.Reset();
  // The transaction proves that the store can be written.
  if (!Execute("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; BEGIN IMMEDIATE;") ||
      !Execute(kSchema) || !Execute("COMMIT")) {
    return Failure("write");
  }
  return Prepare();
}

Status Store::Prepare() {
  sqlite3* database = database_.get();
  if (!get_.Prepare(database, kGet) || !count_.Prepare(database, kCount) ||
      !set_.Prepare(database, kSet) || !delete_.Prepare(database, kDelete) ||
      !list_.Prepare(database, kList)) {
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
  const StatementRun run(&count_);
  count_.Bind(1, path);
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
  if (!Execute("DELETE FROM node")) {
    Fail();
  }
  for (const Node& node : nodes) {
    Set(node.path, node.text);
  }
  return transaction.Commit();
}

bool Store::IsEmpty() { return List().empty(); }

Status Store::Begin() {
  failed_ = false;
  if (!Execute("BEGIN IMMEDIATE")) {
    return Failure("write");
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
  return {};
}

void Store::Rollback() {
  // Some errors make SQLite roll back by itself; there is then nothing left to do.
  if (sqlite3_get_autocommit(database_.get()) == 0) {
    Execute("ROLLBACK");
  }
  failed_ = false;
}

bool Store::Checkpoint() {
  return sqlite3_wal_checkpoint_v2(database_.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                                   nullptr) == SQLITE_OK;
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
  return statement->Step() == SQLITE_DONE || Fail();
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
