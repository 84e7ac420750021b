# What surrounds the library: its headers, its symbols, its installation and its options.

include(package/flags.cmake)
include(package/headers.cmake)
include(package/readme.cmake)

if(BUILD_SHARED_LIBS)
  add_test(NAME Package.ExportsTheKeptListOfSymbols
    COMMAND "${CMAKE_COMMAND}" "-DLIBRARY=$<TARGET_FILE:zor>" "-DNM=${CMAKE_NM}"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/package/exported_symbols.cmake")
endif()

# Not under a sanitizer or a count of coverage, which add a runtime of their own, and of optimised
# builds only: the others put nothing inline and so name every member of the standard library that
# they use.
if(BUILD_SHARED_LIBS AND CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$"
    AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize|-fprofile")
  set(exact OFF)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release"
      AND CMAKE_CXX_FLAGS STREQUAL "" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    set(exact ON)
  endif()
  add_test(NAME Package.NeedsTheKeptListOfSymbols
    COMMAND "${CMAKE_COMMAND}" "-DLIBRARY=$<TARGET_FILE:zor>" "-DNM=${CMAKE_NM}" "-DEXACT=${exact}"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/package/undefined_symbols.cmake")
endif()

# The same program against the shared library, and with everything linked into it.
add_executable(static_lifetime_shared package/static_lifetime.cpp)
target_link_libraries(static_lifetime_shared PRIVATE zor::zor zor_warnings)
add_test(NAME Package.ServesStaticObjectsOfASharedLink COMMAND static_lifetime_shared)
add_library(zor_all_static STATIC $<TARGET_OBJECTS:zor_objects> $<TARGET_OBJECTS:zor_platform>)
target_link_libraries(zor_all_static PUBLIC zor_objects EXPAT::EXPAT Threads::Threads)
add_executable(static_lifetime_static package/static_lifetime.cpp)
target_link_libraries(static_lifetime_static PRIVATE zor_all_static zor_warnings)
add_test(NAME Package.ServesStaticObjectsOfAStaticLink COMMAND static_lifetime_static)

set(nested_options
  -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
  -DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}
  -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
  -DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}
  "-DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS}")

set(prefix "${CMAKE_CURRENT_BINARY_DIR}/installed")
add_test(NAME Package.Installs
  COMMAND "${CMAKE_COMMAND}" --install "${PROJECT_BINARY_DIR}" --prefix "${prefix}")
set_tests_properties(Package.Installs PROPERTIES FIXTURES_SETUP installed)

# The embed example finds the package, builds, and prints what it should; so does zorctl where it
# was installed.
function(add_build_test name source target)
  add_test(NAME Package.${name}
    COMMAND "${CMAKE_CTEST_COMMAND}"
      --build-and-test "${source}" "${CMAKE_CURRENT_BINARY_DIR}/${target}"
      --build-generator "${CMAKE_GENERATOR}" --build-noclean --build-target ${target}
      --build-options ${nested_options} ${ARGN})
  set_tests_properties(Package.${name} PROPERTIES FIXTURES_SETUP ${target})
endfunction()

function(add_output_test name fixture program expected)
  add_test(NAME Package.${name}
    COMMAND "${CMAKE_COMMAND}" "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}" "-DPROGRAM=${program}"
      "-DEXPECTED=${CMAKE_CURRENT_SOURCE_DIR}/package/${expected}"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/package/compare_output.cmake")
  set_tests_properties(Package.${name} PROPERTIES FIXTURES_REQUIRED ${fixture})
endfunction()

# A toolchain file looks for packages only where its own are.
set(find_installed "-DCMAKE_PREFIX_PATH=${prefix}")
if(CMAKE_CROSSCOMPILING)
  set(find_installed "-Dzor_DIR=${prefix}/${CMAKE_INSTALL_LIBDIR}/cmake/zor")
endif()
add_build_test(IsFoundByTheEmbedExample "${PROJECT_SOURCE_DIR}/examples/embed" embed
  "${find_installed}")
set_tests_properties(Package.IsFoundByTheEmbedExample PROPERTIES FIXTURES_REQUIRED installed)
add_output_test(EmbedExampleWorks embed "${CMAKE_CURRENT_BINARY_DIR}/embed/embed" embed.expected)

add_build_test(BuildsOnAnExternalPlatform "${CMAKE_CURRENT_SOURCE_DIR}/package/external_platform"
  use_external_platform "-DZOR_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
add_output_test(WorksOnAnExternalPlatform use_external_platform
  "${CMAKE_CURRENT_BINARY_DIR}/use_external_platform/use_external_platform"
  external_platform.expected)

if(ZOR_BUILD_TOOLS)
  file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/zorctl_version.expected"
    CONTENT "zorctl ${PROJECT_VERSION}\n")
  add_test(NAME Package.InstalledProgramRuns
    COMMAND "${CMAKE_COMMAND}" "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
      "-DPROGRAM=${prefix}/${CMAKE_INSTALL_BINDIR}/zorctl"
      -DARGUMENT=--version "-DEXPECTED=${CMAKE_CURRENT_BINARY_DIR}/zorctl_version.expected"
      -P "${CMAKE_CURRENT_SOURCE_DIR}/package/compare_output.cmake")
  set_tests_properties(Package.InstalledProgramRuns PROPERTIES FIXTURES_REQUIRED installed)
endif()
