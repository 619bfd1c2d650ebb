# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# zspace_add_note(<target> <name>): writes the name and the project's version into a program or a shared library, where
# `readelf --notes` finds them on Linux, and `what` on macOS.
function(zspace_add_note target name)
    if(APPLE)
        set(format MachO)
    else()
        set(format Elf)
    endif()
    set(source "${PROJECT_BINARY_DIR}/notes/${name}.cpp")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/ZSpaceNote${format}.cpp.in" "${source}" @ONLY)
    target_sources(${target} PRIVATE "${source}")
endfunction()
