# Headers that many files include are compiled once for all of them. Only a build without this finds a
# file that includes too little. It is off by default where a launcher such as ccache is used, which
# does not cache what is compiled in this way.
if(CMAKE_CXX_COMPILER_LAUNCHER)
  set(kio_precompile OFF)
else()
  set(kio_precompile ON)
endif()
option(KIO_PRECOMPILE "Compile headers that many files include once" ${kio_precompile})

# kio_precompile(TARGET HEADER...): compiles the headers for the C++ files of a target.
function(kio_precompile target)
  if(KIO_PRECOMPILE)
    list(TRANSFORM ARGN REPLACE "(.+)" "$<$<COMPILE_LANGUAGE:CXX>:\\1>")
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# kio_precompiled_by(TARGET OTHER): uses the headers of another target, with which it shares its
# options.
function(kio_precompiled_by target other)
  if(KIO_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${other})
  endif()
endfunction()
