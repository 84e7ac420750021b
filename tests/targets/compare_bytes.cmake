cmake_minimum_required(VERSION 3.25)

# Compares the file WRITTEN with the kept file KEPT, byte for byte; with UPDATE it is kept instead:
# cmake -DWRITTEN=... -DKEPT=... [-DUPDATE=ON] -P this
if(UPDATE)
  configure_file("${WRITTEN}" "${KEPT}" COPYONLY)
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${WRITTEN}" "${KEPT}"
  RESULT_VARIABLE difference)
if(difference)
  find_program(DIFF diff)
  if(DIFF)
    execute_process(COMMAND "${DIFF}" --text --unified=1 "${KEPT}" "${WRITTEN}")
  endif()
  message(FATAL_ERROR "${WRITTEN} is not the same as ${KEPT}")
endif()
