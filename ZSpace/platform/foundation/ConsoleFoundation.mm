// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Foundation.h"

#import <Foundation/Foundation.h>

namespace ZSpace::NS {

void log(NSString* format, ...)
{
    const AutoreleasePool pool;
    va_list arguments;
    va_start(arguments, format);
    const String line = String::stringWithFormat(format, arguments);
    va_end(arguments);
    NSLog(@"%@", line.native());
}

} // namespace ZSpace::NS
