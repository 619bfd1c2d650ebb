// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

// Declares what the tests use to trace a child, for the cross build only. A build on a Mac uses the system's own header.

#include <sys/types.h>

#define PT_TRACE_ME 0
#define PT_CONTINUE 7

extern "C" int ptrace(int request, pid_t process, caddr_t address, int data);
