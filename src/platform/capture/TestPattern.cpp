#include "platform/capture/TestPattern.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <string>

#include "platform/CaptureDriver.h"
#include "platform/PictureLimits.h"

namespace tessaloom {

namespace {

struct Colour {
    std::uint8_t blue, green, red;
};

constexpr Colour Zenith = {150, 84, 38}, Horizon = {170, 206, 250};
constexpr Colour Sunlight = {150, 226, 255};
constexpr Colour Ink = {255, 255, 255};

/// The sun's way over the sky and back, in frames.
constexpr int Day = 500;

/// Two ranges of hills, the far one first: colour, height of the crest line and its swing as shares of the
/// picture's height, and frames in which the range moves on by one picture's width.
struct Hills {
    Colour colour;
    double crest, swing;
    int period;
};
constexpr Hills Ranges[] = {
    {{124, 122, 86}, 0.64, 0.07, 1500},
    {{58, 84, 44},   0.80, 0.09, 600 },
};

/// Digits as 3 x 5 points, the top row in the highest three bits.
constexpr std::array<std::uint16_t, 10> Digits = {
    0b111'101'101'101'111, 0b010'110'010'010'111, 0b111'001'111'100'111, 0b111'001'111'001'111,
    0b101'101'111'001'001, 0b111'100'111'001'111, 0b111'100'111'101'111, 0b111'001'001'010'010,
    0b111'101'111'101'111, 0b111'101'111'001'111,
};
constexpr int DigitsShown = 6;

std::uint8_t Between(std::uint8_t from, std::uint8_t to, double share) {
    return static_cast<std::uint8_t>(std::lround(from + share * (to - from)));
}

void Put(std::uint8_t* pixel, Colour colour) {
    pixel[0] = colour.blue;
    pixel[1] = colour.green;
    pixel[2] = colour.red;
}

void Mix(std::uint8_t* pixel, Colour colour, double share) {
    pixel[0] = Between(pixel[0], colour.blue, share);
    pixel[1] = Between(pixel[1], colour.green, share);
    pixel[2] = Between(pixel[2], colour.red, share);
}

double Cycle(std::int64_t number, int period) {
    return 2 * std::numbers::pi * static_cast<double>(number % period) / period;
}

/// Reads a number from the front of `text`.
template <typename Number>
bool TakeNumber(std::string_view& text, Number& value) {
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec != std::errc()) return false;
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    return true;
}

bool TakeSign(std::string_view& text, char sign) {
    if (!text.starts_with(sign)) return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

std::optional<TestPattern::Format> TestPattern::Format::Parse(std::string_view text) {
    Format format;
    if (!text.empty() && text.front() != '@')
        if (!TakeNumber(text, format.width) || !TakeSign(text, 'x') || !TakeNumber(text, format.height))
            return std::nullopt;
    if (TakeSign(text, '@') && !TakeNumber(text, format.rate)) return std::nullopt;
    const bool sound = text.empty() && format.rate > 0 && format.rate <= 1000 &&
                       format.width <= CaptureFormat::MaxSide && format.height <= CaptureFormat::MaxSide &&
                       PictureLimits().Allow(format.width, format.height);
    return sound ? std::optional(format) : std::nullopt;
}

TestPattern::TestPattern(const Format& format)
    : format_(format),
      stride_((format.width * 3 + 3) & ~3),
      rows_(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(format.height)),
      crest_(static_cast<std::size_t>(format.width)) {
    DrawSky();
}

std::uint8_t* TestPattern::Row(int fromTop) {
    return rows_.data() +
           static_cast<std::size_t>(format_.height - 1 - fromTop) * static_cast<std::size_t>(stride_);
}

std::span<const std::uint8_t> TestPattern::Frame(std::int64_t number) {
    std::copy(sky_.begin(), sky_.end(), rows_.begin());
    DrawSun(number);
    for (int layer = 0; layer < static_cast<int>(std::size(Ranges)); ++layer) DrawHills(number, layer);
    DrawNumber(number);
    return rows_;
}

void TestPattern::DrawSky() {
    for (int y = 0; y < format_.height; ++y) {
        const double depth = static_cast<double>(y) / format_.height;
        Colour colour = Zenith;
        Mix(&colour.blue, Horizon, std::sqrt(depth));
        std::uint8_t* row = Row(y);
        for (int x = 0; x < format_.width; ++x) Put(row + 3 * x, colour);
    }
    sky_ = rows_;
}

/// A disc with a soft edge and a glow of twice its radius.
void TestPattern::DrawSun(std::int64_t number) {
    const double angle = Cycle(number, Day);
    const double radius = std::max(1.0, format_.height * 0.07);
    const Point centre = {format_.width * (0.5 - 0.42 * std::cos(angle)),
                          format_.height * (0.42 - 0.26 * std::sin(angle) * std::sin(angle))};
    const double reach = 2 * radius;
    const int top = std::max(0, static_cast<int>(centre.y - reach));
    const int bottom = std::min(format_.height - 1, static_cast<int>(centre.y + reach));
    const int left = std::max(0, static_cast<int>(centre.x - reach));
    const int right = std::min(format_.width - 1, static_cast<int>(centre.x + reach));
    for (int y = top; y <= bottom; ++y) {
        std::uint8_t* row = Row(y);
        for (int x = left; x <= right; ++x) {
            const double dx = x - centre.x, dy = y - centre.y;
            const double squares = dx * dx + dy * dy;
            if (squares >= reach * reach) continue;
            const double distance = std::sqrt(squares);
            const double disc = std::clamp(radius - distance + 0.5, 0.0, 1.0);
            const double glow = 0.5 * (1 - distance / reach);
            Mix(row + 3 * x, Sunlight, std::max(disc, glow));
        }
    }
}

/// Row by row, which memory likes better than column by column, with a soft edge.
void TestPattern::DrawHills(std::int64_t number, int layer) {
    const Hills& hills = Ranges[layer];
    const double shift = Cycle(number, hills.period);
    const double step = 2 * std::numbers::pi / format_.width;
    for (int x = 0; x < format_.width; ++x) {
        const double phase = step * x + shift;
        const double wave = std::sin(2 * phase + layer) * 0.6 + std::sin(5 * phase) * 0.4;
        crest_[static_cast<std::size_t>(x)] =
            static_cast<float>(format_.height * (hills.crest - hills.swing * wave));
    }
    const auto [highest, lowest] = std::ranges::minmax(crest_);
    for (int y = std::max(0, static_cast<int>(highest)); y < format_.height; ++y) {
        std::uint8_t* row = Row(y);
        if (y > 0 && static_cast<float>(y - 1) >= lowest) {
            std::copy_n(Row(y - 1), stride_, row);
            continue;
        }
        for (int x = 0; x < format_.width; ++x) {
            const float covered = static_cast<float>(y + 1) - crest_[static_cast<std::size_t>(x)];
            if (covered >= 1) {
                Put(row + 3 * x, hills.colour);
            } else if (covered > 0) {
                Mix(row + 3 * x, hills.colour, covered);
            }
        }
    }
}

void TestPattern::DrawNumber(std::int64_t number) {
    const int point = std::max(1, format_.height / 80);
    std::string digits = std::to_string(number % 1'000'000);
    digits.insert(0, DigitsShown - digits.size(), '0');
    for (int place = 0; place < DigitsShown; ++place) {
        const std::uint16_t shape =
            Digits[static_cast<std::size_t>(digits[static_cast<std::size_t>(place)] - '0')];
        for (int cell = 0; cell < 15; ++cell) {
            if (!(shape >> (14 - cell) & 1)) continue;
            const int left = (4 * place + cell % 3 + 2) * point, top = (cell / 3 + 2) * point;
            for (int y = top; y < std::min(top + point, format_.height); ++y)
                for (int x = left; x < std::min(left + point, format_.width); ++x) Put(Row(y) + 3 * x, Ink);
        }
    }
}

}  // namespace tessaloom
