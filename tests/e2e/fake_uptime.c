/* Loaded before libc: the uptime is the number in the file that KIO_TEST_UPTIME names. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/sysinfo.h>

int sysinfo(struct sysinfo *info) {
  memset(info, 0, sizeof *info);
  const char *const name = getenv("KIO_TEST_UPTIME");
  FILE *const file = name != NULL ? fopen(name, "r") : NULL;
  char text[32] = "";
  if (file == NULL || fgets(text, sizeof text, file) == NULL) {
    abort();
  }
  fclose(file);
  info->uptime = strtol(text, NULL, 10);
  return 0;
}
