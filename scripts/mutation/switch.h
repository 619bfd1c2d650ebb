// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

/// The switch that every mutant asks whether it is the one to act. Included into each mutated source by the compiler's
/// command line.
///
/// The environment variable MUTANT holds the number of the acting mutant. MUTANT_TRACE names a file of one byte per
/// mutant, in which each one that is reached sets its byte; it is mapped, so what a killed process reached counts too.
namespace mutation {

inline int g_active = -2; // -2: the environment has not been read
inline unsigned char* g_trace = nullptr;

inline void readEnvironment() noexcept
{
    g_active = -1;
    if (const char* const number = std::getenv("MUTANT"))
        g_active = std::atoi(number);
    const char* const path = std::getenv("MUTANT_TRACE");
    if (!path)
        return;
    const int file = open(path, O_RDWR | O_CLOEXEC);
    if (file < 0)
        return;
    const off_t size = lseek(file, 0, SEEK_END);
    void* const map = mmap(nullptr, static_cast<size_t>(size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (map != MAP_FAILED)
        g_trace = static_cast<unsigned char*>(map);
}

inline bool isActive(int number) noexcept
{
    if (g_active == -2)
        readEnvironment();
    if (g_trace)
        g_trace[number] = 1;
    return g_active == number;
}

/// False in constant evaluation, so that what the compiler computes stays right.
constexpr bool on(int number) noexcept
{
    return !__builtin_is_constant_evaluated() && isActive(number);
}

} // namespace mutation
