// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Objects for a debugger to show. It stops in `stopHere` and looks at the caller's frame.

#include "ZSpace/ZSpace.h"

using namespace ZSpace;

[[gnu::noinline]] void stopHere()
{
    asm volatile("" ::: "memory");
}

struct Counted : TZReferenceable<TZRefCounter<int>> {
    virtual ~Counted() = default;
    int number = 9;
};

int main()
{
    ZGStr<char> string("text");
    ZGStr<wchar_t> wide(L"wide");
    ZGStr<char> noString;
    ZMStr<char> builder("a builder");
    ZStrToken<char> token = builder.left(5);
    ZList<int> list;
    list.add(7);
    list.add(8);
    ZListing<ZGStr<char>> strings;
    strings.add("one");
    ZArray<int> array;
    array.add(5);
    ZMap<ZGStr<char>, int> map;
    map.add("a", 1);
    map.add("b", 2);
    ZRef<int> handle = makeRef<int>(42);
    ZRef<int> second = handle;
    ZRef<int> empty;
    ZReference<Counted> reference(new Counted);
    ZTime time(2024, 3, 5, 7, 8, 9, 42);
    ZGUID guid("{00112233-4455-6677-8899-aabbccddeeff}");
    TZValueBase<ZTypeId> none;
    TZValueBase<ZTypeId> number(std::in_place, 42);
    number.Name("answer");
    TZValueBase<ZTypeId> timeValue(std::in_place, time);
    TZValueBase<ZTypeId> stringValue(string);
    ZLogRecord record;
    record << "line" << 3;
    stopHere();
    return static_cast<int>(list.Count() + second.RefCount() + !noString + !wide + !empty + token.Length())
        * 0;
}
