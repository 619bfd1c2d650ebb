// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What people write without looking anything up, for everything above the strings, whose uses are in
// tests/string/OneLineUsesTest.cpp. That each line compiles is half of the test; the end of the file lists what must not
// compile.

#include "tests/support/OneLineUses.h"

#include "ZSpace/ZSpace.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <numeric>
#include <set>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZSpace::Testing {
namespace {

using Value = TZValueBase<ZTypeId>;
using namespace std::chrono_literals;

template <typename T>
std::string text(const T& value)
{
    std::ostringstream out;
    out << std::boolalpha << value;
    return out.str();
}

/// An expression, and what it prints.
#define USE(expected, ...)                                                                                   \
    Use                                                                                                      \
    {                                                                                                        \
#__VA_ARGS__, text(__VA_ARGS__), expected                                                            \
    }

// clang-format off: a table

TEST(OneLineUses, Times)
{
    const ZTime time(2024, 3, 5, 7, 8, 9, 42);
    const ZTime later(2024, 3, 5, 7, 9, 9, 42);
    using Milliseconds = std::chrono::sys_time<std::chrono::milliseconds>;
    expectResults({
        USE("2024-03-05T07:08:09", time),
        USE("2024-03-05T07:08:09", time.toCString()),
        USE("2024-03-05T07:08:09.042", time.toCStringEx()),
        USE("at 2024-03-05T07:08:09", "at " + std::string(time.toCString())),
        USE("60", later - time),
        USE("true", time < later && later > time && time <= time && time != later),
        USE("true", std::max(time, later) == later),
        USE("true", ZTime("2024-03-05T07:08:09") < time),
        USE("true", ZTime("nonsense").isCleared()),
        USE("2024-3-5", text(time.Year()) + '-' + text(int{time.Month()}) + '-' + text(int{time.Day()})),
        USE("true", ZTime(Milliseconds(time)) == time),
        USE("2024-03-05T09:08:09", ZTime(Milliseconds(time) + 2h)),
        USE("1970-01-01T00:00:01", ZTime(Milliseconds(1s))),
        USE("true", ZTime(std::chrono::system_clock::now()) >= ZTime(2024, 1, 1, 0, 0, 0, 0)),
        USE("true", ZTime(true) - ZTime(std::chrono::system_clock::now()) < 60),
        USE("1", std::set<ZTime>{time, time}.size()),
        USE("true", time == "2024-03-05T07:08:09" || time > "2024-03-05T07:08:09"),
    });
}

TEST(OneLineUses, Guids)
{
    const ZGUID id("{00112233-4455-6677-8899-aabbccddeeff}");
    ZGUID other;
    other.generate();
    expectResults({
        USE("{00112233-4455-6677-8899-aabbccddeeff}", id),
        USE("{00112233-4455-6677-8899-aabbccddeeff}", id.toCString()),
        USE("true", ZGUID("00112233-4455-6677-8899-AABBCCDDEEFF") == id),
        USE("true", ZGUID().isCleared() && !ZGUID() && !id.isCleared()),
        USE("true", other != id && (other < id) != (id < other)),
        USE("7", std::unordered_map<ZGUID, int>{{id, 7}}.at(id)),
        USE("2", std::set<ZGUID>{id, other, id}.size()),
        USE("1122867", id.data1),
    });
}

TEST(OneLineUses, Values)
{
    const Value number(std::in_place, 42);
    const Value string(ZGStr<char>("text"));
    const Value literal(std::in_place, "literal");
    ZValue<int, ZTypeId_int> typed(5);
    ZValueArrayBase array(ZTypeId_int);
    array.ArrayAdd(number);
    expectResults({
        USE("42", number.toCString()),
        USE("text", string.toCString()),
        USE("literal", literal.toCString()),
        USE("true", number == Value(std::in_place, 42)),
        USE("false", number == Value(std::in_place, 42L)),
        USE("true", number.Type() == ZTypeId_int && string.Type() == ZTypeId_string),
        USE("6", typed.Value() + 1),
        USE("true", typed == Value(std::in_place, 5)),
        USE("1 42", text(array.ArrayItemCount()) + ' ' + text(array.ArrayItem(0).toCString())),
        USE("true", Value(number) == number),
        USE("2024-03-05T07:08:09", Value(std::in_place, ZTime(2024, 3, 5, 7, 8, 9, 0)).toCString()),
    });
}

TEST(OneLineUses, ListsAndMaps)
{
    ZListing<ZGStr<char>> list;
    list.add("b");
    list.add("a");
    ZMap<ZGStr<char>, int> map;
    map.add("one", 1);
    map.add("two", 2);
    map.add("one", 11);
    ZArray<int> array;
    array.add(3);
    int out = 0;
    expectResults({
        USE("2", list.Count()),
        USE("b", list[0]),
        USE("1", list.il_find("a")),
        USE("-1", list.il_find("c")),
        USE("ba", std::accumulate(list.begin(), list.end(), ZGStr<char>(), std::plus<>())),
        USE("true", std::find(list.begin(), list.end(), "a") != list.end()),
        USE("a", *std::min_element(list.begin(), list.end())),
        USE("2", std::vector<ZGStr<char>>(list.begin(), list.end()).size()),
        USE("2", map.Count()),
        USE("11", map.at("one")),
        USE("2", *map.find("two")),
        USE("true", map.find("three") == nullptr),
        USE("2", map.get("two", out) ? out : -1),
        USE("one", map[0].first),
        USE("12", (map.at("one") += 1)),
        USE("3", array[0]),
        USE("3", *std::max_element(array.begin(), array.end())),
    });
    EXPECT_THROW(std::ignore = map.at("three"), ZXCOutOfBounds);
}

TEST(OneLineUses, Handles)
{
    const ZRef<int> handle = makeRef<int>(4);
    ZRef<const int> constant = handle;
    expectResults({
        USE("4", *handle),
        USE("true", handle == constant && handle != nullptr && handle),
        USE("2", handle.RefCount()),
        USE("true", (constant = nullptr) == nullptr),
        USE("1", handle.RefCount()),
        USE("1", std::set<ZRef<int>>{handle, handle}.size()),
    });
}

TEST(OneLineUses, RecordsStreamsAndFiles)
{
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "file.txt").string();
    ZIOGFile<> file;
    ZThreadLock_T<pthread_mutex_t> lock;
    const std::lock_guard guard(lock);
    char buffer[10]{};
    ZLogLevel level{};
    expectResults({
        USE("3", (ZLogRecord() << "a" << 1 << ZTime(true)).Count()),
        USE("1", (ZLogRecord() << "a" << 1).itemAt(-1)->toCString()),
        USE("WARNING", (ZLogRecord() << ZLogLevel::Warning).itemAt(0)->toCString()),
        USE("true", getLevel(ZLogRecord() << ZLogLevel::Error << 5, level) && level > ZLogLevel::Info),
        USE("0", file.open(path.c_str(), ZIOGFile<>::ModeWrite)),
        USE("6", file.write("12345\n", -1)),
        USE("0", file.flush()),
        USE("6", file.Size()),
        USE("0", file.close()),
        USE("0", file.open(ZGStr<char>(path), ZIOGFile<>::ModeRead)),
        USE("5", file.read(buffer, 5)),
        USE("12345 at 5", std::string(buffer) + " at " + text(file.Position())),
        USE("6 true",
            text(TZSysFile<char>::sizeOf(path.c_str())) + ' ' + text(TZSysFile<char>::exists(path.c_str()))),
        USE("file.txt", TZSysFile<char>::getNameOf(path.c_str())),
        USE("0", TZSysFile<char>::removeFile(path.c_str())),
    });
    file.close();
}

// clang-format on

// What must not compile

template <typename A, typename B>
concept Shiftable = requires(A a, const B& b)
{
    a << b;
};
template <typename A, typename B>
concept Comparable = requires(const A& a, const B& b)
{
    a == b;
};
template <typename M, typename K>
concept IndexableByKey = requires(M map, const K& key)
{
    map[key];
};

template <typename T>
concept LoggableAsIs = requires(const T& text)
{
    CNSLogMsg(text);
};

struct NotALogValue { };
enum class Scoped { One };

static_assert(!Shiftable<ZLogRecord, void*> && !Shiftable<ZLogRecord, int*>); // would be `true`
static_assert(!Shiftable<ZLogRecord, NotALogValue> && !Shiftable<ZLogRecord, Scoped>);
static_assert(!Shiftable<std::ostream, ZRef<int>> && !Shiftable<std::ostream, Value>);
static_assert(!LoggableAsIs<ZStrToken<char>> && !LoggableAsIs<std::string_view>); // the length would be lost
static_assert(LoggableAsIs<ZGStr<char>> && LoggableAsIs<ZMStr<char>> && LoggableAsIs<const char*>);
static_assert(!std::is_convertible_v<int, Value> && !std::is_convertible_v<const char*, Value>);
static_assert(!Comparable<Value, int> && !Comparable<ZGUID, int> && !Comparable<ZTime, ZGUID>);
static_assert(!IndexableByKey<ZMap<ZGStr<char>, int>, std::string>); // a position, never a key
static_assert(!IndexableByKey<ZMap<ZGStr<char>, int>, ZMStr<char>>);
static_assert(!std::is_copy_constructible_v<ZLogBookDummy> && !std::is_copy_assignable_v<ZLogBookDummy>);
static_assert(!std::is_copy_constructible_v<TZRefCounter<int>>);
static_assert(!std::is_default_constructible_v<ZLogBook> && !std::is_default_constructible_v<ZLogBookFilter>);
static_assert(!std::is_convertible_v<std::chrono::sys_time<std::chrono::milliseconds>, ZTime>);
static_assert(!std::is_convertible_v<ZTime, std::chrono::sys_time<std::chrono::milliseconds>>);
static_assert(!std::is_constructible_v<ZValue<int, ZTypeId_int>, ZTime>);

} // namespace
} // namespace ZSpace::Testing
