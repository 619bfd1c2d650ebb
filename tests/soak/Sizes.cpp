// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Objects far larger than those of real programs: a trail, a list, strings and a line.

#include "ZSpace/core/ZList.h"
#include "ZSpace/string/ZMStr.h"
#include "tests/soak/Load.h"

#include <cstring>

namespace ZSpace::Soak {

namespace {

namespace fs = std::filesystem;

/// Records the first requirement that does not hold.
class Requirements {
public:
    void require(bool holds, const char* what)
    {
        if (!holds && m_broken == s_nothing)
            m_broken = what;
    }
    [[nodiscard]] std::string lost() const { return m_broken; }

private:
    std::string m_broken = s_nothing;
};

/// A string of blanks with one "needle" at its end.
template <typename T>
void useLongString(long length, Requirements& requirements)
{
    const ZGStr<T> needle(ZStrToken<char>("needle"));
    ZMStr<T> builder(length + 1);
    builder.fill(T(' '), length - needle.length(), 0);
    builder << needle;
    requirements.require(builder.Length() == length, "the length of a builder");
    requirements.require(builder.indexOf(needle) == length - needle.length(), "the position found");

    const ZGStr<T> string(builder);
    requirements.require(string.length() == length && string == builder, "a copy");
    builder.clear();
    const ZGStr<T> joined = string + string;
    requirements.require(joined.length() == 2 * length, "a concatenation");
    requirements.require(
        joined.lastIndexOf(needle) == 2 * length - needle.length(), "the position found from the end");
    requirements.require(joined.right(length).isLike(string), "a part");
}

} // namespace

Result longTrail(const Scale& scale)
{
    const long count = 1'000'000 / scale.divisor;
    Requirements requirements;
    ZLogBookDummy book;
    for (long i = 0; i < count; ++i)
        book.setLastError(1 + static_cast<int>(i % 7), "caller", "callee", static_cast<int>(i), "text");
    const ZLogBook::Errors trail = book.getLastErrors();
    requirements.require(trail.Count() == count, "entries");
    for (long i = 0; i < trail.Count(); ++i)
        requirements.require(trail[i]->result() == i, "the order");
    ZRef<ZLogLastError> last;
    requirements.require(book.getLastError(last, 0, {}) && last->result() == count - 1, "the newest");
    requirements.require(book.getLastOpErrors(1).Count() == (count + 6) / 7, "those of an operation");
    book.clearLastError(1, {});
    requirements.require(
        book.getLastErrors().Count() == count - (count + 6) / 7, "those that were not cleared");
    return {"a trail of " + grouped(count) + " errors", "complete and in order; found, filtered and cleared",
        requirements.lost()};
}

Result longList(const Scale& scale)
{
    const long count = 10'000'000 / scale.divisor;
    Requirements requirements;
    ZList<long> list;
    for (long i = 0; i < count; ++i)
        list.add(i);
    ZList<long> copy(list);
    requirements.require(list.Count() == count && copy.Count() == count, "elements");
    for (long i = 0; i < count; ++i)
        requirements.require(list[i] == i && copy[i] == i, "the order");
    requirements.require(
        copy.il_removeAt(0) && copy[0] == 1 && copy.Count() == count - 1, "removing the first");
    requirements.require(copy.il_removeAll() && copy.Count() == 0, "removing all");
    return {"a list of " + grouped(count) + " elements", "complete and in order; copied and emptied",
        requirements.lost()};
}

Result longStrings(const Scale& scale)
{
    const long bytes = (1L << 30) / scale.divisor;
    Requirements requirements;
    useLongString<char>(bytes, requirements);
    useLongString<wchar_t>(bytes / static_cast<long>(sizeof(wchar_t)), requirements);
    return {"strings of " + grouped(bytes) + " bytes, narrow and wide",
        "built, searched, copied, joined and cut", requirements.lost()};
}

Result longLine(const Scale& scale)
{
    const long bytes = (1L << 30) / scale.divisor;
    const fs::path file = scale.directory / "line.txt";
    Requirements requirements;
    {
        ZMStr<char> text(bytes + 1);
        text.fill('x', bytes, 0);
        const ZRef<ZLogBook> book = openBook(file);
        book->add(ZLogRecord() << static_cast<const char*>(text));
        logNumbered(*book, "after", 0);
    }
    const Lines lines = readNumbered(file);
    requirements.require(static_cast<long>(fs::file_size(file)) > bytes, "bytes");
    requirements.require(
        lines.broken == 1 && lines.whole == 1, "the line and the one after it"); // the long one has no number
    fs::remove(file);
    return {"a line of " + grouped(bytes) + " bytes",
        "written, and the next one follows on a line of its own", requirements.lost()};
}

} // namespace ZSpace::Soak
