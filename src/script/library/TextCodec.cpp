#include "script/library/TextCodec.h"

#include <algorithm>
#include <array>

#include "platform/Ascii.h"
#include "platform/TextEncoding.h"
#include "vbscript/TimeLimit.h"

namespace tessaloom::library {

using vbscript::String;

namespace {

constexpr std::string_view BigEndianMark = "\xFE\xFF";

struct Named {
    std::string_view name;
    Charset charset;
};

constexpr Named Names[] = {
    {"unicode", Charset::Utf16},
    {"utf-16", Charset::Utf16},
    {"utf-16le", Charset::Utf16},
    {"unicodefffe", Charset::Utf16BigEndian},
    {"utf-16be", Charset::Utf16BigEndian},
    {"utf-8", Charset::Utf8},
    {"utf8", Charset::Utf8},
    {"_autodetect", Charset::Utf8OrWindows},
    {"_autodetect_all", Charset::Utf8OrWindows},
    {"windows-1252", Charset::Windows1252},
    {"x-ansi", Charset::Windows1252},
    {"iso-8859-1", Charset::Latin1},
    {"latin1", Charset::Latin1},
    {"us-ascii", Charset::Ascii},
    {"ascii", Charset::Ascii},
};

String DecodeUtf16(std::string_view bytes, bool bigEndian) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    String text = String::OfLength(bytes.size() / 2);
    vbscript::InStretches(text.Length(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t at = begin; at < end; ++at) {
            const std::size_t first = 2 * at, second = first + 1;
            text.Units()[at] = static_cast<char16_t>(bigEndian ? byte(first) << 8 | byte(second)
                                                               : byte(second) << 8 | byte(first));
        }
    });
    return text;
}

std::string_view WithoutMark(std::string_view bytes, std::string_view mark) {
    return bytes.starts_with(mark) ? bytes.substr(mark.size()) : bytes;
}

/// The units of the bytes 80 to 9F in Windows-1252.
const std::u16string& WindowsUnits() {
    static const std::u16string units = [] {
        std::string bytes;
        for (int byte = 0x80; byte <= 0x9F; ++byte) bytes += static_cast<char>(byte);
        return vbscript::Utf16Of(FromWindows1252(bytes));
    }();
    return units;
}

String OfWindows(std::string_view bytes) {
    String text = String::OfLatin(bytes);
    const std::u16string& others = WindowsUnits();
    vbscript::InStretches(bytes.size(), [&](std::size_t begin, std::size_t end) {
        for (char16_t* unit = text.Units() + begin; unit != text.Units() + end; ++unit)
            if (*unit >= 0x80 && *unit <= 0x9F) *unit = others[*unit - 0x80u];
    });
    return text;
}

char ByteOf(char16_t unit, Charset charset) {
    if (unit < 0x80 || (charset != Charset::Ascii && unit >= 0xA0 && unit <= 0xFF))
        return static_cast<char>(unit);
    if (charset == Charset::Latin1 && unit <= 0xFF) return static_cast<char>(unit);
    const std::size_t place =
        charset == Charset::Windows1252 ? WindowsUnits().find(unit) : std::u16string::npos;
    return place == std::u16string::npos ? '?' : static_cast<char>(0x80 + place);
}

}  // namespace

std::optional<Charset> CharsetNamed(std::string_view name) {
    const auto* found =
        std::ranges::find_if(Names, [&](const Named& row) { return ascii::SameText(row.name, name); });
    return found == std::end(Names) ? std::nullopt : std::optional(found->charset);
}

String DecodeText(std::string_view bytes, Charset charset) {
    switch (charset) {
        case Charset::Utf16:
        case Charset::Utf16BigEndian:
            if (bytes.starts_with(BigEndianMark)) return DecodeUtf16(bytes.substr(2), true);
            if (bytes.starts_with(Utf16Mark)) return DecodeUtf16(bytes.substr(2), false);
            return DecodeUtf16(bytes, charset == Charset::Utf16BigEndian);
        case Charset::Utf8:
            return String::OfUtf8(WithoutMark(bytes, Utf8Mark));
        case Charset::Utf8OrWindows:
            if (IsUtf8(bytes)) return String::OfUtf8(WithoutMark(bytes, Utf8Mark));
            [[fallthrough]];
        case Charset::Windows1252:
            return OfWindows(bytes);
        case Charset::Latin1:
        case Charset::Ascii:
            return String::OfLatin(bytes);
    }
    return {};
}

void AppendEncoded(vbscript::BudgetBytes& bytes, std::u16string_view text, Charset charset) {
    switch (charset) {
        case Charset::Utf16:
        case Charset::Utf16BigEndian:
            for (const char16_t unit : text) {
                const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
                bytes += charset == Charset::Utf16 ? low : high;
                bytes += charset == Charset::Utf16 ? high : low;
            }
            break;
        case Charset::Utf8:
        case Charset::Utf8OrWindows:
            bytes += vbscript::Utf8Of(text);
            break;
        default:
            for (const char16_t unit : text) bytes += ByteOf(unit, charset);
    }
}

std::string_view MarkOf(Charset charset) {
    switch (charset) {
        case Charset::Utf16:
            return Utf16Mark;
        case Charset::Utf16BigEndian:
            return BigEndianMark;
        case Charset::Utf8:
            return Utf8Mark;
        default:
            return {};
    }
}

}  // namespace tessaloom::library
