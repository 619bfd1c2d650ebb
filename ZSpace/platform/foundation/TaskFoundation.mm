// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/foundation/RaisingFoundation.h"

#ifdef GNUSTEP
#include <cstdlib>
#include <unistd.h>
#endif

#ifdef GNUSTEP
extern "C" {
/// How compilers register the destructor of a thread-local object with glibc.
int __cxa_thread_atexit_impl(void (*destroy)(void*), void* object, void* module);
extern void* __dso_handle __attribute__((visibility("hidden")));
}
#endif

namespace ZSpace::NS {

namespace {

#ifdef GNUSTEP

// GNUstep starts children with `vfork`. A child whose `exec` fails then calls `exit`, which would run this process's
// exit handlers in this process's memory. But `exit` first destroys the thread-local objects of its thread, which such
// a child shares with the starting thread. So a function registered as such a destructor ends exactly that child, and
// leaves exit handlers and the children of other threads alone.

thread_local pid_t t_launcher = 0; // this process's id while this thread starts a child, else 0
thread_local bool t_isRegistered = false;

void endFailedChild(void*)
{
    if (t_launcher == 0 || getpid() == t_launcher)
        return; // an ordinary end of the thread
    t_isRegistered = false; // `exit` has removed the registration from the memory shared with this process
    _exit(EXIT_FAILURE);
}

class StartScope {
public:
    StartScope() noexcept
    {
        if (!t_isRegistered)
            t_isRegistered = __cxa_thread_atexit_impl(endFailedChild, nullptr, &__dso_handle) == 0;
        t_launcher = getpid();
    }
    StartScope(const StartScope&) = delete; // lasts for one start
    StartScope& operator=(const StartScope&) = delete;
    ~StartScope() { t_launcher = 0; }
};

#else

class StartScope { };

#endif

} // namespace

FileHandle FileHandle::fileHandleWithNullDevice()
{
    return adopt(detail::raising([] { return detail::retained([NSFileHandle fileHandleWithNullDevice]); }));
}

Task::Task()
    : Handle(detail::raising([] { return detail::leaked([[NSTask alloc] init]); }))
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
    return String::adopt(detail::raising([&] { return detail::retained([native() launchPath]); }));
}

Array Task::arguments() const
{
    return Array::adopt(detail::raising([&] { return detail::retained([native() arguments]); }));
}

void Task::launch()
{
    [[maybe_unused]] const StartScope scope;
    detail::raising([&] { [native() launch]; });
}

} // namespace ZSpace::NS
