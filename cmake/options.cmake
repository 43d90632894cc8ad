# Compile options shared by everything in the tree.
add_library(kio_warnings INTERFACE)
target_compile_options(
  kio_warnings
  INTERFACE -Wall
            -Wextra
            -Werror
            -Wshadow
            -Wformat=2
            -Wconversion
            -Wundef
            -Wvla
            $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
            $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
            $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes>)

if(KIO_SANITIZE)
  add_compile_options(-fsanitize=${KIO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KIO_SANITIZE})
  if(KIO_SANITIZE MATCHES undefined)
    # Needs RTTI, which the library is built without.
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-sanitize=vptr>)
  endif()
endif()
