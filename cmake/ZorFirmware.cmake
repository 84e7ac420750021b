# The library for a device with little memory: ZOR_FIRMWARE=ON. docs/embedding.md says what each of
# these is worth, and what they mean to a host. They apply to the library alone, and stand behind the
# flags of the build type and of the host.
set(small_code
  -Os
  -fno-exceptions -fno-rtti
  -fno-asynchronous-unwind-tables -fno-unwind-tables # left out only when asked for
  -fno-semantic-interposition
  -fpic) # the small form of CMake's -fPIC
if(BUILD_SHARED_LIBS)
  list(APPEND small_code -flto=auto)
  target_link_options(zor PRIVATE ${small_code} LINKER:-Bsymbolic-functions)
else()
  # A program that is linked with --gc-sections takes what it uses.
  list(APPEND small_code -ffunction-sections -fdata-sections)
endif()
target_compile_options(zor_objects PRIVATE ${small_code})
if(TARGET zor_platform)
  target_compile_options(zor_platform PRIVATE ${small_code})
endif()
