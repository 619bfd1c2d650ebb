// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// A plug-in that contains the library and exports only the function at the end. PluginTest.cpp loads two of them, which
// differ in their name.

#include "tests/package/Plugin.h"

#include "ZSpace/ZSpace.h"

namespace {

void start(const char* directory)
{
    CNSInitLog(CNSLogFlagFile, 0, PLUGIN_NAME, directory);
}

void log(int number)
{
    CNSLog(PLUGIN_NAME " line %d", number);
}

bool throwAndCatch()
{
    try {
        throw ZSpace::ZException("thrown here", PLUGIN_NAME);
    } catch (const ZSpace::ZException&) {
        return true;
    }
}

} // namespace

PLUGIN_EXPORT const PluginFunctions* pluginFunctions()
{
    static constexpr PluginFunctions s_functions{start, log, throwAndCatch, CNSDisableFileLogging};
    return &s_functions;
}
