# 64-bit RISC-V, with glibc.
set(KIO_TARGET_ARCH riscv64)
set(KIO_TARGET_LIBC glibc)
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
