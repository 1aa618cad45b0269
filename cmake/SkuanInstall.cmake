# What an installed Skuan consists of: the libraries, their headers under the same paths as in the
# tree, the programs, the protocol as data, and the two descriptions that let CMake and pkg-config find
# them.
include(CMakePackageConfigHelpers)

set(libraries skuan)
set(programs)
if(TARGET skuan_simulator)
  list(APPEND libraries skuan_simulator)
endif()
foreach(program skuan-sim skuanctl)
  if(TARGET ${program})
    list(APPEND programs ${program})
  endif()
endforeach()

install(TARGETS ${libraries} ${programs} EXPORT SkuanTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")

foreach(header IN LISTS SKUAN_PUBLIC_HEADERS)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}")
endforeach()
install(DIRECTORY "${CMAKE_BINARY_DIR}/generated/" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE)

# The protocol for programs that are not C++, and for Wireshark.
install(FILES "${CMAKE_BINARY_DIR}/generated/kvrp3.json" DESTINATION "${CMAKE_INSTALL_DATADIR}/skuan")
install(FILES "${CMAKE_BINARY_DIR}/generated/kvrp3.lua" DESTINATION "${CMAKE_INSTALL_DATADIR}/skuan/wireshark")

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Skuan")
install(EXPORT SkuanTargets NAMESPACE Skuan:: DESTINATION "${package_dir}")
configure_package_config_file(cmake/SkuanConfig.cmake.in "${CMAKE_BINARY_DIR}/SkuanConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/SkuanConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/SkuanConfig.cmake" "${CMAKE_BINARY_DIR}/SkuanConfigVersion.cmake"
  DESTINATION "${package_dir}")

if(WIN32)
  set(pc_library Skuan)
else()
  set(pc_library skuan)
  set(pc_flags " -fPIC") # Qt's own headers refuse to compile without it
endif()
configure_file(cmake/skuan.pc.in "${CMAKE_BINARY_DIR}/skuan.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/skuan.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
