# Compiling several files at once. Most of the time that a test file takes to compile, and far more of
# what clang-tidy takes for it, goes into the headers that all of them include. Without it a file is
# compiled for itself when it is changed, and an include that it lacks is noticed.
option(KIO_TESTS_TOGETHER "Compile several files of a test program at once" ON)

# The tests' own accesses are not checked for null pointers, alignment and object size, which takes a
# fifth of the time that a sanitized test file needs to compile. The library's and the host's are.
set(kio_test_sanitizing)
if(KIO_SANITIZE MATCHES undefined)
  set(kio_test_sanitizing -fno-sanitize=null,alignment,object-size)
endif()

# kio_compile_together(TARGET [UNSANITIZED]): compiles its files in groups of nine at most, with the
# headers that are compiled already; or without a sanitizer, a program that tests another program.
function(kio_compile_together target)
  if(ARGV1 STREQUAL UNSANITIZED AND KIO_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
    # What is tested is sanitized all the same.
    target_compile_definitions(${target} PRIVATE KIO_HOST_IS_SANITIZED=1)
  elseif(NOT CMAKE_CROSSCOMPILING)
    target_compile_options(${target} PRIVATE ${kio_test_sanitizing})
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
