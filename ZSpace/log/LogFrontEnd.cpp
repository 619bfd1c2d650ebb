// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/LogFrontEnd.h"

#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/log/detail/BoundedText.h"
#include "ZSpace/log/detail/DebugLog.h"
#include "ZSpace/log/detail/FileLogging.h"
#include "ZSpace/platform/Debugger.h"
#include "ZSpace/platform/Foundation.h"
#include "ZSpace/platform/SystemLog.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <string>

namespace Host = ZSpace::Host;
namespace NS = ZSpace::NS;

namespace ZSpace {

// Process-wide, like `debugLogEnabled`: zero at start and written only by CNSInitLog, while other threads may log.
std::atomic<Host::SystemLogClient*> asl{nullptr}; // null unless the system log is open; never closed
std::atomic<Host::SystemLogMessage*> aslMsg{nullptr}; // set before `asl`

} // namespace ZSpace

using ZSpace::asl;
using ZSpace::aslMsg;
using ZSpace::debugLogEnabled;

namespace {

constexpr std::size_t s_lineSize = 4096;
constexpr std::size_t s_tracedLineSize = 8192;

using Line = ZSpace::detail::BoundedText<s_lineSize>;
using TracedLine = ZSpace::detail::BoundedText<s_tracedLineSize>;

/// Logging must never stop a program: drops the line if allocation fails.
template <typename Write>
void dropFailures(Write write) noexcept
{
    try {
        write();
    } catch (...) { // NOLINT(bugprone-empty-catch): by design
    }
}

/// The destination of lines without a log book: the system log if it is open, otherwise the console.
void writeToSystem(int level, const char* text)
{
    if (Host::SystemLogClient* const client = asl) {
        Host::writeSystemLog(client, aslMsg, level, text);
        return;
    }
    const NS::AutoreleasePool pool;
    NS::log(NS::String("%s").native(), text);
}

/// Writes every line except those of CNSSysLog. The text is never used as a format.
void writeLine(const char* text)
{
    if (!ZSpace::ZTransferLog::log(text))
        writeToSystem(Host::SystemLogNotice, text);
}

void writeLine(const NS::String& text)
{
    if (const char* const utf8 = text.UTF8String())
        writeLine(utf8);
}

/// The format of an `OCNS` function without `%n`.
NS::String storeless(NSString* format)
{
    NS::String original = NS::String::retain(format);
    const char* const utf8 = original.UTF8String();
    if (!utf8)
        return original;
    const ZSpace::detail::StorelessFormat result(utf8);
    return result.get() == utf8 ? original : NS::String(result.get());
}

} // namespace

void CNSInitLog(int flags, int sysLogSwitch, const char* tag, const char* userLogDir)
{
    const bool isDebugged = Host::isDebuggerAttached();
    if ((flags & CNSLogFlagDebug) || isDebugged)
        debugLogEnabled = 1;
    if (userLogDir && std::strlen(userLogDir) >= 2)
        ZSpace::useLogDirectory(userLogDir);
    if (flags & CNSLogFlagFile)
        ZSpace::enableFileLogging(tag ? tag : "");
    if (sysLogSwitch == 1) {
        Host::SystemLogClient* const client = Host::openSystemLog(
            tag, isDebugged ? Host::CopyToStandardError::Yes : Host::CopyToStandardError::No);
        aslMsg = Host::newSystemLogMessage();
        asl = client;
    }
}

void CNSDisableFileLogging(void)
{
    ZSpace::disableFileLogging();
}

bool CNSDbgLogEnabled(void)
{
    return debugLogEnabled != 0;
}

void CLogV(const char* format, va_list arguments)
{
    dropFailures([&] { writeLine(Line(format, arguments).get()); });
}

void OCLogV(NSString* format, va_list arguments)
{
    dropFailures([&] {
        const NS::AutoreleasePool pool;
        writeLine(NS::String::stringWithFormat(storeless(format).native(), arguments));
    });
}

void CNSLog(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    CLogV(format, arguments);
    va_end(arguments);
}

void CNSDbgLog(const char* format, ...)
{
    if (debugLogEnabled != 1)
        return;
    va_list arguments;
    va_start(arguments, format);
    CLogV(format, arguments);
    va_end(arguments);
}

void OCNSLog(NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    OCLogV(format, arguments);
    va_end(arguments);
}

void OCNSDbgLog(NSString* format, ...)
{
    if (debugLogEnabled != 1)
        return;
    va_list arguments;
    va_start(arguments, format);
    OCLogV(format, arguments);
    va_end(arguments);
}

void CNSSysLog(int level, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    dropFailures([&] { writeToSystem(level, Line(format, arguments).get()); });
    va_end(arguments);
}

void CNSLogWithStackTrace(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    dropFailures([&] {
        const TracedLine text(format, arguments);
        const NS::AutoreleasePool pool;
        const NS::MutableString trace("");
        OCAppendStackTrace(trace.native());
        // The text bypasses the host's strings, which would change bytes that are not UTF-8.
        writeLine((std::string(text.get()) + trace.UTF8String()).c_str());
    });
    va_end(arguments);
}

void OCNSLogWithStackTrace(NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    dropFailures([&] {
        const NS::AutoreleasePool pool;
        const NS::MutableString text =
            NS::MutableString::stringWithFormat(storeless(format).native(), arguments);
        OCAppendStackTrace(text.native());
        if (const char* const utf8 = text.UTF8String())
            writeLine(utf8);
    });
    va_end(arguments);
}

void OCAppendStackTrace(NSMutableString* text)
{
    const NS::AutoreleasePool pool;
    NS::MutableString trace = NS::MutableString::retain(text);
    const NS::Array frames = NS::Thread::callStackSymbols();
    trace.appendString("\n------- stack trace -------\n");
    for (std::size_t i = 0; i < frames.count(); ++i) {
        trace.appendString(frames.objectAtIndex(i));
        trace.appendString("\n");
    }
    trace.appendString("---------------------------\n");
}

void CNSLogMsg(const char* text)
{
    if (text)
        dropFailures([=] { writeLine(text); });
}
