// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Plug-ins that contain the static library with hidden symbols, loaded by a program that contains it as well: three
// copies in one process, each with variables of its own.

#include "tests/package/Plugin.h"

#include "ZSpace/log/LogFrontEnd.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace ZSpace::Testing {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// A loaded plug-in; unloads it at the end.
class Plugin {
public:
    explicit Plugin(const char* file)
        : m_file(file)
        , m_handle(dlopen(file, RTLD_NOW | RTLD_LOCAL))
    {
        if (!m_handle)
            throw std::runtime_error(dlerror());
        m_functions = reinterpret_cast<decltype(&pluginFunctions)>(symbol("pluginFunctions"))();
    }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    ~Plugin() { unload(); }

    const PluginFunctions* operator->() const { return m_functions; }
    [[nodiscard]] void* symbol(const char* name) const { return dlsym(m_handle, name); }

    void unload()
    {
        if (m_handle)
            dlclose(std::exchange(m_handle, nullptr));
    }
    [[nodiscard]] bool isLoaded() const
    {
        void* const handle = dlopen(m_file, RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
        return handle && dlclose(handle) == 0;
    }

private:
    const char* m_file;
    void* m_handle;
    const PluginFunctions* m_functions = nullptr;
};

class Plugins : public testing::Test {
protected:
    /// Everything in the reports of `name`.
    [[nodiscard]] std::string reports(const std::string& name) const
    {
        std::string all;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
            if (entry.path().filename().string().starts_with(name + "_"))
                all += contentOf(entry.path());
        }
        return all;
    }
    [[nodiscard]] const char* directory() const { return m_folder.path().c_str(); }

private:
    TemporaryFolder m_folder;
};

TEST_F(Plugins, EachLogsToItsOwnReport)
{
    const Plugin first(ZSPACE_FIRST_PLUGIN);
    const Plugin second(ZSPACE_SECOND_PLUGIN);
    CNSInitLog(CNSLogFlagFile, 0, "host", directory());
    first->start(directory());
    second->start(directory());

    std::jthread other([&] { second->log(2); });
    first->log(1);
    CNSLog("host line 3");
    other.join();
    CNSDisableFileLogging();
    first->stop();
    second->stop();

    EXPECT_THAT(
        reports("first"), AllOf(HasSubstr("first line 1"), Not(HasSubstr("second")), Not(HasSubstr("host"))));
    EXPECT_THAT(reports("second"),
        AllOf(HasSubstr("second line 2"), Not(HasSubstr("first")), Not(HasSubstr("host"))));
    EXPECT_THAT(
        reports("host"), AllOf(HasSubstr("host line 3"), Not(HasSubstr("first")), Not(HasSubstr("second"))));
}

TEST_F(Plugins, NothingOfTheLibraryLeavesAPlugin)
{
    const Plugin plugin(ZSPACE_FIRST_PLUGIN);
    for (const char* name : {"CNSLog", "CNSInitLog", "_ZN6ZSpace6theLogE", "_ZTVN6ZSpace7ZLogBookE"})
        EXPECT_EQ(plugin.symbol(name), nullptr) << name;
}

TEST_F(Plugins, ExceptionsStayInsideAPlugin)
{
    const Plugin first(ZSPACE_FIRST_PLUGIN);
    const Plugin second(ZSPACE_SECOND_PLUGIN);
    EXPECT_TRUE(first->throwAndCatch());
    EXPECT_TRUE(second->throwAndCatch());
}

TEST_F(Plugins, OneIsUnloadedWhileTheOtherLogs)
{
    const int descriptor = nextDescriptor();
    Plugin first(ZSPACE_FIRST_PLUGIN);
    Plugin second(ZSPACE_SECOND_PLUGIN);
    first->start(directory());
    second->start(directory());

    std::promise<void> logged;
    std::promise<void> unloaded;
    // Ends after the plug-in through which it has logged.
    std::jthread thread([&] {
        first->log(1);
        second->log(2);
        logged.set_value();
        unloaded.get_future().wait();
    });
    logged.get_future().wait();
    first->stop();
    first.unload();
    EXPECT_FALSE(first.isLoaded());
    unloaded.set_value();
    thread.join();

    second->log(3);
    // What a plug-in has registered for `fork` must be gone with it.
    const Outcome child = runInChild([&] {
        second->log(4);
        return 0;
    });
    EXPECT_TRUE(child.hasExited);
    EXPECT_EQ(child.status, 0);
    second->stop();
    second.unload();
    EXPECT_FALSE(second.isLoaded());
    EXPECT_EQ(nextDescriptor(), descriptor);

    EXPECT_THAT(reports("first"), EndsWith("first line 1\n"));
    EXPECT_THAT(reports("second"),
        AllOf(HasSubstr("second line 2\n"), HasSubstr("second line 3\n"), EndsWith("second line 4\n")));
}

TEST_F(Plugins, APluginCanBeLoadedAgain)
{
    for (int round = 1; round <= 20; ++round) {
        const Plugin plugin(ZSPACE_FIRST_PLUGIN);
        plugin->start(directory());
        plugin->log(round);
        plugin->stop();
    }
    const std::string all = reports("first");
    EXPECT_THAT(all, AllOf(HasSubstr("first line 1\n"), HasSubstr("first line 20\n")));
}

} // namespace
} // namespace ZSpace::Testing
