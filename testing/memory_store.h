/* A host's configuration store in memory: the five functions of kioapp/store.h, for the tests, the
 * benchmarks, the fuzz targets and the comparison of two libraries. It is written in C, takes no
 * heap and no large buffer on the stack, so that it serves where there is no C++ run time and where
 * heap and stack are measured. */
#ifndef KIO_TESTING_MEMORY_STORE_H
#define KIO_TESTING_MEMORY_STORE_H

#ifdef __cplusplus
extern "C" {
#endif

/* Room for a path and for a text, their terminators included: 4096 bytes are what the library
 * offers a host. Longer ones are cut. */
enum { kStorePathSize = 1024, kStoreTextSize = 4096 };

/* Empties the store. */
void ClearStore(void);

/* Fill the store with the sample device (sample_device.h), in place of all that it holds. */
void StoreFactoryDevice(void);
void StoreDeviceInUse(void);

/* Paths compare without regard to case. */
void SetNode(const char *path, const char *text);
void DeleteNode(const char *path); /* with what is below it */

/* The text of a node until the store changes; null when it is absent. The text of a path that ends
 * in '#' is the number of instances, unless there is a node of that very name. */
const char *NodeText(const char *path);

/* Calls `visit` for each node, in no order, with its path in lower case. */
void VisitNodes(void (*visit)(void *context, const char *path, const char *text), void *context);

/* Calls of xset_str and xset_int since the store was emptied. */
int StoreWrites(void);

enum StoreFunction { kXgetStr, kXsetStr, kXgetInt, kXsetInt, kXdel };

/* What hosts differ in, and what a program wants to see. All 0 to begin with. */
struct StoreManner {
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
extern struct StoreManner g_store_manner;

#ifdef __cplusplus
}
#endif

#endif
