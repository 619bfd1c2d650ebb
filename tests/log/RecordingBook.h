// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

#include <mutex>
#include <string>
#include <vector>

namespace ZSpace::Testing {

/// The text form of each value of a record, followed by "|".
inline std::string textsOf(const ZLogRecord& record)
{
    std::string texts;
    for (const ZLogRecord::Item& item : record) {
        const ZGStr<char> text = item->toCString();
        texts += text.isEmpty() ? "" : static_cast<const char*>(text);
        texts += '|';
    }
    return texts;
}

/// A book that stores everything that it receives in text form.
class RecordingBook : public ZLogBook {
public:
    void add(const ZLogRecord& record) override
    {
        const std::lock_guard guard(m_mutex);
        m_records.push_back(textsOf(record));
    }
    using ZLogBook::writeStream;
    void writeStream(unsigned char tag, int number, const void* data, long length) override
    {
        m_blocks.push_back(std::to_string(tag) + "," + std::to_string(number) + ","
            + std::string(static_cast<const char*>(data), static_cast<std::size_t>(length)));
    }
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override
    {
        out = L"session";
        return true;
    }
    bool isInactive() override { return m_isInactive; }

    [[nodiscard]] std::vector<std::string> records() const
    {
        const std::lock_guard guard(m_mutex);
        return m_records;
    }

    std::vector<std::string> m_blocks;
    bool m_isInactive = false;

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_records;
};

} // namespace ZSpace::Testing
