/* Linkage and compiler attributes shared by the public headers. */
#ifndef KIOAPP_ATTRIBUTES_H
#define KIOAPP_ATTRIBUTES_H

#ifdef __cplusplus
/* Begins declarations with C linkage. */
#define KIOAPP_BEGIN_DECLS extern "C" {
/* Ends them. */
#define KIOAPP_END_DECLS }
#else
#define KIOAPP_BEGIN_DECLS
#define KIOAPP_END_DECLS
#endif

#if defined(__GNUC__)
/* Exported from the shared library. */
#define KIOAPP_API __attribute__((visibility("default")))
/* Arguments are checked against a printf format. */
#define KIOAPP_PRINTF(format_index, first_argument) \
  __attribute__((format(printf, format_index, first_argument)))
#else
#define KIOAPP_API
#define KIOAPP_PRINTF(format_index, first_argument)
#endif

#endif
