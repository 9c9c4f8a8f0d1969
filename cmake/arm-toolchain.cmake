# Cross build for the phone: 32-bit ARM, hard float, over the libraries in build/arm-sysroot (which
# `./test --arm` fills). Programs run under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

get_filename_component(arm_sysroot ${CMAKE_CURRENT_LIST_DIR}/../build/arm-sysroot ABSOLUTE)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -cpu cortex-a7 -L ${arm_sysroot})
set(CMAKE_FIND_ROOT_PATH ${arm_sysroot})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
if(NOT DEFINED CMAKE_FIND_ROOT_PATH_MODE_PACKAGE) # -D may let in a staging folder
  set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
endif()

# Where the libraries are that the programs' libraries need in turn.
set(CMAKE_EXE_LINKER_FLAGS_INIT -Wl,-rpath-link,${arm_sysroot}/usr/lib/arm-linux-gnueabihf)
