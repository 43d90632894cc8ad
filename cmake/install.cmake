# Library, headers, pkg-config file and CMake package. The installed tree may be moved as a whole.
include(CMakePackageConfigHelpers)

set(kio_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kioapp)

install(TARGETS kioapp EXPORT kioappTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# The headers of parts that are left out are not installed, and the installed features.h says so.
set(kio_headers_left_out)
set(KIO_COMPONENTS)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS include/kioapp/features.h)
file(READ include/kioapp/features.h kio_features)
foreach(part ${KIO_PARTS})
  set(is_there 1)
  string(TOLOWER "${part}" component)
  if(part IN_LIST KIO_LEFT_OUT)
    set(is_there 0)
    list(APPEND kio_headers_left_out PATTERN "${component}.h" EXCLUDE)
  else()
    string(APPEND KIO_COMPONENTS " ${component}")
  endif()
  set(kio_macro KIOAPP_HAS_${part})
  string(REPLACE "#ifndef ${kio_macro}\n#define ${kio_macro} 1\n#endif\n"
                 "#define ${kio_macro} ${is_there}\n" kio_features "${kio_features}")
endforeach()
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/features.h CONTENT "${kio_features}" @ONLY)
install(
  DIRECTORY include/kioapp
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING
  PATTERN "*.h"
  PATTERN features.h EXCLUDE ${kio_headers_left_out})
install(FILES ${PROJECT_BINARY_DIR}/features.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kioapp)

# The pkg-config file finds the prefix from its own place.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE kio_pc_prefix)
set(kio_pc_prefix "\${pcfiledir}/${kio_pc_prefix}")
foreach(kind LIB INCLUDE)
  set(kio_pc_${kind}DIR "${CMAKE_INSTALL_${kind}DIR}")
  cmake_path(ABSOLUTE_PATH kio_pc_${kind}DIR BASE_DIRECTORY "\${prefix}")
endforeach()
configure_file(cmake/kioapp.pc.in ${PROJECT_BINARY_DIR}/kioapp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kioapp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

configure_package_config_file(
  cmake/kioappConfig.cmake.in ${PROJECT_BINARY_DIR}/kioappConfig.cmake
  INSTALL_DESTINATION ${kio_package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/kioappConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kioappConfig.cmake
              ${PROJECT_BINARY_DIR}/kioappConfigVersion.cmake DESTINATION ${kio_package_dir})
install(
  EXPORT kioappTargets
  NAMESPACE kioapp::
  DESTINATION ${kio_package_dir})
