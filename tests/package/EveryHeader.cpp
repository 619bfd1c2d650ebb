// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What a strict consumer compiles: every header, and uses that instantiate the templates.

#include "ZSpace/ZSpace.h"
#include "ZSpace/interop/StdFormat.h"
#include "ZSpace/platform/Foundation.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_set>

using namespace ZSpace;

template <typename T>
long strings(std::basic_ostream<T>& out, const T* text)
{
    const ZGStr<T> owned(text);
    ZMStr<T> builder;
    builder << owned << 1 << 2.5 << true << owned.left(2) << text;
    const ZStrToken<T> token = builder.right(3);
    out << owned << builder << token << (token == std::basic_string_view<T>(text));
    const std::unordered_set<ZGStr<T>> set{owned, ZGStr<T>(token)};
    ZGStr<T> other;
    other = std::basic_string<T>(token) + std::basic_string<T>(owned);
    return builder.replace(owned, token).indexOf(token) + other.toInt32()
        + std::count(token.begin(), token.end(), T('x')) + static_cast<long>(set.size())
        + owned.split(T(',')).Count();
}
template long strings(std::ostream&, const char*);
template long strings(std::wostream&, const wchar_t*);

long containers()
{
    ZListing<ZGStr<char>> list;
    list.add("a");
    ZMap<ZGStr<char>, ZRef<int>> map;
    map.add("a", makeRef<int>(1));
    ZArray<int> array;
    array.add(1);
    const ZRef<const int> handle = map.at("a");
    return list.il_find("a") + map.Count() + array.Count() + *handle + (handle == nullptr);
}

bool values(ZLogBook& book, ZIOGFile<>& file)
{
    TZValueBase<ZTypeId> value(std::in_place, 5L);
    ZValue<double, ZTypeId_double> number(2.5);
    ZLogRecord record;
    record << ZLogLevel::Info << 1 << 2L << 3U << 4.0F << 'c' << L'w' << "text" << ZTime(true) << ZGUID()
           << value;
    book.add(record);
    book.add(ZLogRecord() << number);
    const auto callback =
        zMakeDelegate<ZIOGFile<>::ReadCallback>([](ZStreamAsync<>*, int, long, const char*, long) {});
    return file.readAsync(callback->clone(), 10) && value == number;
}
