# Library, headers, pkg-config file and CMake package. The installed tree may be moved as a whole.
include(CMakePackageConfigHelpers)

set(kio_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kioapp)

install(TARGETS kioapp EXPORT kioappTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(
  DIRECTORY include/kioapp
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING
  PATTERN "*.h")

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
