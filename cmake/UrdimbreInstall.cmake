include(CMakePackageConfigHelpers)

install(TARGETS urdimbre EXPORT UrdimbreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder platform model run planar classification tetrahedral shell)
  if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
    continue()
  endif()
  install(DIRECTORY ${folder}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/urdimbre/${folder}
    FILES_MATCHING PATTERN "*.h" PATTERN "posix" EXCLUDE PATTERN "windows" EXCLUDE)
endforeach()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Urdimbre)
install(EXPORT UrdimbreTargets NAMESPACE Urdimbre:: DESTINATION ${package_dir})
configure_package_config_file(cmake/UrdimbreConfig.cmake.in UrdimbreConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(UrdimbreConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/UrdimbreConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/UrdimbreConfigVersion.cmake
  DESTINATION ${package_dir})

# Relative to where the file itself lies, so that an installation can be moved.
file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/urdimbre.pc.in urdimbre.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/urdimbre.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES CHANGELOG.md docs/formats.md docs/classifying.md docs/tutorial.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES COPYRIGHT DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)  # the name that Debian looks for
