#include <stdexcept>

#include "publish/VideoStreaming.h"
#include "support/FakeTime.h"
#include "support/PropertyTable.h"

namespace tessaloom::testing {
namespace {

TEST(FTPPush, UploadsOnItsTimetableWithinItsSchedule) {
    FakeTime time;
    CountingOwner owner;
    VideoStreaming streaming{owner, time};
    FTPPush& push = streaming.FTPPush();
    int uploads = 0;
    push.SetUploader([&] { ++uploads; });
    const auto uploadsAfter = [&](double seconds) {
        time.Advance(seconds);
        streaming.Refresh();
        return uploads;
    };
    EXPECT_EQ(uploadsAfter(0), 0) << "disabled";
    push.SetEnabled(true);
    push.SetBaseTime(-60);
    EXPECT_EQ(push.BaseTime(), 0);
    EXPECT_EQ(uploadsAfter(0), 1) << "new: due at once";
    EXPECT_EQ(uploadsAfter(59), 1);
    EXPECT_EQ(uploadsAfter(1), 2);
    push.Schedule().SetScheduleMode(1);
    push.Schedule().SetStopAbsoluteTime(1 / 86400.0);
    EXPECT_EQ(uploadsAfter(60), 2);
    EXPECT_GT(push.NextUploadTime(), time.Now()) << "the suppressed run is not made up";
    push.Schedule().SetScheduleMode(0);
    time.Advance(-60);
    streaming.RestartTimes();
    EXPECT_EQ(uploadsAfter(60), 3) << "a clock that was set back does not stop it";
    push.SetUploader([] { throw std::runtime_error("broken"); });
    EXPECT_NO_THROW(uploadsAfter(60));
}

}  // namespace
}  // namespace tessaloom::testing
