#include <cmath>

#include "support/PropertyTable.h"
#include "video/InputDevice.h"
#include "video/MotionScale.h"

namespace tessaloom {
namespace {

using namespace tessaloom::testing;

TEST(MotionDetect, ClampsItsPropertiesAndTellsChanges) {
    using M = MotionDetect;
    CountingOwner owner;
    MotionDetect detector(owner);
    const std::vector<Property<M>> rows{
        Plain<M, &M::Enabled, &M::SetEnabled>("Enabled", false, true),
        Number<M, &M::DiffPreBlurRadius, &M::SetDiffPreBlurRadius>("DiffPreBlurRadius", 0, 0, 3),
        Number<M, &M::BrighterMotionLimit, &M::SetBrighterMotionLimit>("BrighterMotionLimit", 255, 128, 255),
        Number<M, &M::DarkerMotionLimit, &M::SetDarkerMotionLimit>("DarkerMotionLimit", 0, 0, 127),
        Number<M, &M::CoverageLimit, &M::SetCoverageLimit>("CoverageLimit", 1, 0, 1),
        Number<M, &M::MotionTriggerRestInterval, &M::SetMotionTriggerRestInterval>(
            "MotionTriggerRestInterval", 0, -60, 60),
        Plain<M, &M::MotionBeep, &M::SetMotionBeep>("MotionBeep", false, true),
        Plain<M, &M::SaveFixed, &M::SetSaveFixed>("SaveFixed", false, true),
        Plain<M, &M::SaveFixedFileName, &M::SetSaveFixedFileName>("SaveFixedFileName", "motion\\motion.jpg",
                                                                  "m.jpg"),
        Number<M, &M::SaveFixedQuality, &M::SetSaveFixedQuality>("SaveFixedQuality", 80, 1, 100),
        Plain<M, &M::SaveSequential, &M::SetSaveSequential>("SaveSequential", false, true),
        Plain<M, &M::SaveSequentialPath, &M::SetSaveSequentialPath>("SaveSequentialPath", "motion\\", "m"),
        Number<M, &M::SaveSequentialQuality, &M::SetSaveSequentialQuality>("SaveSequentialQuality", 80, 1,
                                                                           100),
        Plain<M, &M::SaveDiff, &M::SetSaveDiff>("SaveDiff", false, true),
        Number<M, &M::SaveDiffQuality, &M::SetSaveDiffQuality>("SaveDiffQuality", 80, 1, 100),
        Plain<M, &M::ShowDiffImageCoverage, &M::SetShowDiffImageCoverage>("ShowDiffImageCoverage", false,
                                                                          true),
    };
    CheckProperties<M>(detector, owner, rows);
    detector.SetMotionTriggerTime(5000);
    EXPECT_EQ(detector.MotionTriggerTime(), 1000);
    EXPECT_EQ(detector.LastMotionCoverage(), -1);
    EXPECT_FALSE(detector.PreviousDataValid());
}

TEST(MotionDetect, ClampsPercents) {
    using M = MotionDetect;
    CountingOwner owner;
    MotionDetect detector(owner);
    const std::vector<Property<M>> rows{
        Number<M, &M::BrighterPercent, &M::SetBrighterPercent>("BrighterPercent", 100, 0, 100),
        Number<M, &M::DarkerPercent, &M::SetDarkerPercent>("DarkerPercent", -100, -100, 0),
        Number<M, &M::CoveragePercent, &M::SetCoveragePercent>("CoveragePercent", 100, 0, 100),
    };
    CheckProperties<M>(detector, owner, rows);
}

TEST(MotionDetect, KeepsThePercentThatWasReadUntilTheLimitChanges) {
    CountingOwner owner;
    MotionDetect detector(owner);
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

TEST(MotionScale, FindsEveryLimitAgainFromItsPercent) {
    for (int limit = 128; limit <= 255; ++limit)
        EXPECT_EQ(MotionScale::BrighterLimit(MotionScale::BrighterPercent(limit)), limit);
    for (int limit = 0; limit <= 127; ++limit)
        EXPECT_EQ(MotionScale::DarkerLimit(MotionScale::DarkerPercent(limit)), limit);
}

TEST(VideoFeed, ClampsItsPropertiesAndTellsChanges) {
    using F = VideoFeed;
    CountingOwner owner;
    VideoFeed feed(owner);
    const std::vector<Property<F>> rows{
        Plain<F, &F::Enabled, &F::SetEnabled>("Enabled", false, true),
        Plain<F, &F::FeedName, &F::SetFeedName>("FeedName", "", "Camera"),
        Plain<F, &F::ShowPreview, &F::SetShowPreview>("ShowPreview", false, true),
        Plain<F, &F::Rate, &F::SetRate>("Rate", 30.0, 0.5),
    };
    CheckProperties<F>(feed, owner, rows);
    for (const double tooSlow : {0.001, 0.0, -5.0, std::nan("")}) {
        feed.SetRate(tooSlow);
        EXPECT_EQ(feed.Rate(), 1.0 / 60) << tooSlow;
    }
    EXPECT_EQ(feed.VfWInput(), -1);
    feed.SetVfWInput(10);
    EXPECT_EQ(feed.VfWInput(), 9);
}

TEST(VideoFeed, DeliversNothingWithoutADriver) {
    CountingOwner owner;
    InputDevice device(owner, InputDeviceKind::InputDeviceWebGraphic);
    device.SetEnabled(true);
    EXPECT_FALSE(device.Valid());
    EXPECT_TRUE(device.ResetFrame());
    EXPECT_EQ(device.DIB().DIBPtr(), nullptr);
    device.DIB().SetWidthHeight(8, 8);
    device.ClassUnload();
    EXPECT_EQ(device.DIB().DIBPtr(), nullptr);
    EXPECT_TRUE(device.Enabled()) << "unloading changes no setting";
}

}  // namespace
}  // namespace tessaloom
