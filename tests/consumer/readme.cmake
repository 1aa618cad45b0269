# See CMakeLists.txt.
file(READ "${root}/README.md" readme)
file(READ "${root}/examples/02_ask_name_qt.cpp" program)
string(FIND "${readme}" "```cpp\n${program}```" place)
if(place EQUAL -1)
  message(FATAL_ERROR "README.md does not show examples/02_ask_name_qt.cpp as it is")
endif()
