# 64-bit x86, with musl.
set(KIO_TARGET_ARCH x86_64)
set(KIO_TARGET_LIBC musl)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
