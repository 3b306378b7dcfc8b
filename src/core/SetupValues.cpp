#include "core/SetupValues.h"

#include <cstdint>
#include <string_view>

#include "core/ErrorReport.h"
#include "core/INI.h"
#include "core/Store.h"
#include "core/modNumbers.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "modMain.bas";
constexpr std::string_view SectionName = "General";

/// A number of pixels, to be turned into twips on one of the two axes.
struct Pixels {
    int x, y;
};

struct SetupKey {
    std::string_view name;
    std::string_view fallback;
    Pixels fallbackPixels;  ///< In place of `fallback`, where not 0.
    void (*read)(SetupValues&, std::string_view text);
    std::string (*write)(const SetupValues&);
};

template <bool SetupValues::*Field>
constexpr SetupKey Boolean(std::string_view name, std::string_view fallback) {
    return {name,
            fallback,
            {},
            [](SetupValues& values, std::string_view text) { values.*Field = modNumbers::Str2Bool(text); },
            [](const SetupValues& values) { return modNumbers::CStrNI(values.*Field); }};
}

template <int SetupValues::*Field, Range<int> Allowed = Range<int>{INT32_MIN, INT32_MAX}>
constexpr SetupKey Whole(std::string_view name, std::string_view fallback, Pixels fallbackPixels = {}) {
    return {name, fallback, fallbackPixels,
            [](SetupValues& values, std::string_view text) {
                values.*Field = modNumbers::Str2LngNI(text);
                modNumbers::Limit(values.*Field, Allowed.low, Allowed.high);
            },
            [](const SetupValues& values) { return modNumbers::CStrNI(values.*Field); }};
}

template <double SetupValues::*Field>
constexpr SetupKey Real(std::string_view name, std::string_view fallback) {
    return {name,
            fallback,
            {},
            [](SetupValues& values, std::string_view text) { values.*Field = modNumbers::Str2DblNI(text); },
            [](const SetupValues& values) { return modNumbers::CStrNI(values.*Field); }};
}

constexpr SetupKey LastPortfolio(std::string_view name) {
    return {name,
            "",
            {},
            [](SetupValues& values, std::string_view text) { values.lastPortfolio = text; },
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
            key.read(Setup(), ini.GetKey(SectionName, key.name, WriteDefault::Yes, fallback));
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
