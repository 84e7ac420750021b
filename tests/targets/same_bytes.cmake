# The same bytes on every machine: each writes them, and compares them with those that are kept. To
# keep what a machine writes: cmake -DUPDATE=ON with compare_bytes.cmake, or give the program the
# directory of the kept files.
file(GLOB same_bytes_sources CONFIGURE_DEPENDS "targets/same_bytes*.cpp")
function(add_same_bytes_program program library) # [compiler flags]
  add_executable(${program} ${same_bytes_sources})
  target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_options(${program} PRIVATE ${ARGN})
  target_link_libraries(${program} PRIVATE ${library} zor_warnings)
  target_compile_definitions(${program} PRIVATE
    "ZOR_EXAMPLES_DIR=\"${PROJECT_SOURCE_DIR}/examples\"")
endfunction()
add_same_bytes_program(zor_same_bytes zor::zor)

# CTest starts the program through the emulator where there is one.
set(written "${CMAKE_CURRENT_BINARY_DIR}/same_bytes")
file(MAKE_DIRECTORY "${written}")
add_test(NAME SameBytes.AreWritten COMMAND zor_same_bytes "${written}")
set_tests_properties(SameBytes.AreWritten PROPERTIES FIXTURES_SETUP same_bytes)
function(add_same_bytes_test name file)
  add_test(NAME SameBytes.${name}
    COMMAND "${CMAKE_COMMAND}" "-DWRITTEN=${written}/${file}"
      "-DKEPT=${CMAKE_CURRENT_SOURCE_DIR}/targets/expected/${file}"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/targets/compare_bytes.cmake")
  set_tests_properties(SameBytes.${name} PROPERTIES FIXTURES_REQUIRED same_bytes)
endfunction()
add_same_bytes_test(Export export.xml)
add_same_bytes_test(Selects selects.txt)
add_same_bytes_test(Incidents incidents.txt)
add_same_bytes_test(Values values.txt)
