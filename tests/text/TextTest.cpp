#include "text/Text.h"

#include "core/modNumbers.h"
#include "platform/text/FreeTypeFonts.h"
#include "support/BlockFonts.h"
#include "support/FakeLayerHost.h"
#include "support/FakeTime.h"
#include "support/PropertyTable.h"
#include "text/TagSource.h"

#include <cstring>
#include <numbers>

namespace tessaloom::testing {
namespace {

using Passes = std::vector<int>;

class NoSource final : public TagSource {
public:
    double LastMotionTime(int) const override { return 0; }
    const VWS* Weather() const override { return nullptr; }
};

/// What covers a canvas that was white before.
struct Ink {
    int left = -1, top = -1, right = -1, bottom = -1;

    explicit Ink(const DIB& canvas, int paper = 0xFFFFFF) {
        for (int y = 0; y < canvas.Height(); ++y)
            for (int x = 0; x < canvas.Width(); ++x) {
                if (canvas.Pixel(x, y) == paper) continue;
                if (left < 0 || x < left) left = x;
                if (top < 0) top = y;
                if (x >= right) right = x + 1;
                bottom = y + 1;
            }
    }
};

class TextTest : public ::testing::Test {
protected:
    /// One turn of the canvas's cycle.
    void Update() {
        layer.ProcessText();
        layer.SetNextTime();
        layer.UpdateImage();
    }

    void Compose() {
        canvas.SetWidthHeight(200, 120);
        canvas.Clear(0xFFFFFF);
        layer.MergeImageTo(canvas);
    }

    void Show(std::string_view text, float points, int x = 0, int y = 0) {
        layer.SetValue(text);
        layer.SetFontSize(points);
        layer.Setx(x);
        layer.SetY(y);
        Update();
        Compose();
    }

    /// "abcd" in 18 points, or its shadow that is wider by `softness`, at about (left, top).
    static void ExpectInk(const DIB& picture, int paper, int left, int top, int softness) {
        const Ink ink(picture, paper);
        EXPECT_NEAR(ink.left, left, 1);
        EXPECT_NEAR(ink.top, top, 1);
        EXPECT_EQ(ink.right - ink.left, 48 + softness);
        EXPECT_EQ(ink.bottom - ink.top, 24 + softness);
    }

    FakeTime time{46037.5};
    FakeLayerHost host;
    BlockFonts fonts;
    NoSource source;
    LayerTiming entry;
    Text layer{host, entry, fonts, &source};
    DIB canvas;
};

TEST_F(TextTest, ClampsAndTellsEveryNumber) {
    using T = Text;
    // clang-format off
    const Property<T> rows[] = {
        Number<T, &T::Alignment, &T::SetAlignment>("Alignment", 0, 0, 8),
        Number<T, &T::x, &T::Setx>("x", 0, -3000, 3000),
        Number<T, &T::Y, &T::SetY>("Y", 0, -2000, 2000),
        Number<T, &T::FontSize, &T::SetFontSize>("FontSize", 14, 2, 288),
        Number<T, &T::FontSmoothing, &T::SetFontSmoothing>("FontSmoothing", 0, 0, 2),
        Number<T, &T::Color, &T::SetColor>("Color", 0x808080, 0, 0xFFFFFF),
        Number<T, &T::Opacity, &T::SetOpacity>("Opacity", 100, 0, 100),
        Number<T, &T::OpacityMode, &T::SetOpacityMode>("OpacityMode", 2, 0, 2),
        Number<T, &T::ShadowSize, &T::SetShadowSize>("ShadowSize", 1, 1, 4),
        Number<T, &T::ShadowOffsetX, &T::SetShadowOffsetX>("ShadowOffsetX", 2, -3000, 3000),
        Number<T, &T::ShadowOffsetY, &T::SetShadowOffsetY>("ShadowOffsetY", 2, -2000, 2000),
        Number<T, &T::Layer, &T::SetLayer>("Layer", 1, 0, 3),
        Number<T, &T::Rate, &T::SetRate>("Rate", 0, 0, 86400),
        Number<T, &T::UpdateBaseTime, &T::SetUpdateBaseTime>("UpdateBaseTime", 0, 0, 86400),
        Plain<T, &T::Value, &T::SetValue>("Text", std::string(), std::string("<TIME>")),
        Plain<T, &T::Enabled, &T::SetEnabled>("Enabled", true, false),
    };
    const std::pair<float, float> angles[] = {{-90, 270}, {12.5F, 12.5F}, {400, 360}, {360, 360}, {-900, 0}};
    // clang-format on
    CheckProperties<T>(layer, host.owner, rows);
    for (const auto& [set, stored] : angles) {
        layer.SetRotationAngle(set);
        EXPECT_EQ(layer.RotationAngle(), stored);
    }
}

TEST_F(TextTest, DrawingSettingsForceTheLayerAndTheSameValueDoesNot) {
    const auto expect = [&](bool changed) {
        EXPECT_EQ(layer.Changed(), changed);
        EXPECT_EQ(entry.force, changed);
    };
    expect(true);
    Update();
    expect(false);
    layer.Setx(0);
    layer.SetFontName("Arial");
    layer.SetScripted(false);
    expect(false);
    layer.Setx(5);
    expect(true);
    layer.SetScripted(true);
    EXPECT_TRUE(entry.scripted);
    Update();
    layer.Schedule().SetStartMode(1);
    EXPECT_TRUE(layer.Changed());  // until the schedule is saved
}

TEST_F(TextTest, KeepsItsTimingEntryInStep) {
    layer.SetRate(60);
    EXPECT_LE(layer.NextTime(), host.now);  // a new layer is due at once
    Update();
    EXPECT_NEAR(entry.nextTime, host.now + 60 / 86400.0, 1e-9);
    host.now += 1 / 86400.0;
    layer.ForceUpdate();
    EXPECT_EQ(entry.nextTime, host.now);
    EXPECT_TRUE(entry.force);
    layer.SetRate(0);
    Update();
    EXPECT_EQ(entry.nextTime, modTime::Never);
    layer.SetRate(30);
    EXPECT_LT(entry.nextTime, modTime::Never);
}

TEST_F(TextTest, IsDrawnOnlyWhenItsPictureChanged) {
    const auto script = [&] {
        layer.ProcessText();
        layer.SetProcessedString("s");
    };
    // clang-format off
    const struct {
        const char* what;
        std::function<void()> change;
        Passes marked;
        std::string drawn;
    } steps[] = {
        {"new",             [&] { layer.SetValue("<TIME>"); },                       {1},       "12:00:00"},
        {"the same",        [&] {},                                                  {},        ""},
        {"a second later",  [&] { host.now += 1 / 86400.0; },                        {1},       "12:00:01"},
        {"another merge",   [&] { layer.SetColor(0xFF); },                           {1},       ""},
        {"the desktop's",   [&] { fonts.SetClearType({2000, SubPixelOrder::BGR}); }, {1},       "12:00:01"},
        {"another pass",    [&] { layer.SetLayer(3); },                              {1, 3, 3}, ""},
        {"switched off",    [&] { layer.SetEnabled(false); },                        {3, 3},    ""},
        {"a script's text", script,                                                  {3},       "s"},
        {"the same again",  script,                                                  {},        ""},
        {"expanded again",  [&] { layer.ProcessText(); },                            {3},       "12:00:01"},
    };
    // clang-format on
    for (const auto& [what, change, marked, drawn] : steps) {
        change();
        if (layer.ProcessedString() != "s") layer.ProcessText();
        layer.UpdateImage();
        EXPECT_EQ(host.TakePasses(), marked) << what;
        std::string lines;
        for (const auto& line : fonts.TakeDrawn()) lines += line.line;
        EXPECT_EQ(lines, drawn) << what;
    }
    Text alone(host, entry, fonts, nullptr);  // outside a portfolio nothing is expanded
    alone.SetValue("<TIME>");
    alone.ProcessText();
    EXPECT_EQ(alone.ProcessedString(), "");
}

TEST_F(TextTest, AsksForTheFontInPixels) {
    layer.SetFontBold(true);
    layer.SetFontName("Verdana");
    for (int smoothing = 0; const auto quality :
                            {FontQuality::NonAntialiased, FontQuality::Antialiased, FontQuality::ClearType}) {
        layer.SetFontSmoothing(smoothing++);
        layer.SetFontItalic(smoothing == 2);
        Show("x", 10.5F);
        EXPECT_EQ(fonts.TakeDrawn().back().font, (LogicalFont{"Verdana", 14, true, smoothing == 2, quality}));
    }
}

TEST_F(TextTest, AlignsItsBoxAtThePosition) {
    for (int alignment = 0; alignment < 9; ++alignment) {
        SCOPED_TRACE(alignment);
        layer.SetAlignment(alignment);
        Show("abcd", 18, 100, 60);  // 24 pixels high, 48 wide
        ExpectInk(canvas, 0xFFFFFF, 100 - alignment % 3 * 24, 60 - alignment / 3 * 12, 0);
    }
}

TEST_F(TextTest, StandsInLinesAlignedLikeTheBox) {
    for (int alignment = 0; const int left : {0, 20, 40, 0}) {
        layer.SetAlignment(alignment++);
        Show("ab\r\n\nabcdef", 15);  // 20 pixels high, 10 wide
        EXPECT_EQ(layer.Width(), 60);
        EXPECT_EQ(layer.Height(), 60);
        const auto drawn = fonts.TakeDrawn();
        ASSERT_EQ(drawn.size(), 2u);
        EXPECT_EQ(drawn[0].x, left);
        EXPECT_EQ(drawn[0].baseline, 15);
        EXPECT_EQ(drawn[1].baseline, 55);
    }
}

TEST_F(TextTest, DrawsTrendMarkersAsArrowsInLine) {
    layer.SetFontBold(true);
    Show("a<trendup>b<TrendSteady><TRENDDOWN>", 15);
    std::string shown;
    for (const auto& drawn : fonts.TakeDrawn()) {
        shown += drawn.line + " " + drawn.font.faceName + " " + std::to_string(drawn.x) + ", ";
        EXPECT_EQ(drawn.baseline, 15);
    }
    EXPECT_EQ(shown, "a Arial 0, \u2191 Symbol 10, b Arial 20, \u2192 Symbol 30, \u2193 Symbol 40, ");
}

TEST_F(TextTest, LaysDownItsColourThroughItsOpacity) {
    layer.SetColor(0x102030);
    Show("x", 18);
    EXPECT_EQ(canvas.Pixel(2, 2), 0x102030);
    layer.SetColor(0);
    layer.SetOpacity(50);
    Show("x", 18);
    EXPECT_NEAR(canvas.Pixel(2, 2) & 0xFF, 128, 1);
    layer.SetOpacity(0);
    Show("x", 18);
    EXPECT_EQ(Ink(canvas).left, -1);
    layer.SetOpacity(100);
    Show("", 18);
    EXPECT_EQ(Ink(canvas).left, -1);
    EXPECT_EQ(layer.Width(), 0);
    Show("x", 18);
    layer.UnloadClass();
    Compose();
    EXPECT_EQ(Ink(canvas).left, -1);
    EXPECT_EQ(layer.Width(), 0);
}

TEST_F(TextTest, ThrowsItsShadowAtItsOffset) {
    layer.SetShadowOffsetX(10);
    layer.SetShadowOffsetY(-5);
    DIB shadow;
    shadow.SetWidthHeight(200, 120);
    Show("abcd", 18, 20, 30);
    layer.MergeShadowTo(shadow);
    EXPECT_EQ(Ink(shadow, 0).left, -1);
    layer.SetShadow(true);
    Update();
    layer.MergeShadowTo(shadow);
    ExpectInk(shadow, 0, 30, 25, 2);
}

TEST_F(TextTest, BoundsEndlessTexts) {
    std::string text;
    for (int i = 0; i < 20000; ++i) text += "WWWWWWWWWWWWWWWWWWWW<trendup>";
    Show(text + std::string(100000, '\n') + text, 288);
    EXPECT_EQ(layer.Width(), 3000);
    EXPECT_EQ(layer.Height(), 2000);
}

TEST_F(TextTest, TurnsALineOfThreeThousandPixels) {
    layer.SetAlignment(4);
    for (const float angle : {0.0F, 30.0F, 45.0F, 90.0F, 180.0F, 359.9F, 360.0F}) {
        SCOPED_TRACE(angle);
        layer.SetRotationAngle(angle);
        Show(std::string(1000, 'W'), 24, 100, 100);
        EXPECT_GE(Ink(canvas).left, 0);  // the line runs through its centre
        const double radians = angle / 180 * std::numbers::pi;
        EXPECT_NEAR(layer.Width(), 3000 * std::abs(std::cos(radians)) + 32 * std::abs(std::sin(radians)), 3);
        EXPECT_NEAR(layer.Height(), 3000 * std::abs(std::sin(radians)) + 32 * std::abs(std::cos(radians)), 3);
    }
}

TEST_F(TextTest, AnyTextAndSettingsAreDrawnAlikeTwice) {
    FreeTypeFonts realFonts{TEST_DATA "/fonts.conf"};
    Text real{host, entry, realFonts, &source};
    const auto draw = [&] {
        real.ProcessText();
        real.UpdateImage();
        auto picture = std::make_unique<DIB>();
        picture->SetWidthHeight(200, 40);
        picture->Clear(0xFFFFFF);
        real.MergeImageTo(*picture);
        return picture;
    };
    std::mt19937 random(9);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    // clang-format off
    const std::vector<std::string> pieces = {
        "<trendup>", "<TREND", "STEADY>", "<TIME100>", "\n", "\r\n", "\xFF", "\xE2\x82", "e\u0301",
        "\u05E9\u05DC", "\u0645\u0631", "\u65E5", "\U0001F600", std::string(1, '\0'), "\t", "Wag ",
        "\u202E", "\u200D"};
    // clang-format on
    const char* faces[] = {"Arial", "Courier New", "Symbol", "No Such Face", "", "\xFF\x80", "DejaVu Sans"};
    for (int i = 0; i < 300; ++i) {
        std::string text;
        for (int n = below(25); n > 0; --n) text += pieces[random() % pieces.size()];
        real.SetValue(text);
        real.SetFontName(faces[random() % std::size(faces)]);
        real.SetFontSize(static_cast<float>(below(10) == 0 ? below(300) : below(30)));
        real.SetFontBold(below(2) == 0);
        real.SetFontItalic(below(2) == 0);
        real.SetFontSmoothing(below(3));
        real.SetRotationAngle(static_cast<float>(below(3) == 0 ? below(3600) / 10.0 : 0));
        real.SetShadow(below(2) == 0);
        real.SetShadowSize(1 + below(4));
        real.SetAlignment(below(9));
        real.SetOpacity(below(101));
        real.SetColor(below(0x1000000));
        real.Setx(below(260) - 30);
        real.SetY(below(100) - 30);
        const auto first = draw();
        DIB shadow;
        shadow.SetWidthHeight(200, 40);
        real.MergeShadowTo(shadow);
        real.UnloadClass();
        real.ForceUpdate();
        const auto size = static_cast<std::size_t>(first->Stride() * first->Height());
        ASSERT_EQ(std::memcmp(first->DIBPtr(), draw()->DIBPtr(), size), 0) << text;
    }
}

}  // namespace
}  // namespace tessaloom::testing
