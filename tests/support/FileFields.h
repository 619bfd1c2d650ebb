// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZThread.h"
#include "ZSpace/stream/ZIOGFile.h"

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace ZSpace::Testing {

/// The fields of a `ZIOGFile`, which follow its worker objects and precede its virtual bases.
struct FileFields {
    FILE* handle;
    bool isReadable;
    bool isWritable;

    static constexpr std::size_t s_offset = sizeof(void*) + 12 * sizeof(ZSpace::ZThread_T<pthread_t*>);
    static constexpr std::size_t s_size = sizeof(FILE*) + 2 * sizeof(bool);

    static FileFields of(const ZSpace::ZIOGFile<>& file)
    {
        FileFields fields;
        std::memcpy(&fields, reinterpret_cast<const char*>(&file) + s_offset, s_size);
        return fields;
    }
    void putInto(ZSpace::ZIOGFile<>& file) const
    {
        std::memcpy(reinterpret_cast<char*>(&file) + s_offset, this, s_size);
    }
};

} // namespace ZSpace::Testing
