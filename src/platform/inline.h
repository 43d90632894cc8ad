// Functions that must be inlined in a build for speed.
#ifndef KIO_PLATFORM_INLINE_H
#define KIO_PLATFORM_INLINE_H

// Stands before a function, or behind the parameters of a lambda. A build for size leaves the
// choice to the compiler.
#ifdef KIO_FOR_SIZE
#define KIO_INLINE
#else
#define KIO_INLINE __attribute__((always_inline))
#endif

#endif
