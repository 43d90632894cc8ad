# 32-bit ARM with floating point in hardware, with glibc.
set(KIO_TARGET_ARCH arm)
set(KIO_TARGET_LIBC glibc)
set(KIO_TARGET_TRIPLE arm-linux-gnueabihf)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
