// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

/// Like `std::string`, made from a pointer or by an explicit conversion, whichever the compiler prefers.
struct Target {
    explicit constexpr Target(bool converted)
        : m_converted(converted)
    {
    }
    constexpr Target(const char*) { }
    bool m_converted = false;
};

struct Source {
    constexpr operator const char*() const { return ""; }
    explicit constexpr operator Target() const { return Target(true); }
};

/// Not so with g++ 14.
constexpr bool s_explicitConversionsAreFound = Target(Source()).m_converted;

template <typename S>
class StandardConversions : public ::testing::Test {
public:
    using Char = typename CharOf<S>::type;
    using Standard = std::basic_string<Char>;
    using StandardView = std::basic_string_view<Char>;

    static std::vector<Standard> strings(const S& text)
    {
        const Standard named(text);
        Standard assigned;
        assigned = Standard(text);
        S copy(text);
        std::vector<Standard> all{Standard(text), Standard{text}, static_cast<Standard>(text), named,
            assigned, Standard(copy), Standard(S(text))};
        all.emplace_back(text);
        all.push_back(*std::optional<Standard>(std::in_place, text));
        return all;
    }

    static std::vector<Standard> views(const S& text)
    {
        const StandardView named(text);
        const StandardView copied = text;
        StandardView assigned;
        assigned = text;
        std::vector<Standard> all;
        for (const StandardView view : {StandardView(text), StandardView{text},
                 static_cast<StandardView>(text), named, copied, assigned})
            all.push_back(Standard(view));
        return all;
    }

    /// What the class holds of the given text: `ZGStr` ends at a zero.
    static Standard held(Standard text)
    {
        if constexpr (std::is_same_v<S, ZGStr<Char>>)
            text.resize(text.find_first_of(Char()));
        return text;
    }

    static void expectEach(const std::vector<Standard>& found, const Standard& expected)
    {
        for (std::size_t form = 0; form < found.size(); ++form)
            EXPECT_EQ(found[form], expected) << "form " << form;
    }

    static inline const Standard s_zeroWithin = Standard({Char('a'), Char(), Char('b')});
};
TYPED_TEST_SUITE(StandardConversions, AllClasses, TypeNames);

TYPED_TEST(StandardConversions, EveryFormOfAStringCopiesTheCharacters)
{
    for (const char* text : {"a", "longer than a small string's buffer"})
        this->expectEach(this->strings(TypeParam(lit<typename TestFixture::Char>(text))),
            wider<typename TestFixture::Char>(text));
}

TYPED_TEST(StandardConversions, StringsKeepEmbeddedZerosAndMayBeNullOrEmpty)
{
    using T = typename TestFixture::Char;
    if (!s_explicitConversionsAreFound && !std::is_same_v<TypeParam, ZStrToken<T>>)
        GTEST_SKIP() << "This compiler takes the pointer; the conversion by way of a view is tested instead.";
    const auto& text = this->s_zeroWithin;
    this->expectEach(this->strings(TypeParam(text.data(), 3)), this->held(text));
    this->expectEach(this->strings(TypeParam()), {});
    this->expectEach(this->strings(TypeParam(lit<T>(""))), {});
}

TYPED_TEST(StandardConversions, ViewsKeepEmbeddedZerosAndMayBeNullOrEmpty)
{
    const auto& text = this->s_zeroWithin;
    this->expectEach(this->views(TypeParam(text.data(), 3)), this->held(text));
    this->expectEach(this->views(TypeParam()), {});
    this->expectEach(this->views(TypeParam(lit<typename TestFixture::Char>(""))), {});
}

TYPED_TEST(StandardConversions, OnlyTokensBecomeStringsImplicitly)
{
    using T = typename TestFixture::Char;
    using String = typename TestFixture::Standard;
    constexpr bool isToken = std::is_same_v<TypeParam, ZStrToken<T>>;
    static_assert(std::is_constructible_v<String, const TypeParam&>);
    static_assert(std::is_convertible_v<const TypeParam&, String> == isToken);
    static_assert(std::is_assignable_v<String&, const TypeParam&> == !isToken); // takes the pointer
    static_assert(std::is_convertible_v<const TypeParam&, typename TestFixture::StandardView>);
    static_assert(std::is_convertible_v<const TypeParam&, const T*>);
}

} // namespace
} // namespace ZSpace::Testing
