// Collects the log of a test, in the order of its records.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "utility/ov_utility.h"

class LogCapture {
public:
    struct Record {
        std::string function;
        int kind;
        std::string module;
        int line;
        std::string text;
    };

    LogCapture() { OvCaptureLog(&Take, this); }
    ~LogCapture() { OvCaptureLog(nullptr, nullptr); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<Record> Records() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_records;
    }
    std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        for (const Record& record : Records())
            texts.push_back(record.text);
        return texts;
    }
    // How many records are exactly `text`.
    int Count(const std::string& text) const
    {
        int count = 0;
        for (const Record& record : Records())
            count += record.text == text;
        return count;
    }
    // The first record that is exactly `text`; an empty one if there is none.
    Record Find(const std::string& text) const
    {
        for (const Record& record : Records())
            if (record.text == text) return record;
        return Record();
    }
    // All texts, one a line, for the message of a failing test.
    std::string Dump() const
    {
        std::string dump = "log:\n";
        for (const std::string& text : Texts())
            dump += "  " + text + "\n";
        return dump;
    }
    void Clear()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_records.clear();
    }

private:
    static void Take(const OvLogRecord* record, void* context)
    {
        LogCapture* const self = static_cast<LogCapture*>(context);
        const std::lock_guard<std::mutex> lock(self->m_mutex);
        self->m_records.push_back({record->function, record->kind, record->module, record->line, record->text});
    }

    mutable std::mutex m_mutex;
    std::vector<Record> m_records;
};
