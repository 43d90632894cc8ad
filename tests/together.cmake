# What tests, which are many and large, are compiled with for their compile time alone. They throw
# nothing, and a debugger finds their lines. The sanitizers watch the library and the host: of a test
# they get the bounds of its arrays, and do not check what it does itself. (The library's objects stand
# first when a test is linked, so that of an inline function which both have theirs is taken.)
set(kio_test_options -fno-exceptions -g1)
if(KIO_SANITIZE MATCHES address)
  list(APPEND kio_test_options --param=asan-instrument-reads=0 --param=asan-instrument-writes=0)
endif()
if(KIO_SANITIZE MATCHES undefined)
  list(APPEND kio_test_options -fno-sanitize=undefined)
endif()

# What tests is the same for what is sanitized: ./test has it compiled once. What the tests hand to the
# library to write to stands in allocations of its own (testing/heap_chars.h), which the sanitizer
# guards in any case.
set(KIO_TESTS_OF "" CACHE PATH "Folder of another build of this tree, whose compiled tests are taken")

# kio_take_compiled_tests(TARGET): has the objects of its C++ files from the other build.
function(kio_take_compiled_tests target)
  file(STRINGS ${KIO_TESTS_OF}/tests/objects/${target} objects)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
                                         ${KIO_TESTS_OF}/tests/objects/${target})
  set_source_files_properties(${objects} PROPERTIES EXTERNAL_OBJECT TRUE)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources EXCLUDE REGEX "\\.cc$")
  set_target_properties(${target} PROPERTIES SOURCES "${sources};${objects}" LINKER_LANGUAGE CXX)
endfunction()

# kio_compile_together(TARGET [UNSANITIZED]): groups its files and takes the headers that are
# compiled already; or without a sanitizer, a program that tests another program.
function(kio_compile_together target)
  if(KIO_TESTS_OF)
    kio_take_compiled_tests(${target})
    return()
  endif()
  file(
    GENERATE
    OUTPUT ${PROJECT_BINARY_DIR}/tests/objects/${target}
    CONTENT "$<JOIN:$<FILTER:$<TARGET_OBJECTS:${target}>,INCLUDE,\\.(cc|cxx)\\.o$>,\n>\n")
  if(ARGV1 STREQUAL UNSANITIZED AND KIO_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
  elseif(NOT CMAKE_CROSSCOMPILING)
    target_compile_options(${target} PRIVATE ${kio_test_options})
    kio_precompiled_by(${target} kio_test_headers)
  endif()
  kio_group_files(${target})
endfunction()
