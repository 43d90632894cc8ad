/* The host's side of the test programs in C: a store in memory and a temporary directory. */
#ifndef KIO_TESTS_ABI_MEMORY_STORE_H
#define KIO_TESTS_ABI_MEMORY_STORE_H

/* Empties the store. */
void ClearStore(void);

/* Sets a node. */
void SetNode(const char *path, const char *text);

/* The text of a node, until the store changes; null when the node is absent. */
const char *NodeText(const char *path);

/* A directory of the program's own, made at the first call and removed at exit with the files that
 * FilePath was asked for. */
const char *Directory(void);

/* The path of a file in it, in a buffer that the next call overwrites. */
const char *FilePath(const char *name);

/* The contents of that file, in a buffer that the next call overwrites; null when it cannot be
 * read. */
const char *FileText(const char *name);

/* A small device, changed by nothing yet: no radios, uplink not configurable, format 1.1. Its
 * result document and its scripts lie in Directory(). */
void StoreDevice(void);

#endif
