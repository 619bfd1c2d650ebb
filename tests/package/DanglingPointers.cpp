// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/ZSpace.h"

// Compiled by tests with clang, which warns about each line that is switched on.

using namespace ZSpace;

template <typename T>
T make();

using List = ZList<int>;
using Map = ZMap<ZGStr<char>, int>;

void use(const void* pointer);

void dangle()
{
#ifdef ELEMENT_OF_ARRAY
    const int& element = make<ZArray<int>>()[0];
    use(&element);
#elif defined(ITERATOR_OF_ARRAY)
    const int* const first = make<ZArray<int>>().begin();
    use(first);
#elif defined(ELEMENT_OF_LIST)
    const int& element = make<List>()[0];
    use(&element);
#elif defined(ADDED_TO_LIST)
    const int* const element = make<List>().add(1);
    use(element);
#elif defined(ELEMENT_OF_SET)
    const int* const element = make<ZSet<int>>().add(1);
    use(element);
#elif defined(PAIR_OF_MAP)
    const Map::Pair& pair = make<Map>()[0];
    use(&pair);
#elif defined(VALUE_OF_MAP)
    const int& value = make<Map>().at("key");
    use(&value);
#elif defined(POINTER_INTO_MAP)
    const int* const value = make<Map>().find("key");
    use(value);
#elif defined(KEY_OF_PAIR)
    const ZGStr<char>& key = make<Map::Pair>().key();
    use(key);
#elif defined(NAME_OF_VALUE)
    const ZGStr<char>& name = make<TZValueBase<ZTypeId>>().Name();
    use(name);
#elif defined(ITEM_OF_VALUES)
    const TZValueBase<ZTypeId>& item = make<ZValueArrayBase>().ArrayItem(0);
    use(&item);
#elif defined(TEXT_OF_ERROR)
    const ZGStr<char>& text = make<ZLogLastError>().text();
    use(text);
#elif defined(PATH_OF_FILE)
    const ZMStr<char>& path = make<TZSysFile<char>>().Path();
    use(path);
#elif defined(NAME_OF_RESOURCE)
    const ZGStr<wchar_t>& name = make<ZLibraryResource>().Name();
    use(name);
#else // none of these outlives what it points to
    const int element = make<List>()[0];
    const ZGStr<char> key = make<Map>()[0].key();
    const ZMStr<char> path = make<TZSysFile<char>>().Path();
    use(&element);
    use(key);
    use(path);
    use(make<Map>().find("key"));
    for (const int each : make<List>())
        use(&each);
#endif
}
