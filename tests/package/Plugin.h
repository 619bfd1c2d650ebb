// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// What the host of Plugin.cpp calls.
struct PluginFunctions {
    void (*start)(const char* directory); ///< logs to a report file of its own
    void (*log)(int number);
    bool (*throwAndCatch)();
    void (*stop)();
};

#define PLUGIN_EXPORT extern "C" [[gnu::visibility("default")]]
PLUGIN_EXPORT const PluginFunctions* pluginFunctions();
