# Cross build for the television's CPU: 32-bit ARM, hard-float, glibc (Debian's armhf). The
# compiler is Debian's g++-arm-linux-gnueabihf; the libraries it does not ship (Boost, GoogleTest)
# come from a sysroot of unpacked armhf packages, ORVO_ARMHF_SYSROOT (scripts/test-armhf makes
# it). Programs run under qemu-user, which finds the armhf loader and libraries in the sysroot.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
# GCC notes every std::vector iterator whose passing changed in GCC 7.1; nothing here mixes ABIs.
set(CMAKE_CXX_FLAGS_INIT "-Wno-psabi")

if(NOT ORVO_ARMHF_SYSROOT)
  set(ORVO_ARMHF_SYSROOT "$ENV{ORVO_ARMHF_SYSROOT}")
endif()
if(NOT IS_DIRECTORY "${ORVO_ARMHF_SYSROOT}/usr/lib/arm-linux-gnueabihf")
  message(FATAL_ERROR "ORVO_ARMHF_SYSROOT='${ORVO_ARMHF_SYSROOT}' is not an armhf sysroot (see scripts/test-armhf)")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORVO_ARMHF_SYSROOT)

set(CMAKE_FIND_ROOT_PATH "${ORVO_ARMHF_SYSROOT}" /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The sysroot's libraries pull in others from the same directories at link time.
set(_orvo_armhf_link "-Wl,-rpath-link,${ORVO_ARMHF_SYSROOT}/usr/lib/arm-linux-gnueabihf")
string(APPEND _orvo_armhf_link " -Wl,-rpath-link,${ORVO_ARMHF_SYSROOT}/lib/arm-linux-gnueabihf")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${_orvo_armhf_link}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${_orvo_armhf_link}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${_orvo_armhf_link}")

# QEMU_LD_PREFIX (rather than -L) reaches the child processes the tests start as well.
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/env "QEMU_LD_PREFIX=${ORVO_ARMHF_SYSROOT}" qemu-arm)
