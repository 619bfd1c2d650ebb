# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# `cpack --config build/release/CPackConfig.cmake` makes a .tar.gz of everything; on Debian, one .deb for each of program,
# runtime (if the library is shared) and development as well; and on macOS an installer package (.pkg).

set(CPACK_PACKAGE_NAME zspace)
set(CPACK_PACKAGE_VENDOR "The ZSpace authors")
set(CPACK_PACKAGE_CONTACT "The ZSpace authors <zspace@localhost.localdomain>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ${BUILD_SHARED_LIBS}) # call stacks of the program are named by its own symbols
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR TGZ)
if(BUILD_SHARED_LIBS)
    set(linkage shared)
else()
    set(linkage static)
endif()
set(CPACK_PACKAGE_FILE_NAME
    "zspace-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}-${linkage}")
find_program(ZSPACE_DPKG dpkg)
if(ZSPACE_DPKG)
    list(APPEND CPACK_GENERATOR DEB)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL development)
if(ZSPACE_BUILD_PROGRAM)
    list(APPEND CPACK_COMPONENTS_ALL program)
endif()
if(BUILD_SHARED_LIBS)
    list(APPEND CPACK_COMPONENTS_ALL runtime)
endif()
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME cdkrsuninstaller)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzspace1)
# Debian's policy for a package with a shared library.
if(BUILD_SHARED_LIBS)
    file(WRITE "${PROJECT_BINARY_DIR}/debian/shlibs" "libzspace 1 libzspace1 (>= ${PROJECT_VERSION})\n")
    file(WRITE "${PROJECT_BINARY_DIR}/debian/triggers" "activate-noawait ldconfig\n")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
        "${PROJECT_BINARY_DIR}/debian/shlibs;${PROJECT_BINARY_DIR}/debian/triggers")
endif()
# The development packages contain the same headers, so only one of them can be installed.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
if(BUILD_SHARED_LIBS)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzspace-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libzspace1 (= ${PROJECT_VERSION})")
else()
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzspace-static-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_PROVIDES libzspace-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_CONFLICTS libzspace-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_REPLACES libzspace-dev)
endif()
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "Removes an installed remote-support service
 Starts the service's own installer in uninstall mode, logs what it did and
 exits at once. Takes no arguments and needs root.")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "C++20 library of strings, values, streams and logging
 Shared library of ZSpace.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "C++20 library of strings, values, streams and logging - development
 Headers of ZSpace, the library to link to, and what CMake and pkg-config
 need to find them.")

# Debian's policy for every package: a changelog and a copyright file under its own name. The time is that of the
# release and not of the build, so that builds are reproducible.
if(ZSPACE_DPKG AND ZSPACE_GZIP)
    if(DEFINED ENV{SOURCE_DATE_EPOCH})
        string(TIMESTAMP ZSPACE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
    else()
        set(ZSPACE_DATE "Sat, 21 Nov 2026 00:00:00 +0000")
    endif()
    foreach(component IN LISTS CPACK_COMPONENTS_ALL)
        string(TOUPPER ${component} name)
        set(package "${CPACK_DEBIAN_${name}_PACKAGE_NAME}")
        set(directory "${PROJECT_BINARY_DIR}/debian/${package}")
        configure_file(packaging/debian/changelog.in "${directory}/changelog" @ONLY)
        execute_process(COMMAND "${ZSPACE_GZIP}" -9 -n -k -f changelog WORKING_DIRECTORY "${directory}"
            COMMAND_ERROR_IS_FATAL ANY)
        install(FILES packaging/debian/copyright "${directory}/changelog.gz"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
    endforeach()
    if(ZSPACE_BUILD_PROGRAM)
        install(FILES packaging/debian/cdkrsuninstaller.lintian-overrides
            DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME cdkrsuninstaller COMPONENT program)
    endif()
endif()

# The installer of macOS shows these files, whose names must end in .txt.
if(APPLE)
    list(APPEND CPACK_GENERATOR productbuild)
    set(CPACK_PRODUCTBUILD_IDENTIFIER com.coraldesk.zspace)
    configure_file(LICENSE "${PROJECT_BINARY_DIR}/installer/LICENSE.txt" COPYONLY)
    configure_file(packaging/macos/installer.txt "${PROJECT_BINARY_DIR}/installer/installer.txt" COPYONLY)
    set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_BINARY_DIR}/installer/LICENSE.txt")
    set(CPACK_RESOURCE_FILE_README "${PROJECT_BINARY_DIR}/installer/installer.txt")
    set(CPACK_RESOURCE_FILE_WELCOME "${CPACK_RESOURCE_FILE_README}")
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr/local)
endif()
include(CPack)
