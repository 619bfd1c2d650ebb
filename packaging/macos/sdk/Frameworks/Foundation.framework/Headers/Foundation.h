// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

// What this project uses of Foundation, declared for the cross build alone: the compiler there brings the C
// headers of macOS and the runtime's, and no frameworks. On a Mac, Foundation's own headers take this one's
// place.

#include <objc/NSObject.h>
#include <objc/objc.h>
#include <stdarg.h>

@class NSArray;
@class NSDictionary;

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

@interface NSString : NSObject
+ (instancetype)string;
- (instancetype)initWithUTF8String:(const char*)text;
- (instancetype)initWithFormat:(NSString*)format arguments:(va_list)arguments;
@property (readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
- (NSString*)stringByAppendingPathComponent:(NSString*)component;
@end

@interface NSMutableString : NSString
- (void)appendString:(NSString*)text;
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

__attribute__((__objc_exception__)) // its type information for `@catch` is the framework's
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
