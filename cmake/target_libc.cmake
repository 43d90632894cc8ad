# Fails unless the compiler of a target's preset has the headers of the preset's C library. Only the
# headers are checked: no program can be linked yet.
include(CheckCSourceCompiles)

if(KIO_TARGET_LIBC STREQUAL uclibc)
  set(kio_other_libc "!defined(__UCLIBC__)")
elseif(KIO_TARGET_LIBC STREQUAL musl)
  # musl has no macro that names it.
  set(kio_other_libc "defined(__GLIBC__) || defined(__UCLIBC__)")
else()
  # uClibc calls itself glibc as well.
  set(kio_other_libc "!defined(__GLIBC__) || defined(__UCLIBC__)")
endif()
check_c_source_compiles(
  "#include <features.h>
#if ${kio_other_libc}
#error another C library
#endif
int main(void) { return 0; }"
  KIO_HAS_TARGET_LIBC)
if(NOT KIO_HAS_TARGET_LIBC)
  # Not kept: the sysroot may be mended before the next configuration.
  unset(KIO_HAS_TARGET_LIBC CACHE)
  message(
    FATAL_ERROR
      "${CMAKE_C_COMPILER} does not have the headers of ${KIO_TARGET_LIBC}, which this preset builds "
      "for. Give the right KIO_CROSS_PREFIX and KIO_SYSROOT, or take the preset of the other C "
      "library, in a new build directory.")
endif()
