#include "video/MotionDetect.h"

#include <vector>

#include "gtest/gtest.h"
#include "support/FakeTime.h"
#include "support/PropertyTable.h"

namespace tessaloom {
namespace {

using namespace tessaloom::testing;

// Frames of 20 x 50 pixels: 3000 colour components, so that 3 of them are a share of 0.001.
struct Detection {
    Detection() {
        detector.SetBrighterMotionLimit(138);
        detector.SetDarkerMotionLimit(118);
        detector.SetLastFrameInterval(1 / 86400.0);
        detector.OnTrigger([this] { ++triggers; });
        frame.SetWidthHeight(20, 50);
        frame.Clear(0x646464);
        detector.DiffFrames(frame);
    }

    // A frame whose first `pixels` pixels have the level `level`; all others stay at 100.
    int After(int pixels, int level) {
        frame.Clear(0x646464);
        for (int i = 0; i < 3 * pixels; ++i) frame.DIBPtr()[i] = static_cast<std::uint8_t>(level);
        detector.DiffFrames(frame);
        return triggers;
    }

    FakeTime time;
    CountingOwner owner;
    MotionDetect detector{owner};
    DIB frame;
    int triggers = 0;
};

TEST(CalculateMotion, MeasuresTheShareOfComponentsOnALogarithmicScale) {
    const struct {
        const char* what;
        int pixels, level;
        float limit;
        int triggers;
    } rows[] = {
        {"a thousandth at limit 0.5",      1,  120, 0.5F,  1},
        {"a thousandth at limit 0.51",     1,  120, 0.51F, 0},
        {"darker counts as well",          1,  80,  0.5F,  1},
        {"the limits belong to the range", 1,  110, 0.5F,  1},
        {"below the limits",               1,  109, 0.5F,  0},
        {"limit 0 never triggers",         20, 255, 0,     0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Detection at;
        at.detector.SetCoverageLimit(row.limit);
        EXPECT_EQ(at.After(row.pixels, row.level), row.triggers);
    }
}

TEST(CalculateMotion, RecordsWhatItMeasuredAtATrigger) {
    Detection at;
    at.detector.SetCoverageLimit(0.5F);
    at.time.Set(FakeTime::FirstDay, 8, 30);
    at.After(1, 120);
    EXPECT_FLOAT_EQ(at.detector.LastMotionCoverage(), 0.5F);
    EXPECT_EQ(at.detector.LastLightMax(), 148);
    EXPECT_EQ(at.detector.LastDarkMin(), 128);
    EXPECT_NEAR(at.detector.LastMotionTriggerTime(), FakeTime::FirstDay + 8.5 / 24, 1e-9);
    at.After(1, 60);
    EXPECT_EQ(at.detector.LastDarkMin(), 68);
    EXPECT_EQ(at.detector.LastLightMax(), 128);
}

TEST(CalculateMotion, TriggersOnAStillSceneOnlyWhenNoChangeCountsAsLighter) {
    Detection at;
    at.detector.SetCoverageLimit(0.01F);
    EXPECT_EQ(at.After(0, 0), 0);
    at.detector.SetCoverageLimit(1);
    at.detector.SetBrighterMotionLimit(128);
    EXPECT_EQ(at.After(0, 0), 1);
    EXPECT_EQ(at.detector.LastMotionCoverage(), 1);
}

TEST(CalculateMotion, RestsBetweenTriggers) {
    const struct {
        int rest;
        std::vector<int> triggersAfter;  // for frames a second apart, all of which qualify
    } rows[] = {
        {0,  {1, 2, 3, 4, 5}},
        {-1, {1, 1, 2, 2, 3}},
        {-2, {0, 1, 1, 1, 2}},
        {1,  {1, 2, 3, 4, 5}},
        {3,  {0, 1, 1, 1, 2}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.rest);
        Detection at;
        at.detector.SetBrighterMotionLimit(128);
        at.detector.SetCoverageLimit(0.5F);
        at.detector.SetMotionTriggerRestInterval(row.rest);
        for (const int expected : row.triggersAfter) EXPECT_EQ(at.After(0, 0), expected);
    }
}

TEST(DiffFrames, ComparesTheFirstFrameOfASizeWithItself) {
    Detection at;
    at.detector.SetCoverageLimit(0.01F);
    at.frame.SetWidthHeight(21, 50);  // rows with a pad byte
    EXPECT_EQ(at.After(20, 255), 0);
    EXPECT_TRUE(at.detector.PreviousDataValid());
    EXPECT_EQ(at.detector.Histogram()[128], 3 * 21 * 50);
    EXPECT_EQ(at.After(0, 0), 1) << "compared with the frame before";
    at.frame.SetWidthHeight(0, 0);
    at.detector.DiffFrames(at.frame);
    EXPECT_EQ(at.triggers, 1);
}

TEST(DiffFrames, BlursSmallChangesAway) {
    for (const int radius : {0, 3}) {
        Detection at;
        at.detector.SetDiffPreBlurRadius(radius);
        at.detector.SetCoverageLimit(0.01F);
        at.frame.Clear(0x646464);
        at.detector.DiffFrames(at.frame);
        EXPECT_EQ(at.After(1, 120), radius == 0 ? 1 : 0) << radius;
    }
}

}  // namespace
}  // namespace tessaloom
