// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/log/Callers.h"

static void logList(const char* format, ...) __attribute__((format(printf, 1, 2)));

static void logList(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    CLogV(format, arguments);
    va_end(arguments);
}

void logFromC(const char* word, int number)
{
    CNSInitLog(CNSLogFlagDebug, 0, "caller_in_c", 0);
    const bool isOn = CNSDbgLogEnabled();
    CNSLog("CNSLog %s %d", word, number);
    CNSDbgLog("CNSDbgLog %s %d, debug lines %s", word, number, isOn ? "on" : "off");
    CNSSysLog(5, "CNSSysLog %s %d", word, number);
    logList("CLogV %s %d", word, number);
    CNSLogMsg("CNSLogMsg %s");
    CNSLogWithStackTrace("CNSLogWithStackTrace %s %d", word, number);
    CNSDisableFileLogging();
}

void logHostStringFromC(NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    OCLogV(format, arguments);
    va_end(arguments);
    OCNSLog(0);
}
