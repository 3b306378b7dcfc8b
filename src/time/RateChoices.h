#pragma once

#include <array>
#include <span>
#include <string_view>

namespace tessaloom {

/// One line of a list of rates: what it says and the seconds it stands for.
struct RateChoice {
    std::string_view label;
    double seconds;
};

/// The rates of a list that goes below a second, in the order of its lines.
inline constexpr auto SubSecondRateChoices = std::to_array<RateChoice>({
  // clang-format off
    {"1/30 sec", 1.0 / 30}, {"1/24 sec", 1.0 / 24}, {"1/20 sec", 1.0 / 20},
    {"1/10 sec", 1.0 / 10}, {"1/5 sec",  1.0 / 5},  {"1/2 sec",  1.0 / 2},
    {"1 sec",  1},     {"2 sec",  2},     {"5 sec",  5},     {"10 sec", 10},    {"15 sec", 15},
    {"20 sec", 20},    {"30 sec", 30},    {"1 min",  60},    {"2 min",  120},   {"5 min",  300},
    {"10 min", 600},   {"15 min", 900},   {"20 min", 1200},  {"30 min", 1800},  {"1 hr",   3600},
    {"2 hr",   7200},  {"3 hr",   10800}, {"6 hr",   21600}, {"12 hr",  43200}, {"24 hr",  86400},
  // clang-format on
});

/// The rates of a list that begins with one second.
inline constexpr std::span<const RateChoice> RateChoices = std::span(SubSecondRateChoices).subspan(6);

/// The one fraction that a list writes as a decimal number; `HalfSecondCommaLabel` where a comma is decimal.
inline constexpr RateChoice HalfSecondChoice{"0.5 sec", 0.5};
inline constexpr std::string_view HalfSecondCommaLabel = "0,5 sec";

}  // namespace tessaloom
