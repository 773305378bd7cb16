# One folder, one static library. What a folder may include is what its link line names: each library
# shows its own folder alone (through a link in the build tree), so an upward include does not compile.

add_library(korvel_warnings INTERFACE)
target_compile_options(korvel_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wsuggest-override -Werror
  # GCC 12 sees overlapping and endless copies in the library's own string operator+ (GCC bug 105651).
  "$<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-array-bounds>")

# The standard library's and fmt's headers, compiled once for all targets: it halves the time of a build.
add_library(korvel_precompiled OBJECT ${CMAKE_CURRENT_LIST_DIR}/precompiled.cpp)
target_link_libraries(korvel_precompiled PRIVATE fmt::fmt korvel_warnings)
target_precompile_headers(korvel_precompiled PRIVATE
  <algorithm> <array> <charconv> <chrono> <filesystem> <functional> <map> <memory> <optional> <span> <stdexcept>
  <string> <string_view> <unordered_map> <utility> <variant> <vector> <fmt/format.h>)

# korvel_library(<target> FOLDER <folder below the source root> SOURCES ... LINKS ... [PRIVATE_LINKS ...]
#                [PRECOMPILED <target with the precompiled headers>])
# FOLDER is the prefix by which others include the headers, as in #include "toolkit/numbers.h".
function(korvel_library target)
  cmake_parse_arguments(ARG "" "FOLDER;PRECOMPILED" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  if(NOT ARG_PRECOMPILED)
    set(ARG_PRECOMPILED korvel_precompiled)
  endif()
  add_library(${target} STATIC ${ARG_SOURCES})
  set(root ${PROJECT_BINARY_DIR}/include/${target})
  get_filename_component(parent ${root}/${ARG_FOLDER} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${ARG_FOLDER} SYMBOLIC)
  target_include_directories(${target} PUBLIC ${root})
  target_link_libraries(${target} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS} korvel_warnings)
  target_precompile_headers(${target} REUSE_FROM ${ARG_PRECOMPILED})
endfunction()
