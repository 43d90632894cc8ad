#include "memory_vfs.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace kio::fuzz {
namespace {

using Page = std::unique_ptr<char[]>;

std::map<std::string, std::string> g_files;

struct MemoryFile {
  sqlite3_file base;
  std::string* bytes;
  bool is_temporary;
  std::vector<Page>* shared;  // the index of the write-ahead log
};

MemoryFile* Of(sqlite3_file* file) { return reinterpret_cast<MemoryFile*>(file); }

int Close(sqlite3_file* file) {
  MemoryFile* const memory = Of(file);
  delete memory->shared;
  if (memory->is_temporary) {
    delete memory->bytes;
  }
  return SQLITE_OK;
}

int Read(sqlite3_file* file, void* data, int amount, sqlite3_int64 offset) {
  const std::string& bytes = *Of(file)->bytes;
  const auto wanted = static_cast<std::size_t>(amount);
  const std::size_t from = std::min(static_cast<std::size_t>(offset), bytes.size());
  const std::size_t count = bytes.copy(static_cast<char*>(data), wanted, from);
  std::memset(static_cast<char*>(data) + count, 0, wanted - count);
  return count == wanted ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

int Write(sqlite3_file* file, const void* data, int amount, sqlite3_int64 offset) {
  constexpr std::size_t kMost = std::size_t{1} << 24U;
  std::string& bytes = *Of(file)->bytes;
  const std::size_t end = static_cast<std::size_t>(offset) + static_cast<std::size_t>(amount);
  if (end > kMost) {
    return SQLITE_FULL;
  }
  bytes.resize(std::max(bytes.size(), end));
  std::memcpy(bytes.data() + offset, data, static_cast<std::size_t>(amount));
  return SQLITE_OK;
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  Of(file)->bytes->resize(std::min(static_cast<std::size_t>(size), Of(file)->bytes->size()));
  return SQLITE_OK;
}

int Sync(sqlite3_file* /*file*/, int /*flags*/) { return SQLITE_OK; }

int Size(sqlite3_file* file, sqlite3_int64* size) {
  *size = static_cast<sqlite3_int64>(Of(file)->bytes->size());
  return SQLITE_OK;
}

int Lock(sqlite3_file* /*file*/, int /*lock*/) { return SQLITE_OK; }

int IsReserved(sqlite3_file* /*file*/, int* result) {
  *result = 0;
  return SQLITE_OK;
}

int Control(sqlite3_file* /*file*/, int /*operation*/, void* /*argument*/) {
  return SQLITE_NOTFOUND;
}

int SectorSize(sqlite3_file* /*file*/) { return 512; }

int Characteristics(sqlite3_file* /*file*/) { return 0; }

int MapShared(sqlite3_file* file, int page, int size, int /*extend*/, void volatile** memory) {
  std::vector<Page>*& shared = Of(file)->shared;
  if (shared == nullptr) {
    shared = new std::vector<Page>;
  }
  while (shared->size() <= static_cast<std::size_t>(page)) {
    shared->push_back(std::make_unique<char[]>(static_cast<std::size_t>(size)));
  }
  *memory = (*shared)[static_cast<std::size_t>(page)].get();
  return SQLITE_OK;
}

int LockShared(sqlite3_file* /*file*/, int /*offset*/, int /*count*/, int /*flags*/) {
  return SQLITE_OK;
}

void Barrier(sqlite3_file* /*file*/) {}

int UnmapShared(sqlite3_file* file, int /*removes*/) {
  delete std::exchange(Of(file)->shared, nullptr);
  return SQLITE_OK;
}

int Open(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* out_flags) {
  static const sqlite3_io_methods kMethods = {
      2,           Close,      Read,    Write,      Truncate,        Sync,      Size,       Lock,
      Lock,        IsReserved, Control, SectorSize, Characteristics, MapShared, LockShared, Barrier,
      UnmapShared, nullptr,    nullptr};
  const bool is_temporary = name == nullptr;
  if (!is_temporary && (flags & SQLITE_OPEN_CREATE) == 0 && g_files.count(name) == 0) {
    return SQLITE_CANTOPEN;
  }
  std::string* const bytes = is_temporary ? new std::string : &g_files[name];
  new (file) MemoryFile{{&kMethods}, bytes, is_temporary, nullptr};
  if (out_flags != nullptr) {
    *out_flags = flags;
  }
  return SQLITE_OK;
}

int Delete(sqlite3_vfs* /*vfs*/, const char* name, int /*sync*/) {
  return g_files.erase(name) > 0 ? SQLITE_OK : SQLITE_IOERR_DELETE_NOENT;
}

int Access(sqlite3_vfs* /*vfs*/, const char* name, int /*flags*/, int* result) {
  *result = g_files.count(name) > 0 ? 1 : 0;
  return SQLITE_OK;
}

int FullName(sqlite3_vfs* /*vfs*/, const char* name, int size, char* full) {
  sqlite3_snprintf(size, full, "%s", name);
  return SQLITE_OK;
}

int Randomness(sqlite3_vfs* /*vfs*/, int size, char* bytes) {
  std::memset(bytes, 7, static_cast<std::size_t>(size));
  return size;
}

int Sleep(sqlite3_vfs* /*vfs*/, int microseconds) { return microseconds; }

int Time(sqlite3_vfs* /*vfs*/, double* day) {
  constexpr double kSomeDay = 2460000;
  *day = kSomeDay;
  return SQLITE_OK;
}

int LastError(sqlite3_vfs* /*vfs*/, int /*size*/, char* /*text*/) { return 0; }

}  // namespace

std::map<std::string, std::string>& MemoryFiles() {
  static sqlite3_vfs vfs = {
      1,      sizeof(MemoryFile), 512,     nullptr, "memory", nullptr, Open,       Delete,
      Access, FullName,           nullptr, nullptr, nullptr,  nullptr, Randomness, Sleep,
      Time,   LastError,          nullptr, nullptr, nullptr,  nullptr};
  static const int registered = sqlite3_vfs_register(&vfs, 1);
  static_cast<void>(registered);
  return g_files;
}

}  // namespace kio::fuzz
