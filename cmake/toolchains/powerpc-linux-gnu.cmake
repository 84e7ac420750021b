# 32 bits, big-endian, as the device: Debian's g++-powerpc-linux-gnu.
set(CMAKE_SYSTEM_PROCESSOR ppc)
set(zor_triple powerpc-linux-gnu)
set(zor_emulator qemu-ppc -L /usr/${zor_triple})
include("${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake")
