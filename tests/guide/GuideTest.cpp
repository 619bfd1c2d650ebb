// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The listings of the guide are the programs in examples/guide, and these do what the pages show.

#include "tests/guide/Pages.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

/// The socket of a journal of one's own.
class Journal {
public:
    explicit Journal(fs::path path)
        : m_path(std::move(path))
        , m_socket(socket(AF_UNIX, SOCK_DGRAM, 0))
    {
        fcntl(m_socket, F_SETFL, O_NONBLOCK);
        fcntl(m_socket, F_SETFD, FD_CLOEXEC);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        m_path.string().copy(address.sun_path, sizeof address.sun_path - 1);
        bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    ~Journal() { close(m_socket); }

    [[nodiscard]] const fs::path& path() const { return m_path; }

    /// The fields of the next message, each as a line "NAME=value". In the message a name and a line feed are followed
    /// by the length in eight bytes, the value and another line feed.
    [[nodiscard]] std::string message() const
    {
        std::string buffer(4096, '\0');
        const ssize_t got = recv(m_socket, buffer.data(), buffer.size(), 0);
        buffer.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
        std::string fields;
        for (std::size_t at = 0; at < buffer.size();) {
            const std::size_t end = buffer.find('\n', at);
            const auto length = static_cast<unsigned char>(buffer.at(end + 1)); // the values here are short
            fields += buffer.substr(at, end - at) + '=' + buffer.substr(end + 9, length) + '\n';
            at = end + 10 + length;
        }
        return fields;
    }

private:
    fs::path m_path;
    int m_socket;
};

/// What a program has printed, left and sent.
struct ProgramRun {
    explicit ProgramRun(const std::string& program)
        : journal(folder.path() / "journal")
    {
        const fs::path file = fs::path(ZSPACE_GUIDE_PROGRAMS) / program;
        fs::create_directory(folder.path() / "work");
        const Outcome outcome = runInChild([&] {
            fs::current_path(folder.path() / "work");
            return execl(file.c_str(), file.c_str(), journal.path().c_str(), static_cast<char*>(nullptr));
        });
        EXPECT_TRUE(outcome.hasExited && outcome.status == 0) << program << ": " << outcome.status;
        EXPECT_EQ(outcome.standardError, "") << program;
        output = outcome.standardOutput;
    }

    /// The content of a file, or of the only file in a directory.
    [[nodiscard]] std::string left(const std::string& name) const
    {
        fs::path path = folder.path() / "work" / name;
        if (fs::is_directory(path))
            path = fs::directory_iterator(path)->path();
        return contentOf(path);
    }

    TemporaryFolder folder;
    Journal journal;
    std::string output;
};

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

/// With "#" in the place of what differs in each run.
std::string masked(const std::string& line)
{
    static const std::regex time("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}");
    static const std::regex thread("(Thread\\[|\"thread\":\"|TID=)[0-9a-f]+");
    return std::regex_replace(std::regex_replace(line, time, "#"), thread, "$1#");
}

void expectSame(const std::string& shown, const std::string& actual, const std::string& where)
{
    const std::vector<std::string> expected = linesOf(shown);
    const std::vector<std::string> found = linesOf(actual);
    EXPECT_EQ(expected.size(), found.size()) << where << ":\n" << actual;
    for (std::size_t i = 0; i < std::min(expected.size(), found.size()); ++i) {
        if (expected[i] != found[i]) {
            EXPECT_EQ(masked(expected[i]), masked(found[i])) << where;
        }
    }
}

/// Without the two lines of the license and the empty one after them.
std::string withoutLicense(const std::string& source)
{
    const std::size_t end = source.find("\n\n");
    return end == std::string::npos ? source : source.substr(end + 2);
}

TEST(Guide, ListingsAreSourcesThatAreBuilt)
{
    for (const Page& page : guidePages()) {
        for (const Block& block : page.blocks) {
            if (block.language == "cpp" || block.language == "cmake") {
                EXPECT_EQ(block.kind, "file") << page.name << " shows code that is nowhere else";
            }
            if (block.kind == "file") {
                EXPECT_EQ(block.text, withoutLicense(contentOf(projectRoot() / block.name)))
                    << page.name << ": " << block.name;
            }
        }
    }
}

TEST(Guide, ProgramsDoWhatThePagesShow)
{
    if (!fs::exists(ZSPACE_GUIDE_PROGRAMS))
        GTEST_SKIP() << "built without the examples";
    std::map<std::string, ProgramRun> runs;
    for (const Page& page : guidePages()) {
        for (const Block& block : page.blocks) {
            if (block.kind.empty() || block.kind == "file" || block.kind == "package")
                continue;
            const ProgramRun& run = runs.try_emplace(block.name, block.name).first->second;
            const std::string where = page.name + ", " + block.kind + " of " + block.name;
            if (block.kind == "output")
                expectSame(block.text, run.output, where);
            else if (block.kind == "left")
                expectSame(block.text, run.left(block.path), where);
            else if (block.kind == "journal")
                expectSame(block.text, run.journal.message(), where);
            else
                ADD_FAILURE() << where;
        }
    }
}

TEST(Guide, EveryProgramIsShown)
{
    std::set<std::string> shown;
    for (const Page& page : guidePages()) {
        for (const Block& block : page.blocks)
            shown.insert(block.name);
    }
    for (const auto& entry : fs::recursive_directory_iterator(projectRoot() / "examples/guide")) {
        const std::string name = fs::relative(entry.path(), projectRoot()).string();
        EXPECT_TRUE(shown.contains(name) || entry.is_directory()) << name;
    }
}

TEST(Guide, PagesBeginWithAProgramAndItsOutputAndSayWhenNotToUseIt)
{
    for (const Page& page : guidePages()) {
        if (page.name.ends_with("ten-minutes.md"))
            continue;
        ASSERT_GE(page.blocks.size(), 2U) << page.name;
        EXPECT_EQ(page.blocks[0].kind, "file") << page.name;
        EXPECT_NE(page.blocks[1].kind, "file") << page.name;
        EXPECT_NE(page.text.find("\n## When not to use "), std::string::npos) << page.name;
        EXPECT_NE(page.text.find("\n## Compared with "), std::string::npos) << page.name;
    }
}

} // namespace
} // namespace ZSpace::Testing
