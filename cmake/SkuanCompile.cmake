# How every target of this tree is compiled. Sources are C++20; the installed headers keep to C++17.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
add_compile_definitions(QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)

find_program(SKUAN_CCACHE ccache)
if(SKUAN_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${SKUAN_CCACHE}")
endif()
find_program(SKUAN_MOLD mold)
if(SKUAN_MOLD AND NOT WIN32)
  add_link_options(-fuse-ld=mold)
endif()

if(SKUAN_SANITIZE)
  add_compile_options(-fsanitize=${SKUAN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${SKUAN_SANITIZE})
endif()
