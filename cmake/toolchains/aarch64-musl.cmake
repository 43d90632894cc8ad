# 64-bit ARM, with musl.
set(KIO_TARGET_ARCH aarch64)
set(KIO_TARGET_LIBC musl)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
