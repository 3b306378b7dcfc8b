#include "core/Log.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tessaloom {

namespace {

constexpr std::array<std::string_view, 8> Names{"emerg",   "alert",  "crit", "err",
                                                "warning", "notice", "info", "debug"};

LogSink& Sink() {
    static LogSink sink;
    return sink;
}

std::string OneLine(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    for (std::size_t at = 0; (at = text.find_first_of("\r\n", at)) != std::string::npos; at += 3)
        text.replace(at, text.compare(at, 2, "\r\n") == 0 ? 2 : 1, " | ");
    // Values of damaged files are quoted in the log; a terminal must not take them for commands.
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
    return text;
}

/// Of the address whose host begins at `host`. A stop behind it belongs to the sentence that it stands in.
void HideQuery(std::string& text, std::size_t host) {
    constexpr std::string_view Blanks = " \t\r\n\"", Stops = ".,:;)";
    const std::size_t query = text.find_first_of("?\t\r\n \"", host);
    if (query == std::string::npos || text[query] != '?') return;
    const std::size_t first = query + 1;
    std::size_t end = std::min(text.find_first_of(Blanks, first), text.size());
    while (end > first && Stops.find(text[end - 1]) != std::string_view::npos) --end;
    if (end > first) text.replace(first, end - first, "...");
}

}  // namespace

std::string_view NameOf(LogLevel level) { return Names[static_cast<std::size_t>(level)]; }

std::optional<LogLevel> LogLevelNamed(std::string_view name) {
    if (name == "panic") return LogLevel::Emergency;
    if (name == "error") return LogLevel::Error;
    if (name == "warn") return LogLevel::Warning;
    for (std::size_t i = 0; i < Names.size(); ++i)
        if (Names[i] == name) return static_cast<LogLevel>(i);
    return std::nullopt;
}

LogSink SetLogSink(LogSink sink) { return std::exchange(Sink(), std::move(sink)); }

void Log(LogLevel level, std::string_view text) {
    if (Sink()) Sink()(level, OneLine(MaskSecrets(text)));
}

std::string MaskSecrets(std::string_view text) {
    std::string masked(text);
    for (std::size_t at = 0; (at = masked.find("://", at)) != std::string::npos;) {
        at += 3;
        // The last "@" before the path parts the secrets from the host: a password may hold one itself, or a
        // blank. Rather too much is hidden than too little.
        const std::size_t end = masked.find_first_of("/?#\r\n\"", at);
        const std::size_t sign = masked.substr(at, end == std::string::npos ? end : end - at).rfind('@');
        if (sign != std::string::npos) masked.replace(at, sign, "***");
        HideQuery(masked, at);
    }
    return masked;
}

}  // namespace tessaloom
