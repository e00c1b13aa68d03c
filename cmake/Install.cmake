# What an installation holds: headers, the versioned shared libraries, the command, the data directory beside the
# libraries, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tvxcomn64)

set_target_properties(tvxcomn64 tvxintl64 PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(tvx_headers PROPERTIES EXPORT_NAME headers)
install(TARGETS tvxcomn64 tvxintl64 tvx_headers EXPORT tvxcomn64Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/tvxcomn DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY data/home/ DESTINATION ${CMAKE_INSTALL_DATADIR}/tvxcomn64)
if(TVX_BUILD_TOOLS)
  file(RELATIVE_PATH libraries_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(tvxcomn PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_bin}")
  install(TARGETS tvxcomn RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT tvxcomn64Targets NAMESPACE tvxcomn64:: DESTINATION ${package_dir})
configure_package_config_file(cmake/tvxcomn64Config.cmake.in
  ${PROJECT_BINARY_DIR}/tvxcomn64Config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tvxcomn64ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/tvxcomn64Config.cmake
  ${PROJECT_BINARY_DIR}/tvxcomn64ConfigVersion.cmake DESTINATION ${package_dir})

# The pkg-config file finds its prefix from where it lies, so that the tree may be moved or installed elsewhere.
file(RELATIVE_PATH prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/tvxcomn64.pc.in ${PROJECT_BINARY_DIR}/tvxcomn64.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tvxcomn64.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
