include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/zetacr5)

install(TARGETS zetacr5 EXPORT zetacr5)
install(FILES include/zetac.h TYPE INCLUDE)
install(EXPORT zetacr5 NAMESPACE zetac:: FILE zetacr5Config.cmake DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zetacr5ConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zetacr5ConfigVersion.cmake DESTINATION ${package_folder})

# zetacr5.pc finds the rest of the installation from its own place, so the prefix may be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE includedir_from_pc)
configure_file(cmake/zetacr5.pc.in zetacr5.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zetacr5.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TARGET zetac)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR} OUTPUT_VARIABLE libdir_from_bin)
  set_target_properties(zetac PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir_from_bin}")
  install(TARGETS zetac)
endif()
