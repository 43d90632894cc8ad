# 64-bit ARM, with glibc.
set(KIO_TARGET_ARCH aarch64)
set(KIO_TARGET_LIBC glibc)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
