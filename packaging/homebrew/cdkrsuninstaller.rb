# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT

# Not run by its authors. HOMEBREW_ZSPACE_REPOSITORY is the address of the repository.
class Cdkrsuninstaller < Formula
  desc "Removes an installed remote-support service"
  license "MIT"
  head ENV.fetch("HOMEBREW_ZSPACE_REPOSITORY"), using: :git, branch: "main"

  depends_on "cmake" => :build
  depends_on "ninja" => :build

  def install
    system "cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DZSPACE_BUILD_TESTS=OFF",
           "-DZSPACE_BUILD_EXAMPLES=OFF", *std_cmake_args
    system "cmake", "--build", "build"
    system "cmake", "--install", "build"
  end

  test do
    system "pkg-config", "--exists", "zspace"
  end
end
