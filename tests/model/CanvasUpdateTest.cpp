#include "model/Documents.h"
#include "publish/CanvasSaves.h"
#include "script/host/Script.h"
#include "support/RecordingScriptEngine.h"

namespace tessaloom::testing {
namespace {

constexpr int Red = 0x0000FF, Green = 0x00FF00, Blue = 0xFF0000, White = 0xFFFFFF;

struct CanvasUpdate : Documents, ::testing::Test {
    CanvasUpdate() {
        portfolio.SetViewFactory([this](Canvas&) { return std::make_unique<CountingView>(shown); });
        canvas.SetVisible(true);
    }

    /// The compositions of one tick.
    int Compositions(double seconds = 1) {
        const int before = shown;
        Tick(seconds);
        return shown - before;
    }

    void PlugScript() {
        // clang-format off
        engine.procedures = {{"TextUpdate", 2}, {"GraphicUpdate", 2}};
        // clang-format on
        Write("script.txt", "'");
        Script& script = portfolio.Script();
        script.SetEngine(&engine);
        script.SetAllowTextUpdate(true);
        script.SetAllowGraphicUpdate(true);
        script.SetEnabled(true);
        ASSERT_TRUE(script.Ready()) << script.Status();
    }

    int shown = 0;
    RecordingScriptEngine engine;
    Canvas& canvas = Open(1);
};

TEST_F(CanvasUpdate, ComposesOnceAndThenOnlyWhatChanged) {
    Block(canvas, 3, Red, 0, 0, 10, 10).SetRate(1);
    Boxes(canvas, 7, "A", Green, 20, 0).SetRate(1);
    EXPECT_EQ(Compositions(), 1);
    EXPECT_EQ(canvas.Picture().Pixel(5, 5), Red);
    EXPECT_EQ(canvas.Picture().Pixel(22, 5), Green);
    EXPECT_EQ(canvas.Picture().Pixel(39, 29), 0);
    EXPECT_EQ(Compositions() + Compositions(), 0) << "both layers are due, neither changed";

    const struct {
        const char* name;
        std::function<void(Canvas&)> change;
    } changes[] = {
        {"background",             [](Canvas& c) { c.SetBackgroundColor(Blue); }     },
        {"text",                   [](Canvas& c) { c.Text(7)->SetValue("B"); }       },
        {"position",               [](Canvas& c) { c.Graphic(3)->Setx(1); }          },
        {"pass",                   [](Canvas& c) { c.Graphic(3)->SetLayer(2); }      },
        {"new layer",              [](Canvas& c) { c.AddText(100); }                 },
        {"removed layer",          [](Canvas& c) { c.RemoveText(7); }                },
        {"shadow intensity",       [](Canvas& c) { c.SetShadowIntensity(70); }       },
        {"size",                   [](Canvas& c) { c.SetWidth(41); }                 },
        {"ForceRedraw",            [](Canvas& c) { c.ForceRedraw(); }                },
        {"ForceReload",            [](Canvas& c) { c.ForceReload(); }                },
        {"ForceLayerRedraw",       [](Canvas& c) { c.ForceLayerRedraw(3); }          },
        {"ForceUpdate of a layer", [](Canvas& c) { c.Graphic(3)->ForceUpdate(); }    },
        {"disabled layer",         [](Canvas& c) { c.Graphic(3)->SetEnabled(false); }},
        {"enabled layer",          [](Canvas& c) { c.Graphic(3)->SetEnabled(true); } },
    };
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        change(canvas);
        EXPECT_EQ(Compositions(), 1);
        EXPECT_EQ(Compositions(), 0);
    }
}

TEST_F(CanvasUpdate, ShowsAPictureFromAnAddressInTheTickInWhichItComes) {
    constexpr const char* Camera = "http://camera/a.jpg";
    Graphic& layer = *canvas.AddGraphic(1);
    layer.SetSourceType(Graphic::Address);
    layer.SetSourceURL(Camera);
    layer.SetRate(10);
    Tick();
    EXPECT_TRUE(canvas.SourcesPending());
    EXPECT_EQ(Compositions(), 0);

    urlTransfers.Answer(Camera, PlainPicture{8, 6, Red}.Bytes(true));
    EXPECT_EQ(Compositions(), 1);
    EXPECT_EQ(canvas.Picture().Pixel(5, 5), Red);
    EXPECT_FALSE(canvas.SourcesPending());
    EXPECT_TRUE(files.FileExists("tmp01001.jpg"));
    EXPECT_EQ(Compositions() + Compositions(), 0);
    EXPECT_EQ(urlTransfers.requests.size(), 1U);

    Tick(10);
    EXPECT_EQ(urlTransfers.requests.size(), 2U);
    canvas.RemoveGraphic(1);
    EXPECT_EQ(urlTransfers.cancelled, 1);
    EXPECT_FALSE(canvas.SourcesPending());
}

TEST_F(CanvasUpdate, StacksPassesThenKindsThenSlots) {
    // Every layer is 4 pixels further right than the one that must lie beneath it.
    Boxes(canvas, 1, "AAA", Red, 24, 0, 3);
    Block(canvas, 9, Green, 20, 0, 18, 12, 3);
    Boxes(canvas, 5, "AAA", Blue, 16, 0, 0);
    Boxes(canvas, 4, "AAA", White, 12, 0, 0);
    Block(canvas, 2, Red, 8, 0, 18, 12, 0);
    Block(canvas, 1, Green, 4, 0, 18, 12, 0);
    Tick();
    const int colours[] = {0, Green, Red, White, Blue, Green, Red};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(canvas.Picture().Pixel(i * 4 + 1, 5), colours[i]) << "step " << i;
}

TEST_F(CanvasUpdate, ShadowsLieBeneathAllPicturesOfTheirPass) {
    canvas.SetBackgroundColor(White);
    Block(canvas, 1, Green, 0, 0, 20, 20, 0);
    Block(canvas, 2, Red, 10, 10, 10, 10).SetShadow(true);
    canvas.Graphic(2)->SetShadowOffsetX(10);
    canvas.Graphic(2)->SetShadowOffsetY(0);
    Block(canvas, 3, Blue, 26, 10, 14, 5);
    const struct {
        int intensity, besideBlock;
    } rows[] = {
  // clang-format off
        {100, 0}, {50, 0x7F7F7F}, {0, White}, {100, 0},
  // clang-format on
    };
    for (const auto& [intensity, expected] : rows) {
        SCOPED_TRACE(intensity);
        canvas.SetShadowIntensity(intensity);
        Tick();
        EXPECT_EQ(canvas.Picture().Pixel(15, 15), Red) << "the layer itself";
        EXPECT_NEAR(canvas.Picture().Pixel(25, 17) & 0xFF, expected & 0xFF, 1);
        EXPECT_EQ(canvas.Picture().Pixel(28, 12), Blue) << "another picture of the pass";
        EXPECT_EQ(canvas.Picture().Pixel(5, 5), Green) << "no shadow there";
        EXPECT_EQ(canvas.Picture().Pixel(35, 28), White);
    }
    canvas.Graphic(2)->SetY(0);
    Tick();
    EXPECT_EQ(canvas.Picture().Pixel(25, 17), White) << "the shadow has moved away";
    EXPECT_EQ(canvas.Picture().Pixel(25, 5), 0);
    canvas.Graphic(2)->SetShadow(false);
    Tick();
    EXPECT_EQ(canvas.Picture().Pixel(25, 5), White);
}

TEST_F(CanvasUpdate, ScheduleTakesLayersAwayAndBringsThemBack) {
    time.Set(FakeTime::FirstDay, 7, 59, 58);
    Boxes(canvas, 1, "A", Green, 0, 0);
    Block(canvas, 100, Red, 20, 0, 10, 10);
    for (Schedule* schedule : {&canvas.Text(1)->Schedule(), &canvas.Graphic(100)->Schedule()}) {
        schedule->SetScheduleMode(Schedule::FromStartTo);
        schedule->SetStartAbsoluteTime(8 / 24.0);
        schedule->SetStopAbsoluteTime(9 / 24.0);
    }
    const auto shows = [&](int text, int graphic) {
        return canvas.Picture().Pixel(2, 5) == text && canvas.Picture().Pixel(25, 5) == graphic;
    };
    Tick();
    EXPECT_TRUE(shows(0, 0));
    Tick();
    EXPECT_TRUE(shows(Green, Red)) << "08:00:00";
    EXPECT_EQ(Compositions(), 0);
    Tick(3600);
    EXPECT_TRUE(shows(0, 0)) << "09:00:01";
    canvas.Text(1)->Schedule().SetScheduleMode(Schedule::Always);
    canvas.Graphic(100)->Schedule().SetScheduleMode(Schedule::Always);
    Tick();
    EXPECT_TRUE(shows(Green, Red)) << "no window any more";
}

TEST_F(CanvasUpdate, LayersAreRefreshedWhenTheirTimeHasComeOrAllAre) {
    Text& text = Boxes(canvas, 1, "<TimeSS>", Green, 0, 0);
    text.SetRate(10);
    Tick();
    std::string last = text.ProcessedString();
    for (const auto& [seconds, reload] : {
             std::pair{4, false},
             {6, false},
             {1, true }
    }) {
        if (reload) canvas.ForceReload();
        Tick(seconds);
        EXPECT_EQ(text.ProcessedString() == last, seconds == 4);
        last = text.ProcessedString();
    }
}

TEST_F(CanvasUpdate, CanvasesShowEachOther) {
    Canvas& other = Open(2, 10, 10);
    other.SetBackgroundColor(Red);
    Graphic& window = *canvas.AddGraphic(1);
    window.SetSourceType(Graphic::OtherCanvas);
    window.SetSourceCanvas(2);
    Tick();
    Tick();  // at rate 0, the layer waits for its first picture alone
    EXPECT_EQ(canvas.Picture().Pixel(5, 5), Red);
    EXPECT_EQ(canvas.Picture().Pixel(15, 5), 0);
    window.SetRate(1);
    EXPECT_EQ(Compositions(), 0) << "nothing new in the other canvas";
    other.SetBackgroundColor(Green);
    Tick();
    Tick();
    EXPECT_EQ(canvas.Picture().Pixel(5, 5), Green);
    window.SetSourceCanvas(1);
    Tick();
    Tick();
    EXPECT_EQ(canvas.Picture().Pixel(5, 5), Green) << "a canvas of itself shows what it was";
}

TEST_F(CanvasUpdate, HooksAreCalledForScriptedLayersThatAreDue) {
    PlugScript();
    Boxes(canvas, 4, "A", Green, 0, 0).SetScripted(true);
    Boxes(canvas, 5, "A", Green, 0, 0).SetScripted(false);
    Block(canvas, 6, Red, 0, 0, 4, 4).SetScripted(true);
    for (int slot : {4, 5}) canvas.Text(slot)->SetRate(10);
    Tick();
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"TextUpdate(1,4)", "GraphicUpdate(1,6)"}));
    engine.calls.clear();
    Tick(10);
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"TextUpdate(1,4)"})) << "the graphic has no rate";
}

TEST_F(CanvasUpdate, HookThatEndsTheProgramLeavesThePictureAsItWas) {
    Canvas& second = Open(2);
    Block(second, 1, Red, 0, 0, 4, 4);
    Block(canvas, 1, Red, 0, 0, 10, 10);
    Tick();
    PlugScript();
    engine.during = [] { Flags().running = false; };
    Boxes(canvas, 1, "A", Green, 0, 0).SetScripted(true);
    canvas.Graphic(1)->Setx(20);
    second.SetBackgroundColor(Blue);
    canvas.Saves().SetFixedEnabled(true);
    const int changes = files.Changes();
    EXPECT_EQ(Compositions(), 0);
    EXPECT_EQ(files.Changes(), changes) << "nothing is saved";
    EXPECT_EQ(canvas.Picture().Pixel(5, 5), Red);
    EXPECT_EQ(second.Picture().Pixel(20, 20), 0) << "the other canvases are not updated either";
    Flags().running = true;
    engine.during = nullptr;
    Tick();
    EXPECT_EQ(canvas.Picture().Pixel(25, 5), Red) << "the flags were kept";
}

TEST_F(CanvasUpdate, ClockThatStepsBackRestartsAllActivities) {
    Text& text = Boxes(canvas, 1, "<TimeHH24>", Green, 0, 0);
    text.SetRate(60);
    canvas.Saves().SetFixedEnabled(true);
    canvas.Saves().SetFixedRate(60);
    Tick();
    Tick(-3600);
    EXPECT_LE(text.NextTime(), time.Now() + 60.5 / 86400);
    EXPECT_LE(canvas.Saves().FixedNextFrame(), time.Now() + 60.5 / 86400);
}

TEST_F(CanvasUpdate, TicksAndExpansionsAreNoChangeOfSettings) {
    Boxes(canvas, 1, "<TimeSS>", Green, 0, 0).SetRate(1);
    Block(canvas, 1, Red, 0, 0, 4, 4).SetRate(1);
    canvas.Saves().SetFixedEnabled(true);
    canvas.SetNeedSaving(false);
    portfolio.SetNeedSaving(false);
    for (int i = 0; i < 3; ++i) Tick();
    EXPECT_FALSE(canvas.NeedSaving());
    EXPECT_FALSE(portfolio.NeedSaving());
    canvas.Graphic(1)->Schedule().SetStartMode(1);
    EXPECT_TRUE(canvas.NeedSaving());
    EXPECT_TRUE(portfolio.NeedSaving()) << "an open canvas belongs to the portfolio";
}

}  // namespace
}  // namespace tessaloom::testing
