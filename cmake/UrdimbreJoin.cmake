# Where a build is cold, the sources of a folder are joined, eight at a time, as headers are most of what a file costs.
# Ordinary builds are without: they prove that each file includes what it needs. A cold build that finds a name defined
# twice wants one of the two files told by urdimbre_alone.

# urdimbre_alone(sources...): not joined, as what they name for themselves others beside them name so too.
function(urdimbre_alone)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_property(GLOBAL APPEND PROPERTY URDIMBRE_ALONE ${ARGN})
endfunction()

# urdimbre_join(target): of this folder, and after whatever is to stay alone has been told. What is joined is called after
# the folder (scripts/check-links).
function(urdimbre_join target)
  if(NOT URDIMBRE_COLD_BUILD)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_property(alone GLOBAL PROPERTY URDIMBRE_ALONE)
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    get_filename_component(source ${source} ABSOLUTE)
    if(NOT source MATCHES "\\.cpp$" OR source IN_LIST alone)
      continue()
    endif()
    get_filename_component(folder ${source} DIRECTORY)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${folder})
    string(REGEX REPLACE "[^A-Za-z0-9]" _ folder ${folder})
    math(EXPR joined_of_${folder} "0${joined_of_${folder}} + 1")
    math(EXPR piece "(${joined_of_${folder}} - 1) / 8")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${folder}_${piece})
  endforeach()
endfunction()
