# What surrounds the library: its headers, its symbols, its installation and its options.

include(package/headers.cmake)
include(package/readme.cmake)

if(BUILD_SHARED_LIBS)
  add_test(NAME Package.ExportsTheKeptListOfSymbols
    COMMAND "${CMAKE_COMMAND}" "-DLIBRARY=$<TARGET_FILE:zor>" "-DNM=${CMAKE_NM}"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/package/exported_symbols.cmake")
endif()

# The same program against the shared library, and with everything linked into it.
add_executable(static_lifetime_shared package/static_lifetime.cpp)
target_link_libraries(static_lifetime_shared PRIVATE zor::zor zor_warnings)
add_test(NAME Package.ServesStaticObjectsOfASharedLink COMMAND static_lifetime_shared)
if(ZOR_PLATFORM STREQUAL "builtin")
  add_library(zor_all_static STATIC $<TARGET_OBJECTS:zor_objects> $<TARGET_OBJECTS:zor_platform>)
  target_link_libraries(zor_all_static PUBLIC zor_objects EXPAT::EXPAT Threads::Threads)
  add_executable(static_lifetime_static package/static_lifetime.cpp)
  target_link_libraries(static_lifetime_static PRIVATE zor_all_static zor_warnings)
  add_test(NAME Package.ServesStaticObjectsOfAStaticLink COMMAND static_lifetime_static)
endif()

set(nested_options
  -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
  -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
  -DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}
  "-DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS}")

set(prefix "${CMAKE_CURRENT_BINARY_DIR}/installed")
add_test(NAME Package.Installs
  COMMAND "${CMAKE_COMMAND}" --install "${PROJECT_BINARY_DIR}" --prefix "${prefix}")
set_tests_properties(Package.Installs PROPERTIES FIXTURES_SETUP installed)
add_test(NAME Package.IsFoundByTheEmbedExample
  COMMAND "${CMAKE_CTEST_COMMAND}"
    --build-and-test "${PROJECT_SOURCE_DIR}/examples/embed" "${CMAKE_CURRENT_BINARY_DIR}/embed"
    --build-generator "${CMAKE_GENERATOR}" --build-noclean
    --build-options ${nested_options} "-DCMAKE_PREFIX_PATH=${prefix}"
    --test-command embed)
set_tests_properties(Package.IsFoundByTheEmbedExample PROPERTIES
  FIXTURES_REQUIRED installed
  PASS_REGULAR_EXPRESSION
    "volume is 5\n\\[error\\] setIntNodeValue: value is not valid\nvolume is 8\n<desk><document schema=\"phone\" name=\"phone1\"><ringerVolume>8</ringerVolume><lineKey><label>Line 1</label></lineKey><lineKey><label>Line 2</label></lineKey><lineKey><label>Line 3</label></lineKey><lineKey><label>Line 4</label></lineKey></document></desk>\n")

add_test(NAME Package.BuildsOnAnExternalPlatform
  COMMAND "${CMAKE_CTEST_COMMAND}"
    --build-and-test "${CMAKE_CURRENT_SOURCE_DIR}/package/external_platform"
      "${CMAKE_CURRENT_BINARY_DIR}/external_platform"
    --build-generator "${CMAKE_GENERATOR}" --build-noclean --build-target use_external_platform
    --build-options ${nested_options} "-DZOR_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
    --test-command use_external_platform)
set_tests_properties(Package.BuildsOnAnExternalPlatform PROPERTIES
  PASS_REGULAR_EXPRESSION "ok: [0-9]+ takes")
