# 32-bit MIPS, big-endian, with uClibc.
set(KIO_TARGET_ARCH mips)
set(KIO_TARGET_LIBC uclibc)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
