# The headers that are installed, stated once: for install() and for the check that each of them
# compiles alone as C++17, in any program, with nothing included before it.
file(GLOB_RECURSE SKUAN_PUBLIC_HEADERS CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}"
  "${CMAKE_SOURCE_DIR}/skuan/*.h" "${CMAKE_SOURCE_DIR}/simulator/*.h")
list(FILTER SKUAN_PUBLIC_HEADERS EXCLUDE REGEX "_p\\.h$|^skuan/platform/")

# Those that the build writes from a template, each named like it.
file(GLOB_RECURSE generated_headers CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}" "${CMAKE_SOURCE_DIR}/skuan/*.h.in")
list(TRANSFORM generated_headers REPLACE "\\.in$" "")
list(FILTER generated_headers EXCLUDE REGEX "_p\\.h$")

set(sources)
foreach(header IN LISTS SKUAN_PUBLIC_HEADERS generated_headers)
  string(REGEX REPLACE "[/.]" "_" name "${header}")
  set(source "${CMAKE_BINARY_DIR}/public_headers/${name}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "#include <${header}>\n#include <${header}>\n" @ONLY)
  list(APPEND sources "${source}")
endforeach()

# No part of `all`: .ci/run asks for it. It sees what a consumer sees, not this tree's own flags:
# a program may well use Qt's keywords.
add_library(public_headers_alone OBJECT EXCLUDE_FROM_ALL ${sources})
set_target_properties(public_headers_alone PROPERTIES
  CXX_STANDARD 17
  COMPILE_OPTIONS "-UQT_NO_KEYWORDS;-Wall;-Wextra;-Wpedantic;-Werror")
target_link_libraries(public_headers_alone PRIVATE Skuan::Skuan)
if(TARGET Skuan::Simulator)
  target_link_libraries(public_headers_alone PRIVATE Skuan::Simulator)
endif()
