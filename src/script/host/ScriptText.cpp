#include "script/host/ScriptText.h"

#include "platform/TextEncoding.h"

namespace tessaloom {
namespace {

std::string_view Stripped(std::string_view line) {
    const auto first = line.find_first_not_of("\t ");
    if (first == std::string_view::npos) return {};
    return line.substr(first, line.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::vector<std::string> StrippedLines(std::string_view content) {
    if (content.starts_with(Utf8Mark)) content.remove_prefix(Utf8Mark.size());
    const std::string text = ToUtf8(content);

    std::vector<std::string> lines;
    for (std::string_view rest = text; !rest.empty();) {
        const auto end = rest.find_first_of("\r\n");
        lines.emplace_back(Stripped(rest.substr(0, end)));
        if (end == std::string_view::npos) break;
        rest.remove_prefix(rest.substr(end).starts_with("\r\n") ? end + 2 : end + 1);
    }
    return lines;
}

}  // namespace tessaloom
