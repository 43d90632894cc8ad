#include "scene.h"

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include "../support/temporary_root.h"

static char g_directory[40];

__attribute__((noreturn)) static void Stop(const char *what) {
  perror(what);
  exit(2);
}

static const char *ReadText(const char *path, char *text, size_t size) {
  FILE *const file = fopen(path, "rb");
  if (file == NULL) {
    return NULL;
  }
  text[fread(text, 1, size - 1, file)] = '\0';
  fclose(file);
  return text;
}

const char *SceneDirectory(void) {
  static int made = 0;
  if (!made) {
    made = 1;
    snprintf(g_directory, sizeof(g_directory), "%s%s", TemporaryRoot(), KIO_TEMPORARY_NAME);
    if (mkdtemp(g_directory) == NULL) {
      Stop(g_directory);
    }
  }
  return g_directory;
}

const char *ScenePath(const char *name) {
  static char path[320];
  snprintf(path, sizeof(path), "%s/%s", SceneDirectory(), name);
  return path;
}

const char *SceneText(const char *name) {
  static char text[65536];
  text[0] = '\0';
  ReadText(ScenePath(name), text, sizeof(text));
  return text;
}

void RemoveScene(void) {
  DIR *const directory = opendir(SceneDirectory());
  if (directory == NULL) {
    return;
  }
  const struct dirent *entry = NULL;
  while ((entry = readdir(directory)) != NULL) {
    if (entry->d_name[0] != '.') {
      unlink(ScenePath(entry->d_name));
    }
  }
  closedir(directory);
  rmdir(g_directory);
}

char *FullDocument(void) {
  static char text[16384];
  if (ReadText(KIO_FULL_DOCUMENT, text, sizeof(text)) == NULL) {
    Stop(KIO_FULL_DOCUMENT);
  }
  return text;
}
