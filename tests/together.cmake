# Test programs: how they are compiled and how they are run.

# Most of the time that a test file takes to compile, and far more of what clang-tidy takes for it,
# goes into the headers that all of them include. OFF is for work on single files, and shows an
# include that is missing in one of them.
option(KIO_TESTS_TOGETHER "Compile several files of a test program at once" ON)

# A test that has a process of its own shows what the library does when it was just loaded; tests
# that share one, what it does in a process that lives on. Both are run: the first in the debug
# build, the second where it takes long to start a process.
option(KIO_TESTS_IN_ONE_PROCESS "Run all tests of a program in one process" OFF)

# kio_compile_together(TARGET [FILES]): compiles its files in groups of FILES (8).
function(kio_compile_together target)
  if(NOT KIO_TESTS_TOGETHER)
    return()
  endif()
  set(files 8)
  if(ARGC GREATER 1)
    set(files ${ARGV1})
  endif()
  set_target_properties(
    ${target}
    PROPERTIES UNITY_BUILD ON
               UNITY_BUILD_BATCH_SIZE ${files}
               # For clang-tidy.
               UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
endfunction()

# kio_register_tests(TARGET): registers the tests of a program.
function(kio_register_tests target)
  if(NOT KIO_TESTS_IN_ONE_PROCESS)
    gtest_discover_tests(${target} NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
    return()
  endif()
  add_test(NAME ${target} COMMAND ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/run_program.sh
                                  ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}>)
  set_tests_properties(${target} PROPERTIES TIMEOUT 600)
endfunction()
