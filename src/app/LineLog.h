#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "core/Log.h"

namespace tessaloom {

/// The log as lines of text: time, level and event.
///
/// A line that comes again within ten minutes is not written but counted; the count is written with the line
/// when it next may be, and at the end. What is less pressing than the level asked for is dropped.
class LineLog {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;
    using Writer = std::function<void(const std::string& line)>;

    LineLog(LogLevel level, Writer writer, Clock clock = std::chrono::system_clock::now);
    ~LineLog();

    LineLog(const LineLog&) = delete;
    LineLog& operator=(const LineLog&) = delete;

    void Write(LogLevel level, std::string_view text);

    /// Writes the counts that are still held back.
    void Flush();

private:
    struct Entry {
        std::chrono::system_clock::time_point written;
        LogLevel level = LogLevel::Info;
        long heldBack = 0;
    };

    void Put(LogLevel level, std::string_view text, long times);

    static constexpr std::chrono::minutes Pause{10};
    static constexpr std::size_t MostEntries = 500;  ///< Bounds the memory; the counts start afresh beyond.

    LogLevel level_;
    Writer writer_;
    Clock clock_;
    std::map<std::string, Entry, std::less<>> entries_;
};

}  // namespace tessaloom
