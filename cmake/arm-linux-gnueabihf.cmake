# Toolchain of the 32-bit ARM build: Debian's cross compiler, the libraries of cmake/arm-sysroot, programs run by
# qemu's user emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

# _TIME_BITS and _FILE_OFFSET_BITS stay at the ABI's defaults. The provider layer that calls the library is built with
# them, and time_t, of 4 bytes then, is in the signatures of exported date-time functions: with 64 bits here, a caller
# would hand over half of a time and lend 4 bytes for 8 that are written.

# Options that differ from those of Debian's compiler only by a warning that says nothing here: g++ 7 changed how some
# arguments are passed, and everything here is built by one compiler.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)

# The sysroot is added to the compiler's own, which has the C library alone.
set(arm_sysroot ${CMAKE_CURRENT_LIST_DIR}/../build/arm/sysroot)
cmake_path(NORMAL_PATH arm_sysroot)
if(NOT EXISTS ${arm_sysroot}/complete)
  message(FATAL_ERROR "There are no ARM libraries in ${arm_sysroot}. Fetch them with cmake/arm-sysroot.")
endif()
set(CMAKE_FIND_ROOT_PATH ${arm_sysroot} /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

# Debian's static libraries are built for programs. In a shared library their names have to stay local, and what would
# still need its code relocated at load time is an error.
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-Wl,--exclude-libs,ALL -Wl,-z,text")

# Programs find the dynamic loader and the C library below the folder after -L.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L /usr/arm-linux-gnueabihf)
