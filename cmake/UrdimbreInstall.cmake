include(CMakePackageConfigHelpers)

install(TARGETS urdimbre EXPORT UrdimbreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# The headers that callers may include: those that mark something with URDIMBRE_API, and what they include. The others are
# the library's own.
function(urdimbre_public_headers out)
  file(GLOB_RECURSE all RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS
    platform/*.h model/*.h run/*.h planar/*.h classification/*.h tetrahedral/*.h shell/*.h)
  list(FILTER all EXCLUDE REGEX "/(posix|windows)/")
  if(WIN32)  # what stands in for windows and resources where there are none
    list(FILTER all EXCLUDE REGEX "/C(Pantalla|Recursos)Texto\\.h$")
  endif()
  set(public)
  set(waiting)
  foreach(header ${all})
    file(STRINGS ${PROJECT_SOURCE_DIR}/${header} marks REGEX "URDIMBRE_API" LIMIT_COUNT 1)
    if(marks)
      list(APPEND waiting ${header})
    endif()
  endforeach()
  while(waiting)
    list(POP_FRONT waiting header)
    if(NOT header IN_LIST public)
      list(APPEND public ${header})
      file(STRINGS ${PROJECT_SOURCE_DIR}/${header} includes REGEX "^#include \"")
      list(TRANSFORM includes REPLACE "^#include \"([^\"]+)\".*" "\\1")
      list(APPEND waiting ${includes})
    endif()
  endwhile()
  set(${out} ${public} PARENT_SCOPE)
endfunction()

urdimbre_public_headers(headers)
foreach(header ${headers})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/urdimbre/${folder})
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
