#include "ui/dialogs/SetupProperties.h"

#include <iterator>
#include <type_traits>

#include "core/SetupValues.h"
#include "core/Store.h"
#include "core/main/modMain.h"

namespace tessaloom {

namespace {

constexpr PropertyChoice StartupModes[] = {
    {"0", "Minimized" },
    {"1", "Last State"},
    {"2", "Maximized" },
};

constexpr PropertyChoice SubPixelOrders[] = {
    {"1", "Red, green, blue (usual)"},
    {"0", "Blue, green, red"        },
};

// clang-format off
constexpr Property Table[] = {
    {.name = "AutoLoad", .label = "&Automatically Load Last", .group = "Start", .fallback = "True",
     .kind = PropertyKind::Switch, .tip = "The portfolio that was open last is opened when the program starts."},
    {.name = "StartupMode", .label = "&Main window", .group = "Start", .fallback = "2",
     .kind = PropertyKind::Choice, .low = 0, .high = 2, .choices = StartupModes,
     .tip = "How the main window opens when the program starts."},
    {.name = "StationLatitude", .label = "&Latitude", .group = "Station position", .fallback = "0",
     .kind = PropertyKind::Real, .low = -90, .high = 90, .decimals = 5, .unit = "°",
     .tip = "North of the equator is positive, south negative."},
    {.name = "StationLongitude", .label = "L&ongitude", .group = "Station position", .fallback = "0",
     .kind = PropertyKind::Real, .low = -180, .high = 180, .decimals = 5, .unit = "°",
     .tip = "East of Greenwich is positive, west negative."},
    {.name = "ClearTypeContrast", .label = "ClearType &Contrast: ", .group = "ClearType", .fallback = "1400",
     .kind = PropertyKind::Whole, .low = 1000, .high = 2200,
     .tip = "How strongly texts with ClearType smoothing are drawn."},
    {.name = "ClearTypeOrientation", .label = "Order of the sub-pi&xels", .group = "ClearType", .fallback = "1",
     .kind = PropertyKind::Choice, .low = 0, .high = 1, .choices = SubPixelOrders,
     .tip = "Of the screen on which the pictures are looked at."},
};
// clang-format on

/// How a row reads and writes its value.
struct Access {
    std::string (*get)();
    KeyFault (*set)(const std::string& text, const Property& row);
};

template <typename Kind, auto Field>
constexpr Access For() {
    return {[] { return Kind::Write(Setup().*Field); },
            [](const std::string& text, const Property& row) {
                typename Kind::Value value{};
                const KeyFault fault = Kind::Parse(text, value);
                if (fault != KeyFault::None) return fault;
                auto kept = value;
                if constexpr (!std::is_same_v<Kind, Boolean>)
                    kept = Clamped(value, {static_cast<decltype(value)>(row.low),
                                           static_cast<decltype(value)>(row.high)});
                Setup().*Field = kept;
                return kept == value ? KeyFault::None : KeyFault::OutOfRange;
            }};
}

/// In the order of `Table`.
constexpr Access Accesses[] = {
    For<Boolean, &SetupValues::autoLoad>(),        For<Whole, &SetupValues::startupMode>(),
    For<Real, &SetupValues::stationLatitude>(),    For<Real, &SetupValues::stationLongitude>(),
    For<Whole, &SetupValues::clearTypeContrast>(), For<Whole, &SetupValues::clearTypeOrientation>(),
};
static_assert(std::size(Accesses) == std::size(Table));

}  // namespace

std::span<const Property> SetupProperties::Properties() const { return Table; }

std::string SetupProperties::Get(std::size_t row) const { return Accesses[row].get(); }

KeyFault SetupProperties::Set(std::size_t row, const std::string& text) {
    const KeyFault fault = Accesses[row].set(text, Table[row]);
    modMain::UseSetup(platform_);
    return fault;
}

}  // namespace tessaloom
