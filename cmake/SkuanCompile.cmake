# How every target of this tree is compiled. Sources are C++20; the installed headers keep to C++17.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

# The system that is built for, as sources that are written for one are named.
if(WIN32)
  set(system windows)
  set(CMAKE_SHARED_LIBRARY_PREFIX "") # programs there load libraries by their plain names
else()
  set(system linux)
endif()

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wshadow=local) # a parameter may be named like a type: every tag is one, xid too
  add_compile_options(-Wno-restrict) # GCC 12 is wrong about a literal + std::string
else()
  add_compile_options(-Wshadow)
endif()
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
  add_library(sanitizer_defaults OBJECT "${CMAKE_CURRENT_LIST_DIR}/sanitizers/defaults.cpp")
  if(SKUAN_SANITIZE MATCHES "thread")
    include(SkuanTsan)
  endif()
endif()

# Every shared library of this tree calls this: the thread sanitizer has to see what it does with Qt.
function(skuan_library target)
  if(TARGET qt_for_tsan)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:qt_for_tsan>)
  endif()
endfunction()

# Every program of this tree calls this: a sanitizer build gives it the sanitizers' options.
function(skuan_program target)
  skuan_library(${target})
  if(TARGET sanitizer_defaults)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:sanitizer_defaults>)
  endif()
endfunction()
