// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/foundation/RaisingFoundation.h"

#include <atomic>
#include <cstdlib>
#include <unistd.h>

namespace ZSpace::NS {

namespace {

/// GNUstep starts children with `vfork`, and a child that cannot become its program calls `exit`: it would
/// run this process's exit handlers, on this process's memory. The handler that was registered last runs
/// first, and this one lets such a child go no further. It lasts for one start.
class ExitHandlersKeptFromChildren {
public:
    ExitHandlersKeptFromChildren()
    {
        s_launcher = getpid();
        ++s_starts;
        std::atexit(endChild);
    }
    ExitHandlersKeptFromChildren(const ExitHandlersKeptFromChildren&) = delete; // it counts starts
    ExitHandlersKeptFromChildren& operator=(const ExitHandlersKeptFromChildren&) = delete;
    ~ExitHandlersKeptFromChildren() { --s_starts; }

private:
    static void endChild()
    {
        if (s_starts > 0 && getpid() != s_launcher)
            _exit(EXIT_FAILURE);
    }

    static inline std::atomic<pid_t> s_launcher = 0;
    static inline std::atomic<int> s_starts = 0;
};

} // namespace

FileHandle FileHandle::fileHandleWithNullDevice()
{
    return adopt(detail::raising([] { return detail::shared([NSFileHandle fileHandleWithNullDevice]); }));
}

Task::Task()
    : Handle(detail::raising([] { return detail::handedOut([[NSTask alloc] init]); }))
{
}

void Task::setLaunchPath(const String& path)
{
    detail::raising([&] { [native() setLaunchPath:path.native()]; });
}

void Task::setArguments(const Array& arguments)
{
    detail::raising([&] { [native() setArguments:arguments.native()]; });
}

void Task::setStandardOutput(const FileHandle& file)
{
    detail::raising([&] { [native() setStandardOutput:file.native()]; });
}

void Task::setStandardError(const FileHandle& file)
{
    detail::raising([&] { [native() setStandardError:file.native()]; });
}

String Task::launchPath() const
{
    return String::adopt(detail::raising([&] { return detail::shared([native() launchPath]); }));
}

Array Task::arguments() const
{
    return Array::adopt(detail::raising([&] { return detail::shared([native() arguments]); }));
}

void Task::launch()
{
    const ExitHandlersKeptFromChildren kept;
    detail::raising([&] { [native() launch]; });
}

} // namespace ZSpace::NS
