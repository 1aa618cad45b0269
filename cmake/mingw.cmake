# Builds for Windows on Linux, with the distribution's MinGW-w64. SKUAN_WIN_ARCH chooses the width:
# i686 (default, and the one that is tested) or x86_64. CMAKE_PREFIX_PATH names the Qt of the same width.
if(NOT SKUAN_WIN_ARCH)
  set(SKUAN_WIN_ARCH i686)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES SKUAN_WIN_ARCH)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${SKUAN_WIN_ARCH})
set(triple ${SKUAN_WIN_ARCH}-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix) # the variant with the standard library's threads
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

# Libraries are the target's; programs that the build runs (moc, rcc, Python) are this machine's.
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# SSE arithmetic, so that doubles give the same results as on the 64-bit systems.
if(SKUAN_WIN_ARCH STREQUAL "i686")
  set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
endif()
# Qt's headers declare again, without the attribute, what they have declared as imported.
string(APPEND CMAKE_CXX_FLAGS_INIT " -Wno-attributes")
# The newest debug data that wine's debugger reads.
set(CMAKE_CXX_FLAGS_DEBUG_INIT -gdwarf-4)
