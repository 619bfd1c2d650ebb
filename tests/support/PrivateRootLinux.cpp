// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/Host.h"
#include "tests/support/PrivateRoot.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sched.h>
#include <stdexcept>
#include <sys/mount.h>
#include <system_error>
#include <unistd.h>

namespace ZSpace::Testing {

namespace fs = std::filesystem;

namespace {

void require(bool succeeded, const std::string& what)
{
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

/// Moves the process to a new mount namespace. Users other than root need a user namespace for that.
void leaveHostNamespace()
{
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (user == 0) {
        require(unshare(CLONE_NEWNS) == 0, "unshare");
    } else {
        require(unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0, "unshare");
        writeFile("/proc/self/setgroups", "deny");
        writeFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
        writeFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
    }
    require(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "making mounts private");
}

void bindFolder(const fs::path& from, const fs::path& to)
{
    fs::create_directories(to);
    require(mount(from.c_str(), to.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0, to.string());
}

void bindFile(const fs::path& from, const fs::path& to)
{
    std::ofstream(to, std::ios::app).flush();
    require(mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr) == 0, to.string());
}

/// Copies a link and bind-mounts a directory: systems differ in which of these are links into /usr.
void mirror(const fs::path& folder, const fs::path& root)
{
    const fs::path target = root / folder.relative_path();
    if (fs::is_symlink(folder) && !fs::exists(fs::symlink_status(target)))
        fs::copy_symlink(folder, target);
    else if (!fs::is_symlink(folder) && fs::is_directory(folder))
        bindFolder(folder, target);
}

} // namespace

PrivateRoot::PrivateRoot()
{
    for (const char* folder : {"Library", "var/log", "home", "dev", "tmp", "etc"})
        fs::create_directories(path() / folder);
}

bool PrivateRoot::isPossible()
{
    static const bool possible = PrivateRoot().run([] { return 0; }).status == 0;
    return possible;
}

void PrivateRoot::enter(Omit omit) const
{
    const fs::path& root = path();
    leaveHostNamespace();
    for (const char* folder : {"/usr", "/bin", "/sbin", "/lib", "/lib32", "/lib64", "/etc"})
        mirror(folder, root);
    if (!omit.proc)
        bindFolder("/proc", root / "proc");
    for (const char* device : {"/dev/zero", "/dev/full", "/dev/random", "/dev/urandom"})
        bindFile(device, root / (device + 1));
    if (!omit.nullDevice)
        bindFile("/dev/null", root / "dev/null");
    const fs::path build = ZSPACE_BINARY_DIR;
    bindFolder(build, root / build.relative_path());
    require(chroot(root.c_str()) == 0 && chdir("/") == 0, "chroot");
    setenv("HOME", "/home", 1);
    setenv("TMPDIR", "/tmp", 1);
    settleIn("/");
}

Outcome PrivateRoot::run(const std::function<int()>& work, Omit omit) const
{
    return runInChild([&] {
        enter(omit);
        return work();
    });
}

Outcome PrivateRoot::runProgram(const fs::path& program, const std::function<void()>& before, Omit omit,
    const std::vector<std::string>& arguments) const
{
    return run(
        [&] {
            std::vector<char*> vector{const_cast<char*>(program.c_str())};
            for (const std::string& argument : arguments)
                vector.push_back(const_cast<char*>(argument.c_str()));
            vector.push_back(nullptr);
            before();
            execv(program.c_str(), vector.data());
            return 126;
        },
        omit);
}

} // namespace ZSpace::Testing
