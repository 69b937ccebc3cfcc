# What every target of the project is compiled with. Floating point is pinned so that the same input gives the same bytes
# whatever the compiler, the optimisation level and the instruction set.
add_library(urdimbre_options INTERFACE)
target_compile_features(urdimbre_options INTERFACE cxx_std_20)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(urdimbre_options INTERFACE
    -ffp-contract=off -fno-fast-math
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(urdimbre_options INTERFACE -Wno-restrict)  # sees overlaps in std::string that are not there
  endif()
  if(URDIMBRE_WERROR)
    target_compile_options(urdimbre_options INTERFACE -Werror)
  endif()
endif()

if(MSVC)  # warnings that no one has gone through yet are no errors
  target_compile_options(urdimbre_options INTERFACE
    /fp:precise /permissive- /Zc:__cplusplus /Zc:preprocessor /utf-8 /bigobj /EHsc /W4
    /wd4251 /wd4275  # members and bases that are not exported: one compiler builds the library and what uses it
    /wd4324)         # room that alignas leaves, as it is meant to
  target_compile_definitions(urdimbre_options INTERFACE NOMINMAX _CRT_SECURE_NO_WARNINGS)
endif()

set(URDIMBRE_SANITIZE "" CACHE STRING "Sanitizers to build with: empty, 'address,undefined' or 'thread'")
if(URDIMBRE_SANITIZE)
  target_compile_options(urdimbre_options INTERFACE -fsanitize=${URDIMBRE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(urdimbre_options INTERFACE -fsanitize=${URDIMBRE_SANITIZE})
endif()

option(URDIMBRE_COVERAGE "Count what runs, line by line and branch by branch (Clang alone: see scripts/coverage)" OFF)
if(URDIMBRE_COVERAGE)
  target_compile_options(urdimbre_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(urdimbre_options INTERFACE -fprofile-instr-generate)
endif()
