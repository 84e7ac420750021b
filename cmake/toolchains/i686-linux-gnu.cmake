# 32 bits, little-endian: Debian's g++-i686-linux-gnu.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(zor_triple i686-linux-gnu)
set(zor_emulator qemu-i386)
include("${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake")
