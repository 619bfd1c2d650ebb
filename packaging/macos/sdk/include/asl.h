// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

// Declares what this project uses of the Apple System Log, for the cross build only. A build on a Mac uses the system's
// own header.

#include <cstdint>

using asl_object_t = struct asl_object*;
using aslclient = asl_object_t;
using aslmsg = asl_object_t;

#define ASL_TYPE_MSG 0
#define ASL_OPT_STDERR 0x00000001
#define ASL_LEVEL_EMERG 0
#define ASL_LEVEL_DEBUG 7

extern "C" {
asl_object_t asl_open(const char* ident, const char* facility, std::uint32_t options);
asl_object_t asl_new(std::uint32_t type);
[[gnu::format(printf, 4, 5)]] int asl_log(
    asl_object_t client, asl_object_t message, int level, const char* format, ...);
}
