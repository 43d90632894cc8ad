# Compiling several files at once. Most of the time that a test file takes to compile, and far more of
# what clang-tidy takes for it, goes into the headers that all of them include. Without it a file is
# compiled for itself when it is changed, and an include that it lacks is noticed. Not for files that
# the analyzer of clang-tidy looks at: it passes over what is included.
option(KIO_TESTS_TOGETHER "Compile several files of a test program at once" ON)

# kio_compile_together(TARGET [UNSANITIZED]): compiles its files in groups of nine at most, with the
# headers that are compiled already; or without a sanitizer, a program that tests another program.
function(kio_compile_together target)
  if(ARGV1 STREQUAL UNSANITIZED AND KIO_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
    # What is tested is sanitized all the same.
    target_compile_definitions(${target} PRIVATE KIO_HOST_IS_SANITIZED=1)
  elseif(NOT CMAKE_CROSSCOMPILING)
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
  set_target_properties(
    ${target}
    PROPERTIES UNITY_BUILD ON
               UNITY_BUILD_BATCH_SIZE ${size}
               # For clang-tidy.
               UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
endfunction()
