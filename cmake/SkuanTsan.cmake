# The thread sanitizer with an uninstrumented Qt: every library and program gets the wrappers of
# sanitizers/qt_for_tsan.cpp, and the linker leads through them.
set(tsan_source "${CMAKE_CURRENT_LIST_DIR}/sanitizers/qt_for_tsan.cpp")
file(READ "${tsan_source}" tsan_wrappers)
string(REGEX MATCHALL "_ZN[A-Za-z0-9_]+" tsan_wrappers "${tsan_wrappers}")
list(TRANSFORM tsan_wrappers PREPEND "LINKER:--wrap=")
add_link_options(${tsan_wrappers})

add_library(qt_for_tsan OBJECT "${tsan_source}")
target_link_libraries(qt_for_tsan PRIVATE Qt5::Core)
