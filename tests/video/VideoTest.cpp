#include <cmath>

#include "support/PropertyTable.h"
#include "video/InputDevice.h"

namespace tessaloom {
namespace {

using namespace tessaloom::testing;

// Those that are in the portfolio file are tested with it.
TEST(MotionDetect, ClampsItsPropertiesOutsideTheFile) {
    using M = MotionDetect;
    CountingOwner owner;
    MotionDetect detector(owner);
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

TEST(VideoFeed, TakesAFrameAMinuteAtLeast) {
    CountingOwner owner;
    VideoFeed feed(owner);
    feed.SetVfWInput(10);
    EXPECT_EQ(feed.VfWInput(), 9);
    for (const double tooSlow : {0.001, 0.0, -5.0, std::nan("")}) {
        feed.SetRate(tooSlow);
        EXPECT_EQ(feed.Rate(), 1.0 / 60) << tooSlow;
    }
}

}  // namespace
}  // namespace tessaloom
