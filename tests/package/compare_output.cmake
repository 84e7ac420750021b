# Runs PROGRAM, by EMULATOR and with ARGUMENT if there are such, and compares its output with the file
# EXPECTED.
cmake_minimum_required(VERSION 3.25)
execute_process(COMMAND ${EMULATOR} "${PROGRAM}" ${ARGUMENT}
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "expected:\n${expected}\nprinted:\n${output}")
endif()
