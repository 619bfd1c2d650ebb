// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/LogFrontEnd.h"

int main()
{
    CNSInitLog(CNSLogFlagFile, 0, "Guide", "logs");
    CNSLog("started with %d files", 3);
}
