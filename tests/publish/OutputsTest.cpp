#include "platform/curl/CurlFtpClients.h"
#include "publish/VideoStreaming.h"
#include "support/FakeTime.h"
#include "support/PropertyTable.h"
#include "support/TestPlatform.h"

namespace tessaloom::testing {
namespace {

TEST(FTPPush, UploadsOnItsTimetableWithinItsSchedule) {
    FakeTime time;
    CountingOwner owner;
    MemoryFileSystem files;
    PlainJpegCodec jpeg;
    CurlFtpClients ftp;
    DIB picture;
    VideoStreaming streaming{owner, time};
    FTPPush& push = streaming.FTPPush();
    push.SetServerName("no server");
    picture.SetWidthHeight(2, 2);
    push.Use({files, jpeg, ftp}, picture, 3);
    const int& uploads = jpeg.encoded;
    const auto uploadsAfter = [&](double seconds) {
        time.Advance(seconds);
        for (int tick = 0; tick < 20; ++tick) {
            ftp.Poll();
            streaming.Refresh();
        }
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
    push.SetInterval(0);
    EXPECT_EQ(uploadsAfter(86400), 4) << "the grid point that was computed before";
    EXPECT_EQ(uploadsAfter(86400), 4) << "never by itself";
    push.ForceUpdate();
    EXPECT_EQ(uploadsAfter(0), 5);
    EXPECT_EQ(push.Stage(), "Connect Error");
    EXPECT_FALSE(files.FileExists("FTPPsh03-" + ftp.ProcessMark() + ".tmp")) << "local files are removed";
}

}  // namespace
}  // namespace tessaloom::testing
