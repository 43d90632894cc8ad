/* Loaded before libc: one of the next commands goes wrong. The file that KIO_TEST_SPAWN names says
 * which ("3": the third from now on) and how: "3 start" cannot be started, "3 write" finds no room
 * for what it writes. Without a number in the file all goes well. */
#include <dlfcn.h>
#include <errno.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef int Spawn(pid_t *, const char *, const posix_spawn_file_actions_t *,
                  const posix_spawnattr_t *, char *const[], char *const[]);

/* Counts down to the command that goes wrong; returns 1 for this one. */
static int IsNext(char *how) {
  const char *const name = getenv("KIO_TEST_SPAWN");
  FILE *file = name != NULL ? fopen(name, "r") : NULL;
  char number_text[16];
  if (file == NULL) {
    abort();
  }
  const int read = fscanf(file, "%15s %15s", number_text, how);
  fclose(file);
  const long number = read == 2 ? strtol(number_text, NULL, 10) : 0;
  if (number <= 0) {
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
  if (!IsNext(how)) {
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
