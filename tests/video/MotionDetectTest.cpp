#include "video/MotionDetect.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "support/PropertyTable.h"
#include "support/TestPlatform.h"
#include "video/MotionScale.h"

namespace tessaloom {
namespace {

using namespace tessaloom::testing;

// Frames of 20 x 50 pixels: 3000 colour components, so that 3 of them are a share of 0.001.
struct Detection {
    explicit Detection(float coverageLimit) {
        detector.SetBrighterMotionLimit(138);
        detector.SetDarkerMotionLimit(118);
        detector.SetCoverageLimit(coverageLimit);
        detector.SetLastFrameInterval(1 / 86400.0);
        detector.OnTrigger([this] { ++triggers; });
        frame.SetWidthHeight(20, 50);
        After(0, 0);
        triggers = 0;
    }

    // A frame whose first `pixels` pixels have the level `level`; all others stay at 100.
    int After(int pixels, int level) {
        frame.Clear(0x646464);
        for (int i = 0; i < 3 * pixels; ++i) frame.DIBPtr()[i] = static_cast<std::uint8_t>(level);
        detector.DiffFrames(frame);
        return triggers;
    }

    TestPlatform platform;
    CountingOwner owner;
    MotionDetect detector{
        owner, {platform.files, platform.jpegCodec, platform.desktop}
    };
    DIB frame;
    int triggers = 0;
};

TEST(CalculateMotion, MeasuresTheShareOfComponentsOnALogarithmicScale) {
    const struct {
        const char* what;
        int pixels, level;
        float limit;
        int blur, triggers;
    } rows[] = {
        {"a thousandth at limit 0.5",      1,  120, 0.5F,  0, 1},
        {"a thousandth at limit 0.51",     1,  120, 0.51F, 0, 0},
        {"darker counts as well",          1,  80,  0.5F,  0, 1},
        {"the limits belong to the range", 1,  110, 0.5F,  0, 1},
        {"below the limits",               1,  109, 0.5F,  0, 0},
        {"limit 0 never triggers",         20, 255, 0,     0, 0},
        {"a still scene",                  0,  0,   0.01F, 0, 0},
        {"small changes are blurred away", 1,  120, 0.01F, 3, 0},
    };
    for (const auto& row : rows) {
        Detection at(row.limit);
        at.detector.SetDiffPreBlurRadius(row.blur);
        EXPECT_EQ(at.After(row.pixels, row.level), row.triggers) << row.what;
    }
}

TEST(CalculateMotion, RecordsWhatItMeasuredAtATrigger) {
    Detection at(0.5F);
    at.platform.time.Set(FakeTime::FirstDay, 8, 30);
    at.After(1, 120);
    EXPECT_FLOAT_EQ(at.detector.LastMotionCoverage(), 0.5F);
    EXPECT_EQ(at.detector.LastLightMax(), 148);
    EXPECT_EQ(at.detector.LastDarkMin(), 128);
    EXPECT_NEAR(at.detector.LastMotionTriggerTime(), FakeTime::FirstDay + 8.5 / 24, 1e-9);
    at.After(1, 60);
    EXPECT_EQ(at.detector.LastDarkMin(), 68);
}

TEST(CalculateMotion, BeepsThenRecordsThenCallsThenSaves) {
    Detection at(0.5F);
    std::vector<std::string> order;
    at.detector.SetMotionBeep(true);
    at.detector.SetSaveFixed(true);
    at.platform.desktop.onBeep = [&] {
        order.emplace_back(at.detector.LastMotionCoverage() < 0 ? "beep, nothing recorded" : "beep");
        EXPECT_EQ(at.detector.MotionTriggerTime(), 0);
    };
    at.detector.OnTrigger([&] {
        order.emplace_back(at.detector.LastMotionCoverage() > 0 ? "call, recorded" : "call");
        order.emplace_back(at.platform.files.FileExists("motion/motion.jpg") ? "saved" : "not saved yet");
    });
    at.After(1, 120);
    EXPECT_EQ(order, (std::vector<std::string>{"beep, nothing recorded", "call, recorded", "not saved yet"}));
    EXPECT_TRUE(at.platform.files.FileExists("motion/motion.jpg"));
}

TEST(MotionSaves, WriteWhatTheSettingsName) {
    const struct {
        const char* what;
        bool fixed, sequential, difference;
        int qualities[3];  // fixed, sequential, difference
        std::vector<std::string> files;
        int encodings;
    } rows[] = {
        {"nothing",                     false, false, true,  {80, 80, 80}, {},                                       0},
        {"the fixed file",              true,  false, false, {80, 80, 80}, {"a/m.JPG"},                              1},
        {"with its difference",         true,  false, true,  {80, 80, 80}, {"a/m.JPG", "a/m.diff.jpg"},              2},
        {"sequential files",
         false,                                true,
         true,                                               {80, 80, 80},
         {"b/26011508300200.jpg", "b/26011508300200.diff.jpg"},
         2                                                                                                            },
        {"one quality is encoded once",
         true,                                 true,
         false,                                              {70, 70, 1},
         {"a/m.JPG", "b/26011508300200.jpg"},
         1                                                                                                            },
        {"two are not",                 true,  true,  true,  {70, 71, 1},  {"a/m.JPG", "b/26011508300200.diff.jpg"}, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Detection at(0.5F);
        at.platform.time.Set(FakeTime::FirstDay, 8, 30, 2);
        at.detector.SetSaveFixed(row.fixed);
        at.detector.SetSaveFixedFileName("a\\m.JPG");
        at.detector.SetSaveFixedQuality(row.qualities[0]);
        at.detector.SetSaveSequential(row.sequential);
        at.detector.SetSaveSequentialPath("b");
        at.detector.SetSaveSequentialQuality(row.qualities[1]);
        at.detector.SetSaveDiff(row.difference);
        at.detector.SetSaveDiffQuality(row.qualities[2]);
        at.After(1, 120);
        for (const std::string& file : row.files) EXPECT_TRUE(at.platform.files.FileExists(file)) << file;
        EXPECT_EQ(at.platform.jpegCodec.encoded, row.encodings);
        if (!row.sequential) continue;
        at.After(2, 20);
        at.platform.time.Advance(1);
        at.After(3, 120);
        for (const std::string_view name : {"b/26011508300201.jpg", "b/26011508300300.jpg"})
            EXPECT_TRUE(at.platform.files.FileExists(name)) << name;
    }
}

/// The whole calculation as its formulas say it, in double precision and pixel by pixel.
class PlainCalculation {
public:
    /// Whether a frame of RGB-like values (w x h x 3, no padding) triggers.
    bool Triggers(const std::vector<double>& frame, int w, int h, int radius, double limit,
                  double restSeconds) {
        const auto at = [&](const std::vector<double>& f, int x, int y, int c) {
            return f[static_cast<std::size_t>((std::clamp(y, 0, h - 1) * w + std::clamp(x, 0, w - 1)) * 3 +
                                              c)];
        };
        std::vector<double> blurred(frame.size());
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                for (int c = 0; c < 3; ++c) {
                    double sum = 0;
                    for (int dy = -radius; dy <= radius; ++dy)
                        for (int dx = -radius; dx <= radius; ++dx) sum += at(frame, x + dx, y + dy, c);
                    const int side = 2 * radius + 1;
                    blurred[static_cast<std::size_t>((y * w + x) * 3 + c)] =
                        std::floor(sum / (side * side) + 0.5);
                }
        if (previous_.empty()) previous_ = blurred;
        double changed = 0;
        for (std::size_t i = 0; i < blurred.size(); ++i) {
            const double difference = 128 + blurred[i] - previous_[i];
            if (difference >= 148 || difference <= 108) ++changed;
        }
        previous_ = blurred;
        const double coverage = changed / static_cast<double>(blurred.size());
        ++rested_;
        if (coverage == 0 || (std::log10(coverage) / 6 + 1) / limit < 1 || rested_ < restSeconds)
            return false;
        rested_ = 0;
        return true;
    }

private:
    std::vector<double> previous_;
    double rested_ = 0;  // seconds, one a frame
};

TEST(DiffFrames, TriggersWhereAnIndependentCalculationDoes) {
    constexpr int Width = 61, Height = 43, Frames = 120;
    for (const int radius : {0, 1, 3}) {
        Detection at(0.62F);
        at.detector.SetBrighterMotionLimit(148);
        at.detector.SetDarkerMotionLimit(108);
        at.detector.SetDiffPreBlurRadius(radius);
        at.detector.SetMotionTriggerRestInterval(3);
        at.detector.SetMotionTriggerTime(0);
        at.frame.SetWidthHeight(Width, Height);
        PlainCalculation plain;
        std::uint32_t noise = 1;
        std::vector<int> expected, found;
        for (int number = 0; number < Frames; ++number) {
            // A bright block that walks, rests and walks on before a noisy ground.
            const int left = number % 40 < 25 ? number % 40 * 2 : 50, side = 4 + number / 30 * 3;
            std::vector<double> values;
            for (int y = 0; y < Height; ++y)
                for (int i = 0; i < Width * 3; ++i) {
                    noise = noise * 1664525 + 1013904223;
                    const bool inside = i / 3 >= left && i / 3 < left + side && y >= 10 && y < 10 + side;
                    const auto value = static_cast<std::uint8_t>((inside ? 150 : 60) + (noise >> 28));
                    at.frame.Row(y)[i] = value;
                    values.push_back(value);
                }
            if (plain.Triggers(values, Width, Height, radius, 0.62F, 3)) expected.push_back(number);
            const int before = at.triggers;
            at.detector.DiffFrames(at.frame);
            if (at.triggers > before) found.push_back(number);
        }
        EXPECT_EQ(found, expected) << "radius " << radius;
        EXPECT_GT(expected.size(), 5U);
        EXPECT_LT(expected.size(), 35U);
    }
}

TEST(CalculateMotion, RestsBetweenTriggers) {
    const struct {
        int rest;
        std::vector<int> triggersAfter;  // for frames a second apart, all of which qualify
    } rows[] = {
  // clang-format off
        {0, {1, 2, 3}}, {-1, {1, 1, 2, 2, 3}}, {-2, {0, 1, 1, 1, 2}}, {1, {1, 2, 3}}, {3, {0, 1, 1, 1, 2}},
  // clang-format on
    };
    for (const auto& row : rows) {
        Detection at(1);
        at.detector.SetBrighterMotionLimit(128);  // no change counts as lighter, so all of a still scene does
        at.detector.SetMotionTriggerRestInterval(row.rest);
        for (const int expected : row.triggersAfter) EXPECT_EQ(at.After(0, 0), expected) << row.rest;
    }
}

TEST(DiffFrames, ComparesTheFirstFrameOfASizeWithItself) {
    Detection at(0.01F);
    at.frame.SetWidthHeight(21, 50);  // rows with a pad byte
    EXPECT_EQ(at.After(20, 255), 0);
    EXPECT_EQ(at.detector.Histogram()[128], 3 * 21 * 50);
    EXPECT_EQ(at.After(0, 0), 1) << "compared with the frame before";
    at.frame.SetWidthHeight(0, 0);
    at.detector.DiffFrames(at.frame);
    EXPECT_EQ(at.triggers, 1);
}

// Those that are in the portfolio file are tested with it.
TEST(MotionDetect, ClampsItsPropertiesOutsideTheFile) {
    using M = MotionDetect;
    TestPlatform platform;
    CountingOwner owner;
    MotionDetect detector(owner, {platform.files, platform.jpegCodec, platform.desktop});
    const std::vector<Property<M>> rows{
        Number<M, &M::BrighterMotionLimit, &M::SetBrighterMotionLimit>("Brighter", 255, 128, 255),
        Number<M, &M::DarkerMotionLimit, &M::SetDarkerMotionLimit>("Darker", 0, 0, 127),
        Number<M, &M::CoverageLimit, &M::SetCoverageLimit>("CoverageLimit", 1, 0, 1),
        Number<M, &M::SaveFixedQuality, &M::SetSaveFixedQuality>("SaveFixedQuality", 80, 1, 100),
        Number<M, &M::SaveSequentialQuality, &M::SetSaveSequentialQuality>("SequentialQuality", 80, 1, 100),
        Number<M, &M::SaveDiffQuality, &M::SetSaveDiffQuality>("SaveDiffQuality", 80, 1, 100),
    };
    CheckProperties<M>(detector, owner, rows);
    detector.SetMotionTriggerTime(5000);
    EXPECT_EQ(detector.MotionTriggerTime(), 1000);
    EXPECT_EQ(detector.LastMotionCoverage(), -1);
}

TEST(MotionScale, FindsEveryLimitAgainFromItsPercent) {
    for (int limit = 128; limit <= 255; ++limit)
        EXPECT_EQ(MotionScale::BrighterLimit(MotionScale::BrighterPercent(limit)), limit);
    for (int limit = 0; limit <= 127; ++limit)
        EXPECT_EQ(MotionScale::DarkerLimit(MotionScale::DarkerPercent(limit)), limit);
}

TEST(MotionScale, KeepsThePercentThatWasReadUntilTheLimitChanges) {
    Detection at(1);
    MotionDetect& detector = at.detector;
    detector.SetBrighterPercent(33.3);
    EXPECT_EQ(detector.BrighterMotionLimit(), 170);  // 128 + 42.29
    detector.SetBrighterMotionLimit(170);
    EXPECT_EQ(detector.BrighterPercent(), 33.3);
    detector.SetBrighterMotionLimit(171);
    EXPECT_EQ(detector.BrighterPercent(), 33.86);  // 43 / 1.27
    detector.SetDarkerPercent(-50.1);
    EXPECT_EQ(detector.DarkerMotionLimit(), 63);  // 127 - 63.63
    detector.SetCoveragePercent(12.5);
    EXPECT_FLOAT_EQ(detector.CoverageLimit(), 0.125F);
}

}  // namespace
}  // namespace tessaloom
