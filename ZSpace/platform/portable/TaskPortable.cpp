// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/portable/ObjectsPortable.h"
#include "ZSpace/platform/portable/SpawnPortable.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::NS {

namespace {

/// The changes to descriptors in the child before its program starts.
class FileActions {
public:
    FileActions() { note(posix_spawn_file_actions_init(&m_actions)); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }

    void redirect(int descriptor, const FileHandle& file)
    {
        if (file)
            note(posix_spawn_file_actions_addopen(&m_actions, descriptor, file.native()->m_path, O_RDWR, 0));
    }
    void duplicate(int descriptor, int copy)
    {
        note(posix_spawn_file_actions_adddup2(&m_actions, descriptor, copy));
    }
    void closeAllFrom(int descriptor) { note(Host::addCloseFrom(m_actions, descriptor)); }
    /// The error number of the first call that failed; 0 if none did.
    [[nodiscard]] int error() const noexcept { return m_error; }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const noexcept { return &m_actions; }

private:
    void note(int error) noexcept
    {
        if (m_error == 0)
            m_error = error;
    }

    posix_spawn_file_actions_t m_actions{};
    int m_error = 0;
};

/// The argument vector of the child, beginning with the launch path. Points into the task's strings.
std::vector<char*> argumentVector(const NSTask& task)
{
    std::vector<char*> vector;
    vector.push_back(task.m_launchPath.native()->m_utf8.data());
    for (std::size_t i = 0; i < task.m_arguments.count(); ++i)
        vector.push_back(task.m_arguments.objectAtIndex(i).native()->m_utf8.data());
    vector.push_back(nullptr);
    return vector;
}

/// @return 0, or the error number. The C library reports a failed `exec` here, too.
int spawn(const NSTask& task)
{
    FileActions actions;
    actions.redirect(STDOUT_FILENO, task.m_standardOutput);
    if (task.m_standardError && task.m_standardError.native() == task.m_standardOutput.native())
        actions.duplicate(STDOUT_FILENO, STDERR_FILENO);
    else
        actions.redirect(STDERR_FILENO, task.m_standardError);
    actions.closeAllFrom(STDERR_FILENO + 1);
    if (actions.error() != 0)
        return actions.error();
    const std::vector<char*> arguments = argumentVector(task);
    pid_t child = 0;
    return posix_spawn(&child, arguments.front(), actions.get(), nullptr, arguments.data(), environ);
}

/// Whether the child cannot have opened this file as one of its standard streams.
bool cannotBeOpened(const FileHandle& file)
{
    if (!file)
        return false;
    const int descriptor = open(file.native()->m_path, O_RDWR | O_CLOEXEC);
    if (descriptor >= 0)
        close(descriptor);
    return descriptor < 0;
}

/// A hint at the cause where the system's message alone would mislead; otherwise empty.
std::string hintFor(const NSTask& task, int error)
{
    for (const FileHandle& file : {task.m_standardOutput, task.m_standardError}) {
        if (cannotBeOpened(file))
            return std::string(": its output could not be sent to ") + file.native()->m_path;
    }
    struct stat status { };
    if (stat(task.m_launchPath.UTF8String(), &status) != 0)
        return {};
    if (S_ISDIR(status.st_mode))
        return ": this is a folder";
    if (error == ENOENT)
        return ": the file exists, but the interpreter that it asks for does not";
    if (error == EACCES && access(task.m_launchPath.UTF8String(), X_OK) != 0)
        return ": the file may not be executed";
    return {};
}

[[noreturn]] void raiseLaunchFailure(const NSTask& task, int error)
{
    Exception::raise("NSInvalidArgumentException",
        "Couldn't launch \"" + task.m_launchPath.native()->m_utf8 + "\": " + std::strerror(error) + " (error "
            + std::to_string(error) + ")" + hintFor(task, error));
}

} // namespace

Task::Task()
    : Handle(new NSTask)
{
}

void Task::setLaunchPath(const String& path)
{
    native()->m_launchPath = path;
}

void Task::setArguments(const Array& arguments)
{
    native()->m_arguments = arguments;
}

void Task::setStandardOutput(const FileHandle& file)
{
    native()->m_standardOutput = file;
}

void Task::setStandardError(const FileHandle& file)
{
    native()->m_standardError = file;
}

String Task::launchPath() const
{
    return native()->m_launchPath;
}

Array Task::arguments() const
{
    return native()->m_arguments;
}

void Task::launch()
{
    const NSTask& task = *native();
    if (!task.m_launchPath || !*task.m_launchPath.UTF8String()) {
        Exception::raise("NSInvalidArgumentException",
            task.m_launchPath ? "Couldn't launch \"\": the launch path is empty"
                              : "Couldn't launch a task: no launch path was set");
    }
    if (const int error = spawn(task))
        raiseLaunchFailure(task, error);
}

} // namespace ZSpace::NS
