// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// A custom log book that prints each record as a line of JSON. It shows how a book reads the values of a record; for
// real use there is ZLogBookJson.

#include "ZSpace/log/ZLogBook.h"
#include "ZSpace/log/ZLogLevel.h"

#include <iostream>
#include <mutex>

namespace {

using namespace ZSpace;

constexpr ZTypeId s_numbers = ZTypeId_bool | ZTypeId_unsigned_char | ZTypeId_signed_char
    | ZTypeId_unsigned_short | ZTypeId_short | ZTypeId_unsigned_int | ZTypeId_int | ZTypeId_unsigned_long_long
    | ZTypeId_long_long | ZTypeId_float | ZTypeId_double;

void appendQuoted(ZMStr<char>& line, const ZGStr<char>& text)
{
    line << '"';
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < ' ')
            line << "\\u00" << ZGStr<char>::hexOf(static_cast<unsigned char>(c));
        else if (c == '"' || c == '\\')
            line << '\\' << c;
        else
            line << c;
    }
    line << '"';
}

class JsonBook : public ZLogBook {
public:
    void add(const ZLogRecord& record) override
    {
        ZMStr<char> line("[");
        appendQuoted(line, ZGStr<char>(ZTime(true).toCStringEx()));
        for (const auto& item : record) {
            line << ',';
            if (item->Type() & s_numbers)
                line << item->toCString();
            else
                appendQuoted(line, item->toCString());
        }
        const std::lock_guard guard(lock()); // whole lines, whatever thread they come from
        std::cout << line << "]\n";
    }
    using ZLogBook::writeStream;
    void writeStream(unsigned char, int, const void*, long) override { }
    bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
};

} // namespace

int main()
{
    const ZRef<ZLogBook> book = makeRef<JsonBook>();
    book->add(ZLogRecord() << ZLogLevel::Warning << "disk \"data\"\tis almost full" << 97 << 2.5);
    book->add(ZLogRecord() << ZTime(2024, 3, 5, 7, 8, 9, 42) << true << L"wide" << 'c');
    book->setLastError(7, "main", "connect", 111, "connection refused");
    return 0;
}
