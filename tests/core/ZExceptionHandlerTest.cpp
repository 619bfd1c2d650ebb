// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZExceptionHandler.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace ZSpace::Testing {
namespace {

using Handler = ZDelegate2<int, unsigned int, void*>;

static_assert(std::is_same_v<decltype(g_ref_Exception_Handler_Delegate), ZRef<Handler, TZRefCounter<int>>>);

ZRef<Handler> makeHandler(int answer)
{
    return ZRef<Handler>(zMakeDelegate<Handler>([answer](unsigned int, void*) { return answer; }).release());
}

TEST(ZExceptionHandlerTest, StartsEmptyAndKeepsTheHandlerSetLast)
{
    EXPECT_TRUE(!g_ref_Exception_Handler_Delegate);

    const ZRef<Handler> first = makeHandler(1);
    const ZRef<Handler> second = makeHandler(2);
    g_setExceptionHandler(first);
    EXPECT_EQ(first.RefCount(), 2);
    g_setExceptionHandler(second);
    EXPECT_EQ(first.RefCount(), 1);
    EXPECT_EQ((*g_ref_Exception_Handler_Delegate)(0, nullptr), 2);
    g_setExceptionHandler(second);
    EXPECT_EQ(second.RefCount(), 2);

    g_setExceptionHandler({});
    EXPECT_TRUE(!g_ref_Exception_Handler_Delegate);
    EXPECT_EQ(second.RefCount(), 1);
}

} // namespace
} // namespace ZSpace::Testing
