# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

"""Builds the repository that this recipe is a part of (Conan 2). Not run by its authors."""

import os
import re

from conan import ConanFile
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy


class ZSpace(ConanFile):
    name = "zspace"
    license = "MIT"
    description = "Strings, values, streams, files and logging in C++20"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False]}
    default_options = {"shared": False}

    @property
    def _root(self):
        return os.path.join(self.recipe_folder, "..", "..")

    def set_version(self):
        with open(os.path.join(self._root, "CMakeLists.txt"), encoding="utf-8") as file:
            self.version = re.search(r"project\(ZSpace VERSION ([0-9.]+)", file.read()).group(1)

    def export_sources(self):
        for pattern in ("CMakeLists.txt", "LICENSE", "*.md", "ZSpace/*", "app/*", "cmake/*", "docs/*", "packaging/*"):
            copy(self, pattern, self._root, self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def validate(self):
        check_min_cppstd(self, 20)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.variables["ZSPACE_BUILD_PROGRAM"] = False
        toolchain.variables["ZSPACE_BUILD_TESTS"] = False
        toolchain.variables["ZSPACE_BUILD_EXAMPLES"] = False
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "LICENSE", self.source_folder, os.path.join(self.package_folder, "licenses"))

    def package_info(self):
        self.cpp_info.libs = ["zspace"]
        self.cpp_info.set_property("cmake_file_name", "ZSpace")
        self.cpp_info.set_property("cmake_target_name", "ZSpace::zspace")
        if self.settings.os == "Linux":
            self.cpp_info.system_libs = ["pthread"]
            self.cpp_info.defines = ["ZSPACE_ON_PORTABLE=1"]
        elif self.settings.os == "Macos":
            self.cpp_info.frameworks = ["Foundation", "CoreFoundation"]
            self.cpp_info.system_libs = ["objc"]
            self.cpp_info.defines = ["ZSPACE_ON_FOUNDATION=1"]
