# 32-bit MIPS, little-endian, with uClibc.
set(KIO_TARGET_ARCH mipsel)
set(KIO_TARGET_LIBC uclibc)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
