# The README's C++ example, compiled and run, prints what the README says it prints: the fenced
# block of text behind it.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/README.md")
file(READ "${PROJECT_SOURCE_DIR}/README.md" readme)

# Cuts the first block that `opening` opens out of the text behind `rest`.
macro(cut_block opening result)
  string(FIND "${rest}" "${opening}\n" start)
  if(start EQUAL -1)
    message(FATAL_ERROR "README.md has no block ${opening}")
  endif()
  string(LENGTH "${opening}\n" skip)
  math(EXPR start "${start} + ${skip}")
  string(SUBSTRING "${rest}" ${start} -1 rest)
  string(FIND "${rest}" "```" end)
  string(SUBSTRING "${rest}" 0 ${end} ${result})
  math(EXPR end "${end} + 3")
  string(SUBSTRING "${rest}" ${end} -1 rest)
endmacro()

set(rest "${readme}")
cut_block("```cpp" readme_code)
cut_block("```text" readme_output)
set(readme_source "${CMAKE_CURRENT_BINARY_DIR}/readme_example.cpp")
set(readme_expected "${CMAKE_CURRENT_BINARY_DIR}/readme_example.expected")
file(CONFIGURE OUTPUT "${readme_source}" CONTENT "${readme_code}" @ONLY)
file(CONFIGURE OUTPUT "${readme_expected}" CONTENT "${readme_output}" @ONLY)

add_executable(readme_example "${readme_source}")
target_link_libraries(readme_example PRIVATE zor::zor zor_warnings)
add_test(NAME Readme.ExamplePrintsWhatItSays
  COMMAND "${CMAKE_COMMAND}" "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
    "-DPROGRAM=$<TARGET_FILE:readme_example>"
    "-DEXPECTED=${readme_expected}" -P "${CMAKE_CURRENT_SOURCE_DIR}/package/compare_output.cmake")
