# See CMakeLists.txt. The page that is kept under docs/ must be what the tables give.
execute_process(COMMAND "${python}" -B "${root}/skuan/protocol/catalogue/generate.py" "${work}" "${root}/docs/protocol.md.in"
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files "${work}/protocol.md" "${root}/docs/protocol.md" RESULT_VARIABLE differs)
if(differs)
  message(FATAL_ERROR "docs/protocol.md is not what the protocol's catalogue says: run ./dev protocol")
endif()
