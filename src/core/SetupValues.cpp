#include "core/SetupValues.h"

#include <cstdint>
#include <string_view>

#include "core/ErrorReport.h"
#include "core/INI.h"
#include "core/Log.h"
#include "core/Store.h"
#include "core/modNumbers.h"
#include "locale/Error.h"
#include "platform/Ascii.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "modMain.bas";
constexpr std::string_view SectionName = "General";

/// What is wrong with a value of the file.
enum class SetupFault { None, NotABoolean, NotANumber, OutOfRange };

constexpr std::string_view Reasons[] = {"", "neither True nor False", "not a number", "out of range"};

/// A number of pixels, to be turned into twips on one of the two axes.
struct Pixels {
    int x, y;
};

struct SetupKey {
    std::string_view name;
    std::string_view fallback;
    Pixels fallbackPixels;  ///< In place of `fallback`, where not 0.
    SetupFault (*read)(SetupValues&, std::string_view text);
    std::string (*write)(const SetupValues&);
};

SetupFault ReadBoolean(std::string_view text, bool& value) {
    return modNumbers::TryBool(text, value) ? SetupFault::None : SetupFault::NotABoolean;
}

SetupFault ReadReal(std::string_view text, double& value) {
    value = 0;
    return modNumbers::TryDblNI(text, value) ? SetupFault::None : SetupFault::NotANumber;
}

/// What cannot be read counts as 0. Everything is clamped, so no value outside `allowed` comes of any text.
SetupFault ReadWhole(std::string_view text, int& value, Range<int> allowed) {
    double number = 0;
    SetupFault fault = ReadReal(text, number);
    // There is no reading for what is below; what is above reads as "no limit".
    if (fault == SetupFault::None && number < INT32_MIN - 0.5) fault = SetupFault::OutOfRange;
    const int read = fault == SetupFault::None ? modNumbers::Str2LngNI(text) : 0;
    value = Clamped(read, allowed);
    return fault == SetupFault::None && value != read ? SetupFault::OutOfRange : fault;
}

/// Tells of a value that could not be used as it stands, with what was taken in its place.
void Tell(const INI& ini, const SetupKey& key, std::string_view text, SetupFault fault) {
    const std::string told = ini.File() + " [" + std::string(SectionName) + "] " + std::string(key.name) +
                             "=" + std::string(text) + ": " +
                             std::string(Reasons[static_cast<std::size_t>(fault)]) + ", " +
                             key.write(Setup()) + " taken";
    if (fault == SetupFault::OutOfRange)
        Log(LogLevel::Warning, told);
    else
        Report({std::string(Module), "LoadSetup", 0, static_cast<int>(ErrorNumber::TypeMismatch), told});
}

template <bool SetupValues::*Field>
constexpr SetupKey Boolean(std::string_view name, std::string_view fallback) {
    return {name,
            fallback,
            {},
            [](SetupValues& values, std::string_view text) { return ReadBoolean(text, values.*Field); },
            [](const SetupValues& values) { return modNumbers::CStrNI(values.*Field); }};
}

template <int SetupValues::*Field, Range<int> Allowed = Range<int>{INT32_MIN, INT32_MAX}>
constexpr SetupKey Whole(std::string_view name, std::string_view fallback, Pixels fallbackPixels = {}) {
    return {
        name, fallback, fallbackPixels,
        [](SetupValues& values, std::string_view text) { return ReadWhole(text, values.*Field, Allowed); },
        [](const SetupValues& values) { return modNumbers::CStrNI(values.*Field); }};
}

template <double SetupValues::*Field>
constexpr SetupKey Real(std::string_view name, std::string_view fallback) {
    return {name,
            fallback,
            {},
            [](SetupValues& values, std::string_view text) { return ReadReal(text, values.*Field); },
            [](const SetupValues& values) { return modNumbers::CStrNI(values.*Field); }};
}

constexpr SetupKey LastPortfolio(std::string_view name) {
    return {name,
            "",
            {},
            [](SetupValues& values, std::string_view text) {
                values.lastPortfolio = text;
                return SetupFault::None;
            },
            [](const SetupValues& values) { return values.autoLoad ? values.lastPortfolio : std::string(); }};
}

// clang-format off
constexpr SetupKey Keys[] = {
    Boolean<&SetupValues::autoLoad>("AutoLoad", "True"),
    LastPortfolio("LastPortfolio"),
    Whole<&SetupValues::startupMode>("StartupMode", "2"),
    Whole<&SetupValues::startupWidth>("StartupWidth", "", {800, 0}),
    Whole<&SetupValues::startupHeight>("StartupHeight", "", {0, 600}),
    Whole<&SetupValues::startupTop>("StartupTop", "0"),
    Whole<&SetupValues::startupLeft>("StartupLeft", "0"),
    Whole<&SetupValues::startupState>("StartupState", "2"),
    Whole<&SetupValues::startupLastNonMinimizedState>("StartupLastNonMinimizedState", "2"),
    Real<&SetupValues::stationLongitude>("StationLongitude", "0"),
    Real<&SetupValues::stationLatitude>("StationLatitude", "0"),
    Whole<&SetupValues::clearTypeContrast, Range<int>{1000, 2200}>("ClearTypeContrast", "1400"),
    Whole<&SetupValues::clearTypeOrientation, Range<int>{0, 1}>("ClearTypeOrientation", "1"),
};
// clang-format on

}  // namespace

SetupValues& Setup() {
    static SetupValues values;
    return values;
}

void LoadSetup(INI& ini, int twipsX, int twipsY) {
    Trap({Module, "LoadSetup"}, [&] {
        ini.Begin();
        for (const SetupKey& key : Keys) {
            const int twips = key.fallbackPixels.x * twipsX + key.fallbackPixels.y * twipsY;
            const std::string fallback = twips != 0 ? modNumbers::CStrNI(twips) : std::string(key.fallback);
            const std::string text = ini.GetKey(SectionName, key.name, WriteDefault::Yes, fallback);
            if (const SetupFault fault = key.read(Setup(), text); fault != SetupFault::None)
                Tell(ini, key, text, fault);
        }
        ini.Commit();
    });
}

void SaveSetup(INI& ini) {
    Trap({Module, "SaveSetup"}, [&] {
        ini.Begin();
        for (const SetupKey& key : Keys) ini.SetKey(SectionName, key.name, key.write(Setup()));
        ini.Commit();
    });
}

}  // namespace tessaloom
