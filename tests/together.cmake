# Compiling several files at once. Most of the time that a test file takes to compile, and far more of
# what clang-tidy takes for it, goes into the headers that all of them include. Without it a file is
# compiled for itself when it is changed, and an include that it lacks is noticed.
option(KIO_TESTS_TOGETHER "Compile several files of a test program at once" ON)

# What tests, which are many and large, are compiled with for their compile time alone. They throw
# nothing. The sanitizers watch the library and the host: of a test they get the bounds of its arrays,
# and do not check what it does itself. (The library's objects stand first when a test is linked, so
# that of an inline function which both have theirs is taken.)
set(kio_test_options -fno-exceptions)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Less garbage collection, for a fifth more memory.
  list(APPEND kio_test_options --param=ggc-min-expand=1000 --param=ggc-min-heapsize=2000000)
endif()
if(KIO_SANITIZE MATCHES address)
  list(APPEND kio_test_options --param=asan-instrument-reads=0 --param=asan-instrument-writes=0)
endif()
if(KIO_SANITIZE MATCHES undefined)
  list(APPEND kio_test_options -fno-sanitize=undefined)
endif()

# kio_compile_together(TARGET [UNSANITIZED]): compiles its files in groups of nine at most, with the
# headers that are compiled already; or without a sanitizer, a program that tests another program.
function(kio_compile_together target)
  if(ARGV1 STREQUAL UNSANITIZED AND KIO_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
    # What is tested is sanitized all the same.
    target_compile_definitions(${target} PRIVATE KIO_HOST_IS_SANITIZED=1)
  elseif(NOT CMAKE_CROSSCOMPILING)
    target_compile_options(${target} PRIVATE ${kio_test_options})
    kio_precompiled_by(${target} kio_test_headers)
  endif()
  if(NOT KIO_TESTS_TOGETHER)
    return()
  endif()
  get_target_property(files ${target} SOURCES)
  list(FILTER files INCLUDE REGEX "\\.cc$")
  list(LENGTH files count)
  math(EXPR groups "(${count} + 8) / 9")
  math(EXPR size "(${count} + ${groups} - 1) / ${groups}")
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${size})
endfunction()
