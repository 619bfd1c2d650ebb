# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Installs the program, the library, its headers and what finds them from CMake and pkg-config.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ZSPACE_CMAKE_FOLDER "${CMAKE_INSTALL_LIBDIR}/cmake/ZSpace")

install(TARGETS CdkRSUninstaller)
install(TARGETS zspace EXPORT ZSpaceTargets
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
# Bridges to other libraries; not part of the verified header set, since they compile only where those are installed.
install(FILES ZSpace/interop/Fmt.h ZSpace/interop/StdFormat.h
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/ZSpace/interop")
install(EXPORT ZSpaceTargets NAMESPACE ZSpace:: DESTINATION "${ZSPACE_CMAKE_FOLDER}")

configure_package_config_file(cmake/ZSpaceConfig.cmake.in "${PROJECT_BINARY_DIR}/ZSpaceConfig.cmake"
    INSTALL_DESTINATION "${ZSPACE_CMAKE_FOLDER}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZSpaceConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/ZSpaceConfig.cmake" "${PROJECT_BINARY_DIR}/ZSpaceConfigVersion.cmake"
    DESTINATION "${ZSPACE_CMAKE_FOLDER}")

# The library is static, so whoever links to it links to what it stands on.
set(ZSPACE_PC_LIBRARIES "-pthread")
foreach(library IN LISTS ZSPACE_FOUNDATION_LIBRARIES)
    if(NOT library MATCHES "^-")
        string(PREPEND library "-l")
    endif()
    string(PREPEND ZSPACE_PC_LIBRARIES "${library} ")
endforeach()
configure_file(cmake/zspace.pc.in "${PROJECT_BINARY_DIR}/zspace.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/zspace.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
