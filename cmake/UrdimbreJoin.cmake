# Where a build is cold, sources are joined eight at a time, as headers are most of what a file costs. Ordinary builds are
# without: they prove that each file includes what it needs. A cold build that finds a name defined twice wants one of the
# two files told by urdimbre_alone.

# urdimbre_alone(sources...): not joined, as what they name for themselves others beside them name so too.
function(urdimbre_alone)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_property(GLOBAL APPEND PROPERTY URDIMBRE_ALONE ${ARGN})
endfunction()

# urdimbre_join(target): of this folder, and after whatever is to stay alone has been told.
function(urdimbre_join target)
  if(URDIMBRE_COLD_BUILD)
    get_property(alone GLOBAL PROPERTY URDIMBRE_ALONE)
    set_source_files_properties(${alone} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()
