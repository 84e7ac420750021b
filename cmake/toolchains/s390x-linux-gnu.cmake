# 64 bits, big-endian: Debian's g++-s390x-linux-gnu.
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(zor_triple s390x-linux-gnu)
set(zor_emulator qemu-s390x -L /usr/${zor_triple})
include("${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake")
