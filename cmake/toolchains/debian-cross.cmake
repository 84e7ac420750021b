# What the toolchain files share: one of Debian's cross compilers, the libraries that
# scripts/target-dependencies built for it, and what runs the programs.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${zor_triple}-gcc)
set(CMAKE_CXX_COMPILER ${zor_triple}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR ${zor_emulator})

# Where scripts/target-dependencies put them: the same rule as there.
if(NOT "$ENV{ZOR_CACHE_DIR}" STREQUAL "")
  set(zor_dependencies "$ENV{ZOR_CACHE_DIR}/${zor_triple}")
else()
  set(zor_dependencies "$ENV{HOME}/.cache/zor/${zor_triple}")
endif()
set(CMAKE_FIND_ROOT_PATH "${zor_dependencies}" /usr/${zor_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Installed programs find the parser where built ones do, and so does the linker.
set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${zor_dependencies}/lib")

# A parser from the original archive, without Debian's patches, reads a long tag anew for each piece.
if(EXISTS "${zor_dependencies}/expat-is-not-patched")
  set(ZOR_LEAVE_OUT_TESTS LargeText.TagInPiecesTakesLinearTime)
endif()
