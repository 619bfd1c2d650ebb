// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

// What the tests use to trace a child, declared for the cross build alone. On a Mac, the system's own header
// takes this one's place.

#include <sys/types.h>

#define PT_TRACE_ME 0
#define PT_CONTINUE 7

extern "C" int ptrace(int request, pid_t process, caddr_t address, int data);
