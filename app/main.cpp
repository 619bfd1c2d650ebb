// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Removes the installed remote-support service: starts the service's own installer in its uninstall mode,
// logs that, and exits at once with status 0, whether or not the start succeeded.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/platform/Foundation.h"
#include "ZSpace/platform/Process.h"

#include <new>

namespace NS = ZSpace::NS;

namespace {

void logStart(const NS::Task& task)
{
    OCNSLog(NS::String("Running uninstall script: %@, args: %@").native(), task.launchPath().native(),
        task.arguments().native());
}

void logFailure(const NS::String& executable, const NS::Exception& exception)
{
    OCNSLog(NS::String("CdkRemotedUninstaller: Failed to launch uninstaller task:%@, exception:%@ reason:%@ "
                       "userinfo:%@\nstack:\n%@")
                .native(),
        executable.native(), exception.name().native(), exception.reason().native(),
        exception.userInfo().native(), exception.callStackSymbols().native());
}

void startUninstaller()
{
    const NS::AutoreleasePool pool;
    CNSInitLog(CNSLogFlagFile | CNSLogFlagDebug, 0, "CdkRSUninstaller", "/var/log/com.coraldesk.remote");

    const NS::String base = NS::searchPathForDirectoriesInDomains(NS::SearchPathDirectory::ApplicationSupport,
        NS::SearchPathDomainMask::MachineWide, NS::ExpandTilde::No)
                                .firstObject();
    const NS::String service = base.stringByAppendingPathComponent("com.coraldesk.remote");
    const NS::String executable = service.stringByAppendingPathComponent(
        "bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller");

    try {
        NS::Task task;
        task.setLaunchPath(executable);
        task.setArguments(NS::Array::arrayWithObjects({"-uninstall", "YES"}));
        const NS::FileHandle nullDevice = NS::FileHandle::fileHandleWithNullDevice();
        task.setStandardOutput(nullDevice);
        task.setStandardError(nullDevice);
        logStart(task);
        task.launch();
    } catch (const NS::Exception& exception) {
        logFailure(executable, exception);
    }
}

} // namespace

int main()
{
    ZSpace::Host::shieldStandardStreams();
    try {
        startUninstaller();
    } catch (const std::bad_alloc&) { // from before the start; nothing after it allocates
        CNSLogMsg("CdkRemotedUninstaller: Failed to launch uninstaller task: Out of memory");
    }
    return 0;
}
