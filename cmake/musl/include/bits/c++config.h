// Debian's headers of the C++ library are configured for glibc, and ask for its version by a macro
// that musl has not. This stands before their configuration.
#ifndef KIO_MUSL_CXXCONFIG_H
#define KIO_MUSL_CXXCONFIG_H

#define __GLIBC_PREREQ(major, minor) 0

#include_next <bits/c++config.h>

#endif
