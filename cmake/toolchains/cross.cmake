# What the toolchain files of the targets share. By default the compilers are Debian's, and the sysroot
# with uClibc or musl is made by cmake/uclibc/sysroot.sh or cmake/musl/sysroot.sh, unless it is there.
# For another toolchain:
#
#   KIO_CROSS_PREFIX  what its programs' names begin with, such as /opt/vendor/bin/mips-linux-
#   KIO_SYSROOT       the root of its headers and libraries, if its compiler does not know it
#
# A toolchain file sets KIO_TARGET_ARCH and KIO_TARGET_LIBC. It also sets KIO_TARGET_TRIPLE, of Debian's
# compiler, and KIO_TARGET_EMULATOR, where these are not named after the architecture.
# KIO_TARGET_LOADER names the C library's loader, for programs that this machine's kernel may run.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${KIO_TARGET_ARCH})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KIO_CROSS_PREFIX KIO_SYSROOT)
if(NOT KIO_TARGET_TRIPLE)
  set(KIO_TARGET_TRIPLE ${KIO_TARGET_ARCH}-linux-gnu)
endif()
if(NOT KIO_TARGET_EMULATOR)
  set(KIO_TARGET_EMULATOR qemu-${KIO_TARGET_ARCH})
endif()
# uClibc and musl come without a C++ run time: what is built for them is C, but for the library.
if(KIO_TARGET_LIBC STREQUAL glibc)
  set(KIO_TARGET_HAS_CXX_RUN_TIME ON)
else()
  set(KIO_TARGET_HAS_CXX_RUN_TIME OFF)
endif()

if(KIO_CROSS_PREFIX)
  set(CMAKE_C_COMPILER ${KIO_CROSS_PREFIX}gcc)
  set(CMAKE_CXX_COMPILER ${KIO_CROSS_PREFIX}g++)
else()
  set(CMAKE_C_COMPILER ${KIO_TARGET_TRIPLE}-gcc)
  set(CMAKE_CXX_COMPILER ${KIO_TARGET_TRIPLE}-g++)
  if(NOT KIO_TARGET_HAS_CXX_RUN_TIME)
    set(kio_libc ${CMAKE_CURRENT_LIST_DIR}/../${KIO_TARGET_LIBC})
    cmake_path(NORMAL_PATH kio_libc)
    if(NOT KIO_SYSROOT)
      execute_process(
        COMMAND ${kio_libc}/sysroot.sh ${KIO_TARGET_ARCH}
        OUTPUT_VARIABLE KIO_SYSROOT
        OUTPUT_STRIP_TRAILING_WHITESPACE
        RESULT_VARIABLE kio_sysroot_result)
      if(NOT kio_sysroot_result EQUAL 0)
        message(FATAL_ERROR "There is no sysroot with ${KIO_TARGET_LIBC}, as told above.")
      endif()
    endif()
    # Debian's compiler looks for glibc first; these specs prevent that. The headers of its C++ library
    # are used, with the C library's bits/c++config.h before their own.
    list(APPEND CMAKE_C_COMPILER -specs=${kio_libc}/gcc.specs)
    execute_process(
      COMMAND ${KIO_TARGET_TRIPLE}-g++ -dumpversion
      OUTPUT_VARIABLE kio_version
      OUTPUT_STRIP_TRAILING_WHITESPACE)
    # The headers of the native compiler lie elsewhere than those of a cross compiler.
    set(kio_cxx_headers /usr/${KIO_TARGET_TRIPLE}/include/c++/${kio_version})
    set(kio_cxx_target_headers ${kio_cxx_headers}/${KIO_TARGET_TRIPLE})
    if(NOT EXISTS ${kio_cxx_headers})
      set(kio_cxx_headers /usr/include/c++/${kio_version})
      set(kio_cxx_target_headers /usr/include/${KIO_TARGET_TRIPLE}/c++/${kio_version})
    endif()
    list(
      APPEND
      CMAKE_CXX_COMPILER
      -specs=${kio_libc}/gcc.specs
      -isystem
      ${kio_libc}/include
      -isystem
      ${kio_cxx_headers}
      -isystem
      ${kio_cxx_target_headers})
  endif()
endif()
if(KIO_SYSROOT)
  set(CMAKE_SYSROOT ${KIO_SYSROOT})
endif()

if(NOT KIO_TARGET_HAS_CXX_RUN_TIME)
  # No program in C++ can be linked, so the checks of the compilers must do without.
  set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
endif()
if(KIO_TARGET_LIBC STREQUAL uclibc)
  # The loader of uClibc reads this table of names only.
  foreach(kio_kind SHARED MODULE EXE)
    set(CMAKE_${kio_kind}_LINKER_FLAGS_INIT "-Wl,--hash-style=sysv")
  endforeach()
elseif(KIO_TARGET_LIBC STREQUAL musl)
  set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--dynamic-linker=/lib/ld-musl-${KIO_TARGET_ARCH}.so.1")
endif()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kio_kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kio_kind} ONLY)
endforeach()

# The emulator looks for the loader and the libraries where they were linked from.
if(KIO_SYSROOT)
  set(kio_emulated_root ${KIO_SYSROOT})
else()
  set(kio_emulated_root /usr/${KIO_TARGET_TRIPLE})
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR "${KIO_TARGET_EMULATOR};-L;${kio_emulated_root}")
# No emulator is needed where the kernel runs the loader.
if(KIO_TARGET_LOADER)
  set(kio_loader ${kio_emulated_root}/lib/${KIO_TARGET_LOADER})
  execute_process(
    COMMAND ${kio_loader} --version
    RESULT_VARIABLE kio_loader_result
    OUTPUT_QUIET ERROR_QUIET)
  if(kio_loader_result EQUAL 0)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${kio_loader};--library-path;${kio_emulated_root}/lib")
  endif()
endif()
