#include "app/HeadlessDialogs.h"

#include "core/Log.h"

namespace tessaloom {

namespace {

std::string Titled(std::string_view title, std::string_view text) {
    return title.empty() ? std::string(text) : std::string(title) + ": " + std::string(text);
}

}  // namespace

Answer HeadlessDialogs::MessageBox(std::string_view text, std::string_view title, Buttons buttons) {
    Log(LogLevel::Warning, Titled(title, text));
    return SafeAnswer(buttons);
}

std::optional<std::string> HeadlessDialogs::InputBox(std::string_view prompt, std::string_view title,
                                                     std::string_view) {
    Log(LogLevel::Warning, Titled(title, prompt));
    return std::nullopt;
}

std::optional<std::string> HeadlessDialogs::OpenFile(const FileDialog& dialog) {
    Log(LogLevel::Warning, Titled(dialog.title, "nobody is here to choose a file"));
    return std::nullopt;
}

std::optional<std::string> HeadlessDialogs::SaveFile(const FileDialog& dialog) { return OpenFile(dialog); }

void HeadlessDialogs::ShowStatus(std::string_view text) { Log(LogLevel::Info, text); }

}  // namespace tessaloom
