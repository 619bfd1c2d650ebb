# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# GNUstep's Foundation on gcc's Objective-C runtime, compiled by clang: with g++, these files crash when an NSException
# arrives.

if(NOT CMAKE_OBJCXX_COMPILER_ID MATCHES Clang)
    message(FATAL_ERROR "The Foundation side is built with clang; ${CMAKE_OBJCXX_COMPILER} is none")
endif()

find_path(GNUSTEP_INCLUDE_FOLDER Foundation/Foundation.h PATH_SUFFIXES GNUstep REQUIRED)
find_library(GNUSTEP_BASE_LIBRARY gnustep-base REQUIRED)

# The headers of gcc's runtime are in a directory of gcc's own headers, which clang must not search: so it gets a link
# to them alone.
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
# How GNUstep itself was built, which its headers must know, as `gnustep-config --objc-flags` reports it.
target_compile_definitions(zspace_foundation INTERFACE
    GNUSTEP GNUSTEP_BASE_LIBRARY=1 GNU_RUNTIME=1 _NATIVE_OBJC_EXCEPTIONS)

# Sanitizers report faults of the libraries themselves. Each program contains the list of reports to suppress: a source
# among the link options is compiled on the way.
if(ZSPACE_SANITIZE)
    file(READ "${PROJECT_SOURCE_DIR}/tests/sanitizers/gnustep-leaks.supp" leaks)
    file(READ "${PROJECT_SOURCE_DIR}/tests/sanitizers/gnustep-threads.supp" threads)
    configure_file("${CMAKE_CURRENT_LIST_DIR}/ZSpaceSuppressions.cpp.in"
        "${PROJECT_BINARY_DIR}/ZSpaceSuppressions.cpp" @ONLY)
    add_link_options("${PROJECT_BINARY_DIR}/ZSpaceSuppressions.cpp")
endif()
