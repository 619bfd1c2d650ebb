# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

include(GoogleTest)
set(ZSPACE_GTEST_SOURCE "" CACHE PATH
    "GoogleTest's sources, to be built with this build's own compiler and library; empty takes the installed one")
if(ZSPACE_GTEST_SOURCE)
    set(INSTALL_GTEST OFF)
    add_subdirectory("${ZSPACE_GTEST_SOURCE}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
else()
    find_package(GTest REQUIRED)
endif()

# zspace_test_flags(<target>): the flags that all test programs are compiled with, so that one precompiled header fits all.
function(zspace_test_flags target)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    zspace_private_flags(${target})
    # The tests need no speed, and compile faster without optimization.
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O1> $<$<CONFIG:RelWithDebInfo>:-O0>)
    # g++ 12 reports overflows that do not exist where std::string's `+` is inlined.
    target_compile_options(${target} PRIVATE
        "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread>")
    # Tests request more memory than exists on purpose, which g++ 14 reports.
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13)
        target_compile_options(${target} PRIVATE
            $<$<COMPILE_LANGUAGE:CXX>:-Wno-alloc-size> $<$<COMPILE_LANGUAGE:CXX>:-Wno-alloc-size-larger-than>)
    endif()
endfunction()

# zspace_add_tests(<target> <source>...): one test program over GoogleMock; each TEST becomes a test of ctest.
function(zspace_add_tests target)
    add_executable(${target} ${ARGN})
    target_link_libraries(${target} PRIVATE ZSpace::zspace test_main)
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
    zspace_test_flags(${target})
    target_precompile_headers(${target} REUSE_FROM test_main)
    # In ctest a test is called <subject>.<suite>.<test>: short enough for one line of a terminal.
    string(REGEX REPLACE "_tests$" "" prefix ${target})
    gtest_discover_tests(${target} TEST_PREFIX "${prefix}."
        DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 180)
endfunction()

# zspace_add_dangling_tests(<subject> <use>...): checks that clang warns of each use in DanglingPointers.cpp, a pointer
# or view that outlives a temporary, and not of the rest of that file. Whatever compiles everything else, clang compiles
# this file.
find_program(ZSPACE_CLANG clang++)
function(zspace_add_dangling_tests subject)
    if(NOT ZSPACE_CLANG)
        return()
    endif()
    foreach(use IN ITEMS NOTHING ${ARGN})
        add_test(NAME ${subject}.dangling.${use}
            COMMAND "${ZSPACE_CLANG}" -std=c++20 -fsyntax-only -Werror -I "${PROJECT_SOURCE_DIR}" -D${use}
                "${CMAKE_CURRENT_SOURCE_DIR}/DanglingPointers.cpp")
        if(NOT use STREQUAL NOTHING)
            set_tests_properties(${subject}.dangling.${use} PROPERTIES PASS_REGULAR_EXPRESSION "-Wdangling")
        endif()
    endforeach()
endfunction()
