/* The sample device: a dual-band router with Ethernet and DHCP, of format version 1.1, in two
 * states. memory_store.h has functions that store it. */
#ifndef KIO_TESTING_SAMPLE_DEVICE_H
#define KIO_TESTING_SAMPLE_DEVICE_H

#ifdef __cplusplus
extern "C" {
#endif

/* A node and its text in each state, null where there is no such node. */
struct SampleNode {
  const char *path;
  /* As it comes from the factory. The documents in documents/ are meant for this state; full.xml
   * changes nearly all of it. */
  const char *factory;
  /* In use, with access rules. Fields of one kind hold different texts, so that a test sees which
   * one was read. */
  const char *in_use;
};

extern const struct SampleNode kSampleNodes[];
extern const int kSampleNodeCount;

#ifdef __cplusplus
}
#endif

#endif
