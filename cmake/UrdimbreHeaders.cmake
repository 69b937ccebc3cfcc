# CLI11::CLI11, fmt::fmt and nlohmann_json::nlohmann_json: as packages of the target system where it has them, else the
# headers alone, which are the same for every system. Those of another system's folder are reached through a folder of
# links, so that nothing else of it comes along.
set(URDIMBRE_HEADERS /usr/include CACHE PATH "Where CLI, fmt and nlohmann lie, where the target system has no packages of them")

function(urdimbre_headers package target folder)
  find_package(${package} QUIET)
  if(TARGET ${target})
    return()
  endif()
  if(NOT EXISTS ${URDIMBRE_HEADERS}/${folder})
    message(FATAL_ERROR "${package} is not there: install it, or give the folder that holds ${folder}/ as -DURDIMBRE_HEADERS=FOLDER")
  endif()
  set(links ${CMAKE_BINARY_DIR}/headers)
  file(MAKE_DIRECTORY ${links})
  file(CREATE_LINK ${URDIMBRE_HEADERS}/${folder} ${links}/${folder} COPY_ON_ERROR SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${links})
endfunction()

urdimbre_headers(CLI11 CLI11::CLI11 CLI)
urdimbre_headers(fmt fmt::fmt fmt)
urdimbre_headers(nlohmann_json nlohmann_json::nlohmann_json nlohmann)
get_target_property(fmt_is_library fmt::fmt TYPE)
if(fmt_is_library STREQUAL INTERFACE_LIBRARY)
  target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)
endif()
