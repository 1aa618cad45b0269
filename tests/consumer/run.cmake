# See CMakeLists.txt. Each command must succeed; the folder starts empty, so that nothing old helps.
file(REMOVE_RECURSE "${work}")
set(prefix "${work}/installed")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install "${build}" --prefix "${prefix}")

run(${CMAKE_COMMAND} -S "${source}" -B "${work}/by_cmake" -G "${generator}"
  -D "CMAKE_PREFIX_PATH=${prefix}" -D "CMAKE_CXX_COMPILER=${compiler}")
run(${CMAKE_COMMAND} --build "${work}/by_cmake")
run("${work}/by_cmake/consumer")

set(ENV{PKG_CONFIG_PATH} "${prefix}/${libdir}/pkgconfig")
execute_process(COMMAND pkg-config --cflags --libs skuan OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run("${compiler}" -std=c++17 "${source}/main.cpp" -o "${work}/by_pkg_config" ${flags} -lskuan_simulator
  "-Wl,-rpath,${prefix}/${libdir}")
run("${work}/by_pkg_config")
