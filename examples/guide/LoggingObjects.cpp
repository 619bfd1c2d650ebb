// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/log/ZLoggable.h"

#include <iostream>

using namespace ZSpace;

/// An object that logs.
class Downloader : public ZLoggable {
public:
    Downloader() { m_logOp = 7; }

    void run()
    {
        addLogRecord(createLogRecord() << ZLogLevel::Info << "downloading" << 3 << "files");
        setLastError("run", "connect", 111, "connection refused");
    }
};

int main()
{
    Downloader downloader;
    downloader.attachLogBook(makeRef<ZLogBookFile>(L"download.txt"));
    downloader.run();
    ZRef<ZLogLastError> error;
    if (downloader.getLastError(error, 7, pthread_self()))
        std::cout << "failed with " << error->result() << ": " << error->text() << '\n';
}
