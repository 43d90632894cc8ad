# 32-bit MIPS, little-endian, with glibc.
set(KIO_TARGET_ARCH mipsel)
set(KIO_TARGET_LIBC glibc)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
