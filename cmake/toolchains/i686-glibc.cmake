# 32-bit x86, with glibc.
set(KIO_TARGET_ARCH i686)
set(KIO_TARGET_LIBC glibc)
set(KIO_TARGET_EMULATOR qemu-i386)
set(KIO_TARGET_LOADER ld-linux.so.2)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
