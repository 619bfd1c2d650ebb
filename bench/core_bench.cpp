// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Handles, containers, calls and locks, compared in the same run with the standard library (`...Std`) and with the
// minimum of code that does the same work (`..._baseline`). Run with --benchmark_enable_random_interleaving=true
// --benchmark_repetitions=9 to interleave them.

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/ZDelegate.h"
#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZThreadLock.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using namespace ZSpace;

const std::string s_string = "a string that exceeds the internal buffer of std::string";

// Handles

/// An object with its count, written by hand.
struct Counted {
    std::atomic<std::uint64_t> count{1};
    int value = 1;
};

void dropCounted(Counted* object)
{
    if (object->count.fetch_sub(1) == 1)
        delete object;
}

void handleMakeRef_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        auto* object = new Counted;
        benchmark::DoNotOptimize(object);
        dropCounted(object);
    }
}
BENCHMARK(handleMakeRef_baseline);

void handleMakeRef(benchmark::State& state)
{
    for (auto _ : state) {
        const auto handle = makeRef<int>(1);
        benchmark::DoNotOptimize(handle.get());
    }
}
BENCHMARK(handleMakeRef);

void handleMakeShared(benchmark::State& state)
{
    for (auto _ : state) {
        const auto handle = std::make_shared<int>(1);
        benchmark::DoNotOptimize(handle.get());
    }
}
BENCHMARK(handleMakeShared);

/// An object whose count has a block of its own.
struct SeparatelyCounted {
    std::atomic<std::uint64_t>* count;
    int* object;
};

void handleMake_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        SeparatelyCounted handle{new std::atomic<std::uint64_t>(1), new int(1)};
        benchmark::DoNotOptimize(handle);
        if (handle.count->fetch_sub(1) == 1) {
            delete handle.count;
            delete handle.object;
        }
    }
}
BENCHMARK(handleMake_baseline);

void handleMake(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ZRef<int>(new int(1)));
}
BENCHMARK(handleMake);

void handleMakeStd(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(std::shared_ptr<int>(new int(1)));
}
BENCHMARK(handleMakeStd);

void handleCopy_baseline(benchmark::State& state)
{
    static Counted object;
    for (auto _ : state) {
        Counted* copy = &object;
        benchmark::DoNotOptimize(copy);
        copy->count.fetch_add(1);
        benchmark::DoNotOptimize(copy);
        dropCounted(copy);
    }
}
BENCHMARK(handleCopy_baseline)->Threads(1)->Threads(2);

void handleCopy(benchmark::State& state)
{
    static const ZRef<int> handle(new int(1)); // shared by the threads
    for (auto _ : state) {
        const ZRef<int> copy(handle); // NOLINT(performance-unnecessary-copy-initialization)
        benchmark::DoNotOptimize(copy.get());
    }
}
BENCHMARK(handleCopy)->Threads(1)->Threads(2);

void handleCopyStd(benchmark::State& state)
{
    static const auto handle = std::make_shared<int>(1);
    for (auto _ : state) {
        const std::shared_ptr<int> copy(handle); // NOLINT(performance-unnecessary-copy-initialization)
        benchmark::DoNotOptimize(copy.get());
    }
}
BENCHMARK(handleCopyStd)->Threads(1)->Threads(2);

/// An object that Boost counts, atomically.
struct Intrusive : boost::intrusive_ref_counter<Intrusive, boost::thread_safe_counter> {
    int value = 1;
};

void handleCopyIntrusive(benchmark::State& state)
{
    static const boost::intrusive_ptr<Intrusive> handle(new Intrusive);
    for (auto _ : state) {
        const boost::intrusive_ptr<Intrusive> copy(
            handle); // NOLINT(performance-unnecessary-copy-initialization)
        benchmark::DoNotOptimize(copy.get());
    }
}
BENCHMARK(handleCopyIntrusive)->Threads(1)->Threads(2);

void handleMove(benchmark::State& state)
{
    ZRef<int> a(new int(1));
    ZRef<int> b;
    for (auto _ : state) {
        b = std::move(a);
        a = std::move(b);
        benchmark::DoNotOptimize(a.get());
    }
}
BENCHMARK(handleMove);

void handleMoveStd(benchmark::State& state)
{
    auto a = std::make_shared<int>(1);
    std::shared_ptr<int> b;
    for (auto _ : state) {
        b = std::move(a);
        a = std::move(b);
        benchmark::DoNotOptimize(a.get());
    }
}
BENCHMARK(handleMoveStd);

void handleDereference(benchmark::State& state)
{
    const ZRef<int> handle(new int(1));
    for (auto _ : state)
        benchmark::DoNotOptimize(*handle);
}
BENCHMARK(handleDereference);

void handleDereferenceStd(benchmark::State& state)
{
    const auto handle = std::make_shared<int>(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(*handle);
}
BENCHMARK(handleDereferenceStd);

// Lists, compared with containers whose elements have stable addresses

void listAdd_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        std::string** slots = nullptr;
        long count = 0;
        long capacity = 0;
        for (long i = 0; i < state.range(0); ++i) {
            if (count == capacity) {
                capacity = capacity * 2 + 1;
                auto** grown = new std::string*[static_cast<std::size_t>(capacity)];
                std::copy(slots, slots + count, grown);
                delete[] slots;
                slots = grown;
            }
            slots[count++] = new std::string(s_string);
        }
        benchmark::DoNotOptimize(slots);
        while (count > 0)
            delete slots[--count];
        delete[] slots;
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listAdd_baseline)->Arg(10)->Arg(1'000)->Arg(100'000);

void listAdd(benchmark::State& state)
{
    for (auto _ : state) {
        ZList<std::string> list;
        for (long i = 0; i < state.range(0); ++i)
            list.add(s_string);
        benchmark::DoNotOptimize(list.Count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listAdd)->Arg(10)->Arg(1'000)->Arg(100'000);

void listAddStd(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<std::unique_ptr<std::string>> list;
        for (long i = 0; i < state.range(0); ++i)
            list.push_back(std::make_unique<std::string>(s_string));
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listAddStd)->Arg(10)->Arg(1'000)->Arg(100'000);

void listAddDeque(benchmark::State& state)
{
    for (auto _ : state) {
        std::deque<std::string> list;
        for (long i = 0; i < state.range(0); ++i)
            list.push_back(s_string);
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listAddDeque)->Arg(10)->Arg(1'000)->Arg(100'000);

void listWalk(benchmark::State& state)
{
    ZList<int> list;
    for (int i = 0; i < state.range(0); ++i)
        list.add(i);
    for (auto _ : state) {
        long sum = 0;
        for (int value : list)
            sum += value;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listWalk)->Arg(1'000);

void listWalkStd(benchmark::State& state)
{
    std::vector<std::unique_ptr<int>> list;
    for (int i = 0; i < state.range(0); ++i)
        list.push_back(std::make_unique<int>(i));
    for (auto _ : state) {
        long sum = 0;
        for (const auto& value : list)
            sum += *value;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listWalkStd)->Arg(1'000);

void listCopyOfHandles(benchmark::State& state)
{
    ZList<ZRef<int>> list;
    for (int i = 0; i < state.range(0); ++i)
        list.add(ZRef<int>(new int(i)));
    for (auto _ : state) {
        const ZList<ZRef<int>> copy(list);
        benchmark::DoNotOptimize(copy.Count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listCopyOfHandles)->Arg(10)->Arg(1'000);

void listCopyOfHandlesStd(benchmark::State& state)
{
    std::vector<std::unique_ptr<std::shared_ptr<int>>> list;
    for (int i = 0; i < state.range(0); ++i)
        list.push_back(std::make_unique<std::shared_ptr<int>>(std::make_shared<int>(i)));
    for (auto _ : state) {
        std::vector<std::unique_ptr<std::shared_ptr<int>>> copy;
        copy.reserve(list.size());
        for (const auto& each : list)
            copy.push_back(std::make_unique<std::shared_ptr<int>>(*each));
        benchmark::DoNotOptimize(copy.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listCopyOfHandlesStd)->Arg(10)->Arg(1'000);

// Arrays

void arrayFill(benchmark::State& state)
{
    for (auto _ : state) {
        ZArray<std::string> array(state.range(0));
        for (std::string& each : array)
            each = s_string;
        benchmark::DoNotOptimize(array.begin());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(arrayFill)->Arg(10)->Arg(1'000)->Arg(10'000);

void arrayFillStd(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<std::string> array(static_cast<std::size_t>(state.range(0)));
        for (std::string& each : array)
            each = s_string;
        benchmark::DoNotOptimize(array.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(arrayFillStd)->Arg(10)->Arg(1'000)->Arg(10'000);

void arrayOfPointersAdd(benchmark::State& state)
{
    int x = 0;
    for (auto _ : state) {
        ZArray<int*, ZAllocationBuf<int*>> array;
        for (long i = 0; i < state.range(0); ++i)
            array.add(&x);
        benchmark::DoNotOptimize(array.begin());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(arrayOfPointersAdd)->Arg(10)->Arg(10'000);

void arrayOfPointersAddStd(benchmark::State& state)
{
    int x = 0;
    for (auto _ : state) {
        std::vector<int*> array;
        for (long i = 0; i < state.range(0); ++i)
            array.push_back(&x);
        benchmark::DoNotOptimize(array.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(arrayOfPointersAddStd)->Arg(10)->Arg(10'000);

void arrayOfBytesCopy(benchmark::State& state)
{
    const ZArray<char> bytes(state.range(0));
    for (auto _ : state) {
        const ZArray<char> copy(bytes);
        benchmark::DoNotOptimize(copy.begin());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(arrayOfBytesCopy)->Arg(100)->Arg(1 << 20);

void arrayOfBytesCopyStd(benchmark::State& state)
{
    const std::vector<char> bytes(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const std::vector<char> copy(bytes); // NOLINT(performance-unnecessary-copy-initialization)
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(arrayOfBytesCopyStd)->Arg(100)->Arg(1 << 20);

// Maps

struct Pair {
    const wchar_t* key;
    const wchar_t* value;
};

void mapFind_baseline(benchmark::State& state)
{
    std::vector<wchar_t> keys(static_cast<std::size_t>(state.range(0)));
    std::vector<std::unique_ptr<Pair>> owner;
    std::vector<Pair*> pairs;
    for (const wchar_t& key : keys) {
        owner.push_back(std::make_unique<Pair>(Pair{&key, L"name"}));
        pairs.push_back(owner.back().get());
    }
    Pair** first = pairs.data();
    Pair** last = first + pairs.size();
    std::size_t i = 0;
    for (auto _ : state) {
        const wchar_t* key = &keys[i];
        benchmark::DoNotOptimize(first);
        Pair** found = first;
        while (found != last && (*found)->key != key)
            ++found;
        benchmark::DoNotOptimize(found != last ? &(*found)->value : nullptr);
        i = i + 1 == keys.size() ? 0 : i + 1;
    }
}
BENCHMARK(mapFind_baseline)->Arg(3)->Arg(8)->Arg(16);

void mapFind(benchmark::State& state)
{
    std::vector<wchar_t> keys(static_cast<std::size_t>(state.range(0)));
    ZMap<const wchar_t*, const wchar_t*> map;
    for (const wchar_t& key : keys)
        map.add(&key, L"name");
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(&keys[i]));
        i = i + 1 == keys.size() ? 0 : i + 1;
    }
}
BENCHMARK(mapFind)->Arg(3)->Arg(8)->Arg(16)->Arg(200);

void mapFindMap(benchmark::State& state)
{
    std::vector<wchar_t> keys(static_cast<std::size_t>(state.range(0)));
    std::map<const wchar_t*, const wchar_t*> map;
    for (const wchar_t& key : keys)
        map.emplace(&key, L"name");
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(&keys[i]));
        i = i + 1 == keys.size() ? 0 : i + 1;
    }
}
BENCHMARK(mapFindMap)->Arg(3)->Arg(8)->Arg(16)->Arg(200);

void mapFindStd(benchmark::State& state)
{
    std::vector<wchar_t> keys(static_cast<std::size_t>(state.range(0)));
    std::unordered_map<const wchar_t*, const wchar_t*> map;
    for (const wchar_t& key : keys)
        map.emplace(&key, L"name");
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(&keys[i]));
        i = i + 1 == keys.size() ? 0 : i + 1;
    }
}
BENCHMARK(mapFindStd)->Arg(3)->Arg(8)->Arg(16)->Arg(200);

// Calls and locks

struct Door {
    void turn(int by, int times) { degrees += by * times; }
    int degrees = 0;
};

void delegateCall(benchmark::State& state)
{
    Door door;
    const ZDelegator2V<Door, int, int> binder(&door, &Door::turn);
    const ZDelegate2<void, int, int>* delegate = &binder;
    benchmark::DoNotOptimize(delegate);
    for (auto _ : state)
        (*delegate)(1, 2);
    benchmark::DoNotOptimize(door.degrees);
}
BENCHMARK(delegateCall);

void delegateCallStd(benchmark::State& state)
{
    Door door;
    std::function<void(int, int)> delegate = [&](int by, int times) { door.turn(by, times); };
    benchmark::DoNotOptimize(delegate);
    for (auto _ : state)
        delegate(1, 2);
    benchmark::DoNotOptimize(door.degrees);
}
BENCHMARK(delegateCallStd);

void lockAndUnlock(benchmark::State& state)
{
    ZThreadLock_T<pthread_mutex_t> lock;
    for (auto _ : state) {
        lock.lock();
        lock.unlock();
    }
}
BENCHMARK(lockAndUnlock);

void lockAndUnlockStd(benchmark::State& state)
{
    std::recursive_mutex lock;
    for (auto _ : state) {
        lock.lock();
        lock.unlock();
    }
}
BENCHMARK(lockAndUnlockStd);

} // namespace
