# The library without type information, and without exceptions, as a firmware may build it: it
# compiles, and the program of static objects runs on it.
#
# Not under a sanitizer, whose checks need type information, nor where coverage is counted: the same
# lines would count once more.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize|-fprofile")
  return()
endif()

get_target_property(library_sources zor_objects SOURCES)
get_target_property(platform_sources zor_platform SOURCES)
list(TRANSFORM library_sources PREPEND "${PROJECT_SOURCE_DIR}/")
list(TRANSFORM platform_sources PREPEND "${PROJECT_SOURCE_DIR}/")

function(add_flags_test name program)
  add_executable(${program} package/static_lifetime.cpp ${library_sources} ${platform_sources})
  target_compile_options(${program} PRIVATE -O0 -g0 ${ARGN})
  target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${program} PRIVATE zor_warnings EXPAT::EXPAT Threads::Threads)
  add_test(NAME Package.${name} COMMAND ${program})
endfunction()

add_flags_test(NeedsNoTypeInformation no_rtti -fno-rtti)
add_flags_test(NeedsNoExceptions no_exceptions -fno-rtti -fno-exceptions)
