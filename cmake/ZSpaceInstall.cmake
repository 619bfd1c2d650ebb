# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Installs four components:
#   program        CdkRSUninstaller, its manual page, files for administrators, and what its licenses require
#   runtime        libzspace.so.1, if the library is shared
#   development    the headers, the library to link to, and what find_package and pkg-config read
#   documentation  the README and the pages it leads to
# CPack makes packages of them: see ZSpacePackages.cmake.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

find_program(ZSPACE_GZIP gzip)
set(ZSPACE_CMAKE_DIRECTORY "${CMAKE_INSTALL_LIBDIR}/cmake/ZSpace")

if(ZSPACE_BUILD_PROGRAM)
    install(TARGETS CdkRSUninstaller COMPONENT program)
    # Systems with gzip keep their manual pages compressed.
    set(page "${PROJECT_SOURCE_DIR}/packaging/man/CdkRSUninstaller.8")
    if(ZSPACE_GZIP)
        file(COPY "${page}" DESTINATION "${PROJECT_BINARY_DIR}")
        execute_process(COMMAND "${ZSPACE_GZIP}" -9 -n -f CdkRSUninstaller.8 WORKING_DIRECTORY "${PROJECT_BINARY_DIR}"
            COMMAND_ERROR_IS_FATAL ANY)
        set(page "${PROJECT_BINARY_DIR}/CdkRSUninstaller.8.gz")
    endif()
    install(FILES "${page}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man8" COMPONENT program)
    set(fleet "${CMAKE_INSTALL_DATADIR}/CdkRSUninstaller/fleet")
    install(PROGRAMS examples/fleet/check-removed DESTINATION "${fleet}" COMPONENT program)
    install(FILES examples/fleet/logrotate.conf examples/fleet/newsyslog.conf examples/fleet/rsyslog-central.conf
        examples/fleet/rsyslog-machine.conf examples/fleet/uninstall.yml
        DESTINATION "${fleet}" COMPONENT program)
    install(FILES LICENSE packaging/THIRD-PARTY-NOTICES.md DESTINATION "${CMAKE_INSTALL_DATADIR}/licenses/CdkRSUninstaller"
        COMPONENT program)
endif()

# INCLUDES is for users with CMake before 3.23, which does not know file sets.
install(TARGETS zspace EXPORT ZSpaceTargets
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
# Bridges to other libraries; not part of the verified header set, since they compile only where those are installed.
install(FILES ZSpace/interop/Fmt.h ZSpace/interop/StdFormat.h
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/ZSpace/interop" COMPONENT development)
# For debuggers, to show our classes; see docs/debuggers.md. GDB looks for a script named after a shared library.
install(FILES debugger/zspace_gdb.py debugger/zspace_kinds.py debugger/zspace_lldb.py
    DESTINATION "${CMAKE_INSTALL_DATADIR}/zspace/debugger" COMPONENT development)
if(BUILD_SHARED_LIBS AND NOT APPLE)
    install(FILES debugger/libzspace-gdb.py
        DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}"
        RENAME "$<TARGET_FILE_NAME:zspace>-gdb.py" COMPONENT development)
endif()
install(EXPORT ZSpaceTargets NAMESPACE ZSpace:: DESTINATION "${ZSPACE_CMAKE_DIRECTORY}" COMPONENT development)

configure_package_config_file(cmake/ZSpaceConfig.cmake.in "${PROJECT_BINARY_DIR}/ZSpaceConfig.cmake"
    INSTALL_DESTINATION "${ZSPACE_CMAKE_DIRECTORY}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZSpaceConfigVersion.cmake"
    VERSION "${PROJECT_VERSION}" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/ZSpaceConfig.cmake" "${PROJECT_BINARY_DIR}/ZSpaceConfigVersion.cmake"
    DESTINATION "${ZSPACE_CMAKE_DIRECTORY}" COMPONENT development)

# Every directory in zspace.pc is relative to the file, so that the installed tree can be moved. A directory that was
# given as an absolute path stays.
set(pkgconfig_directory "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(ZSPACE_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH up "/${pkgconfig_directory}" "/")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(ZSPACE_PC_PREFIX "\${pcfiledir}/${up}")
endif()
foreach(directory IN ITEMS LIBDIR INCLUDEDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${directory}}")
        set(ZSPACE_PC_${directory} "${CMAKE_INSTALL_${directory}}")
    else()
        set(ZSPACE_PC_${directory} "\${prefix}/${CMAKE_INSTALL_${directory}}")
    endif()
endforeach()

# The library's own dependencies: users of a static library must link to them.
set(needed "")
foreach(library IN LISTS ZSPACE_FOUNDATION_LIBRARIES)
    if(NOT library MATCHES "^-")
        string(PREPEND library "-l")
    endif()
    string(APPEND needed " ${library}")
endforeach()
set(ZSPACE_PC_LIBS "-L\${libdir} -lzspace -pthread")
if(BUILD_SHARED_LIBS)
    set(ZSPACE_PC_LIBS_PRIVATE "${needed}")
else()
    string(APPEND ZSPACE_PC_LIBS "${needed}")
    set(ZSPACE_PC_LIBS_PRIVATE "")
endif()
configure_file(cmake/zspace.pc.in "${PROJECT_BINARY_DIR}/zspace.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/zspace.pc" DESTINATION "${pkgconfig_directory}" COMPONENT development)

install(FILES README.md CHANGELOG.md LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN reference EXCLUDE)

if(PROJECT_IS_TOP_LEVEL)
    include(ZSpacePackages)
endif()
