# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# GNUstep's Foundation on the Objective-C runtime that comes with gcc, compiled by clang: code that g++ makes of these
# files crashes when an NSException arrives.

if(NOT CMAKE_OBJCXX_COMPILER_ID MATCHES Clang)
    message(FATAL_ERROR "The Foundation side is built with clang; ${CMAKE_OBJCXX_COMPILER} is none")
endif()

find_path(GNUSTEP_INCLUDE_FOLDER Foundation/Foundation.h PATH_SUFFIXES GNUstep REQUIRED)
find_library(GNUSTEP_BASE_LIBRARY gnustep-base REQUIRED)

# The headers of gcc's runtime lie among those that are gcc's alone, where clang must not look: a link leads to them.
find_program(GNUSTEP_GCC NAMES gcc REQUIRED)
execute_process(COMMAND "${GNUSTEP_GCC}" -print-file-name=include
    OUTPUT_VARIABLE gcc_include_folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(objc_headers "${PROJECT_BINARY_DIR}/objc-headers")
file(MAKE_DIRECTORY "${objc_headers}")
file(CREATE_LINK "${gcc_include_folder}/objc" "${objc_headers}/objc" SYMBOLIC)

set(ZSPACE_FOUNDATION_LIBRARIES gnustep-base objc)
target_include_directories(zspace_foundation SYSTEM INTERFACE "${objc_headers}" "${GNUSTEP_INCLUDE_FOLDER}")
target_compile_options(zspace_foundation INTERFACE
    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fobjc-runtime=gcc>
    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fobjc-exceptions>
    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fconstant-string-class=NSConstantString>)
# What GNUstep's headers must know of how the library itself was built, as `gnustep-config --objc-flags` gives it.
target_compile_definitions(zspace_foundation INTERFACE
    GNUSTEP GNUSTEP_BASE_LIBRARY=1 GNU_RUNTIME=1 _NATIVE_OBJC_EXCEPTIONS)

# Sanitizers report the libraries themselves. What they are to leave out goes into each program: a source among the link
# options is compiled on the way.
if(ZSPACE_SANITIZE)
    file(READ "${PROJECT_SOURCE_DIR}/tests/sanitizers/gnustep-leaks.supp" leaks)
    file(READ "${PROJECT_SOURCE_DIR}/tests/sanitizers/gnustep-threads.supp" threads)
    configure_file("${CMAKE_CURRENT_LIST_DIR}/ZSpaceSuppressions.cpp.in"
        "${PROJECT_BINARY_DIR}/ZSpaceSuppressions.cpp" @ONLY)
    add_link_options("${PROJECT_BINARY_DIR}/ZSpaceSuppressions.cpp")
endif()
