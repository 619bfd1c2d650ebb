# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Toolchain for building for macOS on Linux: the Zig compiler, which brings the C headers of macOS, libSystem's link
# stub and libc++, and the declarations and stubs in sdk/ beside this file. ZSPACE_ZIG is the compiler's program.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZSPACE_ZIG)

set(CMAKE_OSX_SYSROOT "")
set(CMAKE_OSX_DEPLOYMENT_TARGET "")
# Nothing of the machine that builds may be found.
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(zspace_sdk "${CMAKE_CURRENT_LIST_DIR}/sdk")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-F${zspace_sdk}/Frameworks -L${zspace_sdk}/lib")

# The archiver and its companions are parts of the same program.
set(CMAKE_AR "${ZSPACE_ZIG}")
set(CMAKE_RANLIB "${ZSPACE_ZIG}")
set(CMAKE_INSTALL_NAME_TOOL "${ZSPACE_ZIG}") # nothing that is installed has names to change

foreach(language IN ITEMS CXX OBJCXX)
    set(CMAKE_${language}_COMPILER "${ZSPACE_ZIG}" c++)
    set(CMAKE_${language}_COMPILER_TARGET x86_64-macos.10.13)
    set(CMAKE_${language}_FLAGS_INIT "-isystem ${zspace_sdk}/include -iframework ${zspace_sdk}/Frameworks")
    set(CMAKE_${language}_ARCHIVE_CREATE "<CMAKE_AR> ar qc <TARGET> <OBJECTS>")
    set(CMAKE_${language}_ARCHIVE_APPEND "<CMAKE_AR> ar q <TARGET> <OBJECTS>")
    set(CMAKE_${language}_ARCHIVE_FINISH "<CMAKE_RANLIB> ranlib <TARGET>")
endforeach()

# A precompiled header would be made by one front end of the compiler and read by another.
set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
