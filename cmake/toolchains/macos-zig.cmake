# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Toolchain for building for macOS on Linux: the Zig compiler, which includes the headers of macOS's C library, libSystem's
# link stub and libc++'s headers; and the declarations and stubs in packaging/macos/sdk/. ZSPACE_ZIG_FOLDER is the
# directory in which npm has installed the compiler.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZSPACE_ZIG_FOLDER)

set(zspace_zig_packages "${ZSPACE_ZIG_FOLDER}/node_modules/@zigc")
set(zspace_zig "${zspace_zig_packages}/linux-x64/bin/zig")
set(zspace_sdk "${CMAKE_CURRENT_LIST_DIR}/../../packaging/macos/sdk")

# Programs use macOS's own C++ library, as if built there: with a single C++ runtime, C++ and Objective-C exceptions
# pass through each other's frames. Zig must not link its own library. Its libc++ headers are configured as Apple
# configures them: they refuse what the oldest supported macOS lacks.
#
# These arguments belong to the compiler, since CMake's first test of it needs them: without them, that test would build
# all of libc++.
set(zspace_arguments --target=x86_64-macos.10.13 -nostdlib++
    -fno-sanitize=undefined) # Zig's default for unoptimized code
set(CMAKE_C_COMPILER "${zspace_zig}" cc ${zspace_arguments})
set(CMAKE_CXX_COMPILER "${zspace_zig}" c++ ${zspace_arguments})
set(CMAKE_OBJC_COMPILER ${CMAKE_C_COMPILER})
set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})

set(ZSPACE_TEST_TARGET --target=x86_64-macos.10.15)

# The minimum version is part of the target, so CMake must not add one.
set(CMAKE_OSX_SYSROOT "")
set(CMAKE_OSX_DEPLOYMENT_TARGET "")
# Ignores the build machine's libraries and packages.
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

string(CONCAT zspace_cxx_flags
    "-I${zspace_zig_packages}/lib/libcxx/include -I${zspace_zig_packages}/lib/libcxxabi/include " # before the C headers
    "-include ${zspace_sdk}/libcxx-settings.h "
    "-isystem ${zspace_sdk}/include -iframework ${zspace_sdk}/Frameworks")
set(CMAKE_OBJC_FLAGS_INIT "-isystem ${zspace_sdk}/include -iframework ${zspace_sdk}/Frameworks")
set(CMAKE_CXX_FLAGS_INIT "${zspace_cxx_flags}")
set(CMAKE_OBJCXX_FLAGS_INIT "${zspace_cxx_flags}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-F${zspace_sdk}/Frameworks -L${zspace_sdk}/lib")
set(CMAKE_CXX_STANDARD_LIBRARIES "${zspace_sdk}/lib/libc++.1.tbd")
set(CMAKE_OBJCXX_STANDARD_LIBRARIES "${CMAKE_CXX_STANDARD_LIBRARIES}")

# The archiver and ranlib are subcommands of the same program.
set(CMAKE_AR "${zspace_zig}")
set(CMAKE_RANLIB "${zspace_zig}")
set(CMAKE_INSTALL_NAME_TOOL "${zspace_zig}") # never run, but CMake requires one
foreach(language IN ITEMS C CXX OBJC OBJCXX)
    set(CMAKE_${language}_ARCHIVE_CREATE "<CMAKE_AR> ar qc <TARGET> <OBJECTS>")
    set(CMAKE_${language}_ARCHIVE_APPEND "<CMAKE_AR> ar q <TARGET> <OBJECTS>")
    set(CMAKE_${language}_ARCHIVE_FINISH "<CMAKE_RANLIB> ranlib <TARGET>")
endforeach()

# Zig leaves an executable unsigned and its weak bindings unsorted.
foreach(language IN ITEMS C CXX OBJC OBJCXX)
    set(CMAKE_${language}_LINK_EXECUTABLE
        "<CMAKE_${language}_COMPILER> <FLAGS> <CMAKE_${language}_LINK_FLAGS> <LINK_FLAGS> <OBJECTS> -o <TARGET> <LINK_LIBRARIES>"
        "${CMAKE_CURRENT_LIST_DIR}/../../packaging/macos/finish-executable.py <TARGET>")
endforeach()

# Zig compiles precompiled headers with a front end other than the one that reads them.
set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
