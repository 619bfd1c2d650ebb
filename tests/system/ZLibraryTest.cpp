// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/ZLibrary.h"

#include "tests/support/Probes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ZSpace::Testing {
namespace {

int answer()
{
    return 42;
}

TEST(ZLibraryTest, LoadsNothingAndSucceeds)
{
    int (*function)() = &answer;
    EXPECT_EQ(ZLibrary::load(L"/usr/lib", L"answer", function), 0);
    EXPECT_EQ(function, nullptr);
    function = &answer;
    EXPECT_EQ(ZLibrary::load(nullptr, nullptr, function), 0);
    EXPECT_EQ(function, nullptr);
}

TEST(ZLibraryTest, CloneReturnsTheFunctionItself)
{
    EXPECT_EQ(ZLibrary::clone(&answer), &answer);
    EXPECT_EQ(ZLibrary::clone(nullptr), nullptr);
}

TEST(ZLibraryTest, ReleaseSucceeds)
{
    EXPECT_EQ(ZLibrary::release(L"/usr/lib", L"answer"), 0);
    EXPECT_EQ(ZLibrary::release(nullptr, nullptr), 0);
    EXPECT_EQ(ZLibrary::release(&answer), 0);
    EXPECT_EQ(ZLibrary::release(nullptr), 0);
}

TEST(ZLibraryResourceTest, KeepsItsArguments)
{
    int there = 0;
    wchar_t path[] = L"/usr/lib";
    ZLibraryResource resource(path, L"answer", &there, &answer);
    path[0] = L'x';
    EXPECT_STREQ(resource.Path(), L"/usr/lib");
    EXPECT_STREQ(resource.Name(), L"answer");
    EXPECT_EQ(resource.Handle(), &there);
    EXPECT_EQ(resource.Function(), &answer);
    EXPECT_EQ(resource.State(), 1);
    EXPECT_EQ(ZLibraryResource::load(resource), 0);
    EXPECT_EQ(resource.Function(), &answer);
    const ZLibraryResource copy(resource);
    EXPECT_STREQ(copy.Path(), L"/usr/lib");
    EXPECT_EQ(copy.State(), 1);
}

TEST(ZLibraryResourceTest, FieldsAreInOrder)
{
    int there = 0;
    const ZLibraryResource resource(L"p", L"n", &there, &answer);
    EXPECT_EQ(wordAt(&resource, 0), asWord(static_cast<const wchar_t*>(resource.Path())));
    EXPECT_EQ(wordAt(&resource, 1), asWord(static_cast<const wchar_t*>(resource.Name())));
    EXPECT_EQ(wordAt(&resource, 2), asWord(&there));
    EXPECT_EQ(wordAt(&resource, 3), reinterpret_cast<std::uintptr_t>(&answer));
    EXPECT_EQ(wordAt(&resource, 4) & 0xFFFFFFFF, 1u);
}

} // namespace
} // namespace ZSpace::Testing
