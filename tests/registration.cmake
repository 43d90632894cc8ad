# How test programs are run.

# A test that has a process of its own shows what the library does when it was just loaded; tests
# that share one, what it does in a process that lives on. Both are run: the first in the debug
# build, the second under the sanitizers and on the emulated targets, where it takes long to start a
# process.
if(KIO_SANITIZE OR CMAKE_CROSSCOMPILING)
  set(kio_tests_share_process ON)
else()
  set(kio_tests_share_process OFF)
endif()

# kio_register_tests(TARGET [FILTER]): registers the tests of a program. Those that FILTER names always
# have a process of their own.
function(kio_register_tests target)
  set(fresh ${ARGV1})
  set_target_properties(${target} PROPERTIES KIO_FRESH "${fresh}")
  # By the prefix ./test knows whose tests they are.
  set(discovery TEST_PREFIX ${target}. NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
  if(NOT kio_tests_share_process)
    gtest_discover_tests(${target} ${discovery})
    return()
  endif()
  add_test(NAME ${target}
           COMMAND ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/run_program.sh ${CMAKE_CROSSCOMPILING_EMULATOR}
                   $<TARGET_FILE:${target}> --gtest_filter=-${fresh})
  set_tests_properties(${target} PROPERTIES TIMEOUT 600)
  if(fresh)
    gtest_discover_tests(${target} TEST_FILTER ${fresh} ${discovery})
  endif()
endfunction()
