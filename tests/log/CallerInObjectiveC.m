// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/log/Callers.h"

#import <Foundation/Foundation.h>

static void logList(NSString* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    OCLogV(format, arguments);
    va_end(arguments);
}

void logFromObjectiveC(const char* word, int number)
{
    NSString* text = [[[NSString alloc] initWithUTF8String:word] autorelease];
    CNSInitLog(CNSLogFlagDebug, 0, "caller_in_objective_c", NULL);
    CNSLog("CNSLog %s %d", word, number);
    OCNSLog(@"OCNSLog %@ %d", text, number);
    OCNSDbgLog(@"OCNSDbgLog %@ %d", text, number);
    logList(@"OCLogV %@ %d", text, number);
    OCNSLogWithStackTrace(@"OCNSLogWithStackTrace %@ %d", text, number);
}
