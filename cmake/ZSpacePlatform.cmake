# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Which side of `platform/` is built: "portable" has its own strings, lists and tasks; "foundation" uses Foundation,
# which is Apple's on macOS and GNUstep's elsewhere.
if(APPLE)
    set(default_platform foundation)
else()
    set(default_platform portable)
endif()
set(ZSPACE_PLATFORM ${default_platform} CACHE STRING "Side of platform/ to build: portable or foundation")
set_property(CACHE ZSPACE_PLATFORM PROPERTY STRINGS portable foundation)
if(NOT ZSPACE_PLATFORM MATCHES "^(portable|foundation)$")
    message(FATAL_ERROR "ZSPACE_PLATFORM is \"${ZSPACE_PLATFORM}\"; expected portable or foundation")
endif()
if(APPLE AND ZSPACE_PLATFORM STREQUAL portable)
    message(FATAL_ERROR "ZSPACE_PLATFORM=portable is for hosts without Foundation; macOS has its own")
endif()

# zspace_foundation: what the files on Foundation are compiled with and linked to.
if(ZSPACE_PLATFORM STREQUAL foundation)
    if(NOT CMAKE_OBJCXX_COMPILER)
        if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
            set(CMAKE_OBJCXX_COMPILER "${CMAKE_CXX_COMPILER}") # one compiler for both languages
        else()
            find_program(CMAKE_OBJCXX_COMPILER clang++ REQUIRED)
        endif()
    endif()
    enable_language(OBJCXX)
    add_library(zspace_foundation INTERFACE)
    if(APPLE)
        set(ZSPACE_FOUNDATION_LIBRARIES "-framework Foundation" "-framework CoreFoundation" objc)
    else()
        include(ZSpaceGNUstep)
    endif()
    # Objects are retained and released explicitly: see platform/foundation/OwnershipFoundation.h.
    target_compile_options(zspace_foundation INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:-fno-objc-arc>)
endif()
