# The manual pages and the reference of the headers: `cmake --build --preset dev --target docs`, as far
# as scdoc and doxygen are there (cmake/packages.sh docs). No other target needs them.
find_program(KIO_AWK awk)
find_program(KIO_DOXYGEN doxygen)
find_program(KIO_SCDOC scdoc)
mark_as_advanced(KIO_AWK KIO_DOXYGEN KIO_SCDOC)

set(kio_man_dir ${PROJECT_BINARY_DIR}/man)
set(kio_man_pages)
file(MAKE_DIRECTORY ${kio_man_dir})

# kio_add_man_page(PAGE SOURCE): a manual page, and its installation once it has been made.
function(kio_add_man_page page source)
  add_custom_command(
    OUTPUT ${kio_man_dir}/${page}
    COMMAND ${KIO_SCDOC} < ${source} > ${page}.part
    COMMAND ${CMAKE_COMMAND} -E rename ${page}.part ${page}
    DEPENDS ${source}
    WORKING_DIRECTORY ${kio_man_dir}
    VERBATIM)
  string(REGEX MATCH "[0-9]$" section ${page})
  install(FILES ${kio_man_dir}/${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} OPTIONAL)
  set(kio_man_pages ${kio_man_pages} ${kio_man_dir}/${page} PARENT_SCOPE)
endfunction()

add_custom_target(docs)
if(KIO_SCDOC AND KIO_AWK)
  kio_add_man_page(kioapp.3 ${PROJECT_SOURCE_DIR}/docs/man/kioapp.3.scd)
  if(KIO_BUILD_HOST)
    kio_add_man_page(kiohost.1 ${PROJECT_SOURCE_DIR}/docs/man/kiohost.1.scd)
    if(KIO_CTL)
      kio_add_man_page(kioctl.1 ${PROJECT_SOURCE_DIR}/docs/man/kioctl.1.scd)
    endif()
    kio_add_man_page(kiofleet.1 ${PROJECT_SOURCE_DIR}/docs/man/kiofleet.1.scd)
  endif()
  foreach(name store documents)
    set(converter ${PROJECT_SOURCE_DIR}/docs/man/from_markdown.awk)
    set(page ${PROJECT_SOURCE_DIR}/docs/${name}.md)
    set(source ${kio_man_dir}/kioapp-${name}.7.scd)
    add_custom_command(
      OUTPUT ${source}
      COMMAND ${KIO_AWK} -v name=kioapp-${name} -f ${converter} ${page} > ${source}.part
      COMMAND ${CMAKE_COMMAND} -E rename ${source}.part ${source}
      DEPENDS ${converter} ${page}
      VERBATIM)
    kio_add_man_page(kioapp-${name}.7 ${source})
  endforeach()
  add_custom_target(man_pages DEPENDS ${kio_man_pages})
  add_dependencies(docs man_pages)
endif()

if(KIO_DOXYGEN AND KIO_AWK)
  configure_file(docs/reference/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
  file(GLOB kio_headers include/kioapp/*.h)
  add_custom_command(
    OUTPUT html/index.html
    COMMAND ${CMAKE_COMMAND} -E rm -rf html
    COMMAND ${KIO_DOXYGEN} Doxyfile
    DEPENDS ${kio_headers} docs/reference/comments.awk docs/reference/main.md
            ${PROJECT_BINARY_DIR}/Doxyfile
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    COMMENT "Making the reference of the headers"
    VERBATIM)
  add_custom_target(reference DEPENDS html/index.html)
  add_dependencies(docs reference)
endif()

foreach(program scdoc doxygen)
  string(TOUPPER KIO_${program} found)
  if(NOT ${found})
    add_custom_command(
      TARGET docs POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E echo
              "There is no ${program}; what it makes is left out. Type: cmake/packages.sh docs"
      VERBATIM)
  endif()
endforeach()
