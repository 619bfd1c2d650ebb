# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# An overlay port that builds the repository that contains it. Not run by its authors.
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
vcpkg_cmake_configure(SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS -DZSPACE_BUILD_PROGRAM=OFF -DZSPACE_BUILD_TESTS=OFF -DZSPACE_BUILD_EXAMPLES=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME ZSpace CONFIG_PATH lib/cmake/ZSpace)
vcpkg_fixup_pkgconfig()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
