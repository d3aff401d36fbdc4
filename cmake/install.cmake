include(CMakePackageConfigHelpers)

# package.pc finds the rest of the installation from its own place, so the prefix may be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE includedir_from_pc)

# A library with its header, pkg-config file and CMake package, all by the name of the package.
function(zetac_install_package package target header version compatibility)
  set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
  install(TARGETS ${target} EXPORT ${package})
  install(FILES include/${header} TYPE INCLUDE)
  install(EXPORT ${package} NAMESPACE zetac:: FILE ${package}Targets.cmake DESTINATION ${folder})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
    VERSION ${version} COMPATIBILITY ${compatibility})
  configure_file(cmake/${package}.pc.in ${package}.pc @ONLY)
  install(FILES cmake/${package}Config.cmake ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
    DESTINATION ${folder})
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

zetac_install_package(zetacr5 zetacr5 zetac.h ${PROJECT_VERSION} SameMinorVersion)
zetac_install_package(zetac libzetac zetac_codec.h ${ZETAC_CODEC_VERSION} SameMajorVersion)

if(TARGET zetac)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR} OUTPUT_VARIABLE libdir_from_bin)
  set_target_properties(zetac PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir_from_bin}")
  install(TARGETS zetac)
endif()
