#include <stdexcept>

#include "publish/VideoStreaming.h"
#include "publish/WebServer.h"
#include "support/FakeTime.h"
#include "support/PropertyTable.h"

namespace tessaloom {
namespace {

using namespace tessaloom::testing;

struct Streaming {
    Streaming() { time.Set(FakeTime::FirstDay, 12, 0); }

    FakeTime time;
    CountingOwner owner;
    VideoStreaming streaming{owner, time};
    FTPPush& push = streaming.FTPPush();
};

TEST(FTPPush, ClampsItsPropertiesAndTellsChanges) {
    using P = FTPPush;
    Streaming at;
    const std::vector<Property<P>> rows{
        Plain<P, &P::Enabled, &P::SetEnabled>("Enabled", false, true),
        Number<P, &P::Interval, &P::SetInterval>("Interval", 60, 0, 86400),
        Number<P, &P::BaseTime, &P::SetBaseTime>("BaseTime", 0, 0, 86399),
        Number<P, &P::Quality, &P::SetQuality>("Quality", 80, 1, 100),
        Number<P, &P::FTPMode, &P::SetFTPMode>("FTPMode", 0, 0, 2),
        Plain<P, &P::Path, &P::SetPath>("Path", "push.jpg", "cam/live.jpg"),
        Plain<P, &P::ServerName, &P::SetServerName>("ServerName", "", "ftp.example.com"),
        Plain<P, &P::UserName, &P::SetUserName>("UserName", "", "me"),
        Plain<P, &P::Password, &P::SetPassword>("Password", "", "secret"),
        Plain<P, &P::PassiveFTP, &P::SetPassiveFTP>("PassiveFTP", false, true),
        Plain<P, &P::KeepConnectionOpen, &P::SetKeepConnectionOpen>("KeepConnectionOpen", false, true),
        Plain<P, &P::KeepAlive, &P::SetKeepAlive>("KeepAlive", false, true),
    };
    CheckProperties<P>(at.push, at.owner, rows);
}

TEST(FTPPush, UploadsOnItsTimetableWithinItsSchedule) {
    Streaming at;
    int uploads = 0;
    at.push.SetUploader([&] { ++uploads; });
    const auto uploadsAfter = [&](double seconds) {
        at.time.Advance(seconds);
        at.streaming.Refresh();
        return uploads;
    };
    EXPECT_EQ(uploadsAfter(0), 0) << "disabled";
    at.push.SetEnabled(true);
    EXPECT_EQ(uploadsAfter(0), 1) << "new: due at once";
    EXPECT_EQ(uploadsAfter(59), 1);
    EXPECT_EQ(uploadsAfter(1), 2);
    at.push.Schedule().SetScheduleMode(1);
    at.push.Schedule().SetStopAbsoluteTime(0.25);
    EXPECT_EQ(uploadsAfter(60), 2);
    EXPECT_GT(at.push.NextUploadTime(), at.time.Now()) << "the suppressed run is not made up";
    at.push.Schedule().SetScheduleMode(0);
    at.time.Advance(-7200);
    at.streaming.RestartTimes();
    EXPECT_EQ(uploadsAfter(60), 3) << "a clock that was set back does not stop it";
    at.push.SetUploader([] { throw std::runtime_error("broken"); });
    EXPECT_NO_THROW(uploadsAfter(60));
}

TEST(CanvasWebServer, ClampsItsPropertiesAndTellsChanges) {
    using W = CanvasWebServer;
    Streaming at;
    const std::vector<Property<W>> rows{
        Plain<W, &W::Enabled, &W::SetEnabled>("Enabled", false, true),
        Plain<W, &W::FileName, &W::SetFileName>("FileName", "", "Canvas01.jpg"),
        Number<W, &W::Interval, &W::SetInterval>("Interval", 0, 0, 60),
        Number<W, &W::Quality, &W::SetQuality>("Quality", 80, 1, 100),
        Plain<W, &W::OffScheduleFile, &W::SetOffScheduleFile>("OffScheduleFile", "offair.jpg", "night.jpg"),
    };
    CheckProperties<W>(at.streaming.CanvasWebServer(), at.owner, rows);
}

TEST(WebServer, ClampsItsPropertiesAndTellsChanges) {
    using W = WebServer;
    CountingOwner owner;
    WebServer server(owner);
    const std::vector<Property<W>> rows{
        Plain<W, &W::Enabled, &W::SetEnabled>("Enabled", false, true),
        Number<W, &W::Port, &W::SetPort>("Port", 18080, 1, 65535),
        Plain<W, &W::WebPath, &W::SetWebPath>("WebPath", "web", "pages"),
        Plain<W, &W::AllowNonCanvasServes, &W::SetAllowNonCanvasServes>("AllowNonCanvasServes", false, true),
    };
    CheckProperties<W>(server, owner, rows);
}

}  // namespace
}  // namespace tessaloom
