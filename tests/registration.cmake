# How test programs are run.

# kio_register_tests(TARGET [FILTER]): registers a program as one test, which runs all its tests in one
# process. Those that FILTER names need a process that has done nothing yet, and have one each. The
# debug build also registers each single test, labelled so, to be run by name; and it shuffles the
# tests of a program, which the other builds run as they stand: no test may need another before it.
function(kio_register_tests target)
  set(fresh ${ARGV1})
  set_target_properties(${target} PROPERTIES KIO_FRESH "${fresh}")
  # By the prefix ./test knows whose tests they are.
  set(discovery TEST_PREFIX ${target}. NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST)
  set(order)
  if(NOT KIO_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
    set(order --gtest_shuffle --gtest_random_seed=1)
    gtest_discover_tests(
      ${target}
      TEST_FILTER -${fresh}
      TEST_LIST ${target}_single
      ${discovery}
      PROPERTIES TIMEOUT 120 LABELS single)
  endif()
  add_test(NAME ${target}
           COMMAND ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/run_program.sh ${CMAKE_CROSSCOMPILING_EMULATOR}
                   $<TARGET_FILE:${target}> --gtest_brief=1 --gtest_filter=-${fresh} ${order})
  set_tests_properties(${target} PROPERTIES TIMEOUT 600)
  if(fresh)
    gtest_discover_tests(${target} TEST_FILTER ${fresh} ${discovery} PROPERTIES TIMEOUT 120)
  endif()
endfunction()
