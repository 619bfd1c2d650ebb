// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/string/ZGStr.h"

#include <iostream>

using namespace ZSpace;

struct Printer {
    explicit Printer(const char* printerName)
        : name(printerName)
    {
    }
    const char* name;
};

int main()
{
    ZMap<ZGStr<char>, ZRef<Printer>> printers;
    printers.add("hall", makeRef<Printer>("HP"));
    printers.add("office", makeRef<Printer>("Epson"));
    const ZRef<Printer> kept = printers.at("hall"); // shares the object
    std::cout << kept->name << " has " << kept.RefCount() << " handles, and there are " << printers.Count()
              << " printers\n";
}
