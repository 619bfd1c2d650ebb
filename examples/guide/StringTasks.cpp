// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"

#include <iostream>
#include <string>

using namespace ZSpace;

int main()
{
    // Split and convert.
    for (const ZGStr<char>& piece : ZGStr<char>("8080,443,x").split(','))
        std::cout << piece << (piece.isNumeric() ? " is a number, " : " is none, ") << piece.toInt32()
                  << '\n';

    // Edit.
    ZGStr<char> path("  C:\\Temp\\file.TXT ");
    path.trim();
    path.replace('\\', '/').toLower();
    std::cout << path << '\n';

    // Numbers, also in hexadecimal.
    std::cout << (ZGStr<char>() << 42 << ' ' << 0.25 << ' ') << ZGStr<char>::hexOf(48879) << '\n';

    // To and from the standard library, and between narrow and wide.
    const std::string standard = std::string(path.left(2)) + "/...";
    ZGStr<wchar_t> wide = L"wide ";
    wide << ZGStr<char>(standard);
    std::cout << ZGStr<char>(wide) << '\n';
}
