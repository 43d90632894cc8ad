// Owners of SQLite handles.
#ifndef HOST_SQLITE_H
#define HOST_SQLITE_H

#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>

namespace kiohost {

struct DatabaseCloser {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, DatabaseCloser>;

// A prepared statement. Texts bound to it must live until `Reset`.
class Statement {
 public:
  // Returns false when SQLite refuses the statement.
  bool Prepare(sqlite3* database, const char* sql);

  void Bind(int index, std::string_view text);

  // Runs to the next row; returns SQLITE_ROW, SQLITE_DONE or an error.
  int Step() { return sqlite3_step(handle_.get()); }

  std::string Text(int column) const;
  bool IsNull(int column) const;

  // Makes the statement ready for its next run and forgets what was bound.
  void Reset();

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalizer> handle_;
};

// Resets a statement at the end of a scope, so that no run is left open.
class StatementRun {
 public:
  explicit StatementRun(Statement* statement) : statement_(statement) {}
  ~StatementRun() { statement_->Reset(); }
  StatementRun(const StatementRun&) = delete;
  StatementRun& operator=(const StatementRun&) = delete;

 private:
  Statement* statement_;
};

}  // namespace kiohost

#endif  // HOST_SQLITE_H
