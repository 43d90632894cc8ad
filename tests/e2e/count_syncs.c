/* Loaded before libc: appends a byte to the file that KIO_TEST_SYNCS names for each wait for the
 * disk: 'l' for a write-ahead log, 'f' for any other file. */
#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int IsLog(int fd) {
  static const char end[] = "-wal";
  char link[64];
  char path[4096];
  snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
  const ssize_t size = readlink(link, path, sizeof path);
  const ssize_t end_size = (ssize_t)strlen(end);
  return size >= end_size && memcmp(path + size - end_size, end, strlen(end)) == 0;
}

static int Count(const char *name, int fd) {
  int (*real)(int) = NULL;
  *(void **)&real = dlsym(RTLD_NEXT, name);
  const char *const file = getenv("KIO_TEST_SYNCS");
  const int count = file != NULL ? open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600) : -1;
  if (count < 0 || write(count, IsLog(fd) ? "l" : "f", 1) != 1) {
    abort();
  }
  close(count);
  return real(fd);
}

int fsync(int fd) { return Count("fsync", fd); }

int fdatasync(int fd) { return Count("fdatasync", fd); }
