// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"

// Compiled by tests with clang, which warns about each line that is switched on.

using namespace ZSpace;

ZGStr<char> makeString();
ZMStr<wchar_t> makeBuilder();
ZStrToken<char> makeToken();
void use(const void* pointer);

void dangle()
{
#ifdef POINTER_INTO_STRING
    const char* pointer = makeString();
    use(pointer);
#elif defined(POINTER_INTO_BUILDER)
    const wchar_t* pointer = makeBuilder().data();
    use(pointer);
#elif defined(TOKEN_OF_STRING)
    const ZStrToken<char> token = makeString();
    use(token);
#elif defined(SUBSTRING_OF_BUILDER)
    const ZStrToken<wchar_t> token = makeBuilder().left(2);
    use(token);
#elif defined(STANDARD_VIEW_OF_STRING)
    const std::string_view view = makeString();
    use(view.data());
#elif defined(REFERENCE_INTO_STRING)
    const char& character = makeString().at(0);
    use(&character);
#elif defined(TOKEN_OF_STANDARD_STRING)
    const ZStrToken<char> token = std::string("temporary");
    use(token);
#else // none of these outlives what it points to
    const ZStrToken<char> token = makeToken().left(2);
    const std::string_view view = makeToken();
    const ZGStr<char> copy(makeString().right(3));
    const std::string standard(makeString());
    use(token);
    use(view.data());
    use(copy);
    use(standard.data());
    use(makeString());
#endif
}
