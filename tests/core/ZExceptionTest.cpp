// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZException.h"

#include "tests/support/Probes.h"
#include "tests/support/Slots.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace ZSpace::Testing {
namespace {

static_assert(std::is_base_of_v<std::exception, ZException>);
static_assert(
    std::is_empty_v<ZInvalidOperationException> && !std::is_polymorphic_v<ZInvalidOperationException>);
static_assert(std::is_empty_v<ZOutOfBoundsException> && !std::is_polymorphic_v<ZOutOfBoundsException>);

/// Overrides all accessors.
class Computed : public ZException {
public:
    using ZException::ZException;
    [[nodiscard]] const char* what() const noexcept override { return "computed what"; }
    [[nodiscard]] unsigned int code() noexcept override { return 77; }
    [[nodiscard]] const char* where() const noexcept override { return "computed where"; }
    [[nodiscard]] const char* why() const noexcept override { return "computed why"; }
};

void expectTexts(const ZException& e, const char* what, const char* where, const char* why)
{
    EXPECT_STREQ(e.what(), what);
    EXPECT_STREQ(e.where(), where);
    EXPECT_STREQ(e.why(), why);
}

TEST(ZExceptionTest, DefaultExceptionIsEmpty)
{
    ZException e;
    EXPECT_EQ(e.code(), 0u);
    expectTexts(e, nullptr, nullptr, nullptr);
}

TEST(ZExceptionTest, ConstructorsWithACodeLeaveMissingStringsNull)
{
    ZException two(7, "a");
    EXPECT_EQ(two.code(), 7u);
    expectTexts(two, "a", nullptr, nullptr);

    ZException three(8, "a", "b");
    EXPECT_EQ(three.code(), 8u);
    expectTexts(three, "a", "b", nullptr);

    ZException four(0xFFFFFFFFu, "a", "b", "c");
    EXPECT_EQ(four.code(), 0xFFFFFFFFu);
    expectTexts(four, "a", "b", "c");
}

TEST(ZExceptionTest, MessageOnlyExceptionHasNoPlaceAndNoReason)
{
    ZException e("a");
    EXPECT_EQ(e.code(), 0u);
    expectTexts(e, "a", nullptr, nullptr);
}

TEST(ZExceptionTest, ConstructorsWithoutACodeLeaveMissingStringsNull)
{
    expectTexts(ZException("a", "b"), "a", "b", nullptr);
    expectTexts(ZException("a", "b", "c"), "a", "b", "c");
}

TEST(ZExceptionTest, StringsAreNotCopied)
{
    const char text[] = "mine";
    EXPECT_EQ(ZException(text).what(), text);
}

TEST(ZExceptionTest, AssignmentKeepsTheCodeOfTheTarget)
{
    ZException target(7, "a", "b", "c");
    target = ZException(8, "d", "e");
    EXPECT_EQ(target.code(), 7u);
    expectTexts(target, "d", "e", nullptr);
}

TEST(ZExceptionTest, AssignmentCallsTheVirtualAccessorsOfTheSource)
{
    ZException target(7, "a");
    target = Computed("stored");
    EXPECT_EQ(target.code(), 7u);
    expectTexts(target, "computed what", "computed where", "computed why");
}

TEST(ZExceptionTest, CopyKeepsTheCode)
{
    const ZException original(7, "a", "b", "c");
    const ZException copy(original);
    EXPECT_EQ(copy.code(), 7u);
    expectTexts(copy, "a", "b", "c");
}

TEST(ZExceptionTest, AccessorsAreVirtual)
{
    Computed e("stored");
    ZException& base = e;
    EXPECT_EQ(base.code(), 77u);
    expectTexts(base, "computed what", "computed where", "computed why");
}

TEST(ZExceptionTest, ConstExceptionReturnsTheVirtualCode)
{
    const Computed computed("stored");
    const ZException& base = computed;
    EXPECT_EQ(base.code(), 77u);
    const ZException plain(7, "a");
    EXPECT_EQ(plain.code(), 7u);
}

TEST(ZExceptionTest, VirtualFunctionsAreInOrder)
{
    using Code = unsigned int (ZException::*)() noexcept;
    EXPECT_EQ(slotOf(&ZException::what), 2u); // after the two destructors
    EXPECT_EQ(slotOf(static_cast<Code>(&ZException::code)), 3u);
    EXPECT_EQ(slotOf(&ZException::where), 4u);
    EXPECT_EQ(slotOf(&ZException::why), 5u);
}

TEST(ZExceptionTest, FieldsAreInOrder)
{
    const ZException e(7, "a", "b", "c");
    EXPECT_EQ(static_cast<unsigned int>(wordAt(&e, 1)), 7u);
    EXPECT_EQ(wordAt(&e, 2), asWord(e.what()));
    EXPECT_EQ(wordAt(&e, 3), asWord(e.where()));
    EXPECT_EQ(wordAt(&e, 4), asWord(e.why()));
}

TEST(ZExceptionTest, NotImplementedHasItsCodeAndMessage)
{
    ZXCNotImplemented e("A::b", "because");
    EXPECT_EQ(e.code(), 1025u);
    EXPECT_EQ(ZXCNotImplemented::s_code, 0x401u);
    expectTexts(e, "Not implemented", "A::b", "because");
}

TEST(ZExceptionTest, OutOfBoundsHasItsCodeAndMessage)
{
    ZXCOutOfBounds e("ZBitField::get", nullptr);
    EXPECT_EQ(e.code(), 1026u);
    EXPECT_EQ(ZXCOutOfBounds::s_code, 0x402u);
    expectTexts(e, "Out of bounds", "ZBitField::get", nullptr);
}

TEST(ZExceptionTest, VirtualBaseFollowsTheVtablePointer)
{
    const ZXCNotImplemented a("A", "B");
    const ZXCOutOfBounds b("A", "B");
    EXPECT_EQ(asWord(static_cast<const ZException*>(&a)), asWord(&a) + sizeof(void*));
    EXPECT_EQ(asWord(static_cast<const ZException*>(&b)), asWord(&b) + sizeof(void*));
}

TEST(ZExceptionTest, DerivedKindsShareOneVirtualBase)
{
    struct Both : ZXCNotImplemented, ZXCOutOfBounds {
        Both()
            : ZException(5, "both")
            , ZXCNotImplemented("A", nullptr)
            , ZXCOutOfBounds("B", nullptr)
        {
        }
    };
    Both e;
    EXPECT_EQ(e.code(), 5u);
    expectTexts(e, "both", nullptr, nullptr);
}

TEST(ZExceptionTest, AssignmentBetweenEqualKindsKeepsTheCode)
{
    ZXCOutOfBounds target("A", nullptr);
    target = ZXCOutOfBounds("B", "c");
    EXPECT_EQ(target.code(), 1026u);
    expectTexts(target, "Out of bounds", "B", "c");

    ZXCNotImplemented other("A", nullptr);
    other = ZXCNotImplemented("B", "c");
    EXPECT_EQ(other.code(), 1025u);
    expectTexts(other, "Not implemented", "B", "c");
}

TEST(ZExceptionTest, IsCaughtByEachOfItsBases)
{
    try {
        throw ZXCOutOfBounds("A", "b");
    } catch (const ZException& e) {
        EXPECT_EQ(e.code(), 1026u);
        expectTexts(e, "Out of bounds", "A", "b");
    }
    try {
        throw ZXCNotImplemented("A", nullptr);
    } catch (const std::exception& e) {
        EXPECT_STREQ(e.what(), "Not implemented");
    }
    EXPECT_THROW(throw ZInvalidOperationException(), ZInvalidOperationException);
    EXPECT_THROW(throw ZOutOfBoundsException(), ZOutOfBoundsException);
}

} // namespace
} // namespace ZSpace::Testing
