# See CMakeLists.txt. Each command must succeed; the folder starts empty, so that nothing old helps.
file(REMOVE_RECURSE "${work}")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run("${CMAKE_CPACK_COMMAND}" --config "${build}/CPackConfig.cmake" -B "${work}/packed")
file(GLOB zip "${work}/packed/*.zip")
file(ARCHIVE_EXTRACT INPUT "${zip}" DESTINATION "${work}/unzipped")
file(GLOB prefix "${work}/unzipped/*") # one folder; were there more, nothing below would work

set(ENV{SKUAN_DLLS} "${prefix}/bin") # all that programs find from here on

# Built with the Qt of this project, of which the package has what running needs.
set(found_in "-DCMAKE_PREFIX_PATH=${prefix}\\;${qt}")
run(${CMAKE_COMMAND} -S "${source}" -B "${work}/by_cmake" -G "${generator}" -D "CMAKE_TOOLCHAIN_FILE=${toolchain}"
  -D "SKUAN_WIN_ARCH=${arch}" "${found_in}")
run(${CMAKE_COMMAND} --build "${work}/by_cmake")
run(${emulator} "${work}/by_cmake/consumer.exe")

set(ENV{PKG_CONFIG_LIBDIR} "${prefix}/lib/pkgconfig:${qt}/lib/pkgconfig")
execute_process(COMMAND pkg-config --define-prefix --cflags --libs skuan OUTPUT_VARIABLE flags COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run("${compiler}" -std=c++17 -Wno-attributes "${source}/main.cpp" -o "${work}/by_pkg_config.exe" ${flags} -lSkuanSimulator)
run(${emulator} "${work}/by_pkg_config.exe")

# The programs of the package, in the conversation that ./dev demo shows.
foreach(program skuan-sim skuanctl)
  file(WRITE "${work}/bin/${program}" "#!/bin/sh\nexec ${emulator} ${prefix}/bin/${program}.exe \"$@\"\n")
  file(CHMOD "${work}/bin/${program}" PERMISSIONS OWNER_READ OWNER_EXECUTE)
endforeach()
run("${demo}" "${work}/bin")
