# What the toolchain files of the targets share. Without further ado the compilers are Debian's, and
# the sysroot with uClibc is built by cmake/uclibc/sysroot.sh unless it is there. Another toolchain:
#
#   KIO_CROSS_PREFIX  what its programs' names begin with, such as /opt/vendor/bin/mips-linux-
#   KIO_SYSROOT       the root of its headers and libraries; may be left out when its compiler knows
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${KIO_TARGET_ARCH})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KIO_CROSS_PREFIX KIO_SYSROOT)

if(KIO_CROSS_PREFIX)
  set(CMAKE_C_COMPILER ${KIO_CROSS_PREFIX}gcc)
  set(CMAKE_CXX_COMPILER ${KIO_CROSS_PREFIX}g++)
else()
  set(kio_triple ${KIO_TARGET_ARCH}-linux-gnu)
  set(CMAKE_C_COMPILER ${kio_triple}-gcc)
  set(CMAKE_CXX_COMPILER ${kio_triple}-g++)
  if(KIO_TARGET_LIBC STREQUAL uclibc)
    set(kio_uclibc ${CMAKE_CURRENT_LIST_DIR}/../uclibc)
    cmake_path(NORMAL_PATH kio_uclibc)
    if(NOT KIO_SYSROOT)
      execute_process(
        COMMAND ${kio_uclibc}/sysroot.sh ${KIO_TARGET_ARCH}
        OUTPUT_VARIABLE KIO_SYSROOT
        OUTPUT_STRIP_TRAILING_WHITESPACE
        RESULT_VARIABLE kio_sysroot_result)
      if(NOT kio_sysroot_result EQUAL 0)
        message(FATAL_ERROR "There is no sysroot with uClibc, as told above.")
      endif()
    endif()
    # Debian's compiler looks for glibc first; these specs leave that out. Of its C++ library the
    # headers are used, with uClibc's configuration before their own.
    list(APPEND CMAKE_C_COMPILER -specs=${kio_uclibc}/gcc.specs)
    execute_process(
      COMMAND ${kio_triple}-g++ -dumpversion
      OUTPUT_VARIABLE kio_version
      OUTPUT_STRIP_TRAILING_WHITESPACE)
    set(kio_cxx_headers /usr/${kio_triple}/include/c++/${kio_version})
    list(
      APPEND
      CMAKE_CXX_COMPILER
      -specs=${kio_uclibc}/gcc.specs
      -isystem
      ${kio_uclibc}/include
      -isystem
      ${kio_cxx_headers}
      -isystem
      ${kio_cxx_headers}/${kio_triple})
  endif()
endif()
if(KIO_SYSROOT)
  set(CMAKE_SYSROOT ${KIO_SYSROOT})
endif()

if(KIO_TARGET_LIBC STREQUAL uclibc)
  # No program in C++ can be linked, so the checks of the compilers must do without.
  set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
  # The loader reads no other table of names.
  foreach(kio_kind SHARED MODULE EXE)
    set(CMAKE_${kio_kind}_LINKER_FLAGS_INIT "-Wl,--hash-style=sysv")
  endforeach()
endif()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kio_kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kio_kind} ONLY)
endforeach()

# The emulator looks for the loader and the libraries where they were linked from.
if(KIO_SYSROOT)
  set(kio_emulated_root ${KIO_SYSROOT})
else()
  set(kio_emulated_root /usr/${KIO_TARGET_ARCH}-linux-gnu)
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-${KIO_TARGET_ARCH};-L;${kio_emulated_root}")
