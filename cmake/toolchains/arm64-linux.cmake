# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Toolchain for building for arm64 Linux on another Linux: Debian's cross compiler. qemu's user mode runs the tests.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

# Where Debian's cross packages install the C library.
set(zspace_sysroot /usr/aarch64-linux-gnu)
find_program(ZSPACE_QEMU NAMES qemu-aarch64 qemu-aarch64-static)
if(ZSPACE_QEMU)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${ZSPACE_QEMU}" -L "${zspace_sysroot}")
endif()

# Ignores the build machine's libraries and packages.
set(CMAKE_FIND_ROOT_PATH "${zspace_sysroot}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
