# One set of objects makes the shared library; the unit tests link the objects themselves, so that they also reach what the
# library does not export. Each folder adds its own sources to urdimbre_objects.
add_library(urdimbre_objects OBJECT)
target_link_libraries(urdimbre_objects PRIVATE urdimbre_options PUBLIC Threads::Threads)
target_include_directories(urdimbre_objects PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
target_compile_definitions(urdimbre_objects PRIVATE URDIMBRE_BUILDING)
if(WIN32)  # what links the objects themselves imports nothing
  target_compile_definitions(urdimbre_objects INTERFACE URDIMBRE_OBJETOS PUBLIC UNICODE _UNICODE)
  target_link_libraries(urdimbre_objects PUBLIC advapi32 psapi shell32 synchronization)
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")  # what the library exports its own loops call too: directly, and inlined where it pays
  target_compile_options(urdimbre_objects PRIVATE -fno-semantic-interposition)
endif()

add_library(urdimbre SHARED)
target_link_libraries(urdimbre PRIVATE urdimbre_objects $<BUILD_INTERFACE:urdimbre_options>)
target_include_directories(urdimbre PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:include/urdimbre>)
target_compile_features(urdimbre PUBLIC cxx_std_20)
set_target_properties(urdimbre PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0)
if(WIN32)
  enable_language(RC)
  set_target_properties(urdimbre PROPERTIES PREFIX "")
  urdimbre_version(urdimbre "Urdimbre: the library of terrain triangulation")
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  target_link_options(urdimbre PRIVATE
    LINKER:--version-script=${CMAKE_CURRENT_SOURCE_DIR}/cmake/urdimbre.map LINKER:-Bsymbolic-functions)
  set_target_properties(urdimbre PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/urdimbre.map)
endif()
add_library(Urdimbre::urdimbre ALIAS urdimbre)
