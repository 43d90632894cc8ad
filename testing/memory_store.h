/* A host's configuration store in memory: the five functions of kioapp/store.h, for the tests, the
 * benchmarks, the fuzz targets and the comparison of two libraries. It is written in C and takes no
 * heap and no large buffer on the stack: it also runs where there is no C++ run time, and where
 * heap and stack are measured. */
#ifndef KIO_TESTING_MEMORY_STORE_H
#define KIO_TESTING_MEMORY_STORE_H

#ifdef __cplusplus
extern "C" {
#endif

/* Bytes of a path and of a text, their terminators included. The library offers a host 4096 bytes
 * for a text. Longer ones are cut. */
enum { kStorePathSize = 1024, kStoreTextSize = 4096 };

/* Empties the store. */
void ClearStore(void);

/* Replace all nodes by those of the sample device (sample_device.h), in either state. */
void StoreFactoryDevice(void);
void StoreDeviceInUse(void);

/* Paths compare without regard to case. */
void SetNode(const char *path, const char *text);
void DeleteNode(const char *path); /* with what is below it */

/* The text of a node; null when it is absent. It is good until the store changes. The text of a
 * path that ends in '#' is the number of instances, unless a node has that very path. */
const char *NodeText(const char *path);

/* Calls `visit` for each node, in no order, with its path in lower case. */
void VisitNodes(void (*visit)(void *context, const char *path, const char *text), void *context);

/* Calls of xset_str and xset_int since the store was emptied. */
int StoreWrites(void);

enum StoreFunction { kXgetStr, kXsetStr, kXgetInt, kXsetInt, kXdel };

/* What differs from host to host, and how a program watches the calls. All 0 at the start. */
struct StoreBehaviour {
  /* Called before each call of a store function is carried out. `text` is what is written, or the
   * buffer that is read into, or empty. */
  void (*watch)(enum StoreFunction function, const char *path, const char *text);
  /* What xget_str writes for every node, when it is not null. */
  const char *text_for_every_node;
  /* Whether xget_str leaves the terminator out, as strncpy does in a buffer that the text fills. */
  int leaves_out_terminator;
  /* Whether xget_str leaves its buffer as it is for an absent node, or empties it. */
  int absent_leaves_buffer;
  /* What xset_str, xset_int, xdel and xget_str return. */
  int result;
  /* What xget_str returns for an absent node. */
  int absent_result;
};
extern struct StoreBehaviour g_store_behaviour;

#ifdef __cplusplus
}
#endif

#endif
