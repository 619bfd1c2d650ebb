// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

// Declares what this project uses of Foundation, for the cross build only: its compiler has the headers of macOS's C
// library and of the Objective-C runtime, but none of frameworks. A build on a Mac uses Foundation's own headers.

#include <objc/NSObject.h>
#include <objc/objc.h>
#include <stdarg.h>

@class NSArray;
@class NSDictionary;

typedef unsigned short unichar;
typedef struct _NSRange {
    NSUInteger location;
    NSUInteger length;
} NSRange;

static inline NSRange NSMakeRange(NSUInteger location, NSUInteger length)
{
    const NSRange range = {location, length};
    return range;
}

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

@interface NSString : NSObject
+ (instancetype)string;
- (instancetype)initWithCharacters:(const unichar*)units length:(NSUInteger)length;
- (instancetype)initWithUTF8String:(const char*)text;
- (instancetype)initWithFormat:(NSString*)format arguments:(va_list)arguments;
@property (readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@property (readonly) NSUInteger length;
- (void)getCharacters:(unichar*)units range:(NSRange)range;
- (NSString*)stringByAppendingPathComponent:(NSString*)component;
@end

@interface NSMutableString : NSString
- (void)appendString:(NSString*)string;
@end

@interface NSArray : NSObject
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count;
@property (readonly) NSUInteger count;
- (id)objectAtIndex:(NSUInteger)index;
@property (readonly) id firstObject;
@end

@interface NSDictionary : NSObject
+ (instancetype)dictionaryWithObject:(id)object forKey:(id)key;
@end

__attribute__((__objc_exception__)) // the framework has its type information for `@catch`
@interface NSException : NSObject
+ (NSException*)exceptionWithName:(NSString*)name reason:(NSString*)reason userInfo:(NSDictionary*)userInfo;
@property (readonly, copy) NSString* name;
@property (readonly, copy) NSString* reason;
@property (readonly, copy) NSDictionary* userInfo;
@property (readonly, copy) NSArray* callStackSymbols;
- (void)raise;
@end

@interface NSFileHandle : NSObject
@property (class, readonly, strong) NSFileHandle* fileHandleWithNullDevice;
@end

@interface NSTask : NSObject
@property (copy) NSString* launchPath;
@property (copy) NSArray* arguments;
@property (strong) id standardOutput;
@property (strong) id standardError;
- (void)launch;
@end

@interface NSThread : NSObject
@property (class, readonly, copy) NSArray* callStackSymbols;
@end

typedef NSUInteger NSSearchPathDirectory;
typedef NSUInteger NSSearchPathDomainMask;

#ifdef __cplusplus
extern "C" {
#endif
NSArray* NSSearchPathForDirectoriesInDomains(
    NSSearchPathDirectory directory, NSSearchPathDomainMask domains, BOOL expandTilde);
void NSLog(NSString* format, ...);
#ifdef __cplusplus
}
#endif
