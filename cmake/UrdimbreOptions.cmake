# What every target of the project is compiled with. Floating point is pinned so that the same input gives the same bytes
# whatever the compiler, the optimisation level and the instruction set.
add_library(urdimbre_options INTERFACE)
target_compile_features(urdimbre_options INTERFACE cxx_std_20)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(urdimbre_options INTERFACE
    -ffp-contract=off -fno-fast-math
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # False alarm of GCC 12 at -O3 over the sum of a literal and a std::string.
    target_compile_options(urdimbre_options INTERFACE -Wno-restrict)
  endif()
  if(URDIMBRE_WERROR)
    target_compile_options(urdimbre_options INTERFACE -Werror)
  endif()
endif()

set(URDIMBRE_SANITIZE "" CACHE STRING "Sanitizers to build with: empty, 'address,undefined' or 'thread'")
if(URDIMBRE_SANITIZE)
  target_compile_options(urdimbre_options INTERFACE -fsanitize=${URDIMBRE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(urdimbre_options INTERFACE -fsanitize=${URDIMBRE_SANITIZE})
endif()
