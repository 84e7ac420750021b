cmake_minimum_required(VERSION 3.25)

# Has PROGRAM, by EMULATOR if there is one, write its files into the directory WRITTEN, and compares
# them with those in the directory KEPT, byte for byte.
file(MAKE_DIRECTORY "${WRITTEN}")
execute_process(COMMAND ${EMULATOR} "${PROGRAM}" "${WRITTEN}"
  WORKING_DIRECTORY "${WRITTEN}" COMMAND_ERROR_IS_FATAL ANY)
file(GLOB files RELATIVE "${KEPT}" "${KEPT}/*.xml" "${KEPT}/*.txt")
list(LENGTH files count)
if(NOT count EQUAL 4)
  message(FATAL_ERROR "${KEPT} has ${count} files instead of 4")
endif()
foreach(file ${files})
  execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${WRITTEN}/${file}" "${KEPT}/${file}"
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
