// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/LogFrontEnd.h"

#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/log/detail/DebugLog.h"
#include "ZSpace/log/detail/FileLogging.h"
#include "ZSpace/platform/Debugger.h"
#include "ZSpace/platform/Foundation.h"
#include "ZSpace/platform/SystemLog.h"

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace Host = ZSpace::Host;
namespace NS = ZSpace::NS;

// The process-wide switches, `debugLogEnabled` with them: all zero at start, written by CNSInitLog alone,
// before other threads log.
Host::SystemLogClient* asl = nullptr; // null while the system log is not open; never closed
Host::SystemLogMessage* aslMsg = nullptr; // made together with `asl`

namespace {

constexpr std::size_t s_lineSize = 4096;
constexpr std::size_t s_tracedLineSize = 8192;

/// Text formatted on the stack and cut, without notice, to the bytes that fit.
template <std::size_t size>
class BoundedText {
public:
    BoundedText(const char* format, std::va_list arguments) noexcept
    {
        m_own[0] = m_own[size - 1] = '\0';
        if (!format)
            return;
        if (std::strcmp(format, "%s") == 0)
            takeText(arguments);
        else if (std::vsnprintf(m_own, size, format, arguments) < 0)
            take(format); // one that the C library gives up on tells more as it is than an empty line
    }
    BoundedText(const BoundedText&) = delete; // refers to itself
    BoundedText& operator=(const BoundedText&) = delete;
    ~BoundedText() = default;

    /// Good while both this and the arguments are.
    [[nodiscard]] const char* get() const noexcept { return m_text; }

private:
    /// The one format that most callers use needs no formatter, which would take longer than all the rest.
    void takeText(std::va_list arguments) noexcept
    {
        std::va_list rest;
        va_copy(rest, arguments);
        const char* const text = va_arg(rest, const char*);
        va_end(rest);
        take(text ? text : "(null)");
    }
    /// Texts that fit stay where they are.
    void take(const char* text) noexcept
    {
        if (strnlen(text, size) < size)
            m_text = text;
        else
            std::memcpy(m_own, text, size - 1);
    }

    char m_own[size]; // not cleared: formatting terminates it
    const char* m_text = m_own;
};

/// Where a line goes that no log book takes: the system log when it is open, else the console.
void writeToSystem(int level, const char* text)
{
    if (asl) {
        Host::writeSystemLog(asl, aslMsg, level, text);
        return;
    }
    const NS::AutoreleasePool pool;
    NS::log(NS::String("%s").native(), text);
}

/// The one road of every line. The text is never used as a format.
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

void writeWithStackTrace(const NS::MutableString& text)
{
    OCAppendStackTrace(text.native());
    if (const char* const utf8 = text.UTF8String())
        writeLine(utf8);
}

} // namespace

void CNSInitLog(int flags, int sysLogSwitch, const char* tag, const char* userLogDir)
{
    const bool isDebugged = Host::isDebuggerAttached();
    if ((flags & CNSLogFlagDebug) || isDebugged)
        debugLogEnabled = 1;
    if (userLogDir && std::strlen(userLogDir) >= 2)
        ZSpace::useLogFolder(userLogDir);
    if (flags & CNSLogFlagFile)
        ZSpace::enableFileLogging(tag ? tag : "");
    if (sysLogSwitch == 1) {
        asl = Host::openSystemLog(
            tag, isDebugged ? Host::CopyToStandardError::Yes : Host::CopyToStandardError::No);
        aslMsg = Host::newSystemLogMessage();
    }
}

void CNSDisableFileLogging(void)
{
    ZSpace::disableFileLogging();
}

bool CNSDbgLogEnabled(void)
{
    return debugLogEnabled;
}

void CLogV(const char* format, va_list arguments)
{
    const BoundedText<s_lineSize> text(format, arguments);
    writeLine(text.get());
}

void OCLogV(NSString* format, va_list arguments)
{
    const NS::AutoreleasePool pool;
    writeLine(NS::String::stringWithFormat(format, arguments));
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
    const BoundedText<s_lineSize> text(format, arguments);
    va_end(arguments);
    writeToSystem(level, text.get());
}

void CNSLogWithStackTrace(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const BoundedText<s_tracedLineSize> text(format, arguments);
    va_end(arguments);
    const NS::AutoreleasePool pool;
    writeWithStackTrace(NS::MutableString(text.get()));
}

void OCNSLogWithStackTrace(NSString* format, ...)
{
    const NS::AutoreleasePool pool;
    va_list arguments;
    va_start(arguments, format);
    const NS::MutableString text = NS::MutableString::stringWithFormat(format, arguments);
    va_end(arguments);
    writeWithStackTrace(text);
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
        writeLine(text);
}
