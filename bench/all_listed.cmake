# Fails when the program has a workload that is not among WORKLOADS, which are run as tests, or is
# without one of them: cmake -DPROGRAM=... -DWORKLOADS=A,B -P all_listed.cmake
execute_process(COMMAND "${PROGRAM}" --benchmark_list_tests
  OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "," ";" listed "${WORKLOADS}")
string(REGEX MATCHALL "[^\n]+" names "${names}")
list(TRANSFORM names REPLACE "/.*" "")
list(REMOVE_DUPLICATES names)
list(SORT names)
list(SORT listed)
if(NOT names STREQUAL listed)
  message(FATAL_ERROR "The program has ${names}; run as tests are ${listed}")
endif()
