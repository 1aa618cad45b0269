# What a Windows programmer gets: the installed tree with all that it runs on, as one zip.
#   cmake --build --preset win32 --target package      makes build/win32/Skuan-VERSION-win32.zip
math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")

# What Explorer and crash reports say of a file. A library of its own, so that the resource compiler is
# spared the options for C++.
function(describe target file type description) # type: 1 for a program, 2 for a library
  configure_file(cmake/version.rc.in "${CMAKE_BINARY_DIR}/version/${target}.rc" @ONLY)
  add_library(${target}_version OBJECT "${CMAKE_BINARY_DIR}/version/${target}.rc")
  set_target_properties(${target}_version PROPERTIES COMPILE_OPTIONS "")
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_version>)
endfunction()
describe(skuan Skuan.dll 2 "${PROJECT_DESCRIPTION}")
describe(skuan_simulator SkuanSimulator.dll 2 "A simulated broadcast video disk server, to test against")
describe(skuan-sim skuan-sim.exe 1 "A simulated broadcast video disk server")
describe(skuanctl skuanctl.exe 1 "Command line for broadcast video disk servers")

# Qt, and the compiler's run time that lies beside it. No plugin: what is used of Core and Network needs none.
set(unwinding seh)
if(bits EQUAL 32)
  set(unwinding dw2)
endif()
set(qt_bin "$<TARGET_FILE_DIR:Qt5::Core>")
install(FILES "$<TARGET_FILE:Qt5::Core>" "$<TARGET_FILE:Qt5::Network>" "${qt_bin}/libgcc_s_${unwinding}-1.dll"
  "${qt_bin}/libstdc++-6.dll" "${qt_bin}/libwinpthread-1.dll" DESTINATION "${CMAKE_INSTALL_BINDIR}")

# Licences of these, where the distribution keeps them.
string(REPLACE "_" "-" arch "${SKUAN_WIN_ARCH}")
set(docs /usr/share/doc)
install(FILES ${docs}/libqt5core5a/copyright DESTINATION licences RENAME Qt5.txt)
install(FILES ${docs}/gcc-mingw-w64-${arch}-posix-runtime/copyright DESTINATION licences RENAME gcc.txt)
install(FILES ${docs}/mingw-w64-${arch}-dev/copyright DESTINATION licences RENAME mingw-w64.txt)
foreach(text LGPL-2.1 LGPL-3 GPL-2 GPL-3)
  install(FILES /usr/share/common-licenses/${text} DESTINATION licences RENAME ${text}.txt)
endforeach()

configure_file(cmake/README.txt.in "${CMAKE_BINARY_DIR}/README.txt" @ONLY NEWLINE_STYLE WIN32)
install(FILES "${CMAKE_BINARY_DIR}/README.txt" DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_VENDOR Skuan)
set(CPACK_PACKAGE_FILE_NAME "Skuan-${PROJECT_VERSION}-win${bits}")
set(CPACK_STRIP_FILES ON)
include(CPack)
