# The library as a firmware builds it writes the same bytes as any other, and without type
# information alone it builds and runs.
#
# Not under a sanitizer, whose checks need type information, nor where coverage is counted: the same
# lines would count once more.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize|-fprofile" OR NOT BUILD_SHARED_LIBS)
  return()
endif()

get_target_property(library_sources zor_objects SOURCES)
get_target_property(platform_sources zor_platform SOURCES)
list(APPEND library_sources ${platform_sources})
list(TRANSFORM library_sources PREPEND "${PROJECT_SOURCE_DIR}/")

# add_variant(target SHARED|STATIC): the library once more. Tools that read all compilations do not
# have to look at the sources twice.
function(add_variant target kind)
  add_library(${target} ${kind} ${library_sources})
  target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${target} PRIVATE zor_warnings EXPAT::EXPAT Threads::Threads)
  set_target_properties(${target} PROPERTIES EXPORT_COMPILE_COMMANDS OFF
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()

add_variant(zor_firmware SHARED)
build_small(zor_firmware)
target_link_options(zor_firmware PRIVATE "LINKER:--version-script=${version_script}")
add_same_bytes_program(zor_same_bytes_firmware zor_firmware -fno-rtti)
set_target_properties(zor_same_bytes_firmware PROPERTIES EXPORT_COMPILE_COMMANDS OFF)
add_test(NAME Package.FirmwareWritesTheSameBytes
  COMMAND "${CMAKE_COMMAND}" "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
    "-DPROGRAM=$<TARGET_FILE:zor_same_bytes_firmware>"
    "-DWRITTEN=${CMAKE_CURRENT_BINARY_DIR}/same_bytes_firmware"
    "-DKEPT=${CMAKE_CURRENT_SOURCE_DIR}/targets/expected"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/targets/write_and_compare.cmake")

# Whether the sources do without it is the same on every machine.
if(NOT CMAKE_CROSSCOMPILING)
  add_variant(zor_no_rtti STATIC)
  target_compile_options(zor_no_rtti PRIVATE -O0 -g0 -fno-rtti)
  add_executable(no_rtti package/static_lifetime.cpp)
  target_compile_options(no_rtti PRIVATE -fno-rtti)
  target_link_libraries(no_rtti PRIVATE zor_no_rtti zor_warnings)
  add_test(NAME Package.NeedsNoTypeInformation COMMAND no_rtti)
endif()
