// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/ZLibrary.h"

namespace ZSpace {

ZLibraryResource::ZLibraryResource(const wchar_t* path, const wchar_t* name, void* handle, Callable function)
    : m_path(path)
    , m_name(name)
    , m_handle(handle)
    , m_function(function)
{
}

int ZLibraryResource::load(ZLibraryResource&) noexcept
{
    return 0;
}

int ZLibrary::load(const wchar_t* path, const wchar_t* name, Callable& function)
{
    ZLibraryResource resource(path, name, nullptr, nullptr);
    const int status = ZLibraryResource::load(resource);
    function = resource.Function();
    return status;
}

int ZLibrary::release(const wchar_t*, const wchar_t*) noexcept
{
    return 0;
}

int ZLibrary::release(Callable) noexcept
{
    return 0;
}

} // namespace ZSpace
