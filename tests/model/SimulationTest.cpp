#include "model/Documents.h"
#include "publish/CanvasSaves.h"

namespace tessaloom::testing {
namespace {

TEST(Simulation, PublishesExactlyItsTimetablesForADay) {
    constexpr int TicksPerSecond = 10, SecondsPerHour = 3600;
    Documents documents;
    int compositions = 0;
    documents.portfolio.SetViewFactory([&](Canvas&) { return std::make_unique<CountingView>(compositions); });
    documents.Write("live.can", "");
    Canvas& canvas = documents.Open(1, 60, 20);
    canvas.SetFileName("live.can");
    canvas.SetVisible(true);
    Documents::Boxes(canvas, 1, "<TimeHH24>:<TimeMM>:<TimeSS>", 0xFFFFFF, 0, 0).SetRate(1);

    CanvasSaves& saves = canvas.Saves();
    saves.SetFixedEnabled(true);
    saves.SetFixedRate(60);
    saves.SetCascadeEnabled(true);
    saves.SetCascadeCount(3);
    saves.SetSequentialEnabled(true);
    saves.SetSequentialRate(300);
    saves.SetSequentialType(1);
    Schedule& window = saves.SequentialSchedule();
    window.SetScheduleMode(Schedule::FromStartTo);
    window.SetStartAbsoluteTime(8 / 24.0);
    window.SetStopAbsoluteTime(18 / 24.0);

    for (int hour = 0; hour < 24; ++hour) {
        for (int tick = 0; tick < SecondsPerHour * TicksPerSecond; ++tick)
            documents.Tick(1.0 / TicksPerSecond);
        documents.fonts.TakeDrawn();
    }

    constexpr int Fixed = 1 + 24 * 60;       // the first right after the start
    constexpr int Sequential = 10 * 12 + 1;  // both ends of the window count
    EXPECT_EQ(saves.SequentialNumber(), Sequential);
    EXPECT_EQ(documents.Value("live.can", "Capture", "SequentialNumber"), std::to_string(Sequential));
    EXPECT_TRUE(documents.files.FileExists("sequential\\00000000.jpg"));
    EXPECT_TRUE(documents.files.FileExists("sequential\\00000120.jpg"));
    EXPECT_FALSE(documents.files.FileExists("sequential\\00000121.jpg"));
    EXPECT_TRUE(documents.files.FileExists("images\\fixed.jpg"));
    for (int copy = 0; copy <= 4; ++copy)
        EXPECT_EQ(documents.files.FileExists("images\\fixed000" + std::to_string(copy) + ".jpg"), copy <= 3)
            << "copy " << copy;
    EXPECT_EQ(documents.jpegCodec.encoded, Fixed) << "the series shares the bytes of the fixed file";
    // Three more come of the schedules: both answer for the first time or anew, the window ends.
    EXPECT_EQ(compositions, 1 + 24 * SecondsPerHour + 3);
    EXPECT_EQ(saves.LastFixed().moment, documents.time.Now());
    EXPECT_TRUE(documents.dialogs.shown.empty());
}

}  // namespace
}  // namespace tessaloom::testing
