// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/ZSpace.h"

#include <iostream>
#include <mutex>

using namespace ZSpace;

/// A log book that prints the level in front and the values with spaces between them.
class ConsoleBook : public ZLogBook {
public:
    void add(const ZLogRecord& record) override
    {
        ZMStr<char> line;
        for (const auto& item : record)
            line << (line.isEmpty() ? "" : " ") << item->toCString();
        ZLogLevel level = ZLogLevel::Info;
        const std::lock_guard guard(lock()); // records may come from any thread
        std::cout << (getLevel(record, level) && level >= ZLogLevel::Warning ? "! " : "  ") << line << '\n';
    }
    using ZLogBook::writeStream;
    void writeStream(unsigned char, int, const void*, long) override { } // takes no raw blocks
    bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; } // keeps no records
};

/// Something that logs: it need not know to where.
class Copier : public ZLoggable {
public:
    Copier() { m_logOp = 1; }

    void copy(const char* from, const char* to)
    {
        addLogRecord(createLogRecord() << ZLogLevel::Info << "copying" << from << "to" << to);
        if (const int error = TZSysFile<char>::copyFile(from, to))
            setLastError("copy", "copyFile", error, "cannot copy");
        else
            addLogRecord(createLogRecord() << "copied" << TZSysFile<char>::sizeOf(to) << "bytes");
    }
};

int main()
{
    Copier copier;
    copier.attachLogBook(makeRef<ConsoleBook>());
    ZIOGFile<> file;
    if (file.open("a.txt", ZIOGFile<>::ModeWrite) == 0)
        file.write("hello\n", -1);
    file.close();
    copier.copy("a.txt", "b.txt");
    copier.copy("missing.txt", "c.txt");
    copier.addLogRecord(ZLogRecord() << ZLogLevel::Warning << copier.getLastErrors().Count() << "error");
}
