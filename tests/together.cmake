# Test programs: how they are compiled and how they are run.

# Most of the time that a test file takes to compile, and far more of what clang-tidy takes for it,
# goes into the headers that all of them include. OFF is for work on single files, and shows an
# include that is missing in one of them.
option(KIO_TESTS_TOGETHER "Compile several files of a test program at once" ON)

# A test that has a process of its own shows what the library does when it was just loaded; tests
# that share one, what it does in a process that lives on. Both are run: the first in the debug
# build, the second where it takes long to start a process.
option(KIO_TESTS_IN_ONE_PROCESS "Run all tests of a program in one process" OFF)

# kio_compile_together(TARGET): compiles its files in groups of nine at most.
function(kio_compile_together target)
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

# kio_register_each_test(TARGET): registers the tests of a program, each with a process of its own.
function(kio_register_each_test target)
  gtest_discover_tests(${target} NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
endfunction()

# kio_register_tests(TARGET): registers the tests of a program.
function(kio_register_tests target)
  if(NOT KIO_TESTS_IN_ONE_PROCESS)
    kio_register_each_test(${target})
    return()
  endif()
  add_test(NAME ${target} COMMAND ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/run_program.sh
                                  ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}>)
  set_tests_properties(${target} PROPERTIES TIMEOUT 600)
endfunction()
