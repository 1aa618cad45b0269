# The switches a builder may turn; the presets in CMakePresets.json set them.
option(SKUAN_BUILD_TESTS "Build the tests" ON)
option(SKUAN_BUILD_BENCH "Build the benchmarks" OFF)
option(SKUAN_BUILD_FUZZ "Build the fuzz targets (clang with libFuzzer)" OFF)
set(SKUAN_SANITIZE "" CACHE STRING "Sanitizers for every target, as in -fsanitize= (for example address,undefined)")
