// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"

#include <atomic>
#include <string>
#include <vector>

/// The objects of the handles of `ZSpace/platform/Foundation.h` on a host without Foundation.
///
/// Every class has `NSObject` as its first and only direct or indirect base, so that the address of an object
/// is also that of its `NSObject`. The handles and, for `%@`, the formatter rely on that.

/// Base of all reference-counted objects. A new object has one reference.
struct NSObject {
    NSObject() = default;
    NSObject(const NSObject&) = delete; // objects have identity
    NSObject& operator=(const NSObject&) = delete;

    void retain() noexcept { m_count.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept
    {
        if (m_count.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    /// What `%@` prints.
    [[nodiscard]] virtual std::string description() const = 0;

protected:
    virtual ~NSObject();

private:
    std::atomic<long> m_count{1};
};

struct NSString : NSObject {
    explicit NSString(std::string utf8)
        : m_utf8(std::move(utf8))
    {
    }
    [[nodiscard]] std::string description() const override { return m_utf8; }

    std::string m_utf8;
};

struct NSMutableString final : NSString {
    using NSString::NSString;
};

struct NSArray final : NSObject {
    /// `(a, "b c")`: double quotes enclose an item that has any character besides letters, digits, "_", "$",
    /// "/", ":" and ".".
    [[nodiscard]] std::string description() const override;

    std::vector<ZSpace::NS::String> m_items;
};

struct NSException final : NSObject {
    [[nodiscard]] std::string description() const override;

    ZSpace::NS::String m_name;
    ZSpace::NS::String m_reason;
    ZSpace::NS::Object m_userInfo;
    ZSpace::NS::Array m_callStackSymbols;
};

/// The path of a file that is opened in the child.
struct NSFileHandle final : NSObject {
    explicit NSFileHandle(const char* path)
        : m_path(path)
    {
    }
    [[nodiscard]] std::string description() const override { return m_path; }

    const char* m_path; // a string literal
};

struct NSTask final : NSObject {
    [[nodiscard]] std::string description() const override;

    ZSpace::NS::String m_launchPath;
    ZSpace::NS::Array m_arguments;
    ZSpace::NS::FileHandle m_standardOutput;
    ZSpace::NS::FileHandle m_standardError;
};
