// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// A tour of the framework as a library: the log front end, records with values of every kind, last errors, a
// hoster with two books, a custom book, and an asynchronous read. Writes to the given directory, by default
// "./log-tour", and prints what it does.

#include "ZSpace/ZSpace.h"

#include <cstdio>
#include <future>

namespace {

using namespace ZSpace;

/// A custom book: prints each record's values on one line.
class PrintingBook : public ZLogBook {
public:
    void add(const ZLogRecord& record) override
    {
        ZMStr<char> line;
        for (long i = 0; i < record.Count(); ++i)
            line << (i > 0 ? ", " : "") << record.itemAt(i)->toCString();
        std::printf("printed: %s\n", static_cast<const char*>(line));
    }
    using ZLogBook::writeStream;
    void writeStream(unsigned char, int, const void*, long) override { }
    bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
};

/// A hoster for any books. Keeps no session text.
class Books : public ZLogBookHoster {
public:
    using ZLogBookHoster::ZLogBookHoster;
    bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
};

/// An object that logs.
class Downloader : public ZLoggable {
public:
    Downloader() { m_logOp = 7; }

    void run()
    {
        addLogRecord(createLogRecord() << "downloading" << 3 << "files");
        setLastError("Downloader::run", "connect", 111, "connection refused");
    }
};

void logPlainLines(const char* folder)
{
    CNSInitLog(CNSLogFlagFile, 0, "LogTour", folder);
    CNSLog("front end: %d lines in %s", 2, folder);
    CNSDbgLog("debug lines are off, so this is nowhere");
    CNSLogMsg("front end: a finished text, 100% as it stands");
    CNSDisableFileLogging();
}

ZLogRecord everyKind()
{
    ZGUID guid;
    guid.generate();
    ZLogRecord record;
    record << true << static_cast<unsigned char>(1) << static_cast<signed char>(-1)
           << static_cast<unsigned short>(2) << static_cast<short>(-2) << 3U << -3 << 4ULL << -4LL;
    record << 2.5F << -0.5 << 'c' << L'w' << "text" << L"wide text";
    record << ZGStr<char>("string") << ZGStr<wchar_t>(L"wide string") << ZTime(2024, 3, 5, 7, 8, 9, 42)
           << guid;
    return record;
}

void logToTwoBooks(const ZGStr<wchar_t>& folder)
{
    const ZRef<ZLogBook> books(new Books(new PrintingBook, new ZLogBookFile(folder + L"/tour.txt")));
    books->add(everyKind());

    Downloader downloader;
    downloader.attachLogBook(books);
    downloader.run();
    ZRef<ZLogLastError> error;
    if (downloader.getLastError(error, 7, pthread_t{}))
        std::printf("last error: %s\n", static_cast<const char*>(error->toString()));
    downloader.clearLastError(7, pthread_t{});
}

void readInTheBackground(const ZGStr<wchar_t>& folder)
{
    ZIOGFile<> file;
    if (file.open(folder + L"/tour.txt", ZIOGFile<>::ModeRead) != 0)
        return;
    std::promise<long> done;
    auto whenRead = zMakeDelegate<ZStreamAsync<>::ReadCallback>(
        [&done](ZStreamAsync<>*, int, long, const char*, long got) { done.set_value(got); });
    if (file.readAsync(whenRead.get(), 20)) {
        static_cast<void>(whenRead.release()); // the reading thread destroys it
        std::printf("read in the background: %ld bytes\n", done.get_future().get());
    }
    file.close();
}

} // namespace

int main(int argc, char** argv)
{
    const char* const folder = argc > 1 ? argv[1] : "./log-tour";
    logPlainLines(folder);
    logToTwoBooks(ZGStr<wchar_t>(folder));
    readInTheBackground(ZGStr<wchar_t>(folder));
    std::printf("the report files are in %s\n", folder);
    return 0;
}
