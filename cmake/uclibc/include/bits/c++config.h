// Debian's headers of the C++ library are configured for glibc. This stands before their
// configuration and takes back what uClibc, or a uClibc without wide characters, has not.
#ifndef KIO_UCLIBC_CXXCONFIG_H
#define KIO_UCLIBC_CXXCONFIG_H

#include_next <bits/c++config.h>

#undef _GLIBCXX_HAVE_AT_QUICK_EXIT
#undef _GLIBCXX_HAVE_QUICK_EXIT
#undef _GLIBCXX_HAVE_MBSTATE_T
#undef _GLIBCXX_HAVE_TIMESPEC_GET
#undef _GLIBCXX_HAVE_WCHAR_H
#undef _GLIBCXX_USE_TMPNAM
#undef _GLIBCXX_USE_WCHAR_T

#endif
