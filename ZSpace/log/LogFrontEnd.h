// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/FoundationTypes.h"

// Also included by C and Objective-C, so C headers and C declarations only.
#include <stdarg.h> // NOLINT(modernize-deprecated-headers)
#include <stdbool.h> // NOLINT(modernize-deprecated-headers)

/// The log front end: plain functions that write log lines, for C, C++, Objective-C and Objective-C++.
///
///     CNSInitLog(CNSLogFlagDebug | CNSLogFlagFile, 0, "MyTool", "/var/log/mytool");
///     CNSLog("started with %d files", count);
///
/// A line goes to the attached log book, usually the report file that `CNSInitLog` opens. If there is none, it
/// goes to the system log if that is open, and otherwise to the console (standard error).
///
/// No function reports a failure; a line is dropped if allocation fails. All functions may be called from any thread at
/// any time, but only `CNSDbgLogEnabled` from a signal handler. Before `CNSInitLog`, lines go to the console. A null
/// format or text counts as empty, except that `CNSLogMsg` ignores it.
///
/// `CNS...` functions take a printf format; `OCNS...` functions take an `NSString` format, which also knows
/// `%@` for objects. `%n` stores nothing in either.

#ifdef __cplusplus
extern "C" {
#endif

/// The flags of `CNSInitLog`. Other bits are ignored.
enum CNSLogFlags {
    CNSLogFlagDebug = 0x002, ///< write debug lines
    CNSLogFlagFile = 0x100 ///< write to a new report file
};

/// Sets up logging for the process. Calling it again with `CNSLogFlagFile` starts a new report file. Call it on
/// one thread at a time; other threads may log meanwhile.
/// @param flags `CNSLogFlags`. An attached debugger turns debug lines on, too; nothing turns them off again.
/// @param sysLogSwitch exactly 1 opens the system log, with a copy to standard error under a debugger.
/// @param tag the beginning of the report file's name; also identifies the program in the system log.
/// @param userLogDir the directory of report files, created if missing; null or a string shorter than 2
/// characters means the directory in the user's home.
///
/// If the report file cannot be opened, the destination of lines does not change.
void CNSInitLog(int flags, int sysLogSwitch, const char* tag, const char* userLogDir);

/// Detaches the report file, which is closed when its last user is done. Later lines go to the system log or
/// the console.
///
/// A plug-in that contains this library must call this before it is unloaded (`dlclose`), when none of its threads
/// log any more: nothing else closes the report file, so each load and unload would leak a descriptor.
void CNSDisableFileLogging(void);

/// Whether debug lines are written.
bool CNSDbgLogEnabled(void);

/// Writes one line, cut to its first 4095 bytes. Formats on the stack.
__attribute__((format(printf, 1, 2))) void CNSLog(const char* format, ...);
__attribute__((format(printf, 1, 0))) void CLogV(const char* format, va_list arguments);
/// As `CNSLog` if debug lines are on; otherwise returns without formatting.
__attribute__((format(printf, 1, 2))) void CNSDbgLog(const char* format, ...);

/// Writes one line of any length.
void OCNSLog(NSString* format, ...);
/// As `OCNSLog`, with the arguments as a list.
void OCLogV(NSString* format, va_list arguments);
/// As `OCNSLog` if debug lines are on.
void OCNSDbgLog(NSString* format, ...);

/// Writes to the system log at `level` (0 emergency to 7 debug), or to the console if the system log is not
/// open; never to the report file. The text is cut to its first 4095 bytes.
__attribute__((format(printf, 2, 3))) void CNSSysLog(int level, const char* format, ...);

/// Writes the text, cut to its first 8191 bytes, followed by the calling thread's call stack.
__attribute__((format(printf, 1, 2))) void CNSLogWithStackTrace(const char* format, ...);
/// As `CNSLogWithStackTrace`, with a text of any length.
void OCNSLogWithStackTrace(NSString* format, ...);

/// Writes `text` as it is; null is ignored.
void CNSLogMsg(const char* text);

#ifdef __cplusplus
} // extern "C"

/// Appends the calling thread's call stack to `text`: a header, one line per frame with the innermost first,
/// and a footer.
void OCAppendStackTrace(NSMutableString* text);

namespace ZSpace {
template <typename T>
class ZStrToken;
}
/// A view would be taken for its pointer, and its length be ignored: write `CNSLogMsg(ZGStr<char>(view))`.
template <typename T>
void CNSLogMsg(ZSpace::ZStrToken<T> view) = delete;
#endif
