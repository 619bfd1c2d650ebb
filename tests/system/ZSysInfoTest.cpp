// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Facts of each kind, providers and their order.

#include "ZSpace/system/ZSysInfo.h"

#include "ZSpace/system/ZSysInfoPaths.h"
#include "tests/support/DeathTests.h"
#include "tests/support/Probes.h"
#include "tests/support/Slots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

namespace ZSpace::Testing {
namespace {

using Value = TZValueBase<ZTypeId>;

const wchar_t* const s_key = L"key";
const wchar_t* const s_name = L"name";

ZRef<Value> stringValue(const char* string)
{
    return ZRef<Value>(new Value(ZGStr<char>(string)));
}

TEST(ZSysInfoObjectTest, HoldsAValue)
{
    const ZRef<Value> value = stringValue("text");
    const ZSysInfoObject object(s_key, s_name, value);
    EXPECT_EQ(object.Key(), s_key);
    EXPECT_EQ(object.Name(), s_name);
    EXPECT_EQ(object.ObjectType(), 2U);
    EXPECT_TRUE(object.Value().toCString() == "text");
    EXPECT_EQ(value.RefCount(), 2);
    EXPECT_EQ(object.Values().Count(), 0);
    EXPECT_EQ(object.NativeValue(), nullptr);
    EXPECT_EQ(object.KeyMap().Count(), 0);
}

TEST(ZSysInfoObjectTest, HoldsAListOfValues)
{
    ZList<ZRef<Value>> values;
    values.add(stringValue("a"));
    values.add(stringValue("b"));
    const ZSysInfoObject object(s_key, s_name, values);
    EXPECT_EQ(object.ObjectType(), 3U);
    ASSERT_EQ(object.Values().Count(), 2);
    EXPECT_TRUE(object.Values()[0].toCString() == "a");
    EXPECT_TRUE(object.Values()[1].toCString() == "b");
    EXPECT_EQ(values[0].RefCount(), 2);
    EXPECT_EQ(static_cast<unsigned int>(object.Value().Type()), 0U);
}

TEST(ZSysInfoObjectTest, HoldsANativePointer)
{
    int target = 0;
    const ZSysInfoObject object(s_key, s_name, static_cast<void*>(&target));
    EXPECT_EQ(object.ObjectType(), 4U);
    EXPECT_EQ(object.NativeValue(), &target);
    EXPECT_EQ(static_cast<unsigned int>(object.Value().Type()), 0U);
}

TEST(ZSysInfoObjectTest, HoldsAKeyMap)
{
    ZSysInfoKeyMap keys;
    keys.add(s_key, s_name);
    const ZSysInfoObject object(s_key, s_name, keys);
    EXPECT_EQ(object.ObjectType(), 5U);
    ASSERT_EQ(object.KeyMap().Count(), 1);
    EXPECT_EQ(*object.KeyMap().find(s_key), s_name);
}

TEST(ZSysInfoObjectTest, FieldsAreInOrder)
{
    int target = 0;
    const ZSysInfoObject object(s_key, s_name, static_cast<void*>(&target));
    EXPECT_EQ(wordAt(&object, 0), asWord(s_key));
    EXPECT_EQ(wordAt(&object, 1), asWord(s_name));
    EXPECT_EQ(wordAt(&object, 2) & 0xFFFFFFFF, 4u);
    EXPECT_EQ(wordAt(&object, 3), asWord(&target));
}

TEST(ZSysInfoObjectDeathTest, ValueOfAnEmptyHandleIsReported)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            sendOutputToError();
            static_cast<void>(ZSysInfoObject(s_key, s_name, ZRef<Value>()).Value());
        },
        testing::KilledBySignal(SIGABRT), "this->m_ptValue.*ZTypeRef.*543");
}

TEST(ZSysInfoProviderTest, OperationsAreInOrder)
{
    using Provider = ZSysInfoProvider;
    EXPECT_EQ(slotOf(&Provider::Key), 2U); // 0 and 1 are the destructor's
    EXPECT_EQ(slotOf(&Provider::Name), 3U);
    EXPECT_EQ(slotOf(&Provider::refreshInfo), 4U);
    EXPECT_EQ(slotOf(&Provider::releaseInfo), 5U);
    EXPECT_EQ(slotOf(&Provider::getKeys), 6U);
    EXPECT_EQ(slotOf(&Provider::getObject), 7U);
    EXPECT_EQ(slotOf(&ZSysInfoPaths::getObject), 7U);
}

TEST(ZSysInfoProviderTest, CreatesObjectsOfEachKind)
{
    struct Creating : ZSysInfoProvider {
        using ZSysInfoProvider::createObject;
    };
    int target = 0;
    const ZRef<ZSysInfoObject> objects[]{Creating::createObject(s_key, s_name, stringValue("a")),
        Creating::createObject(s_key, s_name, ZList<ZRef<Value>>()),
        Creating::createObject(s_key, s_name, static_cast<void*>(&target)),
        Creating::createObject(s_key, s_name, ZSysInfoKeyMap())};
    unsigned int type = 2;
    for (const ZRef<ZSysInfoObject>& object : objects) {
        EXPECT_EQ(object->ObjectType(), type++);
        EXPECT_EQ(object->Key(), s_key);
        EXPECT_EQ(object->Name(), s_name);
    }
}

TEST(ZSysInfoObjectTest, CopiesShareTheirContent)
{
    const ZRef<Value> value = stringValue("text");
    {
        const ZSysInfoObject object(s_key, s_name, value);
        const ZSysInfoObject copy(object); // NOLINT: the copy is the point
        EXPECT_EQ(value.RefCount(), 3);
        EXPECT_TRUE(copy.Value().toCString() == "text");
    }
    EXPECT_EQ(value.RefCount(), 1);
}

/// Returns a preset answer; counts its live instances.
class Provider : public ZSysInfoProvider {
public:
    Provider(const wchar_t* key, const wchar_t* name, unsigned int status, const char* answer)
        : m_key(key)
        , m_name(name)
        , m_status(status)
        , m_answer(answer)
    {
        ++s_living;
    }
    ~Provider() override { --s_living; }
    [[nodiscard]] const wchar_t* Key() const override { return m_key; }
    [[nodiscard]] const wchar_t* Name() const override { return m_name; }
    void refreshInfo() override { }
    void releaseInfo() override { }
    void getKeys(ZSysInfoKeyMap& keys) const override { keys.add(m_key, m_name); }
    unsigned int getObject(const wchar_t* key, ZRef<ZSysInfoObject>& out) override
    {
        s_asked.emplace_back(m_answer);
        out = createObject(key, m_name, stringValue(m_answer)); // even if it does not know the key
        return m_status;
    }

    static inline int s_living = 0;
    static inline std::vector<std::string> s_asked;

private:
    const wchar_t* m_key;
    const wchar_t* m_name;
    unsigned int m_status;
    const char* m_answer;
};

TEST(ZSysInfoTest, QueriesProvidersInOrderUntilOneKnowsTheKey)
{
    Provider::s_asked.clear();
    {
        ZSysInfo info;
        info.addProvider(nullptr);
        info.addProvider(new Provider(L"a", L"A", 0xFFFFFFFF, "first"));
        info.addProvider(ZRef<ZSysInfoProvider>(new Provider(L"b", L"B", 0, "second")));
        info.addProvider(new Provider(L"c", L"C", 0, "third"));
        const ZRef<ZSysInfoObject> object = info.getObject(L"any");
        ASSERT_TRUE(object);
        EXPECT_TRUE(object->Value().toCString() == "second");
        EXPECT_THAT(Provider::s_asked, testing::ElementsAre("first", "second"));
        EXPECT_EQ(Provider::s_living, 3);
    }
    EXPECT_EQ(Provider::s_living, 0);
}

TEST(ZSysInfoTest, ReturnsAnEmptyHandleIfNoProviderKnowsTheKey)
{
    ZSysInfo info;
    EXPECT_FALSE(info.getObject(L"any"));
    info.addProvider(new Provider(L"a", L"A", 7, "x"));
    EXPECT_FALSE(info.getObject(L"any"));
}

TEST(ZSysInfoTest, ListsProvidersThatHaveKeyAndName)
{
    ZSysInfo info;
    info.addProvider(new Provider(L"a", L"A", 0, "x"));
    info.addProvider(new Provider(nullptr, L"B", 0, "x"));
    info.addProvider(new Provider(L"c", nullptr, 0, "x"));
    info.addProvider(new Provider(L"d", L"D", 0, "x"));
    const ZSysInfoKeyMap loaded = info.getLoadedProviders();
    ASSERT_EQ(loaded.Count(), 2);
    EXPECT_STREQ(loaded[0].first, L"a");
    EXPECT_STREQ(loaded[0].second, L"A");
    EXPECT_STREQ(loaded[1].first, L"d");
}

} // namespace
} // namespace ZSpace::Testing
