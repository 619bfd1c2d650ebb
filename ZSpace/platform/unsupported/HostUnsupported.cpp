// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Every host service, as implemented for a host that lacks it. To port to a new host, start with a copy of
// this file and replace the functions one by one; a service that the host really lacks keeps this form.

#include "ZSpace/platform/CallStack.h"
#include "ZSpace/platform/Debugger.h"
#include "ZSpace/platform/FileCopy.h"
#include "ZSpace/platform/FileStream.h"
#include "ZSpace/platform/Process.h"
#include "ZSpace/platform/ReportFile.h"
#include "ZSpace/platform/SystemLog.h"
#include "ZSpace/platform/ThreadNumber.h"

#include <cerrno>

namespace ZSpace::Host {

// Call stacks are never empty, so a single line says why there are no frames.
std::vector<std::string> callStackLines(const void*)
{
    return {"0   ???"};
}

bool isDebuggerAttached() noexcept
{
    return false;
}

int copyContents(int, int) noexcept
{
    return ENOSYS;
}

std::FILE* openFileStream(const char*, const char*) noexcept
{
    errno = ENOSYS;
    return nullptr;
}

std::string executablePath()
{
    return {};
}

const char* programName() noexcept
{
    return "";
}

void shieldStandardStreams() noexcept { }

int makeDirectoryOpenToAll(const char*) noexcept
{
    return ENOSYS;
}

int openReportDirectory(const char*) noexcept
{
    return -ENOSYS;
}

int openReportFile(int, const char*) noexcept
{
    return -ENOSYS;
}

// Without a client there is no system log, and lines go to the console.
SystemLogClient* openSystemLog(const char*, CopyToStandardError) noexcept
{
    return nullptr;
}

SystemLogMessage* newSystemLogMessage() noexcept
{
    return nullptr;
}

void writeSystemLog(SystemLogClient*, SystemLogMessage*, int, const char*) noexcept { }

unsigned int threadNumber() noexcept
{
    return 0;
}

} // namespace ZSpace::Host
