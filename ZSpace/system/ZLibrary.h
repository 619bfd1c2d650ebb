// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"

namespace ZSpace {

/// A function of a library and its origin.
class ZLibraryResource {
public:
    using Callable = int (*)();

    /// Copies both strings; stores handle and function.
    ZLibraryResource(const wchar_t* path, const wchar_t* name, void* handle, Callable function);

    /// Does nothing on this platform and returns 0.
    static int load(ZLibraryResource& resource) noexcept;

    [[nodiscard]] const ZGStr<wchar_t>& Path() const noexcept { return m_path; }
    [[nodiscard]] const ZGStr<wchar_t>& Name() const noexcept { return m_name; }
    [[nodiscard]] void* Handle() const noexcept { return m_handle; }
    [[nodiscard]] Callable Function() const noexcept { return m_function; }
    /// Always 1.
    [[nodiscard]] int State() const noexcept { return m_state; }

private:
    ZGStr<wchar_t> m_path;
    ZGStr<wchar_t> m_name;
    void* m_handle;
    Callable m_function;
    int m_state = 1;
};

static_assert(sizeof(ZLibraryResource) == 5 * sizeof(void*));

/// The library loader. On this platform it loads nothing: every operation does nothing and succeeds.
class ZLibrary {
public:
    using Callable = ZLibraryResource::Callable;

    ZLibrary() = delete; // all operations are static

    /// Sets `function` to null.
    static int load(const wchar_t* path, const wchar_t* name, Callable& function);
    static Callable clone(Callable function) noexcept { return function; }
    static int release(const wchar_t* path, const wchar_t* name) noexcept;
    static int release(Callable function) noexcept;
};

} // namespace ZSpace
