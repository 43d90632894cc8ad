# 32-bit MIPS, little-endian, with musl.
set(KIO_TARGET_ARCH mipsel)
set(KIO_TARGET_LIBC musl)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
