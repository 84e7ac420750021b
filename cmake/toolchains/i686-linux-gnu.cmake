# 32 bits, little-endian: Debian's g++-i686-linux-gnu. Where the machine itself takes such programs,
# they run without an emulator, by their own loader.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(zor_triple i686-linux-gnu)
set(zor_emulator qemu-i386 -L /usr/${zor_triple})
set(zor_loader /usr/${zor_triple}/lib/ld-linux.so.2)
execute_process(COMMAND ${zor_loader} --version RESULT_VARIABLE zor_status OUTPUT_QUIET ERROR_QUIET)
if(zor_status EQUAL 0)
  set(zor_emulator ${zor_loader} --library-path /usr/${zor_triple}/lib)
endif()
include("${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake")
