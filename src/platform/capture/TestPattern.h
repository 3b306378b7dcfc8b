#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tessaloom {

/// A generated moving picture: a sun that travels over rolling hills, and the number of the frame. Frame k
/// depends on k and the size alone.
class TestPattern {
public:
    struct Format {
        int width = 640;   ///< Pixels, 1 .. 16,384.
        int height = 480;  ///< Pixels, 1 .. 16,384.
        double rate = 25;  ///< Frames a second, above 0, at most 1000.

        /// The rest of an address behind "test:": "640x480@25", the size or rate of which may be missing.
        /// Nothing when it is something else.
        static std::optional<Format> Parse(std::string_view text);
    };

    explicit TestPattern(const Format& format);

    const Format& Shape() const { return format_; }

    /// The picture of frame `number`: 24 bits, rows padded to 4 bytes, bottom row first. Valid until the next
    /// call.
    std::span<const std::uint8_t> Frame(std::int64_t number);

private:
    struct Point {
        double x, y;
    };

    std::uint8_t* Row(int fromTop);
    void DrawSky();
    void DrawSun(std::int64_t number);
    void DrawHills(std::int64_t number, int layer);
    void DrawNumber(std::int64_t number);

    Format format_;
    int stride_;  ///< Bytes.
    std::vector<std::uint8_t> sky_;
    std::vector<std::uint8_t> rows_;
    std::vector<float> crest_;  ///< Of the hills being drawn, in rows from the top, column by column.
};

}  // namespace tessaloom
