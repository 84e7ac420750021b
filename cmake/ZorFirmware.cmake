# The library for a device with little memory. docs/embedding.md says what each of these flags is
# worth, and what they mean to a host. They apply to the library alone, and stand behind the flags of
# the build type and of the host.
set(small_code
  -Os
  -fno-exceptions -fno-rtti
  -fno-asynchronous-unwind-tables -fno-unwind-tables # left out only when asked for
  -fno-semantic-interposition
  -fpic) # the small form of CMake's -fPIC
if(NOT BUILD_SHARED_LIBS)
  # A program that is linked with --gc-sections takes what it uses.
  list(APPEND small_code -ffunction-sections -fdata-sections)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  list(APPEND small_code -flto -flto-partition=one)
endif()

# build_small(library [target of its objects...])
function(build_small library)
  foreach(target ${library} ${ARGN})
    target_compile_options(${target} PRIVATE ${small_code})
  endforeach()
  if(BUILD_SHARED_LIBS)
    # Without tables for unwinding, nothing needs an index of them.
    target_link_options(${library} PRIVATE ${small_code}
      LINKER:-Bsymbolic-functions,--no-eh-frame-hdr)
  endif()
endfunction()
