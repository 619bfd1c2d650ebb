# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Mitigations for what is shipped, the same as Debian's: the program runs as root, and the library in other programs.
# tests/app checks the binaries for them. Sanitized and instrumented builds are for tests and do without.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

# On macOS, executables are position-independent, data is not executable and the standard library's calls are checked
# without further options.
set(ZSPACE_HARDENING_OPTIONS)
set(ZSPACE_HARDENING_LINK_OPTIONS)
if(NOT ZSPACE_SANITIZE AND NOT ZSPACE_COVERAGE)
    set(CMAKE_REQUIRED_FLAGS -Werror) # clang accepts options that do nothing on a host with a warning
    foreach(option IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection)
        string(MAKE_C_IDENTIFIER "ZSPACE_HAS${option}" has)
        check_cxx_compiler_flag(${option} ${has})
        if(${has})
            list(APPEND ZSPACE_HARDENING_OPTIONS ${option})
        endif()
    endforeach()
    unset(CMAKE_REQUIRED_FLAGS)
    # Needs an optimizing build. Some compilers have another level built in.
    list(APPEND ZSPACE_HARDENING_OPTIONS
        "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>" "$<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>")
    if(NOT APPLE)
        set(ZSPACE_HARDENING_LINK_OPTIONS -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    endif()
endif()

# zspace_harden(<target>): compiles a library or program with these options, and links it with them if it is linked. The
# code is position-independent, too, but the target's own options decide whether it is linked statically.
function(zspace_harden target)
    target_compile_options(${target} PRIVATE ${ZSPACE_HARDENING_OPTIONS})
    get_target_property(type ${target} TYPE)
    if(NOT type STREQUAL STATIC_LIBRARY)
        set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
        target_link_options(${target} PRIVATE ${ZSPACE_HARDENING_LINK_OPTIONS})
    endif()
endfunction()
