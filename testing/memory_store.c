#include "memory_store.h"

#include <ctype.h>
#include <kioapp/store.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "sample_device.h"

enum { kNodes = 1024, kBuckets = 512 };

struct Node {
  struct Node *next; /* in its bucket, or in the list of free nodes */
  unsigned int hash;
  size_t size; /* of the path */
  char path[kStorePathSize];
  char text[kStoreTextSize];
};

/* A path in lower case. */
struct Path {
  unsigned int hash;
  size_t size;
  char text[kStorePathSize];
};

struct StoreBehaviour g_store_behaviour;

static struct Node g_nodes[kNodes];
static int g_used = 0; /* so many of g_nodes have been taken at some time */
static struct Node *g_free = NULL;
static struct Node *g_buckets[kBuckets];
static int g_writes = 0;

/* The path of a store call, and the one that the program itself asks for. They are static because
 * the stack is measured. */
static struct Path g_called;
static struct Path g_asked;

__attribute__((noreturn)) static void Stop(const char *reason) {
  fprintf(stderr, "memory store: %s\n", reason);
  abort();
}

/* Copies as much of a text as there is room for. */
static void Copy(char *dst, size_t size, const char *src) {
  const size_t length = strnlen(src, size - 1);
  memcpy(dst, src, length);
  dst[length] = '\0';
}

enum { kDigitsSize = 16 };

/* The digits of a number, at the end of `text`. */
static const char *Digits(int number, char *text) {
  char *digit = text + kDigitsSize - 1;
  *digit = '\0';
  unsigned int rest = number < 0 ? 0U - (unsigned int)number : (unsigned int)number;
  do {
    *--digit = (char)('0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (number < 0) {
    *--digit = '-';
  }
  return digit;
}

static void Fold(struct Path *path) {
  unsigned int hash = 2166136261U;
  size_t i = 0;
  for (; path->text[i] != '\0'; ++i) {
    const int character = tolower((unsigned char)path->text[i]);
    path->text[i] = (char)character;
    hash = (hash ^ (unsigned int)character) * 16777619U;
  }
  path->hash = hash;
  path->size = i;
}

static const struct Path *Asked(const char *path) {
  Copy(g_asked.text, sizeof(g_asked.text), path);
  Fold(&g_asked);
  return &g_asked;
}

static struct Node *Find(const struct Path *path) {
  struct Node *node = g_buckets[path->hash % kBuckets];
  while (node != NULL && (node->hash != path->hash || node->size != path->size ||
                          memcmp(node->path, path->text, path->size) != 0)) {
    node = node->next;
  }
  return node;
}

static struct Node *Add(const struct Path *path) {
  struct Node *node = g_free;
  if (node != NULL) {
    g_free = node->next;
  } else if (g_used < kNodes) {
    node = &g_nodes[g_used++];
  } else {
    Stop("it is full");
  }
  struct Node **const bucket = &g_buckets[path->hash % kBuckets];
  node->next = *bucket;
  *bucket = node;
  node->hash = path->hash;
  node->size = path->size;
  memcpy(node->path, path->text, path->size + 1);
  return node;
}

static void Write(const struct Path *path, const char *text) {
  struct Node *const node = Find(path);
  Copy((node != NULL ? node : Add(path))->text, kStoreTextSize, text);
}

/* The highest number of the instances of a path that ends in '#'; 0 when there is none. */
static int CountInstances(const struct Path *path) {
  const size_t stem = path->size - 1;
  int highest = 0;
  for (int i = 0; i < kBuckets; ++i) {
    for (const struct Node *node = g_buckets[i]; node != NULL; node = node->next) {
      if (node->size > stem && node->path[stem] == ':' &&
          memcmp(node->path, path->text, stem) == 0) {
        const int number = (int)strtol(node->path + stem + 1, NULL, 10);
        highest = number > highest ? number : highest;
      }
    }
  }
  return highest;
}

static const char *Read(const struct Path *path) {
  static char number[kDigitsSize];
  const struct Node *const node = Find(path);
  if (node != NULL) {
    return node->text;
  }
  if (path->size == 0 || path->text[path->size - 1] != '#') {
    return NULL;
  }
  const int count = CountInstances(path);
  return count > 0 ? Digits(count, number) : NULL;
}

static void Delete(const struct Path *path) {
  for (int i = 0; i < kBuckets; ++i) {
    struct Node **link = &g_buckets[i];
    while (*link != NULL) {
      struct Node *const node = *link;
      if (node->size >= path->size && memcmp(node->path, path->text, path->size) == 0 &&
          (node->size == path->size || node->path[path->size] == '/')) {
        *link = node->next;
        node->next = g_free;
        g_free = node;
      } else {
        link = &node->next;
      }
    }
  }
}

void ClearStore(void) {
  memset(g_buckets, 0, sizeof(g_buckets));
  g_used = 0;
  g_free = NULL;
  g_writes = 0;
}

static void StoreDevice(int in_use) {
  ClearStore();
  for (int i = 0; i < kSampleNodeCount; ++i) {
    const char *const text = in_use ? kSampleNodes[i].in_use : kSampleNodes[i].factory;
    if (text != NULL) {
      SetNode(kSampleNodes[i].path, text);
    }
  }
}

void StoreFactoryDevice(void) { StoreDevice(0); }

void StoreDeviceInUse(void) { StoreDevice(1); }

void SetNode(const char *path, const char *text) { Write(Asked(path), text); }

void DeleteNode(const char *path) { Delete(Asked(path)); }

const char *NodeText(const char *path) { return Read(Asked(path)); }

void VisitNodes(void (*visit)(void *context, const char *path, const char *text), void *context) {
  for (int i = 0; i < kBuckets; ++i) {
    for (const struct Node *node = g_buckets[i]; node != NULL; node = node->next) {
      visit(context, node->path, node->text);
    }
  }
}

int StoreWrites(void) { return g_writes; }

/* Reads the path of a store call and reports the call. The library always gives the format "%s",
 * which needs no vsnprintf. */
__attribute__((format(printf, 3, 0))) static void Begin(enum StoreFunction function,
                                                        const char *text, const char *format,
                                                        va_list arguments) {
  if (strcmp(format, "%s") == 0) {
    Copy(g_called.text, sizeof(g_called.text), va_arg(arguments, const char *));
  } else {
    vsnprintf(g_called.text, sizeof(g_called.text), format, arguments);
  }
  if (g_store_behaviour.watch != NULL) {
    g_store_behaviour.watch(function, g_called.text, text);
  }
  Fold(&g_called);
}

int xget_str(char *dst, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Begin(kXgetStr, dst, format, arguments);
  va_end(arguments);
  const char *const every = g_store_behaviour.text_for_every_node;
  const char *const text = every != NULL ? every : Read(&g_called);
  if (text != NULL) {
    memcpy(dst, text, strlen(text) + (g_store_behaviour.leaves_out_terminator ? 0 : 1));
    return g_store_behaviour.result;
  }
  if (!g_store_behaviour.absent_leaves_buffer) {
    dst[0] = '\0';
  }
  return g_store_behaviour.absent_result;
}

int xset_str(const char *value, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Begin(kXsetStr, value, format, arguments);
  va_end(arguments);
  ++g_writes;
  Write(&g_called, value);
  return g_store_behaviour.result;
}

int xget_int(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Begin(kXgetInt, "", format, arguments);
  va_end(arguments);
  const char *const text = Read(&g_called);
  return text != NULL ? (int)strtol(text, NULL, 10) : -1;
}

int xset_int(int value, const char *format, ...) {
  char text[kDigitsSize];
  const char *const digits = Digits(value, text);
  va_list arguments;
  va_start(arguments, format);
  Begin(kXsetInt, digits, format, arguments);
  va_end(arguments);
  ++g_writes;
  Write(&g_called, digits);
  return g_store_behaviour.result;
}

int xdel(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  Begin(kXdel, "", format, arguments);
  va_end(arguments);
  Delete(&g_called);
  return g_store_behaviour.result;
}
