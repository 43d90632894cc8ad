#include "scratch.h"

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include "temporary_root.h"

static char g_directory[40];

static void RemoveDirectory(void) {
  DIR *const directory = opendir(g_directory);
  if (directory == NULL) {
    return;
  }
  const struct dirent *entry = NULL;
  while ((entry = readdir(directory)) != NULL) {
    unlink(ScratchPath(entry->d_name)); /* which leaves "." and ".." */
  }
  closedir(directory);
  rmdir(g_directory);
}

const char *ScratchDirectory(void) {
  if (g_directory[0] == '\0') {
    snprintf(g_directory, sizeof(g_directory), "%s%s", TemporaryRoot(), KIO_TEMPORARY_NAME);
    if (mkdtemp(g_directory) == NULL || atexit(RemoveDirectory) != 0) {
      perror(g_directory);
      exit(2);
    }
  }
  return g_directory;
}

const char *ScratchPath(const char *name) {
  static char path[320];
  snprintf(path, sizeof(path), "%s/%s", ScratchDirectory(), name);
  return path;
}

const char *ScratchText(const char *name) {
  static char text[65536];
  FILE *const file = fopen(ScratchPath(name), "rb");
  if (file == NULL) {
    return NULL;
  }
  text[fread(text, 1, sizeof(text) - 1, file)] = '\0';
  fclose(file);
  return text;
}
