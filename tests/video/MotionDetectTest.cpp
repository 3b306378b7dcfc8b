#include "video/MotionDetect.h"

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
