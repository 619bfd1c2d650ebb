# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# What a shared library exports is listed in packaging/abi/zspace.map, in the form that the linkers of Linux read. The
# linker of macOS reads globs over compiler-made names, one per line, which are derived from that list here. As a script:
#   cmake -D LIST=<the list> -D OUTPUT=<file> -P ZSpaceExports.cmake

# zspace_mangle(<variable> <pattern>): the globs that stand for a pattern over C++ names.
function(zspace_mangle variable pattern)
    set(kinds N NK ZN ZNK) # functions and variables, functions of const objects, static variables of both
    set(table "vtable?for?=TVN" "VTT?for?=TTN" "typeinfo?name?for?=TSN" "typeinfo?for?=TIN"
        "virtual?thunk?to?=Tv0_n*_N Tv0_n*_NK" "guard?variable?for?=GVN GVZN GVZNK")
    foreach(row IN LISTS table)
        string(REGEX MATCH "^([^=]*)=(.*)$" row "${row}")
        string(FIND "${pattern}" "${CMAKE_MATCH_1}" position)
        if(position EQUAL 0)
            string(REPLACE " " ";" kinds "${CMAKE_MATCH_2}")
            break()
        endif()
    endforeach()
    # Compiler-made names of functions do not begin with what they return.
    string(REGEX REPLACE "^.*[?]" "" name "${pattern}")

    string(REPLACE "::" ";" scopes "${name}")
    list(POP_BACK scopes last)
    set(prefix "")
    foreach(scope IN LISTS scopes)
        string(LENGTH "${scope}" length)
        string(APPEND prefix "${length}${scope}")
    endforeach()
    # A name follows its length, which is unknown for the beginning of a name.
    if(last STREQUAL "*")
        set(endings "*")
    elseif(last MATCHES "[*]$")
        set(endings "<0-9>${last};<0-9><0-9>${last}") # brackets would combine elements of lists
    else() # a variable
        set(kinds N)
        string(LENGTH "${last}" length)
        set(endings "${length}${last}E")
    endif()

    if(prefix STREQUAL "") # outside of any namespace
        list(TRANSFORM endings PREPEND "__Z" OUTPUT_VARIABLE globs)
    else()
        set(globs "")
        foreach(kind IN LISTS kinds)
            foreach(ending IN LISTS endings)
                list(APPEND globs "__Z${kind}${prefix}${ending}")
            endforeach()
        endforeach()
    endif()
    set(${variable} "${globs}" PARENT_SCOPE)
endfunction()

# zspace_write_macos_exports(<list> <file>)
function(zspace_write_macos_exports list file)
    file(STRINGS "${list}" lines)
    set(language C)
    set(all "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^ *local:")
            break()
        elseif(line MATCHES "extern \"C\\+\\+\"")
            set(language C++)
        elseif(line MATCHES "^ *([A-Za-z][^;]*);")
            if(language STREQUAL C)
                set(globs "_${CMAKE_MATCH_1}")
            else()
                zspace_mangle(globs "${CMAKE_MATCH_1}")
            endif()
            list(APPEND all ${globs})
        endif()
    endforeach()
    list(SORT all)
    list(REMOVE_DUPLICATES all)
    list(JOIN all "\n" all)
    string(REPLACE "<0-9>" "[0-9]" all "${all}")
    file(WRITE "${file}" "${all}\n")
endfunction()

# zspace_limit_exports(<target>): makes a shared library export what the list names.
function(zspace_limit_exports target)
    set(list "${PROJECT_SOURCE_DIR}/packaging/abi/zspace.map")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${list}")
    if(APPLE)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${list}")
        zspace_write_macos_exports("${list}" "${PROJECT_BINARY_DIR}/zspace.exports")
        target_link_options(${target} PRIVATE "LINKER:-exported_symbols_list,${PROJECT_BINARY_DIR}/zspace.exports")
    else()
        target_link_options(${target} PRIVATE "LINKER:--version-script=${list}")
    endif()
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    zspace_write_macos_exports("${LIST}" "${OUTPUT}")
endif()
