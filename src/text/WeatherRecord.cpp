#include "text/WeatherRecord.h"

#include "core/modNumbers.h"
#include "platform/TextEncoding.h"

namespace tessaloom {
namespace {

constexpr std::size_t LongestText = 1000;
constexpr std::size_t VersionField = 1;

/// The last field's number for each version of the format.
struct Version {
    double number;
    std::size_t lastField;
};
constexpr Version Versions[] = {
    {1,    39},
    {1.01, 41}
};

bool IsKnown(std::string_view version, std::size_t lastField) {
    double number = 0;
    if (!modNumbers::TryDblNI(version, number)) return false;
    for (const Version& known : Versions)
        if (number == known.number && lastField == known.lastField) return true;
    return false;
}

}  // namespace

std::optional<std::vector<std::string>> SplitWeatherRecord(std::string_view bytes) {
    const std::string whole = ToUtf8(bytes);
    std::string_view text = whole;
    if (FirstCharacters(text, LongestText).size() < text.size()) return std::nullopt;
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n')) text.remove_suffix(1);
    std::vector<std::string> fields;
    for (std::size_t comma; (comma = text.find(',')) != std::string_view::npos; text.remove_prefix(comma + 1))
        fields.emplace_back(text.substr(0, comma));
    fields.emplace_back(text);
    fields.emplace_back();  // as if one more comma stood at the end
    if (!IsKnown(fields[VersionField], fields.size() - 1)) return std::nullopt;
    return fields;
}

}  // namespace tessaloom
