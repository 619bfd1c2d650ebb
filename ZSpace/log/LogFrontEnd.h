// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/FoundationTypes.h"

// Read by C and Objective-C as well, so C headers and C declarations only.
#include <stdarg.h> // NOLINT(modernize-deprecated-headers)
#include <stdbool.h> // NOLINT(modernize-deprecated-headers)

/// The log front end: plain functions through which a program writes log lines.
///
///     CNSInitLog(0x102, 0, "MyTool", "/var/log/mytool");
///     CNSLog("started with %d files", count);
///
/// A line goes to the log book that is attached to the process (normally the report file that `CNSInitLog`
/// opens). When none takes it, it goes to the system log, if that was opened, and else to the console by
/// `NSLog`.
///
/// No function reports a failure. All may be called from any thread, `CNSInitLog` alone once, at the start,
/// before other threads log. Before it, lines go to the console. A null format or text counts as empty
/// (`CNSLogMsg`: is ignored).
///
/// `CNS...` functions take a printf format; `OCNS...` functions take an `NSString` format, in which `%@`
/// prints an object and which knows the printf conversions, too.
///
/// Usable from C, C++, Objective-C and Objective-C++.

#ifdef __cplusplus
extern "C" {
#endif

/// Bits of the flags of `CNSInitLog`. Other bits are ignored.
enum CNSLogFlags {
    CNSLogFlagDebug = 0x002, ///< debug lines are written
    CNSLogFlagFile = 0x100, ///< lines go into a new report file
};

/// Sets up logging for the process.
/// @param flags `CNSLogFlags`. An attached debugger turns debug lines on as well; nothing turns them off
/// again.
/// @param sysLogSwitch exactly 1 opens the system log, with a copy to standard error under a debugger.
/// @param tag begins the report file's name and is the ident in the system log.
/// @param userLogDir the report file's folder, made when it is missing; a text shorter than 2 characters, or
/// null,
///        leaves the folder of the user's home.
/// A report file that cannot be opened is passed over in silence.
void CNSInitLog(int flags, int sysLogSwitch, const char* tag, const char* userLogDir);

/// Closes the report file, unless other code holds its log book. Later lines go to the system log or the
/// console.
void CNSDisableFileLogging(void);

/// True when debug lines are written.
bool CNSDbgLogEnabled(void);

/// Writes one line; a text beyond 4095 bytes is cut there. Formats on the stack.
__attribute__((format(printf, 1, 2))) void CNSLog(const char* format, ...);
__attribute__((format(printf, 1, 0))) void CLogV(const char* format, va_list arguments);
/// As `CNSLog` when debug lines are on; otherwise returns before it formats anything.
__attribute__((format(printf, 1, 2))) void CNSDbgLog(const char* format, ...);

/// Writes one line, of any length.
void OCNSLog(NSString* format, ...);
void OCLogV(NSString* format, va_list arguments);
/// As `OCNSLog` when debug lines are on.
void OCNSDbgLog(NSString* format, ...);

/// Writes to the system log at `level` (0 emergency to 7 debug), or to the console when it is not open, and
/// never to the report file. A text beyond 4095 bytes is cut there.
__attribute__((format(printf, 2, 3))) void CNSSysLog(int level, const char* format, ...);

/// Writes the text, cut at 8191 bytes, and behind it the calling thread's call stack.
__attribute__((format(printf, 1, 2))) void CNSLogWithStackTrace(const char* format, ...);
/// As `CNSLogWithStackTrace`, with text of any length.
void OCNSLogWithStackTrace(NSString* format, ...);

/// Writes a finished text as it stands; null is ignored.
void CNSLogMsg(const char* text);

#ifdef __cplusplus
} // extern "C"

/// Adds the calling thread's call stack to `text`, innermost frame first, one line a frame, between a header
/// and a footer line.
void OCAppendStackTrace(NSMutableString* text);
#endif
