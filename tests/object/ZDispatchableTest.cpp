// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/object/ZDispatchable.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/object/ZObject.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/DeathTests.h"
#include "tests/support/LockTests.h"
#include "tests/support/Probes.h"
#include "tests/support/Slots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

using Lock = ZThreadLock_T<pthread_mutex_t>;
using Method = ZDispatchMethod<Lock>;
using Value = TZValueBase<ZTypeId>;
using Arguments = ZList<Value>;

static_assert(std::is_base_of_v<ZDispatchable<Lock>, ZObject>);
static_assert(std::is_base_of_v<TZReferenceable<TZRefCounter<int>>, ZObject>);
static_assert(std::has_virtual_destructor_v<ZObject>);
static_assert(!std::is_copy_constructible_v<ZObject> && !std::is_copy_assignable_v<ZObject>);
static_assert(std::is_same_v<decltype(std::declval<ZObject>().InvokableMethods()), long>);

/// Records what happens to the methods of a test.
struct Log {
    std::vector<std::string> asked; ///< whose names were requested
    std::vector<std::string> invoked;
    std::vector<std::string> disposed;
};

class LoggedMethod : public Method {
public:
    LoggedMethod(Log& log, const char* name)
        : m_log(log)
        , m_name(name)
    {
    }
    ~LoggedMethod() override { m_log.disposed.push_back(m_name); }
    [[nodiscard]] ZGStr<char> Name() const override
    {
        m_log.asked.push_back(m_name);
        return m_name.c_str();
    }
    Value invoke(Arguments& args) override
    {
        m_log.invoked.push_back(m_name);
        args.add(Value(std::in_place, 99));
        return Value(std::in_place, static_cast<int>(args.Count()));
    }

private:
    Log& m_log;
    std::string m_name;
};

class Object : public ZObject {
public:
    using ZObject::registerMethod;

    explicit Object(std::function<void()> goodbye = [] {})
        : m_goodbye(std::move(goodbye))
    {
    }
    ~Object() override { m_goodbye(); }

private:
    std::function<void()> m_goodbye;
};

/// An object with the methods `a`, `b` and `c`.
class ZDispatchableTest : public testing::Test {
protected:
    ZDispatchableTest()
    {
        for (const char* name : {"a", "b", "c"})
            m_object.registerMethod(m_methods.emplace_back(new LoggedMethod(m_log, name)));
    }

    Log m_log;
    Object m_object;
    std::vector<Method*> m_methods;
};

// Layout

TEST(ZObjectTest, CountFollowsTheVtablePointerAndPrecedesTheMethods)
{
    Log log;
    auto* object = new Object;
    EXPECT_EQ(
        asWord(static_cast<TZReferenceable<TZRefCounter<int>>*>(object)), asWord(object) + sizeof(void*));
    const ZReference<ZObject> handle(object);
    EXPECT_EQ(wordAt(object, 1), 1u);
    object->registerMethod(new LoggedMethod(log, "a"));
    object->registerMethod(new LoggedMethod(log, "b"));
    EXPECT_NE(wordAt(object, 2), 0u); // the table's block
    EXPECT_EQ(wordAt(object, 3), 2u); // and its count
    static_assert(sizeof(ZObject) == (1 + 1 + 2 + 3) * sizeof(void*) + sizeof(Lock));
}

TEST(ZObjectTest, VirtualFunctionsFollowTheDestructors)
{
    EXPECT_EQ(slotOf(&ZObject::invokeByName), 2u);
    EXPECT_EQ(slotOf(&ZObject::InvokableMethods), 3u);
    EXPECT_EQ(slotOf(&ZObject::InvokableMethod), 4u);
}

TEST(ZDispatchMethodTest, NameIsTheFirstVirtualFunctionAndTheDestructorsFollow)
{
    EXPECT_EQ(slotOf(&Method::Name), 0u);
    EXPECT_EQ(slotOf(&Method::invoke), 3u);
}

// Method table

TEST(ZObjectTest, StartsWithoutMethods)
{
    ZObject object;
    Arguments args;
    EXPECT_EQ(object.InvokableMethods(), 0);
    for (long index : {0L, 1L, -1L, LONG_MIN, LONG_MAX})
        EXPECT_EQ(object.InvokableMethod(index), nullptr);
    EXPECT_THROW(object.invokeByName("a", args), ZInvalidOperationException);
    EXPECT_THROW(object.invokeByName(nullptr, args), ZInvalidOperationException);
}

TEST_F(ZDispatchableTest, CountsItsMethods)
{
    EXPECT_EQ(m_object.InvokableMethods(), 3);
    m_object.registerMethod(nullptr);
    EXPECT_EQ(m_object.InvokableMethods(), 3);
}

TEST_F(ZDispatchableTest, IndicesCountFromEitherEndAndAreClamped)
{
    const std::pair<long, int> table[]{{0, 0}, {1, 1}, {2, 2}, {3, 2}, {7, 2}, {LONG_MAX, 2}, {-1, 2},
        {-2, 1}, {-3, 0}, {-4, 0}, {-9, 0}, {LONG_MIN, 0}};
    for (const auto& [index, method] : table)
        EXPECT_EQ(m_object.InvokableMethod(index), m_methods[static_cast<std::size_t>(method)]) << index;
}

TEST(ZObjectDeathTest, RegisteringTerminatesIfAllocationFails)
{
    Log log;
    EXPECT_EXIT(
        {
            Object object;
            auto* method = new LoggedMethod(log, "a");
            const AllocationFault fault(1);
            object.registerMethod(method);
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

// Invoking

TEST_F(ZDispatchableTest, InvokesTheLastMethodByItsName)
{
    Arguments args;
    args.add(Value(std::in_place, 1));
    const Value result = m_object.invokeByName("c", args);
    EXPECT_TRUE(result == Value(std::in_place, 2));
    EXPECT_EQ(args.Count(), 2);
    EXPECT_THAT(m_log.invoked, ElementsAre("c"));
    EXPECT_THAT(m_log.asked, ElementsAre("c"));
}

TEST_F(ZDispatchableTest, ExceptionsOfMethodsPropagate)
{
    struct Thrower : Method {
        [[nodiscard]] ZGStr<char> Name() const override { return "thrower"; }
        Value invoke(Arguments&) override { throw ZException(7, "from a method"); }
    };
    m_object.registerMethod(new Thrower);
    Arguments args;
    EXPECT_THROW(m_object.invokeByName("thrower", args), ZException);
}

TEST_F(ZDispatchableTest, EmptyNameMatchesAMethodWithoutOne)
{
    m_object.registerMethod(new LoggedMethod(m_log, ""));
    Arguments args;
    m_object.invokeByName("", args);
    m_object.invokeByName(nullptr, args);
    EXPECT_THAT(m_log.invoked, ElementsAre("", ""));
}

/// Thrown to end an endless search.
class OutOfPatience { };

class PatientMethod : public Method {
public:
    explicit PatientMethod(long patience)
        : m_patience(patience)
    {
    }
    [[nodiscard]] ZGStr<char> Name() const override
    {
        if (++m_asked == m_patience)
            throw OutOfPatience();
        return m_asked == m_nameComesAt ? "late" : "last";
    }
    Value invoke(Arguments&) override { return Value(std::in_place, static_cast<int>(m_asked)); }

    mutable long m_asked = 0;
    long m_nameComesAt = 0;

private:
    long m_patience;
};

TEST_F(ZDispatchableTest, SearchForAnotherNameAsksOnlyTheLastMethod)
{
    auto* last = new PatientMethod(1000000);
    m_object.registerMethod(last);
    Arguments args;
    for (const char* name : {"a", "b", "c", "unknown"}) {
        last->m_asked = 0;
        EXPECT_THROW(m_object.invokeByName(name, args), OutOfPatience);
        EXPECT_EQ(last->m_asked, 1000000);
    }
    EXPECT_TRUE(m_log.asked.empty());
    EXPECT_TRUE(m_log.invoked.empty());
}

TEST_F(ZDispatchableTest, EachPassAsksForTheName)
{
    auto* last = new PatientMethod(1000);
    last->m_nameComesAt = 700;
    m_object.registerMethod(last);
    Arguments args;
    EXPECT_TRUE(m_object.invokeByName("late", args) == Value(std::in_place, 700));
}

TEST_F(ZDispatchableTest, EachPassFreesTheName)
{
    m_object.registerMethod(new PatientMethod(1000));
    Arguments args;
    const long alive = blocksAlive();
    EXPECT_THROW(m_object.invokeByName("unknown", args), OutOfPatience);
    EXPECT_EQ(blocksAlive(), alive);
}

TEST_F(ZDispatchableTest, SearchTakesNoLockSoThatMethodsCanBeRegisteredMeanwhile)
{
    struct Registrar : Method {
        explicit Registrar(Object& object, Log& log)
            : m_object(object)
            , m_log(log)
        {
        }
        [[nodiscard]] ZGStr<char> Name() const override
        {
            std::thread([this] { m_object.registerMethod(new LoggedMethod(m_log, "found")); }).join();
            return "registrar";
        }
        Value invoke(Arguments&) override { return {}; }
        Object& m_object;
        Log& m_log;
    };
    m_object.registerMethod(new Registrar(m_object, m_log));
    Arguments args;
    m_object.invokeByName("found", args);
    EXPECT_THAT(m_log.invoked, ElementsAre("found"));
}

// Destruction

TEST(ZObjectTest, DeletesItsMethodsFromLastToFirst)
{
    Log log;
    {
        Object object([&] { EXPECT_TRUE(log.disposed.empty()); });
        for (const char* name : {"a", "b", "c"})
            object.registerMethod(new LoggedMethod(log, name));
    }
    EXPECT_THAT(log.disposed, ElementsAre("c", "b", "a"));
}

TEST(ZObjectTest, MethodDestructorsMayCallTheObject)
{
    struct Onlooker : Method {
        Onlooker(Object& object, long& seen)
            : m_object(object)
            , m_seen(seen)
        {
        }
        ~Onlooker() override { m_seen = m_object.InvokableMethods(); }
        [[nodiscard]] ZGStr<char> Name() const override { return "onlooker"; }
        Value invoke(Arguments&) override { return {}; }
        Object& m_object;
        long& m_seen;
    };
    long seen = 0;
    {
        Object object;
        object.registerMethod(new Onlooker(object, seen));
    }
    EXPECT_EQ(seen, 1);
}

/// Calls its object while it is destroyed.
class Caller : public Method {
public:
    Caller(Object& object, Log& log, const char* name)
        : m_object(object)
        , m_log(log)
        , m_name(name)
    {
    }
    ~Caller() override
    {
        for (long index : {-1L, 0L, LONG_MAX, LONG_MIN}) {
            const ZGStr<char> name = m_object.InvokableMethod(index)->Name();
            m_log.asked.emplace_back(static_cast<const char*>(name));
        }
        Arguments args;
        m_object.ZObject::invokeByName(m_name, args);
    }
    [[nodiscard]] ZGStr<char> Name() const override { return m_name; }
    Value invoke(Arguments&) override
    {
        m_log.invoked.emplace_back(m_name);
        return {};
    }

private:
    Object& m_object;
    Log& m_log;
    const char* m_name;
};

TEST(ZObjectTest, MethodDestructorsFindOnlyLiveMethods)
{
    Log log;
    {
        Object object;
        for (const char* name : {"a", "b", "c"})
            object.registerMethod(new Caller(object, log, name));
    }
    EXPECT_THAT(log.asked, ElementsAre("c", "a", "c", "a", "b", "a", "b", "a", "a", "a", "a", "a"));
    EXPECT_THAT(log.invoked, ElementsAre("c", "b", "a"));
}

TEST(ZObjectTest, MethodDestructorsMayRegisterMethods)
{
    struct Registrar : Method {
        Registrar(Object& object, Log& log)
            : m_object(object)
            , m_log(log)
        {
        }
        ~Registrar() override
        {
            m_object.registerMethod(new LoggedMethod(m_log, "late"));
            m_log.disposed.emplace_back("registrar");
        }
        [[nodiscard]] ZGStr<char> Name() const override { return "registrar"; }
        Value invoke(Arguments&) override { return {}; }
        Object& m_object;
        Log& m_log;
    };
    Log log;
    {
        Object object;
        object.registerMethod(new LoggedMethod(log, "first"));
        object.registerMethod(new Registrar(object, log));
    }
    EXPECT_THAT(log.disposed, ElementsAre("registrar", "late", "first"));
}

TEST(ZObjectTest, DestructionAllocatesNothing)
{
    Log log;
    log.disposed.reserve(8);
    auto object = std::make_unique<Object>();
    for (const char* name : {"a", "b", "c"})
        object->registerMethod(new LoggedMethod(log, name));
    const long allocations = allocationsMade();
    object.reset();
    EXPECT_EQ(allocationsMade(), allocations);
}

/// The lock of an object, its last field.
Lock& lockOf(ZObject& object)
{
    return *reinterpret_cast<Lock*>(
        reinterpret_cast<unsigned char*>(&object) + sizeof(ZObject) - sizeof(Lock));
}

TEST(ZObjectTest, RegisteringAndDestructionWaitForTheLock)
{
    Log log;
    auto object = std::make_unique<Object>();
    EXPECT_TRUE(waitsFor(lockOf(*object), [&] { object->registerMethod(new LoggedMethod(log, "a")); }));
    EXPECT_EQ(object->InvokableMethods(), 1);
    EXPECT_TRUE(waitsFor(lockOf(*object), [&] { object.reset(); }));
    EXPECT_THAT(log.disposed, ElementsAre("a"));
}

TEST(ZObjectTest, LastHandleDeletesItThroughItsVirtualDestructor)
{
    int destroyed = 0;
    ZReference<ZObject> a(new Object([&] { ++destroyed; }));
    ZReference<ZObject> b(a);
    EXPECT_EQ(a.RefCount(), 2);
    EXPECT_TRUE(a.release());
    EXPECT_EQ(destroyed, 0);
    EXPECT_FALSE(b.release());
    EXPECT_EQ(destroyed, 1);
}

TEST(ZObjectTest, ThreadsRegisterConcurrently)
{
    Log log;
    Object object;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i)
                object.registerMethod(new PatientMethod(1));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(object.InvokableMethods(), 200);
}

} // namespace
} // namespace ZSpace::Testing
