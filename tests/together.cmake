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

# kio_compile_together(TARGET [UNSANITIZED]): groups its files and takes the headers that are
# compiled already; or without a sanitizer, a program that tests another program.
function(kio_compile_together target)
  if(ARGV1 STREQUAL UNSANITIZED AND KIO_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
  elseif(NOT CMAKE_CROSSCOMPILING)
    target_compile_options(${target} PRIVATE ${kio_test_options})
    kio_precompiled_by(${target} kio_test_headers)
  endif()
  kio_group_files(${target})
endfunction()
