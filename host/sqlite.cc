#include "sqlite.h"

namespace kiohost {

bool Statement::Prepare(sqlite3* database, const char* sql) {
  sqlite3_stmt* handle = nullptr;
  const int code =
      sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
  handle_.reset(handle);
  return code == SQLITE_OK;
}

void Statement::Bind(int index, std::string_view text) {
  // A null pointer would bind NULL, not the empty text. A null destructor means that the text
  // outlives the run.
  const char* data = text.empty() ? "" : text.data();
  sqlite3_bind_text(handle_.get(), index, data, static_cast<int>(text.size()), nullptr);
}

std::string Statement::Text(int column) const {
  const void* data = sqlite3_column_blob(handle_.get(), column);
  const int size = sqlite3_column_bytes(handle_.get(), column);
  return data == nullptr ? std::string()
                         : std::string(static_cast<const char*>(data), static_cast<size_t>(size));
}

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(handle_.get(), column) == SQLITE_NULL;
}

void Statement::Reset() {
  sqlite3_reset(handle_.get());
  sqlite3_clear_bindings(handle_.get());
}

}  // namespace kiohost
