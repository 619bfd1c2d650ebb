// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/platform/Foundation.h"

#include <atomic>
#include <string>
#include <vector>

/// The objects behind the handles of `ZSpace/platform/Foundation.h` on a host without Foundation.
///
/// Every class has `NSObject` as its first and only base, so that a pointer to any of them, passed through a
/// variable argument list, is the address of its `NSObject`. The formatter relies on that for `%@`.

/// Counted object that can print itself. Born with a count of 1.
struct NSObject {
    NSObject() = default;
    NSObject(const NSObject&) = delete; // counted objects have one identity
    NSObject& operator=(const NSObject&) = delete;

    void retain() noexcept { m_count.fetch_add(1, std::memory_order_relaxed); }
    void release() noexcept
    {
        if (m_count.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    /// The text that `%@` prints.
    [[nodiscard]] virtual std::string description() const = 0;

protected:
    virtual ~NSObject();

private:
    std::atomic<long> m_count{1};
};

struct NSString : NSObject {
    explicit NSString(std::string text)
        : m_text(std::move(text))
    {
    }
    [[nodiscard]] std::string description() const override { return m_text; }

    std::string m_text;
};

struct NSMutableString final : NSString {
    using NSString::NSString;
};

struct NSArray final : NSObject {
    /// `(a, "b c")`: an item with anything but letters, digits, "_", "$", "/", ":" and "." stands in double
    /// quotes.
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

/// A file by its path, opened in the child that it is given to.
struct NSFileHandle final : NSObject {
    explicit NSFileHandle(const char* path)
        : m_path(path)
    {
    }
    [[nodiscard]] std::string description() const override { return m_path; }

    const char* m_path; // a literal
};

struct NSTask final : NSObject {
    [[nodiscard]] std::string description() const override;

    ZSpace::NS::String m_launchPath;
    ZSpace::NS::Array m_arguments;
    ZSpace::NS::FileHandle m_standardOutput;
    ZSpace::NS::FileHandle m_standardError;
};
