# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Warnings are errors for us and invisible to users: they are on only in the top project.
function(zspace_private_flags target)
    if(PROJECT_IS_TOP_LEVEL)
        target_compile_options(${target} PRIVATE
            -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
    endif()
endfunction()

# Our functions are never replaced at load time: with this option, position-independent code may inline them and call
# them directly. On macOS that is the default.
if(NOT APPLE)
    add_compile_options(-fno-semantic-interposition)
endif()

# A number read from text is rounded after each multiplication and each addition, also on processors that can do both at
# once, like those of arm64.
add_compile_options(-ffp-contract=off)

# std::filesystem requires macOS 10.15: the product does without it, the tests use it.
if(APPLE AND NOT DEFINED ZSPACE_TEST_TARGET)
    set(ZSPACE_TEST_TARGET -mmacosx-version-min=10.15)
endif()

# For the directories of what is run here but not shipped: tests, fuzz targets and benchmarks.
macro(zspace_flags_for_tests)
    add_compile_options(${ZSPACE_TEST_TARGET})
    add_link_options(${ZSPACE_TEST_TARGET})
endmacro()

# Sanitizers and coverage must reach every object of a build, so they are set for the whole tree.
if(ZSPACE_SANITIZE)
    add_compile_options(-fsanitize=${ZSPACE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ZSPACE_SANITIZE})
endif()
if(ZSPACE_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic -O0) # threads count, too
    add_link_options(--coverage)
endif()
