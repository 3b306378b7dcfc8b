#include "app/LineLog.h"

#include <time.h>

#include <utility>

namespace tessaloom {

namespace {

void AppendTwoDigits(std::string& text, int value) {
    text += static_cast<char>('0' + value / 10 % 10);
    text += static_cast<char>('0' + value % 10);
}

/// Local time as "2026-01-31 08:05:09".
std::string TimeText(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    std::string text = std::to_string(parts.tm_year + 1900);
    const std::pair<char, int> rest[] = {
        {'-', parts.tm_mon + 1},
        {'-', parts.tm_mday   },
        {' ', parts.tm_hour   },
        {':', parts.tm_min    },
        {':', parts.tm_sec    }
    };
    for (const auto& [separator, value] : rest) {
        text += separator;
        AppendTwoDigits(text, value);
    }
    return text;
}

}  // namespace

LineLog::LineLog(LogLevel level, Writer writer, Clock clock)
    : level_(level), writer_(std::move(writer)), clock_(std::move(clock)) {}

LineLog::~LineLog() { Flush(); }

void LineLog::Write(LogLevel level, std::string_view text) {
    if (level > level_) return;
    const auto now = clock_();
    auto found = entries_.find(text);
    if (found != entries_.end() && now - found->second.written < Pause && now >= found->second.written) {
        ++found->second.heldBack;
        return;
    }
    if (found == entries_.end()) {
        if (entries_.size() >= MostEntries) {
            Flush();
            entries_.clear();
        }
        found = entries_.emplace(std::string(text), Entry{}).first;
    }
    Put(level, text, std::exchange(found->second.heldBack, 0) + 1);
    found->second.written = now;
    found->second.level = level;
}

void LineLog::Flush() {
    for (auto& [text, entry] : entries_)
        if (entry.heldBack > 0) Put(entry.level, text, std::exchange(entry.heldBack, 0));
}

void LineLog::Put(LogLevel level, std::string_view text, long times) {
    std::string line = TimeText(clock_()) + " " + std::string(NameOf(level)) + ": " + std::string(text);
    if (times > 1) line += " (" + std::to_string(times) + " times)";
    writer_(line);
}

}  // namespace tessaloom
