#include "model/Documents.h"
#include "script/host/Script.h"
#include "support/RecordingScriptEngine.h"
#include "text/VWS.h"

namespace tessaloom::testing {
namespace {

class LiveText : public ::testing::Test, protected Documents {
protected:
    /// One second of the main timer.
    void PassASecond() {
        for (int i = 0; i < 100; ++i) Tick(0.01);
    }

    void WriteWeather(int second, const std::string& temperature, const std::string& barometerRate = "0") {
        std::string record = "0,1.01,2026,1,15,12,0," + std::to_string(second);
        for (int field = 8; field <= 40; ++field)
            record += "," + (field == VWS::OutdoorTemperature ? temperature
                             : field == VWS::BarometerRate    ? barometerRate
                                                              : std::to_string(field));
        Write("w.csv", record + "\r\n");
    }

    Canvas& canvas = Open(1, 200, 100);
};

TEST_F(LiveText, AClockDrawsOneLineASecondAndNoOtherLayer) {
    Boxes(canvas, 1, "<TIME>", 0xFFFFFF, 0, 0).SetRate(1);
    Boxes(canvas, 2, "Fixed", 0xFFFFFF, 0, 20).SetRate(0.01);
    Boxes(canvas, 3, "<DATE>", 0xFFFFFF, 0, 40).SetRate(0.1);
    Block(canvas, 1, 0x808080, 0, 60, 10, 10).SetRate(1);
    PassASecond();
    for (const char* shown : {"00:00:02", "00:00:03", "00:00:04"}) {
        fonts.TakeDrawn();
        PassASecond();
        const auto drawn = fonts.TakeDrawn();
        ASSERT_EQ(drawn.size(), 1u);
        EXPECT_EQ(drawn[0].line, shown);
    }
}

TEST_F(LiveText, ACaptionFollowsTheWeatherFile) {
    VWS& weather = portfolio.VWS();
    weather.SetCSVFile("w.csv");
    weather.SetCSVDelay(1);
    weather.SetCSVEnabled(true);
    RecordingScriptEngine engine;
    engine.procedures.push_back({"NewCSVData", 0});
    Write("script.txt", "'");
    portfolio.Script().SetEngine(&engine);
    portfolio.Script().SetAllowNewCSVData(true);
    portfolio.Script().SetEnabled(true);
    Text& caption = Boxes(canvas, 1, "<csvouttemp>F <csvmaxtemptoday> <csvbaromtrendarrow>", 0xFFFFFF, 0, 0);
    caption.SetRate(1);
    // clang-format off
    struct {
        const char* what;
        std::function<void()> change;
        const char* shown;
        std::size_t hooks;
    } const rows[] = {
        {"no file yet",        [] {},                                             "N/AF N/A N/A", 0},
        {"a record",           [&] { WriteWeather(1, "21.50", "0.05"); },         "21.50F 21.50 <trendup>", 1},
        {"a colder one",       [&] { WriteWeather(2, "20.5", "-1"); },            "20.5F 21.5 <trenddown>", 1},
        {"half of one",        [&] { Write("w.csv", "0,1.01,2026,1,15,12,0,3,1"); }, "20.5F 21.5 <trenddown>", 0},
        {"the whole of it",    [&] { WriteWeather(3, "", ""); },                  "N/AF 22 <trenddown>", 1},
        {"the same time",      [&] { WriteWeather(3, "30"); },                    "N/AF 22 <trenddown>", 0},
        {"the file is gone",   [&] { files.DeleteFile("w.csv"); },                "N/AF N/A N/A", 0},
        {"it is back",         [&] { WriteWeather(4, "19"); },                    "19F 22 <trendsteady>", 1},
    };
    // clang-format on
    for (const auto& row : rows) {
        engine.calls.clear();
        row.change();
        PassASecond();
        PassASecond();
        EXPECT_EQ(caption.ProcessedString(), row.shown) << row.what;
        EXPECT_EQ(engine.calls.size(), row.hooks) << row.what;
    }
}

}  // namespace
}  // namespace tessaloom::testing
