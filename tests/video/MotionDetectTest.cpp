#include "video/MotionDetect.h"

#include "support/PropertyTable.h"
#include "support/TestPlatform.h"
#include "video/MotionScale.h"

namespace tessaloom::testing {
namespace {

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
    const auto note = [&](std::string what) {
        if (at.detector.LastMotionCoverage() > 0) what += ", recorded";
        if (at.platform.files.FileExists("motion/motion.jpg")) what += ", saved";
        order.push_back(what);
    };
    at.detector.SetMotionBeep(true);
    at.detector.SetSaveFixed(true);
    at.platform.desktop.onBeep = [&] { note("beep"); };
    at.detector.OnTrigger([&] { note("call"); });
    at.After(1, 120);
    note("end");
    EXPECT_EQ(order, (std::vector<std::string>{"beep", "call, recorded", "end, recorded, saved"}));
}

TEST(MotionSaves, WriteWhatTheSettingsName) {
    const struct {
        bool fixed, sequential, difference;
        int sequentialQuality, encodings;
        std::vector<std::string> files;
    } rows[] = {
        {false, false, true,  80, 0, {}                                                   },
        {true,  false, true,  80, 2, {"a/m.JPG", "a/m.diff.jpg"}                          },
        {false, true,  true,  80, 2, {"b/26011508300200.jpg", "b/26011508300200.diff.jpg"}},
        {true,  true,  false, 80, 1, {"a/m.JPG", "b/26011508300200.jpg"}                  }, // one quality: encoded once
        {true,  true,  true,  71, 3, {"a/m.JPG", "b/26011508300200.diff.jpg"}             },
    };
    for (const auto& row : rows) {
        Detection at(0.5F);
        at.platform.time.Set(FakeTime::FirstDay, 8, 30, 2);
        at.detector.SetSaveFixed(row.fixed);
        at.detector.SetSaveFixedFileName("a\\m.JPG");
        at.detector.SetSaveSequential(row.sequential);
        at.detector.SetSaveSequentialPath("b");
        at.detector.SetSaveSequentialQuality(row.sequentialQuality);
        at.detector.SetSaveDiff(row.difference);
        at.After(1, 120);
        for (const std::string& file : row.files) EXPECT_TRUE(at.platform.files.FileExists(file)) << file;
        EXPECT_EQ(at.platform.jpegCodec.encoded, row.encodings);
        at.After(2, 20);
        at.platform.time.Advance(1);
        at.After(3, 120);
        for (const std::string_view name : {"b/26011508300201.jpg", "b/26011508300300.jpg"})
            EXPECT_EQ(at.platform.files.FileExists(name), row.sequential) << name;
    }
}

/// The share of components that changed by 20 or more, as the formulas say it: frames of `Width` x `Height`
/// without padding, blurred and compared value by value in double precision.
class PlainCalculation {
public:
    static constexpr int Width = 61, Height = 43;

    double LogCoverage(const std::vector<double>& frame, int radius) {
        std::vector<double> blurred;
        for (int i = 0; i < Width * Height * 3; ++i) {
            double sum = 0;
            for (int dy = -radius; dy <= radius; ++dy)
                for (int dx = -radius; dx <= radius; ++dx) {
                    const int x = std::clamp(i / 3 % Width + dx, 0, Width - 1);
                    const int y = std::clamp(i / 3 / Width + dy, 0, Height - 1);
                    sum += frame[static_cast<std::size_t>((y * Width + x) * 3 + i % 3)];
                }
            blurred.push_back(std::floor(sum / std::pow(2 * radius + 1, 2) + 0.5));
        }
        if (previous_.empty()) previous_ = blurred;
        double changed = 0;
        for (std::size_t i = 0; i < blurred.size(); ++i) changed += std::abs(blurred[i] - previous_[i]) >= 20;
        previous_ = blurred;
        return changed == 0 ? 0 : std::log10(changed / static_cast<double>(blurred.size())) / 6 + 1;
    }

private:
    std::vector<double> previous_;
};

TEST(DiffFrames, TriggersWhereAnIndependentCalculationDoes) {
    constexpr int Width = PlainCalculation::Width, Height = PlainCalculation::Height, Rest = 3;
    for (const int radius : {0, 1, 3}) {
        Detection at(0.62F);
        at.detector.SetBrighterMotionLimit(148);
        at.detector.SetDarkerMotionLimit(108);
        at.detector.SetDiffPreBlurRadius(radius);
        at.detector.SetMotionTriggerRestInterval(Rest);
        at.detector.SetMotionTriggerTime(0);
        at.frame.SetWidthHeight(Width, Height);
        PlainCalculation plain;
        std::uint32_t noise = 1;
        std::vector<int> expected, found;
        for (int number = 0, rested = 0; number < 120; ++number) {
            // A bright block that walks, rests and walks on before a noisy ground; a frame a second.
            const int left = number % 40 < 25 ? number % 40 * 2 : 50, side = 4 + number / 30 * 3;
            std::vector<double> values;
            for (int i = 0; i < Width * Height * 3; ++i) {
                const int x = i / 3 % Width, y = i / 3 / Width;
                const bool inside = x >= left && x < left + side && y >= 10 && y < 10 + side;
                noise = noise * 1664525 + 1013904223;
                values.push_back((inside ? 150 : 60) + (noise >> 28));
                at.frame.Row(y)[i % (Width * 3)] = static_cast<std::uint8_t>(values.back());
            }
            ++rested;
            if (plain.LogCoverage(values, radius) >= 0.62 && rested >= Rest) {
                expected.push_back(number);
                rested = 0;
            }
            const int before = at.triggers;
            at.detector.DiffFrames(at.frame);
            if (at.triggers > before) found.push_back(number);
        }
        EXPECT_EQ(found, expected) << "radius " << radius;
        EXPECT_GT(expected.size(), 5U);
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
}  // namespace tessaloom::testing
