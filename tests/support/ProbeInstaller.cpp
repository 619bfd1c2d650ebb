// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Replaces the service's installer in tests. Writes how it was started to the file "report" in the service's
// directory, which it finds through its argument 0, prints some noise, and keeps running while that directory
// contains a file "linger". Then it writes "ended".

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// Called before any file is opened, so that the report shows exactly the inherited descriptors.
std::string describeDescriptors()
{
    std::string lines;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        std::error_code error;
        const fs::path target = fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error);
        if (!error)
            lines += "descriptor " + std::to_string(descriptor) + ": " + target.string() + "\n";
    }
    return lines;
}

std::string signalLines()
{
    std::string lines;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("SigBlk") || line.starts_with("SigIgn"))
            lines += line + "\n";
    }
    return lines;
}

/// The directory that contains "bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller".
fs::path serviceFolder(const fs::path& installer)
{
    return (installer / "../../../../..").lexically_normal();
}

} // namespace

int main(int argc, char** argv)
{
    std::string report = describeDescriptors();
    for (int i = 0; i < argc; ++i)
        report += "argument " + std::to_string(i) + ": " + argv[i] + "\n";
    report += signalLines();
    report += "folder: " + fs::current_path().string() + "\n";
    report += "group: " + std::to_string(getpgrp()) + "\n";
    report += "session: " + std::to_string(getsid(0)) + "\n";
    const char* const variable = std::getenv("ZSPACE_TEST_VARIABLE");
    report += std::string("variable: ") + (variable ? variable : "") + "\n";

    std::printf("noise on standard output\n");
    std::fprintf(stderr, "noise on standard error\n");
    std::fflush(stdout);

    const fs::path service = serviceFolder(argv[0]);
    std::ofstream(service / "report.unfinished") << report;
    fs::rename(service / "report.unfinished", service / "report");
    for (int i = 0; i < 1000 && fs::exists(service / "linger"); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::ofstream(service / "ended") << "ended\n";
    return 3; // the launcher must ignore it
}
