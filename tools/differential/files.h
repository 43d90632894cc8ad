// The files of the machine, with functions that behave as those of libc, `errno` included.
#ifndef KIO_DIFFERENTIAL_FILES_H
#define KIO_DIFFERENTIAL_FILES_H

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <string>

namespace kio::differential {

// The descriptor of every socket.
inline constexpr int kSocket = 900;

// Sets `errno` and returns -1.
int Fail(int error);

int OpenFileAt(const char* path, int flags, unsigned mode);
int CloseFile(int descriptor);
ssize_t ReadFile(int descriptor, void* data, std::size_t size);
ssize_t ReadFileAt(int descriptor, void* data, std::size_t size, off_t offset);
ssize_t WriteFile(int descriptor, const void* data, std::size_t size);
int FileStatus(const char* path, struct stat* status);
int OpenFileStatus(int descriptor, struct stat* status);
int FileAccess(const char* path);
// Copies what a mapping of `size` bytes of a file shows. Returns false when it cannot be mapped.
bool CopyForMapping(int descriptor, std::size_t size, std::string& content);

// Makes an event of each file that the library has not closed, and closes it.
void ReportOpenFiles();

}  // namespace kio::differential

#endif
