/* Loaded before libc: one of the next commands goes wrong. The file that KIO_TEST_COMMAND names
 * says which ("3": the third from now on) and how: "3 start" cannot be started, "3 write" finds no
 * room for what it writes. A line that the host writes to the result document itself is a command,
 * too. Without a number in the file all goes well. */
#include <dlfcn.h>
#include <errno.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

typedef int Spawn(pid_t *, const char *, const posix_spawn_file_actions_t *,
                  const posix_spawnattr_t *, char *const[], char *const[]);

__attribute__((constructor)) static void Prepare(void) {
  /* What the commands write is no further command. */
  unsetenv("LD_PRELOAD");
}

/* Counts down to the command or the line that goes wrong; returns 1 for this one. */
static int IsNext(int is_line, char *how) {
  const char *const name = getenv("KIO_TEST_COMMAND");
  FILE *file = name != NULL ? fopen(name, "r") : NULL;
  char number_text[16];
  if (file == NULL) {
    abort();
  }
  const int read = fscanf(file, "%15s %15s", number_text, how);
  fclose(file);
  const long number = read == 2 ? strtol(number_text, NULL, 10) : 0;
  if (number <= 0 || is_line != (strcmp(how, "line") == 0)) {
    return 0;
  }
  file = fopen(name, "w");
  if (file == NULL) {
    abort();
  }
  fprintf(file, "%ld %s", number - 1, how);
  fclose(file);
  return number == 1;
}

int posix_spawn(pid_t *pid, const char *path, const posix_spawn_file_actions_t *actions,
                const posix_spawnattr_t *attributes, char *const arguments[],
                char *const environment[]) {
  Spawn *real = NULL;
  *(void **)&real = dlsym(RTLD_NEXT, "posix_spawn");
  char how[16] = "";
  if (!IsNext(0, how)) {
    return real(pid, path, actions, attributes, arguments, environment);
  }
  if (strcmp(how, "start") == 0) {
    return EAGAIN;
  }
  /* sh -c COMMAND */
  char command[2048];
  snprintf(command, sizeof command, "ulimit -f 0; %s", arguments[2]);
  char *const changed[] = {arguments[0], arguments[1], command, NULL};
  return real(pid, path, actions, attributes, changed, environment);
}

static int IsResultDocument(int fd) {
  static const char end[] = "/rssset_result.xml";
  char link[64];
  char path[4096];
  snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
  const ssize_t size = readlink(link, path, sizeof path);
  const ssize_t end_size = (ssize_t)strlen(end);
  return size >= end_size && memcmp(path + size - end_size, end, strlen(end)) == 0;
}

ssize_t write(int fd, const void *data, size_t size) {
  ssize_t (*real)(int, const void *, size_t) = NULL;
  *(void **)&real = dlsym(RTLD_NEXT, "write");
  char how[16] = "";
  if (!IsResultDocument(fd) || !IsNext(1, how)) {
    return real(fd, data, size);
  }
  errno = ENOSPC;
  return -1;
}
