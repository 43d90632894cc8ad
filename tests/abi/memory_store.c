#include "memory_store.h"

#include <kioapp/store.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <unistd.h>

#include "../support/temporary_root.h"

enum { kNodes = 128, kSize = 256, kFiles = 16 };

struct Node {
  char path[kSize]; /* empty for a place that is free */
  char text[kSize];
};

static struct Node g_nodes[kNodes];
static char g_directory[40];
static char g_files[kFiles][kSize];
static int g_file_count = 0;

__attribute__((noreturn)) static void Stop(const char *reason) {
  fprintf(stderr, "%s\n", reason);
  exit(2);
}

static struct Node *FindNode(const char *path) {
  for (struct Node *node = g_nodes; node != g_nodes + kNodes; ++node) {
    if (strcasecmp(node->path, path) == 0) {
      return node;
    }
  }
  return NULL;
}

void ClearStore(void) { memset(g_nodes, 0, sizeof(g_nodes)); }

void SetNode(const char *path, const char *text) {
  struct Node *node = FindNode(path);
  if (node == NULL) {
    node = FindNode("");
  }
  if (node == NULL) {
    Stop("the store is full");
  }
  snprintf(node->path, kSize, "%s", path);
  snprintf(node->text, kSize, "%s", text);
}

const char *NodeText(const char *path) {
  const struct Node *const node = FindNode(path);
  return node != NULL ? node->text : NULL;
}

static void RemoveDirectory(void) {
  for (int i = 0; i < g_file_count; ++i) {
    unlink(g_files[i]);
  }
  rmdir(g_directory);
}

const char *Directory(void) {
  static int made = 0;
  if (!made) {
    made = 1;
    snprintf(g_directory, sizeof(g_directory), "%s%s", TemporaryRoot(), KIO_TEMPORARY_NAME);
    if (mkdtemp(g_directory) == NULL || atexit(RemoveDirectory) != 0) {
      Stop("no temporary directory");
    }
  }
  return g_directory;
}

const char *FilePath(const char *name) {
  static char path[kSize];
  snprintf(path, sizeof(path), "%s/%s", Directory(), name);
  for (int i = 0; i < g_file_count; ++i) {
    if (strcmp(g_files[i], path) == 0) {
      return path;
    }
  }
  if (g_file_count == kFiles) {
    Stop("too many files");
  }
  snprintf(g_files[g_file_count++], kSize, "%s", path);
  return path;
}

const char *FileText(const char *name) {
  static char text[16384];
  FILE *const file = fopen(FilePath(name), "r");
  if (file == NULL) {
    return NULL;
  }
  text[fread(text, 1, sizeof(text) - 1, file)] = '\0';
  fclose(file);
  return text;
}

void StoreDevice(void) {
  ClearStore();
  SetNode("/zentrolinks/specversion/major", "1");
  SetNode("/zentrolinks/specversion/minor", "1");
  SetNode("/zentrolinks/configurable", "1");
  SetNode("/zentrolinks/tempdirecory", Directory());
  SetNode("/zentrolinks/scriptdirecory", Directory());
  SetNode("/sys/friendlyname", "Factory name");
  SetNode("/sys/friendlyname_validate", "0,32,1");
  SetNode("/sys/user:1/password", "secret12");
  SetNode("/sys/routerenbl", "1");
}

/* The path of a call of the host's functions. */
#define READ_PATH(path, format)                     \
  char path[kSize];                                 \
  va_list arguments;                                \
  va_start(arguments, format);                      \
  vsnprintf(path, sizeof(path), format, arguments); \
  va_end(arguments)

int xget_str(char *dst, const char *format, ...) {
  READ_PATH(path, format);
  const char *const text = NodeText(path);
  return text != NULL ? snprintf(dst, kSize, "%s", text) : 0;
}

int xset_str(const char *value, const char *format, ...) {
  READ_PATH(path, format);
  SetNode(path, value);
  return 0;
}

int xget_int(const char *format, ...) {
  READ_PATH(path, format);
  const char *const text = NodeText(path);
  return text != NULL ? (int)strtol(text, NULL, 10) : -1;
}

int xset_int(int value, const char *format, ...) {
  READ_PATH(path, format);
  char text[16];
  snprintf(text, sizeof(text), "%d", value);
  SetNode(path, text);
  return 0;
}

int xdel(const char *format, ...) {
  READ_PATH(path, format);
  const size_t length = strlen(path);
  for (struct Node *node = g_nodes; node != g_nodes + kNodes; ++node) {
    const char next = node->path[strnlen(node->path, length)];
    if (strncasecmp(node->path, path, length) == 0 && (next == '\0' || next == '/')) {
      memset(node, 0, sizeof(*node));
    }
  }
  return 0;
}
