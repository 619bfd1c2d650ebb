// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZLogBookFilter.h"
#include "ZSpace/log/ZLogBookHoster.h"
#include "ZSpace/log/ZLogBookJson.h"
#include "ZSpace/log/ZLogBookRolling.h"
#include "ZSpace/log/ZTransferLog.h"

using namespace ZSpace;

class Books : public ZLogBookHoster {
public:
    using ZLogBookHoster::ZLogBookHoster;
    bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; } // keeps no records
};

int main()
{
    const ZRef<ZLogBook> json = makeRef<ZLogBookJson>(L"warnings.json");
    const ZRef<ZLogBook> books = makeRef<Books>(new ZLogBookRolling(L"all.txt", {.sizeInBytes = 10'000'000}),
        new ZLogBookFilter(json, ZLogLevel::Warning));
    books->add(ZLogRecord() << ZLogLevel::Info << "only in all.txt");
    books->add(ZLogRecord() << ZLogLevel::Warning << "in both" << 97);

    ZTransferLog::useLogBook(books); // plain lines of the front end go there, too
    CNSLog("%d plain line", 1);
    ZTransferLog::useLogBook({});
}
