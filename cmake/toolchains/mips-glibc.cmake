# 32-bit MIPS, big-endian, with glibc.
set(KIO_TARGET_ARCH mips)
set(KIO_TARGET_LIBC glibc)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
