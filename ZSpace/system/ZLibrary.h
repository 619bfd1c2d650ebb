// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"

namespace ZSpace {

/// A function of a library and its origin.
class ZLibraryResource {
public:
    /// A function of a library; cast it to its real type.
    using Callable = int (*)();

    /// Copies both strings; stores the handle and the function.
    ZLibraryResource(const wchar_t* path, const wchar_t* name, void* handle, Callable function);

    /// Does nothing on this platform and returns 0.
    static int load(ZLibraryResource& resource) noexcept;

    /// The library's path.
    [[nodiscard]] const ZGStr<wchar_t>& Path() const noexcept ZSPACE_LIFETIMEBOUND { return m_path; }
    /// The function's name.
    [[nodiscard]] const ZGStr<wchar_t>& Name() const noexcept ZSPACE_LIFETIMEBOUND { return m_name; }
    /// The host's handle.
    [[nodiscard]] void* Handle() const noexcept { return m_handle; }
    /// The function.
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
    /// A function of a library; cast it to its real type.
    using Callable = ZLibraryResource::Callable;

    ZLibrary() = delete; // all operations are static

    /// Sets `function` to null.
    static int load(const wchar_t* path, const wchar_t* name, Callable& function);
    /// The function itself.
    static Callable clone(Callable function) noexcept { return function; }
    /// Does nothing, and returns 0.
    static int release(const wchar_t* path, const wchar_t* name) noexcept;
    /// Does nothing, and returns 0.
    static int release(Callable function) noexcept;
};

} // namespace ZSpace
