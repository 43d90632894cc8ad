#include "disk.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr int kVersion = 2;  // of the methods: with shared memory
constexpr int kPathSize = 512;
constexpr int kSectorSize = 4096;

// A file of the disk that is open.
struct OpenFile {
  sqlite3_file base;
  std::string* name;
  std::vector<std::string>* memory;  // that connections share; there is one connection at a time
  bool is_temporary;
  int lock;
};

OpenFile* Of(sqlite3_file* file) { return reinterpret_cast<OpenFile*>(file); }

const DiskFault* FaultOf(DiskCall call, const std::string& file) {
  return Disk::Get().fails ? Disk::Get().fails(call, file) : nullptr;
}

std::string& ContentOf(sqlite3_file* file) { return Disk::Get().files[*Of(file)->name]; }

int Close(sqlite3_file* file) {
  OpenFile* const open = Of(file);
  if (open->is_temporary) {
    Disk::Get().files.erase(*open->name);
  }
  delete open->name;
  delete open->memory;
  return SQLITE_OK;
}

int Read(sqlite3_file* file, void* data, int size, sqlite3_int64 at) {
  if (const DiskFault* const fault = FaultOf(DiskCall::kRead, *Of(file)->name)) {
    return fault->code;
  }
  const std::string& content = ContentOf(file);
  const auto begin = std::min(static_cast<size_t>(at), content.size());
  const size_t count = std::min(static_cast<size_t>(size), content.size() - begin);
  std::memcpy(data, content.data() + begin, count);
  std::memset(static_cast<char*>(data) + count, 0, static_cast<size_t>(size) - count);
  return count == static_cast<size_t>(size) ? SQLITE_OK : SQLITE_IOERR_SHORT_READ;
}

int Write(sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
  const std::string& name = *Of(file)->name;
  const DiskFault* const fault = FaultOf(DiskCall::kWrite, name);
  if (fault != nullptr && fault->effect == DiskFault::Effect::kNothing) {
    return fault->code;
  }
  const auto count = static_cast<size_t>(fault != nullptr ? size / 2 : size);
  Disk::Get().Do({DiskStep::Kind::kWrite, name, static_cast<size_t>(at),
                  std::string(static_cast<const char*>(data), count)});
  return fault != nullptr ? fault->code : SQLITE_OK;
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  if (const DiskFault* const fault = FaultOf(DiskCall::kTruncate, *Of(file)->name)) {
    return fault->code;
  }
  Disk::Get().Do({DiskStep::Kind::kTruncate, *Of(file)->name, static_cast<size_t>(size)});
  return SQLITE_OK;
}

int Sync(sqlite3_file* file, int /*flags*/) {
  if (const DiskFault* const fault = FaultOf(DiskCall::kSync, *Of(file)->name)) {
    return fault->code;
  }
  Disk::Get().Do({DiskStep::Kind::kSync, *Of(file)->name});
  return SQLITE_OK;
}

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  if (const DiskFault* const fault = FaultOf(DiskCall::kSize, *Of(file)->name)) {
    return fault->code;
  }
  *size = static_cast<sqlite3_int64>(ContentOf(file).size());
  return SQLITE_OK;
}

int Lock(sqlite3_file* file, int lock) {
  Of(file)->lock = std::max(Of(file)->lock, lock);
  return SQLITE_OK;
}

int Unlock(sqlite3_file* file, int lock) {
  Of(file)->lock = lock;
  return SQLITE_OK;
}

int CheckReservedLock(sqlite3_file* /*file*/, int* is_reserved) {
  *is_reserved = 0;
  return SQLITE_OK;
}

int Control(sqlite3_file* /*file*/, int /*what*/, void* /*about*/) { return SQLITE_NOTFOUND; }

int SectorSize(sqlite3_file* /*file*/) { return kSectorSize; }

// As those of a file of the system.
int Characteristics(sqlite3_file* /*file*/) { return SQLITE_IOCAP_POWERSAFE_OVERWRITE; }

int MapMemory(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
  if (const DiskFault* const fault = FaultOf(DiskCall::kMemory, *Of(file)->name)) {
    *memory = nullptr;
    return fault->code;
  }
  std::vector<std::string>& pages = *Of(file)->memory;
  while (extend != 0 && pages.size() <= static_cast<size_t>(page)) {
    pages.emplace_back(static_cast<size_t>(size), '\0');
  }
  *memory =
      static_cast<size_t>(page) < pages.size() ? pages[static_cast<size_t>(page)].data() : nullptr;
  return SQLITE_OK;
}

int LockMemory(sqlite3_file* /*file*/, int /*at*/, int /*count*/, int /*flags*/) {
  return SQLITE_OK;
}

void Barrier(sqlite3_file* /*file*/) {}

int UnmapMemory(sqlite3_file* file, int /*deletes*/) {
  Of(file)->memory->clear();
  return SQLITE_OK;
}

constexpr sqlite3_io_methods kMethods = {kVersion,
                                         Close,
                                         Read,
                                         Write,
                                         Truncate,
                                         Sync,
                                         FileSize,
                                         Lock,
                                         Unlock,
                                         CheckReservedLock,
                                         Control,
                                         SectorSize,
                                         Characteristics,
                                         MapMemory,
                                         LockMemory,
                                         Barrier,
                                         UnmapMemory,
                                         nullptr,
                                         nullptr};

int Open(sqlite3_vfs* /*vfs*/, const char* path, sqlite3_file* file, int flags, int* out_flags) {
  static int temporaries = 0;
  const std::string name = path != nullptr ? path : "temporary " + std::to_string(++temporaries);
  file->pMethods = nullptr;
  if (const DiskFault* const fault = FaultOf(DiskCall::kOpen, name)) {
    return fault->code;
  }
  Disk& disk = Disk::Get();
  if (!disk.files.contains(name)) {
    if ((flags & SQLITE_OPEN_CREATE) == 0) {
      return SQLITE_CANTOPEN;
    }
    disk.Do({DiskStep::Kind::kCreate, name});
  }
  OpenFile* const open = Of(file);
  open->name = new std::string(name);
  open->memory = new std::vector<std::string>;
  open->memory->reserve(64);
  open->is_temporary = path == nullptr;
  open->lock = 0;
  file->pMethods = &kMethods;
  if (out_flags != nullptr) {
    *out_flags = flags;
  }
  return SQLITE_OK;
}

int Delete(sqlite3_vfs* /*vfs*/, const char* path, int /*syncs*/) {
  if (const DiskFault* const fault = FaultOf(DiskCall::kDelete, path)) {
    return fault->code;
  }
  if (!Disk::Get().files.contains(path)) {
    return SQLITE_IOERR_DELETE_NOENT;
  }
  Disk::Get().Do({DiskStep::Kind::kDelete, path});
  return SQLITE_OK;
}

int Access(sqlite3_vfs* /*vfs*/, const char* path, int /*flags*/, int* result) {
  // As that of a real disk: an empty log does not count.
  *result = Disk::Get().files.contains(path) ? 1 : 0;
  return SQLITE_OK;
}

int FullPath(sqlite3_vfs* /*vfs*/, const char* path, int size, char* full) {
  sqlite3_snprintf(size, full, "%s", path);
  return SQLITE_OK;
}

sqlite3_vfs* System() {
  static sqlite3_vfs* const system = sqlite3_vfs_find("unix");
  return system;
}

int Randomness(sqlite3_vfs* /*vfs*/, int size, char* bytes) {
  // The same in each run: which bytes they are decides about nothing.
  static unsigned seed = 1;
  for (int i = 0; i < size; ++i) {
    seed = seed * 1103515245U + 12345U;
    bytes[i] = static_cast<char>(seed >> 16);
  }
  return size;
}

int Sleep(sqlite3_vfs* /*vfs*/, int microseconds) { return microseconds; }

int Now(sqlite3_vfs* /*vfs*/, double* now) { return System()->xCurrentTime(System(), now); }

}  // namespace

Disk& Disk::Get() {
  static Disk disk;
  return disk;
}

void Disk::Install() {
  static sqlite3_vfs vfs = {};
  vfs.iVersion = 1;
  vfs.szOsFile = sizeof(OpenFile);
  vfs.mxPathname = kPathSize;
  vfs.zName = "disk in memory";
  vfs.xOpen = Open;
  vfs.xDelete = Delete;
  vfs.xAccess = Access;
  vfs.xFullPathname = FullPath;
  vfs.xRandomness = Randomness;
  vfs.xSleep = Sleep;
  vfs.xCurrentTime = Now;
  System();
  sqlite3_vfs_register(&vfs, 1);
}

void Disk::Do(DiskStep step) {
  switch (step.kind) {
    case DiskStep::Kind::kCreate:
      files[step.file].clear();
      break;
    case DiskStep::Kind::kDelete:
      files.erase(step.file);
      break;
    case DiskStep::Kind::kTruncate:
      files[step.file].resize(step.at);
      break;
    case DiskStep::Kind::kWrite: {
      std::string& file = files[step.file];
      if (file.size() < step.at + step.data.size()) {
        file.resize(step.at + step.data.size());
      }
      file.replace(step.at, step.data.size(), step.data);
      break;
    }
    case DiskStep::Kind::kSync:
      break;
  }
  if (notes) {
    steps.push_back(std::move(step));
  }
}
