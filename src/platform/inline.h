// Functions that are inlined in a build for speed, and functions that are not in one for size.
#ifndef KIO_PLATFORM_INLINE_H
#define KIO_PLATFORM_INLINE_H

// Stands before a function, or behind the parameters of a lambda. A build for size leaves the
// choice to the compiler.
#ifdef KIO_FOR_SIZE
#define KIO_INLINE
#else
#define KIO_INLINE __attribute__((always_inline))
#endif

// Stands before a function of which a build for size has one body, with what it calls in it.
#ifdef KIO_FOR_SIZE
#define KIO_ONE_BODY __attribute__((noinline, flatten))
#else
#define KIO_ONE_BODY
#endif

#endif
