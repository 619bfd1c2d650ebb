# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# The version has one source, project() in CMakeLists.txt. ZSpace/Version.h repeats it, so that the header can be used
# without a build, and so does the port for vcpkg, which cannot compute it; configuring fails if they differ.
file(READ "${PROJECT_SOURCE_DIR}/ZSpace/Version.h" header)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/ZSpace/Version.h")
foreach(line IN ITEMS
        "MAJOR ${PROJECT_VERSION_MAJOR}"
        "MINOR ${PROJECT_VERSION_MINOR}"
        "PATCH ${PROJECT_VERSION_PATCH}"
        "STRING \"${PROJECT_VERSION}\"")
    string(FIND "${header}" "#define ZSPACE_VERSION_${line}\n" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "The project's version is ${PROJECT_VERSION}, and ZSpace/Version.h does not say "
            "\"#define ZSPACE_VERSION_${line}\"")
    endif()
endforeach()
unset(header)
file(READ "${PROJECT_SOURCE_DIR}/packaging/vcpkg/zspace/vcpkg.json" port)
string(JSON port GET "${port}" version)
if(NOT port STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR "The project's version is ${PROJECT_VERSION}, and packaging/vcpkg/zspace/vcpkg.json says ${port}")
endif()
unset(port)
