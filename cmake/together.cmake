# Compiling several files at once. Most of the time that a file of the host or of a test takes to
# compile, and far more of what clang-tidy takes for it, goes into the headers that all of them
# include. Without it a file is compiled for itself when it is changed, and an include that it lacks
# is noticed.
option(KIO_TOGETHER "Compile several files of the host or of a test program at once" ON)

# kio_group_files(TARGET): compiles its files in groups of sixty at most: nearly every target is one.
function(kio_group_files target)
  if(NOT KIO_TOGETHER)
    return()
  endif()
  get_target_property(files ${target} SOURCES)
  list(FILTER files INCLUDE REGEX "\\.cc$")
  list(LENGTH files count)
  math(EXPR groups "(${count} + 59) / 60")
  math(EXPR size "(${count} + ${groups} - 1) / ${groups}")
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${size})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Less garbage collection, for a fifth more memory.
    target_compile_options(${target} PRIVATE --param=ggc-min-expand=1000
                                             --param=ggc-min-heapsize=2000000)
  endif()
endfunction()
