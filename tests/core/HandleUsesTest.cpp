// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Natural uses of handles: which must compile and what they do, and which must not compile.

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZReference.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/CountedTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <type_traits>
#include <unordered_set>
#include <utility>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

struct Padding {
    virtual ~Padding() = default;
    long padding = 1;
};

class Animal : public TZReferenceable<TZRefCounter<int>> {
public:
    Animal() = default;
    Animal(const Animal&) = delete;
    Animal& operator=(const Animal&) = delete;
    virtual ~Animal() = default;
    [[nodiscard]] virtual int legs() const { return 0; }
};

/// Not at the address of its base `Animal`.
class Dog final : public Padding, public Animal {
public:
    explicit Dog(int number = 1)
        : m_counted(number)
    {
    }
    [[nodiscard]] int legs() const override { return 4; }

private:
    Counted m_counted;
};

class Cat final : public Animal { };

struct Plain { };
struct DerivedFromPlain : Plain { };

// What must compile and what must not, for both kinds of handles

template <typename A, typename B>
concept EqualityComparable = requires(const A& a, const B& b)
{
    a == b;
    a != b;
};
template <typename A, typename B>
concept Ordered = requires(const A& a, const B& b)
{
    a < b;
    a <=> b;
};
template <typename To, typename From>
concept StaticCastable = requires(const From& handle)
{
    staticRefCast<To>(handle);
};
template <typename To, typename From>
concept DynamicCastable = requires(const From& handle)
{
    dynamicRefCast<To>(handle);
};

template <template <typename, typename> typename H>
struct Uses {
    template <typename T>
    using Handle = H<T, TZRefCounter<int>>;

    static_assert(std::is_convertible_v<Handle<Dog>, Handle<Animal>>);
    static_assert(std::is_convertible_v<Handle<Dog>, Handle<const Dog>>);
    static_assert(std::is_convertible_v<Handle<Dog>, Handle<const Animal>>);
    static_assert(std::is_assignable_v<Handle<Animal>&, Handle<Dog>>);
    static_assert(std::is_assignable_v<Handle<Animal>&, const Handle<Dog>&>);
    static_assert(std::is_assignable_v<Handle<Animal>&, std::nullptr_t>);
    static_assert(std::is_nothrow_constructible_v<Handle<Animal>, const Handle<Dog>&>);
    static_assert(EqualityComparable<Handle<Dog>, Handle<Dog>>);
    static_assert(EqualityComparable<Handle<Dog>, Handle<Animal>>);
    static_assert(EqualityComparable<Handle<Dog>, std::nullptr_t>);
    static_assert(EqualityComparable<std::nullptr_t, Handle<Dog>>);
    static_assert(Ordered<Handle<Dog>, Handle<Dog>>);
    static_assert(Ordered<Handle<Dog>, Handle<Animal>>);
    static_assert(StaticCastable<Dog, Handle<Animal>>);
    static_assert(DynamicCastable<Dog, Handle<Animal>>);
    static_assert(std::is_default_constructible_v<std::hash<Handle<Dog>>>);

    static_assert(!std::is_convertible_v<Dog*, Handle<Dog>>);
    static_assert(!std::is_convertible_v<std::nullptr_t, Handle<Dog>>);
    static_assert(!std::is_convertible_v<Handle<Dog>, Dog*>);
    static_assert(!std::is_convertible_v<Handle<Dog>, bool>);
    static_assert(!std::is_convertible_v<Handle<Dog>, int>);
    static_assert(!std::is_constructible_v<Handle<Dog>, Handle<Animal>>);
    static_assert(!std::is_constructible_v<Handle<Dog>, Handle<const Dog>>);
    static_assert(!std::is_constructible_v<Handle<Dog>, Handle<Cat>>);
    static_assert(!std::is_assignable_v<Handle<Dog>&, Handle<Animal>>);
    static_assert(!std::is_assignable_v<Handle<Dog>&, Cat*>);
    static_assert(!EqualityComparable<Handle<Dog>, Handle<Cat>>);
    static_assert(!EqualityComparable<Handle<Dog>, int>);
    static_assert(!EqualityComparable<Handle<Dog>, bool>);
    static_assert(!Ordered<Handle<Dog>, std::nullptr_t>);
    static_assert(!Ordered<Handle<Dog>, Handle<Cat>>);
    // The last handle would delete a derived object through a base without a virtual destructor.
    static_assert(!std::is_constructible_v<Handle<Plain>, Handle<DerivedFromPlain>>);
};

template struct Uses<ZRef>;
template struct Uses<ZReference>;

static_assert(!EqualityComparable<ZRef<Dog>, ZReference<Dog>>);
static_assert(!std::is_constructible_v<ZRef<Dog>, ZReference<Dog>>);
static_assert(!std::is_constructible_v<ZReference<Dog>, ZRef<Dog>>);
static_assert(sizeof(ZRef<Dog>) == 2 * sizeof(void*) && sizeof(ZReference<Dog>) == 2 * sizeof(void*));

// What they do

struct SharedHandles {
    template <typename T>
    using Handle = ZRef<T>;
    static ZRef<Dog> make(int number) { return makeRef<Dog>(number); }
};

struct AdoptedHandles {
    template <typename T>
    using Handle = ZRef<T>;
    static ZRef<Dog> make(int number) { return ZRef<Dog>(new Dog(number)); }
};

struct IntrusiveHandles {
    template <typename T>
    using Handle = ZReference<T>;
    static ZReference<Dog> make(int number) { return makeReference<Dog>(number); }
};

template <typename Kind>
class HandleUsesTest : public CountedTest {
};

struct KindName {
    template <typename Kind>
    static std::string GetName(int)
    {
        if (std::is_same_v<Kind, SharedHandles>)
            return "makeRef";
        return std::is_same_v<Kind, AdoptedHandles> ? "ZRef" : "ZReference";
    }
};

using Kinds = testing::Types<SharedHandles, AdoptedHandles, IntrusiveHandles>;
TYPED_TEST_SUITE(HandleUsesTest, Kinds, KindName);

TYPED_TEST(HandleUsesTest, ConvertedHandlesShareTheCount)
{
    using AnimalHandle = typename TypeParam::template Handle<Animal>;
    auto dog = TypeParam::make(3);
    AnimalHandle animal = dog;
    EXPECT_EQ(animal.RefCount(), 2);
    EXPECT_EQ(animal.get(), dog.get());
    EXPECT_EQ(animal->legs(), 4);
    AnimalHandle assigned;
    assigned = dog;
    EXPECT_EQ(dog.RefCount(), 3);
    dog = nullptr;
    assigned = nullptr;
    EXPECT_EQ(Counted::s_tally.alive, 1);
    animal = nullptr; // the last handle is one of the base class
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(3));

    const AnimalHandle empty = decltype(dog)();
    EXPECT_TRUE(empty == nullptr);
    EXPECT_EQ(empty.RefCount(), 0);
}

TYPED_TEST(HandleUsesTest, HandlesCompareByTheirObjects)
{
    using AnimalHandle = typename TypeParam::template Handle<Animal>;
    const auto a = TypeParam::make(1);
    const auto b = TypeParam::make(2);
    const auto copy = a;
    const AnimalHandle animal = a;
    EXPECT_TRUE(a == copy);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a == animal);
    EXPECT_TRUE(b != animal);
    EXPECT_TRUE(a != nullptr);
    EXPECT_TRUE(nullptr == AnimalHandle());
    EXPECT_EQ(a < b, a.get() < b.get());
    EXPECT_EQ(a <=> copy, std::strong_ordering::equal);
    EXPECT_TRUE(AnimalHandle() < animal);
}

TYPED_TEST(HandleUsesTest, HandlesAreKeysOfContainers)
{
    const auto a = TypeParam::make(1);
    const auto b = TypeParam::make(2);
    using Handle = std::remove_const_t<decltype(a)>;
    EXPECT_EQ((std::unordered_set<Handle>{a, b, a}.size()), 2u);
    EXPECT_EQ((std::set<Handle>{b, a, b, Handle()}.size()), 3u);
    std::map<Handle, int> numbers{{a, 1}, {b, 2}};
    EXPECT_EQ(numbers[b], 2);
    EXPECT_EQ(std::hash<Handle>()(a), std::hash<Dog*>()(a.get()));
}

TYPED_TEST(HandleUsesTest, HandlesAreFoundInLists)
{
    const auto a = TypeParam::make(1);
    const auto b = TypeParam::make(2);
    using Handle = std::remove_const_t<decltype(a)>;
    ZListing<Handle> list;
    list.add(a);
    list.add(b);
    list.add(a);
    EXPECT_EQ(list.il_find(b), 1);
    EXPECT_EQ(list.il_find(a, 1), 2);
    EXPECT_EQ(list.il_find(Handle()), -1);
}

TYPED_TEST(HandleUsesTest, CastsShareTheCount)
{
    using AnimalHandle = typename TypeParam::template Handle<Animal>;
    const AnimalHandle animal = TypeParam::make(1);
    {
        const auto dog = staticRefCast<Dog>(animal);
        const auto checked = dynamicRefCast<Dog>(animal);
        EXPECT_EQ(animal.RefCount(), 3);
        EXPECT_TRUE(dog == checked);
        const auto cat = dynamicRefCast<Cat>(animal);
        EXPECT_TRUE(cat == nullptr);
        EXPECT_EQ(cat.RefCount(), 0);
        const auto padding = dynamicRefCast<Dog>(AnimalHandle());
        EXPECT_TRUE(!padding);
    }
    EXPECT_EQ(animal.RefCount(), 1);
    EXPECT_TRUE(staticRefCast<Dog>(AnimalHandle()) == nullptr);
}

using MakeRefTest = CountedTest;

TEST_F(MakeRefTest, AllocatesOneBlockAndFreesIt)
{
    const long alive = blocksAlive();
    const long allocations = allocationsMade();
    {
        ZRef<Counted> handle = makeRef<Counted>(7);
        EXPECT_EQ(allocationsMade(), allocations + 1);
        EXPECT_EQ(handle.RefCount(), 1);
        const ZRef<Counted> copy = handle;
        handle = nullptr;
        EXPECT_EQ(copy.RefCount(), 1);
        EXPECT_EQ(copy->number(), 7);
    }
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(7));
    Counted::reset(); // frees the tally's own block
    EXPECT_EQ(blocksAlive(), alive);
}

TEST_F(MakeRefTest, AllocationFailuresPropagateWithoutLeaks)
{
    EXPECT_EQ(failEachAllocation([] { keep(makeRef<int>(1).get()); }), 1);
    EXPECT_EQ(failEachAllocation([] { keep(makeReference<Cat>().get()); }), 1);
}

TEST_F(MakeRefTest, ExceptionsOfTheConstructorPropagateWithoutLeaks)
{
    struct Thrower {
        Thrower() { throw std::runtime_error("from a constructor"); }
    };
    const long alive = blocksAlive();
    EXPECT_THROW(std::ignore = makeRef<Thrower>(), std::runtime_error);
    EXPECT_EQ(blocksAlive(), alive);
}

TEST_F(MakeRefTest, ForwardsItsArguments)
{
    struct Taking {
        explicit Taking(std::unique_ptr<int> value, int& reference)
            : m_value(std::move(value))
            , m_reference(reference)
        {
        }
        std::unique_ptr<int> m_value;
        int& m_reference;
    };
    int number = 1;
    const auto handle = makeRef<Taking>(std::make_unique<int>(5), number);
    handle->m_reference = *handle->m_value;
    EXPECT_EQ(number, 5);
}

TEST_F(MakeRefTest, RespectsAlignmentAndOwnAllocation)
{
    struct alignas(64) Aligned {
        char bytes[64] = {};
    };
    const auto aligned = makeRef<Aligned>();
    EXPECT_EQ(asWord(aligned.get()) % 64, 0u);

    struct Own {
        static void* operator new(std::size_t size)
        {
            ++s_allocated();
            return ::operator new(size);
        }
        static void operator delete(void* block) noexcept
        {
            --s_allocated();
            ::operator delete(block);
        }
        static int& s_allocated()
        {
            static int count = 0;
            return count;
        }
    };
    {
        const auto own = makeRef<Own>();
        EXPECT_EQ(Own::s_allocated(), 1);
    }
    EXPECT_EQ(Own::s_allocated(), 0);
}

} // namespace
} // namespace ZSpace::Testing
