// The pixel operations on 1920 x 1080 pixels of 24 bits, each beside the libraries that do the same work, on
// one thread. Inputs rotate over more memory than caches hold; the programs take turns in one run, so that
// all see the same machine; results are compared before anything is timed.
//
// Where the memory decides, two more lines tell how far: "bare" is a loop that moves the same bytes and does
// next to nothing with them; "in the cache" is our routine on rows that stay there.

#include <libyuv.h>
#include <libyuv/scale_rgb.h>
#include <pixman.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <random>
#include <string>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "benchmarks/Effort.h"
#include "imaging/Resampler.h"
#include "imaging/pixelops/ColorModes.h"
#include "imaging/pixelops/Rotation.h"
#include "imaging/pixelops/Tessaloom.h"
#include "platform/text/FreeTypeFonts.h"

namespace {

constexpr int Width = 1920, Height = 1080;
constexpr int NoKey = 0x1000000, Key = 0x20C040;  // 0x00BBGGRR
constexpr std::size_t LeastRotation = std::size_t{64} << 20;

std::mt19937 random_(1);

/// 24 bits a pixel.
cv::Mat Blank(int width = Width, int height = Height) { return {height, width, CV_8UC3, cv::Scalar()}; }

cv::Mat Noise(int width = Width, int height = Height) {
    cv::Mat picture = Blank(width, height);
    for (int y = 0; y < height; ++y)
        for (int i = 0; i < width * 3; ++i) picture.ptr(y)[i] = static_cast<std::uint8_t>(random_());
    return picture;
}

/// A grey that a camera's noise is laid over.
cv::Mat CameraNoise() {
    static cv::RNG noise(1);
    cv::Mat picture = Blank();
    noise.fill(picture, cv::RNG::NORMAL, 128, 2);
    return picture;
}

/// Noise with a coloured stretch in every row, as a keyed background has it.
cv::Mat KeyedNoise() {
    cv::Mat picture = Noise();
    for (int y = 0; y < Height; ++y)
        picture(cv::Rect(static_cast<int>(random_() % 900), y, 800, 1)) = cv::Scalar(0x20, 0xC0, 0x40);
    return picture;
}

/// Strokes with soft ends on nothing, alike in all components: as dense as no text is.
cv::Mat Strokes() {
    cv::Mat coverage = Blank();
    for (int y = 0; y < Height; ++y)
        for (int x = 0; y % 40 < 28 && x + 12 < Width; x += 8 + static_cast<int>(random_() % 6))
            for (int i = 0; i < 5; ++i) {
                const int value = i == 0 || i == 4 ? 90 + static_cast<int>(random_() % 100) : 255;
                coverage.at<cv::Vec3b>(y, x + i) = cv::Vec3b::all(static_cast<std::uint8_t>(value));
            }
    return coverage;
}

/// A page of text, as fonts draw it, with sub-pixels.
cv::Mat Page() {
    static tessaloom::FreeTypeFonts fonts;
    const auto font = fonts.Create(
        {.faceName = "Liberation Sans", .pixelHeight = 24, .quality = tessaloom::FontQuality::ClearType});
    cv::Mat page = Blank();
    const tessaloom::CoverageTarget target{page.data, Width, Height,
                                           static_cast<std::ptrdiff_t>(page.step[0])};
    for (int baseline = 30; baseline < Height; baseline += 40) {
        std::string line;
        while (font->Measure(line).width < Width - 250)
            line += std::to_string(random_() % 100000) + " km/h from north, rain later. ";
        font->Render(line, 10, baseline, target);
    }
    return page;
}

cv::Mat With32Bits(const cv::Mat& picture) {
    cv::Mat result;
    cv::cvtColor(picture, result, cv::COLOR_BGR2BGRA);
    return result;
}

/// A mask for pixman: the components and, as the fourth, their mean.
cv::Mat Mask32(const cv::Mat& coverage) {
    cv::Mat result = With32Bits(coverage);
    cv::mixChannels(coverage, result, {1, 3});
    return result;
}

pixman_image_t* Image(pixman_format_code_t format, const cv::Mat& pixels) {
    return pixman_image_create_bits(format, pixels.cols, pixels.rows,
                                    reinterpret_cast<std::uint32_t*>(pixels.data),
                                    static_cast<int>(pixels.step[0]));
}

using Work = std::function<void(std::size_t set)>;

double Milliseconds(const Work& work, std::size_t set) {
    const auto start = std::chrono::steady_clock::now();
    work(set);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// How many sets of pictures of so many bytes make up a rotation.
std::size_t Sets(std::size_t bytes) { return LeastRotation / bytes + 1; }

/// Pictures of one kind, as many as rotate.
class Rotating {
public:
    template <typename Make>
    Rotating(std::size_t count, Make make) {
        for (std::size_t i = 0; i < count; ++i) pictures_.push_back(make());
    }
    cv::Mat& operator[](std::size_t set) { return pictures_[set]; }

private:
    std::vector<cv::Mat> pictures_;
};

constexpr double NoBound = 1e9;

struct Peer {
    const char* name;
    double bound;  ///< Of our time to the peer's.
    Work work;
};

bool failed = false;

/// How far two pictures may lie apart: in any component, and in the mean of all.
void Compare(const char* what, const cv::Mat& ours, const cv::Mat& theirs, double most, double mean = 1) {
    cv::Mat difference;
    cv::absdiff(ours, theirs, difference);
    const double worst = cv::norm(difference, cv::NORM_INF);
    const double average = cv::norm(difference, cv::NORM_L1) / static_cast<double>(difference.total() * 3);
    if (worst <= most && average <= mean) return;
    std::printf("%s: results differ by up to %.0f, %.3f in the mean\n", what, worst, average);
    failed = true;
}

/// Each program in its turn works through all sets, so that it finds nothing in the caches that another left.
void Measure(const char* name, std::size_t sets, const Work& ours, const std::vector<Peer>& peers,
             int pixels = Width * Height) {
    std::vector<double> ourTimes;
    std::vector<std::vector<double>> theirTimes(peers.size());
    const auto rotate = [sets](const Work& work, std::vector<double>& times) {
        for (std::size_t set = 0; set < sets; ++set) times.push_back(Milliseconds(work, set));
    };
    const std::size_t turns = tessaloom::Effort(60, 1);
    while (ourTimes.size() < turns) {
        rotate(ours, ourTimes);
        for (std::size_t i = 0; i < peers.size(); ++i) rotate(peers[i].work, theirTimes[i]);
    }
    const double own = Median(ourTimes);
    std::printf("%-28s %7.3f ms %6.3f ns a pixel\n", name, own, own * 1e6 / pixels);
    for (std::size_t i = 0; i < peers.size(); ++i) {
        const double theirs = Median(theirTimes[i]);
        std::printf("    %-36s %7.3f ms  ratio %5.2f", peers[i].name, theirs, own / theirs);
        if (peers[i].bound < NoBound)
            std::printf("  (%.2f)%s", peers[i].bound, own / theirs > peers[i].bound ? "  missed" : "");
        std::printf("\n");
    }
    std::fflush(stdout);
}

/// The rows that stay in the cache; three pictures of them are 242 KB. They hold letters on a page.
cv::Mat Few(const cv::Mat& picture) { return picture.rowRange(14, 28); }

/// Our time on `Few` rows. reachable: what was seen to be, in ns a pixel; 0 where that is not known.
void MeasureInCache(double reachable, const std::function<void()>& ours) {
    constexpr int Turns = 20;
    const int rounds = tessaloom::Effort(60, 1);
    const auto turns = [&](std::size_t) {
        for (int i = 0; i < Turns; ++i) ours();
    };
    turns(0);
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) times.push_back(Milliseconds(turns, 0));
    std::printf("    %-36s %7.3f ns a pixel", "in the cache", Median(times) * 1e6 / (Turns * 14.0 * Width));
    if (reachable > 0) std::printf("  (%.2f)", reachable);
    std::printf("\n");
    std::fflush(stdout);
}

/// As wide vectors as the machine has, as our routines use them.
#if defined(__x86_64__)
#define TESSALOOM_WIDE __attribute__((target_clones("avx2", "default")))
#else
#define TESSALOOM_WIDE
#endif

constexpr std::size_t Ahead = 1024, Line = 64;

std::size_t Bytes(const cv::Mat& picture) { return picture.total() * 3; }

/// Reads two pictures and writes the first.
TESSALOOM_WIDE void Add(std::uint8_t* __restrict to, const std::uint8_t* __restrict from, std::size_t bytes) {
    for (std::size_t i = 0; i + Line <= bytes; i += Line) {
        __builtin_prefetch(to + i + Ahead);
        __builtin_prefetch(from + i + Ahead);
        for (std::size_t at = i; at < i + Line; ++at) to[at] = static_cast<std::uint8_t>(to[at] + from[at]);
    }
}

/// Reads three and writes the first.
TESSALOOM_WIDE void Add(std::uint8_t* __restrict to, const std::uint8_t* __restrict one,
                        const std::uint8_t* __restrict other, std::size_t bytes) {
    for (std::size_t i = 0; i + Line <= bytes; i += Line) {
        __builtin_prefetch(to + i + Ahead);
        __builtin_prefetch(one + i + Ahead);
        __builtin_prefetch(other + i + Ahead);
        for (std::size_t at = i; at < i + Line; ++at)
            to[at] = static_cast<std::uint8_t>(to[at] + one[at] + other[at]);
    }
}

/// Reads a picture, and reads and writes another where that one has something.
TESSALOOM_WIDE void AddSome(std::uint8_t* __restrict to, const std::uint8_t* __restrict map,
                            std::size_t bytes) {
    for (std::size_t i = 0; i + Line <= bytes; i += Line) {
        std::uint8_t any = 0;
        for (std::size_t at = i; at < i + Line; ++at) any = static_cast<std::uint8_t>(any | map[at]);
        if (any == 0) continue;
        __builtin_prefetch(to + i + Ahead);
        for (std::size_t at = i; at < i + Line; ++at) to[at] = static_cast<std::uint8_t>(to[at] + map[at]);
    }
}

/// What is written past the caches, where the machine can.
using Wide = std::uint8_t __attribute__((vector_size(16)));

void Put(std::uint8_t* to, Wide vector) {
#if defined(__SSE2__)
    _mm_stream_si128(reinterpret_cast<__m128i*>(to), reinterpret_cast<__m128i>(vector));
#else
    std::memcpy(to, &vector, sizeof vector);
#endif
}

/// Writes a picture.
void Put(std::uint8_t* to, std::size_t bytes) {
    for (std::size_t i = 0; i + sizeof(Wide) <= bytes; i += sizeof(Wide)) Put(to + i, Wide{});
}

/// Reads two pictures and writes a third.
void PutDifference(std::uint8_t* to, const std::uint8_t* one, const std::uint8_t* other, std::size_t bytes) {
    for (std::size_t i = 0; i + sizeof(Wide) <= bytes; i += sizeof(Wide)) {
        Wide a, b;
        std::memcpy(&a, one + i, sizeof a);
        std::memcpy(&b, other + i, sizeof b);
        Put(to + i, a - b);
    }
}

constexpr const char* BareName = "bare reading and writing";

int MergeOnto(cv::Mat& dest, const cv::Mat& source, int mode, int opacity, const std::uint8_t* map = nullptr,
              int key = NoKey, const int* table = nullptr) {
    return Merge(dest.data, dest.cols, dest.rows, source.data, source.cols, source.rows, 0, 0, mode, key,
                 opacity, map, 0, 0, table, table ? 1 : 0, table ? -1 : 0);
}

void UniformMerge() {
    const std::size_t sets = Sets(std::size_t{2} * Width * Height * 3);
    Rotating dest(sets, [] { return Noise(); }), source(sets, [] { return Noise(); });
    const auto opencv = [](cv::Mat& to, const cv::Mat& from) { cv::addWeighted(from, 0.6, to, 0.4, 0, to); };
    const auto libyuv = [](cv::Mat& to, const cv::Mat& from) {
        libyuv::InterpolatePlane(to.data, Width * 3, from.data, Width * 3, to.data, Width * 3, Width * 3,
                                 Height, 153);
    };
    cv::Mat own = dest[0].clone(), theirs = own.clone(), interpolated = own.clone();
    MergeOnto(own, source[0], 2, 153);
    opencv(theirs, source[0]);
    libyuv(interpolated, source[0]);
    Compare("Merge, addWeighted", own, theirs, 1, 0.1);
    Compare("Merge, InterpolatePlane", own, interpolated, 2);
    Measure("Merge at 60 %", sets,
            [&](std::size_t i) {
                MergeOnto(dest[i], source[i], 2, 153);
    },
            {{"OpenCV addWeighted", 0.35, [&](std::size_t i) { opencv(dest[i], source[i]); }},
             {"libyuv InterpolatePlane", 1.6, [&](std::size_t i) { libyuv(dest[i], source[i]); }},
             {BareName, NoBound, [&](std::size_t i) { Add(dest[i].data, source[i].data, Bytes(own)); }}});
    cv::Mat few = Few(dest[0]);
    MeasureInCache(0.11, [&] { MergeOnto(few, Few(source[0]), 2, 153); });
}

void MappedMerge() {
    const std::size_t sets = Sets(std::size_t{3} * Width * Height * 3);
    Rotating dest(sets, [] { return Noise(); }), source(sets, [] { return Noise(); }),
        map(sets, [] { return Noise(); });
    Rotating dest32(sets, [] { return With32Bits(Noise()); }),
        source32(sets, [] { return With32Bits(Noise()); }), mask32(sets, [] { return With32Bits(Noise()); });
    cv::Mat rest = Blank(), part = Blank(), whole = Blank();
    const auto opencv = [&](cv::Mat& to, const cv::Mat& from, const cv::Mat& by) {
        cv::multiply(from, by, part, 1 / 255.0);
        cv::bitwise_not(by, whole);
        cv::multiply(to, whole, rest, 1 / 255.0);
        cv::add(part, rest, to);
    };
    const auto libyuv = [](cv::Mat& to, const cv::Mat& from, const cv::Mat& by) {
        libyuv::BlendPlane(from.data, Width * 3, to.data, Width * 3, by.data, Width * 3, to.data, Width * 3,
                           Width * 3, Height);
    };
    const auto pixman = [](cv::Mat& to, const cv::Mat& from, const cv::Mat& by) {
        pixman_image_t *dst = Image(PIXMAN_x8r8g8b8, to), *src = Image(PIXMAN_x8r8g8b8, from),
                       *mask = Image(PIXMAN_a8r8g8b8, by);
        pixman_image_set_component_alpha(mask, 1);
        pixman_image_composite32(PIXMAN_OP_OVER, src, mask, dst, 0, 0, 0, 0, 0, 0, Width, Height);
        for (pixman_image_t* image : {dst, src, mask}) pixman_image_unref(image);
    };
    cv::Mat own = dest[0].clone(), theirs = own.clone(), blended = own.clone(), composed = With32Bits(own);
    MergeOnto(own, source[0], 3, 255, map[0].data);
    opencv(theirs, source[0], map[0]);
    libyuv(blended, source[0], map[0]);
    pixman(composed, With32Bits(source[0]), With32Bits(map[0]));
    cv::cvtColor(composed, composed, cv::COLOR_BGRA2BGR);
    Compare("Merge by map, OpenCV", own, theirs, 1);
    Compare("Merge by map, BlendPlane", own, blended, 2);
    Compare("Merge by map, pixman", own, composed, 1);
    Measure(
        "Merge by a map", sets,
        [&](std::size_t i) {
            MergeOnto(dest[i], source[i], 3, 255, map[i].data);
    },
        {{"OpenCV multiply, multiply, add", 0.25, [&](std::size_t i) { opencv(dest[i], source[i], map[i]); }},
         {"pixman over, 32 bits", 0.25, [&](std::size_t i) { pixman(dest32[i], source32[i], mask32[i]); }},
         {"libyuv BlendPlane", 1.5, [&](std::size_t i) { libyuv(dest[i], source[i], map[i]); }},
         {BareName, NoBound,
          [&](std::size_t i) { Add(dest[i].data, source[i].data, map[i].data, Bytes(own)); }}});
    cv::Mat few = Few(dest[0]);
    MeasureInCache(0.15, [&] { MergeOnto(few, Few(source[0]), 3, 255, Few(map[0]).data); });
}

void TextMerge(const char* name, cv::Mat (*coverage)()) {
    constexpr int Colour = 0x3080F0;
    const std::size_t sets = Sets(std::size_t{2} * Width * Height * 3);
    Rotating dest(sets, [] { return Noise(); }), map(sets, coverage);
    std::size_t next = 0;
    Rotating dest32(sets, [] { return With32Bits(Noise()); }),
        mask32(sets, [&] { return Mask32(map[next++]); });
    const pixman_color_t colour{0xF0F0, 0x8080, 0x3030, 0xFFFF};
    pixman_image_t* const solid = pixman_image_create_solid_fill(&colour);
    const auto ours = [](cv::Mat& to, const cv::Mat& by) {
        MergeText(to.data, to.cols, to.rows, nullptr, by.cols, by.rows, 0, 0, 3, NoKey, 255, by.data, 0, 0,
                  nullptr, 0, 0, Colour);
    };
    const auto pixman = [&](cv::Mat& to, const cv::Mat& by) {
        pixman_image_t *dst = Image(PIXMAN_x8r8g8b8, to), *mask = Image(PIXMAN_a8r8g8b8, by);
        pixman_image_set_component_alpha(mask, 1);
        pixman_image_composite32(PIXMAN_OP_OVER, solid, mask, dst, 0, 0, 0, 0, 0, 0, Width, Height);
        for (pixman_image_t* image : {dst, mask}) pixman_image_unref(image);
    };
    cv::Mat own = dest[0].clone(), composed = With32Bits(own);
    ours(own, map[0]);
    pixman(composed, mask32[0]);
    cv::cvtColor(composed, composed, cv::COLOR_BGRA2BGR);
    Compare("MergeText, pixman", own, composed, 1);
    Measure(name, sets,
            [&](std::size_t i) {
                ours(dest[i], map[i]);
    },
            {{"pixman over, components, 32 bits", 0.2, [&](std::size_t i) { pixman(dest32[i], mask32[i]); }},
             {BareName, NoBound, [&](std::size_t i) { AddSome(dest[i].data, map[i].data, Bytes(own)); }}});
    cv::Mat few = Few(dest[0]);
    MeasureInCache(0.12, [&] { ours(few, Few(map[0])); });
    pixman_image_unref(solid);
}

void TransparentMerge() {
    const std::size_t sets = Sets(std::size_t{2} * Width * Height * 3);
    Rotating dest(sets, [] { return Noise(); }), source(sets, [] { return KeyedNoise(); });
    cv::Mat mask(Height, Width, CV_8UC1);
    const auto opencv = [&](cv::Mat& to, const cv::Mat& from, const cv::Scalar& low, const cv::Scalar& high) {
        cv::inRange(from, low, high, mask);
        cv::bitwise_not(mask, mask);
        from.copyTo(to, mask);
    };
    const cv::Scalar key(0x20, 0xC0, 0x40), low(0x10, 0xB0, 0x30), high(0x30, 0xD0, 0x50);
    static constexpr int Range[] = {Key, Key, 16, 0};
    cv::Mat own = dest[0].clone(), theirs = own.clone(), few = Few(dest[0]);
    const auto bare = [&](std::size_t i) { Add(dest[i].data, source[i].data, Bytes(own)); };
    MergeOnto(own, source[0], 2, 255, nullptr, Key);
    opencv(theirs, source[0], key, key);
    Compare("Merge with a key colour, OpenCV", own, theirs, 0);
    Measure("Merge with a key colour", sets,
            [&](std::size_t i) {
                MergeOnto(dest[i], source[i], 2, 255, nullptr, Key);
    },
            {{"OpenCV inRange, copyTo", 0.6, [&](std::size_t i) { opencv(dest[i], source[i], key, key); }},
             {BareName, NoBound, bare}});
    MeasureInCache(0, [&] { MergeOnto(few, Few(source[0]), 2, 255, nullptr, Key); });
    MergeOnto(own, source[0], 2, 255, nullptr, NoKey, Range);
    opencv(theirs, source[0], low, high);
    Compare("Merge with a range, OpenCV", own, theirs, 0);
    Measure("Merge with a colour range", sets,
            [&](std::size_t i) {
                MergeOnto(dest[i], source[i], 2, 255, nullptr, NoKey, Range);
    },
            {{"OpenCV inRange, copyTo", 0.6, [&](std::size_t i) { opencv(dest[i], source[i], low, high); }},
             {BareName, NoBound, bare}});
    MeasureInCache(0, [&] { MergeOnto(few, Few(source[0]), 2, 255, nullptr, NoKey, Range); });
}

void Clear() {
    const std::size_t sets = Sets(std::size_t{Width} * Height * 3);
    Rotating dest(sets, [] { return Noise(); });
    const cv::Scalar colour(0x12, 0x34, 0x56);
    cv::Mat own = Blank(), theirs = Blank();
    Cls(own.data, Width, Height, 0x123456);
    theirs.setTo(colour);
    Compare("Cls, setTo", own, theirs, 0);
    Measure("Cls", sets,
            [&](std::size_t i) {
                Cls(dest[i].data, Width, Height, 0x123456);
    },
            {{"OpenCV setTo", 1.1, [&](std::size_t i) { dest[i].setTo(colour); }},
             {"bare writing", NoBound, [&](std::size_t i) { Put(dest[i].data, Bytes(own)); }}});
    MeasureInCache(0, [&] { Cls(Few(dest[0]).data, Width, Few(dest[0]).rows, 0x123456); });
}

void Turning() {
    // As the pictures of cameras are: neighbours alike.
    const auto smooth = [] {
        cv::Mat picture = Noise();
        cv::blur(picture, picture, {7, 7});
        return picture;
    };
    const tessaloom::PixelSize size = tessaloom::RotatedSize(Width, Height, 17);
    const tessaloom::Shears shears = tessaloom::RotationShears(17);
    const std::size_t sets = Sets(std::size_t{2} * Width * Height * 3);
    Rotating source(sets, smooth);
    const auto ours = [&](cv::Mat& to, const cv::Mat& from) {
        Rotate(to.data, to.cols, to.rows, from.data, Width, Height, shears.angle, shears.shearX,
               shears.shearY, 0);
    };
    // The centres fall on each other; OpenCV pads no rows, so that they are widened to what needs no padding.
    const int width = (size.width + 3) / 4 * 4;
    cv::Mat matrix = cv::getRotationMatrix2D({(Width - 1) / 2.0F, (Height - 1) / 2.0F}, -17, 1);
    matrix.at<double>(0, 2) += (width - Width) / 2.0;
    matrix.at<double>(1, 2) += (size.height - Height) / 2.0;
    const auto opencv = [&](cv::Mat& to, const cv::Mat& from) {
        cv::warpAffine(from, to, matrix, to.size(), cv::INTER_LINEAR, cv::BORDER_CONSTANT);
    };
    cv::Mat own = Blank(width, size.height), theirs = own.clone();
    ours(own, source[0]);
    opencv(theirs, source[0]);
    Compare("Rotate, warpAffine", own, theirs, 30, 1);
    Rotating dest(sets, [&] { return Blank(width, size.height); });
    Measure("Rotate by 17 degrees", sets,
            [&](std::size_t i) {
                ours(dest[i], source[i]);
    },
            {{"OpenCV warpAffine, bilinear", 0.8, [&](std::size_t i) { opencv(dest[i], source[i]); }}});
}

void Blurring() {
    const std::size_t sets = Sets(std::size_t{2} * Width * Height * 3);
    Rotating dest(sets, [] { return Blank(); }), source(sets, [] { return Noise(); });
    const double bounds[] = {0.6, 0.5, 0.5};
    for (int radius = 1; radius <= 3; ++radius) {
        const cv::Size side(2 * radius + 1, 2 * radius + 1);
        const auto opencv = [&](cv::Mat& to, const cv::Mat& from) {
            cv::blur(from, to, side, {-1, -1}, cv::BORDER_REPLICATE);
        };
        cv::Mat own = Blank(), theirs = Blank();
        Blur(source[0].data, own.data, Height, Width, radius);
        opencv(theirs, source[0]);
        Compare("Blur", own, theirs, 1, 0.1);
        const std::string name = "Blur, radius " + std::to_string(radius);
        Measure(name.c_str(), sets,
                [&](std::size_t i) {
                    Blur(source[i].data, dest[i].data, Height, Width, radius);
        },
                {{"OpenCV blur", bounds[radius - 1], [&](std::size_t i) { opencv(dest[i], source[i]); }}});
    }
}

void Differences() {
    const std::size_t sets = Sets(std::size_t{3} * Width * Height * 3);
    Rotating out(sets, [] { return Blank(); }), current(sets, [] { return Noise(); }),
        unrelated(sets, [] { return Noise(); }), camera(sets, CameraNoise), cameraBefore(sets, CameraNoise);
    std::size_t next = 0;
    Rotating still(sets, [&] {  // but for one object in 20
        cv::Mat picture = current[next++].clone();
        Noise(480, 216).copyTo(picture(cv::Rect(700, 400, 480, 216)));
        return picture;
    });
    int counts[256];
    const auto ours = [&](cv::Mat& to, const cv::Mat& now, const cv::Mat& before) {
        DiffHistogram(to.data, now.data, before.data, to.cols, to.rows, 0, counts);
    };
    const int bins = 256, channel = 0;
    const float range[] = {0, 256};
    const float* ranges[] = {range};
    cv::Mat histogram;
    const auto opencv = [&](cv::Mat& to, const cv::Mat& now, const cv::Mat& before) {
        cv::addWeighted(now, 1, before, -1, 128, to);
        const cv::Mat components = to.reshape(1);
        cv::calcHist(&components, 1, &channel, cv::noArray(), histogram, 1, &bins, ranges);
    };
    const struct {
        const char* name;
        double bound, reachable;
        Rotating &now, &before;
    } scenes[] = {
        {"Diff, mostly still",     0.12,    0.25, current, still       },
        {"Diff, unrelated frames", 0.35,    0.85, current, unrelated   },
        {"Diff, a camera's noise", NoBound, 0,    camera,  cameraBefore}
    };
    for (const auto& scene : scenes) {
        cv::Mat own = Blank(), theirs = Blank();
        ours(own, scene.now[0], scene.before[0]);
        opencv(theirs, scene.now[0], scene.before[0]);
        Compare(scene.name, own, theirs, 0);
        for (int v = 0; v < 256; ++v)
            if (counts[v] != static_cast<int>(histogram.at<float>(v))) failed = true;
        Measure(scene.name, sets,
                [&](std::size_t i) {
                    ours(out[i], scene.now[i], scene.before[i]);
        },
                {{"OpenCV addWeighted, calcHist", scene.bound,
                  [&](std::size_t i) { opencv(out[i], scene.now[i], scene.before[i]); }},
                 {BareName, NoBound, [&](std::size_t i) {
                      PutDifference(out[i].data, scene.now[i].data, scene.before[i].data, Bytes(own));
                  }}});
        cv::Mat few = Few(out[0]);
        MeasureInCache(scene.reachable, [&] { ours(few, Few(scene.now[0]), Few(scene.before[0])); });
    }
}

void Widening() {
    const std::size_t sets = Sets(std::size_t{Width} * Height * 3);
    Rotating frame(sets, [] { return Noise(); }), dest(sets, [] { return Blank(); });
    const auto packed = [](cv::Mat& pixels) { return cv::Mat(Height, Width, CV_8UC2, pixels.data); };
    const auto opencv = [&](cv::Mat& to, cv::Mat& from) {
        cv::cvtColor(packed(from), to, cv::COLOR_BGR5552BGR);
    };
    cv::Mat own = frame[0].clone(), theirs = Blank();
    opencv(theirs, own);
    DIB1624(own.data, Width, Height);
    Compare("DIB1624, cvtColor", own, theirs, 7, 4);  // OpenCV spreads 31 to 248 only
    Measure("DIB1624, in place", sets,
            [&](std::size_t i) {
                DIB1624(frame[i].data, Width, Height);
    },
            {{"OpenCV cvtColor", 1.1, [&](std::size_t i) { opencv(dest[i], frame[i]); }}});
}

/// The tables of OpenCV's ways are made before.
void ColourProcesses() {
    using tessaloom::ColorMode;
    const std::size_t sets = Sets(std::size_t{2} * Width * Height * 3);
    Rotating own(sets, [] { return Noise(); }), from(sets, [] { return Noise(); }),
        to(sets, [] { return Blank(); });
    const auto table = [](double (*blue)(int), double (*red)(int)) {
        cv::Mat values(1, 256, CV_8UC3);
        for (int v = 0; v < 256; ++v)
            values.at<cv::Vec3b>(0, v) = {cv::saturate_cast<std::uint8_t>(blue(v)),
                                          static_cast<std::uint8_t>(v),
                                          cv::saturate_cast<std::uint8_t>(red(v))};
        return values;
    };
    const cv::Mat less = table([](int v) { return v * 0.9; }, [](int v) { return v * 1.1; });
    cv::Mat gamma(1, 256, CV_8U), grey, histogram;
    for (int v = 0; v < 256; ++v)
        gamma.at<std::uint8_t>(0, v) = cv::saturate_cast<std::uint8_t>(255 * std::pow(v / 255.0, 1 / 1.4));
    // Each component's distance from lightness times 1.4.
    const cv::Matx33f saturation(1.4F - 0.4F * 29 / 256, -0.4F * 150 / 256, -0.4F * 77 / 256,  //
                                 -0.4F * 29 / 256, 1.4F - 0.4F * 150 / 256, -0.4F * 77 / 256,  //
                                 -0.4F * 29 / 256, -0.4F * 150 / 256, 1.4F - 0.4F * 77 / 256);
    const cv::Matx33f sharpening(0, -0.25F, 0, -0.25F, 2, -0.25F, 0, -0.25F, 0);
    const auto levels = [&](cv::Mat& out, const cv::Mat& in) {
        const int bins = 256, channel = 0;
        const float range[] = {0, 256};
        const float* ranges[] = {range};
        in.convertTo(out, -1, 0.8, 25.5);
        const cv::Mat components = out.reshape(1);
        cv::calcHist(&components, 1, &channel, cv::noArray(), histogram, 1, &bins, ranges);
        cv::LUT(out, gamma, out);  // takes as long with any table
    };
    using Change = std::function<void(cv::Mat&, const cv::Mat&)>;
    const struct {
        ColorMode mode;
        const char* way;
        double most;  ///< How far the results may lie apart; below 0: they are not the same.
        Change run;
    } rows[] = {
        {ColorMode::Greyscale,       "OpenCV cvtColor, twice",          1,
         [&](cv::Mat& out,                                                                  const cv::Mat& in) {
             cv::cvtColor(in, grey, cv::COLOR_BGR2GRAY);
             cv::cvtColor(grey, out, cv::COLOR_GRAY2BGR);
         }                                                                                                                     },
        {ColorMode::Negative,        "OpenCV bitwise_not",              0,
         [](cv::Mat& out,                                                                   const cv::Mat& in) { cv::bitwise_not(in, out); }             },
        {ColorMode::Brighter,        "OpenCV add",                      0,
         [](cv::Mat& out,                                                                   const cv::Mat& in) { cv::add(in, cv::Scalar::all(32), out); }},
        {ColorMode::MoreContrast,    "OpenCV convertTo",                1,
         [](cv::Mat& out,                                                                   const cv::Mat& in) { in.convertTo(out, -1, 1.25, -31.875); } },
        {ColorMode::LighterMidtones, "OpenCV LUT",                      1,
         [&](cv::Mat& out,                                                                  const cv::Mat& in) { cv::LUT(in, gamma, out); }              },
        {ColorMode::MoreSaturation,  "OpenCV transform",                1,
         [&](cv::Mat& out,                                                                  const cv::Mat& in) { cv::transform(in, out, saturation); }   },
        {ColorMode::Warmer,          "OpenCV LUT",                      1,
         [&](cv::Mat& out,                                                                  const cv::Mat& in) { cv::LUT(in, less, out); }               },
        {ColorMode::AutoLevels,      "OpenCV convertTo, calcHist, LUT", -1, levels        },
        {ColorMode::Sharpen,         "OpenCV filter2D",                                 1,
         [&](cv::Mat& out,                                                       const cv::Mat& in) {
             cv::filter2D(in, out, -1, sharpening, {-1, -1}, 0, cv::BORDER_REPLICATE);
         }                                                             },
        {ColorMode::SwapRedAndBlue,         "OpenCV cvtColor",                                 0,
         [](cv::Mat& out, const cv::Mat& in) { cv::cvtColor(in, out, cv::COLOR_BGR2RGB); }                                                      },
    };
    for (const auto& row : rows) {
        const int mode = static_cast<int>(row.mode);
        const std::string name(tessaloom::ColorModeNames[static_cast<std::size_t>(mode)]);
        cv::Mat ours = from[0].clone(), theirs = Blank();
        const auto process = [&](cv::Mat& picture) {
            // Levels that have been spread once stay as they are.
            if (row.mode == ColorMode::AutoLevels)
                ColorProcess(picture.data, Width, Height, static_cast<int>(ColorMode::LessContrast));
            ColorProcess(picture.data, Width, Height, mode);
        };
        process(ours);
        row.run(theirs, from[0]);
        if (row.most >= 0) Compare(name.c_str(), ours, theirs, row.most);
        Measure(name.c_str(), sets,
                [&](std::size_t i) {
                    ColorProcess(own[i].data, Width, Height, mode);
        },
                {{row.way, 1, [&](std::size_t i) { row.run(to[i], from[i]); }}});
    }
}

void Scale(cv::Mat& to, const cv::Mat& from) {
    static tessaloom::Resampler resampler;
    resampler.Run(
        {to.data, static_cast<std::ptrdiff_t>(to.step[0]), to.cols, to.rows, 0, 0, to.cols, to.rows},
        {from.data, static_cast<std::ptrdiff_t>(from.step[0]), from.cols, from.rows});
}

void Shrinking() {
    constexpr int W = 640, H = 360;
    const std::size_t sets = Sets(std::size_t{Width} * Height * 3);
    Rotating source(sets, [] { return Noise(); }), dest(sets, [] { return Blank(W, H); });
    const auto opencv = [](cv::Mat& to, const cv::Mat& from) {
        cv::resize(from, to, to.size(), 0, 0, cv::INTER_AREA);
    };
    cv::Mat own = Blank(W, H), theirs = own.clone();
    Scale(own, source[0]);
    opencv(theirs, source[0]);
    Compare("shrinking, OpenCV", own, theirs, 1);
    Measure(
        "1920 x 1080 to 640 x 360", sets,
        [&](std::size_t i) {
            Scale(dest[i], source[i]);
    },
        {{"OpenCV resize, area", 0.4, [&](std::size_t i) { opencv(dest[i], source[i]); }}}, W * H);
}

void Enlarging() {
    constexpr int FromWidth = 640, FromHeight = 480, W = 1280, H = 960;
    const std::size_t sets = Sets(std::size_t{W} * H * 3);
    Rotating source(sets, [] { return Noise(FromWidth, FromHeight); }),
        dest(sets, [] { return Blank(W, H); });
    Rotating source32(sets, [] { return With32Bits(Noise(FromWidth, FromHeight)); }),
        dest32(sets, [] { return With32Bits(Blank(W, H)); });
    const auto opencv = [](cv::Mat& to, const cv::Mat& from) {
        cv::resize(from, to, to.size(), 0, 0, cv::INTER_LINEAR);
    };
    const auto rgb = [](cv::Mat& to, const cv::Mat& from) {
        libyuv::RGBScale(from.data, FromWidth * 3, FromWidth, FromHeight, to.data, W * 3, W, H,
                         libyuv::kFilterBilinear);
    };
    const auto argb = [](cv::Mat& to, const cv::Mat& from) {
        libyuv::ARGBScale(from.data, FromWidth * 4, FromWidth, FromHeight, to.data, W * 4, W, H,
                          libyuv::kFilterBilinear);
    };
    cv::Mat own = Blank(W, H), theirs = own.clone();
    Scale(own, source[0]);
    opencv(theirs, source[0]);
    Compare("enlarging, OpenCV", own, theirs, 1);
    // libyuv lays the corners of the two pictures on each other, not their edges: only about the same.
    rgb(theirs, source[0]);
    Compare("enlarging, libyuv", own, theirs, 255, 40);
    Measure(
        "640 x 480 to 1280 x 960", sets,
        [&](std::size_t i) {
            Scale(dest[i], source[i]);
    },
        {{"OpenCV resize, linear", 1.2, [&](std::size_t i) { opencv(dest[i], source[i]); }},
         {"libyuv RGBScale, bilinear", 1.2, [&](std::size_t i) { rgb(dest[i], source[i]); }},
         {"libyuv ARGBScale, bilinear", 1.2, [&](std::size_t i) { argb(dest32[i], source32[i]); }}},
        W * H);
}

void Shadows() {
    constexpr int W = 640, H = 360;
    const std::size_t sets = Sets(std::size_t{2} * W * H * 3);
    Rotating layer(sets, [] { return Noise(W, H); }), shadow(sets, [] { return Blank(W + 4, H + 4); });
    const auto run = [&](std::size_t i, int mode, int key) {
        Shadow(shadow[i].data, W + 4, H + 4, layer[i].data, W, H, 2, 2, mode, key, 200,
               mode == 3 ? layer[i].data : nullptr, 4, 0, 0, nullptr, 0, 0);
    };
    Measure(
        "Shadow of 640 x 360", sets, [&](std::size_t i) { run(i, 2, NoKey); }, {}, W * H);
    Measure(
        "Shadow with a key colour", sets, [&](std::size_t i) { run(i, 2, Key); }, {}, W * H);
    Measure(
        "Shadow by a map", sets, [&](std::size_t i) { run(i, 3, NoKey); }, {}, W * H);
}

}  // namespace

int main(int count, char** arguments) {
    cv::setNumThreads(1);
    const struct {
        const char* name;
        void (*run)();
    } parts[] = {
        {"uniform",     UniformMerge    },
        {"map",         MappedMerge     },
        {"text",
         [] {
             TextMerge("MergeText, a page", Page);
             TextMerge("MergeText, dense strokes", Strokes);
         }                              },
        {"transparent", TransparentMerge},
        {"cls",         Clear           },
        {"rotate",      Turning         },
        {"blur",        Blurring        },
        {"diff",        Differences     },
        {"dib1624",     Widening        },
        {"colour",      ColourProcesses },
        {"shrink",      Shrinking       },
        {"enlarge",     Enlarging       },
        {"shadow",      Shadows         }
    };
    for (const auto& part : parts)
        if (count < 2 || std::any_of(arguments + 1, arguments + count,
                                     [&](const char* name) { return std::string(name) == part.name; }))
            part.run();
    return failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
