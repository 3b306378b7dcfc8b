#include "text/Text.h"

#include "core/modNumbers.h"
#include "platform/text/FreeTypeFonts.h"
#include "support/BlockFonts.h"
#include "support/FakeLayerHost.h"
#include "support/FakeTime.h"
#include "support/PropertyTable.h"
#include "text/TagSource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace tessaloom {
namespace {

using testing::Number;
using testing::Plain;
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
    Ink(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}
};

class TextTest : public ::testing::Test {
protected:
    /// One turn of the canvas's cycle; the passes that it marked.
    Passes Update() {
        host.TakePasses();
        layer.ProcessText();
        layer.SetNextTime();
        layer.UpdateImage();
        return host.TakePasses();
    }

    DIB& Compose() {
        canvas.SetWidthHeight(200, 120);
        canvas.Clear(0xFFFFFF);
        layer.MergeImageTo(canvas);
        return canvas;
    }

    testing::FakeTime time{46037.5};
    testing::FakeLayerHost host;
    testing::BlockFonts fonts;
    NoSource source;
    LayerTiming entry;
    Text layer{host, entry, fonts, &source};
    DIB canvas;
};

TEST_F(TextTest, ClampsAndTellsEveryStoredProperty) {
    using T = Text;
    // clang-format off
    const testing::Property<T> rows[] = {
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
        Plain<T, &T::FontName, &T::SetFontName>("FontName", std::string("Arial"), std::string("Verdana")),
        Plain<T, &T::FontBold, &T::SetFontBold>("FontBold", false, true),
        Plain<T, &T::FontItalic, &T::SetFontItalic>("FontItalic", false, true),
        Plain<T, &T::Scripted, &T::SetScripted>("Scripted", false, true),
        Plain<T, &T::Shadow, &T::SetShadow>("Shadow", false, true),
        Plain<T, &T::Enabled, &T::SetEnabled>("Enabled", true, false),
        Plain<T, &T::RotationAngle, &T::SetRotationAngle>("RotationAngle", 0.0F, 12.5F),
    };
    // clang-format on
    testing::CheckProperties<T>(layer, host.owner, rows);
    for (const auto& [set, stored] : {
             std::pair{-90.0F,  270.0F},
             {400.0F,  360.0F},
             {360.0F,  360.0F},
             {-900.0F, 0.0F  }
    }) {
        layer.SetRotationAngle(set);
        EXPECT_EQ(layer.RotationAngle(), stored);
    }
}

TEST_F(TextTest, DrawingSettingsForceTheLayerAndTheSameValueDoesNot) {
    EXPECT_TRUE(layer.Changed());
    EXPECT_TRUE(entry.force);
    Update();
    EXPECT_FALSE(layer.Changed());
    EXPECT_FALSE(entry.force);
    layer.Setx(0);
    layer.SetFontName("Arial");
    layer.SetScripted(false);
    EXPECT_FALSE(layer.Changed());
    layer.Setx(5);
    EXPECT_TRUE(layer.Changed());
    EXPECT_TRUE(entry.force);
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
    EXPECT_EQ(layer.NextTime(), entry.nextTime);
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
    layer.SetValue("<TIME>");
    EXPECT_EQ(Update(), Passes{1});
    EXPECT_EQ(fonts.TakeDrawn().size(), 1u);
    EXPECT_EQ(layer.ProcessedString(), "12:00:00");

    EXPECT_EQ(Update(), Passes{});
    EXPECT_TRUE(fonts.TakeDrawn().empty());

    host.now += 1 / 86400.0;
    layer.ProcessText();
    EXPECT_TRUE(entry.force);
    EXPECT_EQ(Update(), Passes{1});
    EXPECT_EQ(fonts.TakeDrawn().size(), 1u);

    layer.SetColor(0xFF);  // needs another merge, but no other glyphs
    EXPECT_EQ(Update(), Passes{1});
    EXPECT_TRUE(fonts.TakeDrawn().empty());

    fonts.SetClearType({2000, SubPixelOrder::BGR});
    EXPECT_EQ(Update(), Passes{1});
    EXPECT_EQ(fonts.TakeDrawn().size(), 1u);
}

TEST_F(TextTest, LayerAndEnabledMarkTheirPasses) {
    Update();
    layer.SetLayer(3);
    EXPECT_EQ(host.TakePasses(), (Passes{1, 3}));
    layer.SetEnabled(false);
    EXPECT_EQ(host.TakePasses(), Passes{3});
    layer.Schedule().SetScheduleMode(1);
    layer.Schedule().SetStartAbsoluteTime(0.25);
    layer.Schedule().EnableNow(46037.5);
    layer.Schedule().EnableNow(46037.1);
    EXPECT_EQ(host.scheduleChanges, 2);
}

TEST_F(TextTest, AScriptsTextIsDrawnUntilTheNextExpansion) {
    layer.SetValue("typed");
    Update();
    layer.ProcessText();
    layer.SetProcessedString("scripted");
    layer.UpdateImage();
    EXPECT_EQ(host.TakePasses(), Passes{1});
    EXPECT_EQ(fonts.TakeDrawn().back().line, "scripted");
    layer.ProcessText();
    layer.SetProcessedString("scripted");
    layer.UpdateImage();
    EXPECT_EQ(host.TakePasses(), Passes{});
    Update();
    EXPECT_EQ(fonts.TakeDrawn().back().line, "typed");
}

TEST_F(TextTest, OutsideAPortfolioNothingIsExpanded) {
    Text alone(host, entry, fonts, nullptr);
    alone.SetValue("<TIME>");
    alone.ProcessText();
    EXPECT_EQ(alone.ProcessedString(), "");
}

TEST_F(TextTest, AsksForTheFontInPixels) {
    layer.SetValue("x");
    layer.SetFontSize(10.5F);
    layer.SetFontBold(true);
    layer.SetFontSmoothing(2);
    layer.SetFontName("Verdana");
    Update();
    const LogicalFont expected{"Verdana", 14, true, false, FontQuality::ClearType};
    EXPECT_EQ(fonts.TakeDrawn().back().font, expected);
}

TEST_F(TextTest, AlignsItsBoxAtThePosition) {
    layer.SetValue("abcd");  // 24 pixels high, 48 wide
    layer.SetFontSize(18);
    layer.Setx(100);
    layer.SetY(60);
    const Ink rows[] = {
        {100, 60, 148, 84},
        {76,  60, 124, 84},
        {52,  60, 100, 84},
        {100, 48, 148, 72},
        {76,  48, 124, 72},
        {52,  48, 100, 72},
        {100, 36, 148, 60},
        {76,  36, 124, 60},
        {52,  36, 100, 60}
    };
    for (int alignment = 0; alignment < 9; ++alignment) {
        layer.SetAlignment(alignment);
        Update();
        Ink ink(Compose());
        const Ink& expected = rows[alignment];
        EXPECT_NEAR(ink.left, expected.left, 1) << alignment;
        EXPECT_NEAR(ink.top, expected.top, 1) << alignment;
        EXPECT_EQ(ink.right - ink.left, 48) << alignment;
        EXPECT_EQ(ink.bottom - ink.top, 24) << alignment;
    }
}

TEST_F(TextTest, StandsInLinesAlignedLikeTheBox) {
    layer.SetFontSize(15);  // 20 pixels high, 10 wide
    layer.SetValue("ab\r\n\nabcdef");
    struct {
        int alignment, left;
    } const rows[] = {
        {0, 0 },
        {1, 20},
        {2, 40},
        {3, 0 }
    };
    for (const auto& row : rows) {
        layer.SetAlignment(row.alignment);
        Update();
        EXPECT_EQ(layer.Width(), 60);
        EXPECT_EQ(layer.Height(), 60);
        const auto drawn = fonts.TakeDrawn();
        ASSERT_EQ(drawn.size(), 2u);
        EXPECT_EQ(drawn[0].x, row.left);
        EXPECT_EQ(drawn[0].baseline, 15);
        EXPECT_EQ(drawn[1].baseline, 55);
    }
}

TEST_F(TextTest, DrawsTrendMarkersAsArrowsInLine) {
    layer.SetFontSize(15);
    layer.SetFontBold(true);
    layer.SetValue("a<trendup>b<TrendSteady><TRENDDOWN>");
    Update();
    const auto drawn = fonts.TakeDrawn();
    struct {
        std::string line, face;
        int x;
    } const rows[] = {
        {"a",   "Arial",  0 },
        {"↑", "Symbol", 10},
        {"b",   "Arial",  20},
        {"→", "Symbol", 30},
        {"↓", "Symbol", 40}
    };
    ASSERT_EQ(drawn.size(), std::size(rows));
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        EXPECT_EQ(drawn[i].line, rows[i].line);
        EXPECT_EQ(drawn[i].font.faceName, rows[i].face);
        EXPECT_EQ(drawn[i].x, rows[i].x);
        EXPECT_EQ(drawn[i].baseline, 15);
    }
}

TEST_F(TextTest, LaysDownItsColourThroughItsOpacity) {
    layer.SetValue("x");
    layer.SetColor(0x102030);
    Update();
    EXPECT_EQ(Compose().Pixel(2, 2), 0x102030);
    layer.SetOpacity(0);
    Update();
    EXPECT_EQ(Ink(Compose()).left, -1);
    layer.SetOpacity(50);
    layer.SetColor(0);
    Update();
    EXPECT_NEAR(Compose().Pixel(2, 2) & 0xFF, 128, 1);
    layer.SetValue("");
    Update();
    EXPECT_EQ(Ink(Compose()).left, -1);
    EXPECT_EQ(layer.Width(), 0);
}

TEST_F(TextTest, TurnsItsPicture) {
    layer.SetValue("abcdefgh");
    layer.SetFontSize(15);
    Update();
    EXPECT_EQ(layer.Width(), 80);
    layer.SetRotationAngle(90);
    Update();
    EXPECT_EQ(layer.Width(), 20);
    EXPECT_EQ(layer.Height(), 80);
    layer.SetRotationAngle(360);
    Update();
    EXPECT_EQ(layer.Width(), 80);
}

TEST_F(TextTest, ThrowsItsShadowAtItsOffset) {
    layer.SetValue("abcd");
    layer.SetFontSize(18);
    layer.Setx(20);
    layer.SetY(30);
    layer.SetShadowOffsetX(10);
    layer.SetShadowOffsetY(-5);
    DIB shadow;
    shadow.SetWidthHeight(200, 120);
    Update();
    layer.MergeShadowTo(shadow);
    EXPECT_EQ(Ink(shadow, 0).left, -1);
    layer.SetShadow(true);
    Update();
    layer.MergeShadowTo(shadow);
    const Ink ink(shadow, 0);
    EXPECT_NEAR(ink.left, 30, 2);
    EXPECT_NEAR(ink.top, 25, 2);
    EXPECT_NEAR(ink.right, 78, 2);
    EXPECT_NEAR(ink.bottom, 49, 2);
}

TEST_F(TextTest, BoundsEndlessTexts) {
    std::string text;
    for (int i = 0; i < 20000; ++i) text += "WWWWWWWWWWWWWWWWWWWW<trendup>";
    layer.SetFontSize(288);
    layer.SetValue(text + std::string(100000, '\n') + text);
    Update();
    EXPECT_EQ(layer.Width(), 3000);
    EXPECT_EQ(layer.Height(), 2000);
}

TEST_F(TextTest, ReleasesWhatItHolds) {
    layer.SetValue("abcd");
    Update();
    layer.UnloadClass();
    EXPECT_EQ(Ink(Compose()).left, -1);
    EXPECT_EQ(layer.Width(), 0);
}

class TextWithRealFonts : public ::testing::Test {
protected:
    /// The layer on a canvas of its own, drawn anew.
    std::unique_ptr<DIB> Draw(int paper = 0xFFFFFF, int width = 200, int height = 40) {
        layer.ProcessText();
        layer.UpdateImage();
        auto canvas = std::make_unique<DIB>();
        canvas->SetWidthHeight(width, height);
        canvas->Clear(paper);
        layer.MergeImageTo(*canvas);
        return canvas;
    }

    static bool Same(const DIB& a, const DIB& b) {
        return std::memcmp(a.DIBPtr(), b.DIBPtr(), static_cast<std::size_t>(a.Stride() * a.Height())) == 0;
    }

    testing::FakeTime time{46037.5};
    testing::FakeLayerHost host;
    FreeTypeFonts fonts{TEST_DATA "/fonts.conf"};
    NoSource source;
    LayerTiming entry;
    Text layer{host, entry, fonts, &source};
};

TEST_F(TextWithRealFonts, SmoothesInThreeWaysOnLightAndDarkGround) {
    layer.SetValue("Wave 27\u00B0 \u2191");
    struct {
        int smoothing;
        bool onlyTwo, componentsDiffer;
    } const rows[] = {
        {0, true,  false},
        {1, false, false},
        {2, false, true }
    };
    for (const int paper : {0xFFFFFF, 0})
        for (const auto& row : rows) {
            SCOPED_TRACE(row.smoothing);
            layer.SetFontSmoothing(row.smoothing);
            layer.SetColor(0xFFFFFF - paper);
            const auto drawn = Draw(paper);
            const DIB& canvas = *drawn;
            bool onlyTwo = true, componentsDiffer = false;
            for (int y = 0; y < canvas.Height(); ++y)
                for (int x = 0; x < canvas.Width(); ++x) {
                    const int pixel = canvas.Pixel(x, y);
                    onlyTwo = onlyTwo && (pixel == 0 || pixel == 0xFFFFFF);
                    componentsDiffer = componentsDiffer || pixel != (pixel & 0xFF) * 0x10101;
                }
            EXPECT_EQ(onlyTwo, row.onlyTwo);
            EXPECT_EQ(componentsDiffer, row.componentsDiffer);
            EXPECT_GT(Ink(canvas, paper).right, 60);
        }
}

TEST_F(TextWithRealFonts, FollowsTheSubPixelSettings) {
    layer.SetValue("Will");
    layer.SetFontSmoothing(2);
    layer.SetColor(0);
    const auto draw = [&](int contrast, SubPixelOrder order) {
        fonts.SetClearType({contrast, order});
        return Draw();
    };
    const auto rgb = draw(1000, SubPixelOrder::RGB), bgr = draw(1000, SubPixelOrder::BGR);
    const auto strong = draw(2200, SubPixelOrder::RGB);
    EXPECT_FALSE(Same(*rgb, *bgr));
    long light = 0, strongLight = 0;
    for (int y = 0; y < rgb->Height(); ++y)
        for (int x = 0; x < rgb->Width(); ++x) {
            const int pixel = rgb->Pixel(x, y), other = bgr->Pixel(x, y);
            EXPECT_EQ(pixel & 0xFF, other >> 16);
            EXPECT_EQ(pixel >> 16, other & 0xFF);
            EXPECT_EQ(pixel & 0xFF00, other & 0xFF00);
            light += pixel & 0xFF;
            strongLight += strong->Pixel(x, y) & 0xFF;
        }
    EXPECT_LT(strongLight, light);
}

TEST_F(TextWithRealFonts, BothEndsOfTheSizes) {
    layer.SetFontSmoothing(1);
    layer.SetColor(0);
    for (const auto& [points, lines] : {
             std::pair(2.0F, "tiny"), {288.0F, "W\ng"}
    }) {
        layer.SetFontSize(points);
        layer.SetValue(lines);
        EXPECT_NEAR(Ink(*Draw(0xFFFFFF, 1000, 1000)).bottom, points == 2 ? 3 : 880, points == 2 ? 1 : 40);
    }
}

TEST_F(TextWithRealFonts, TurnsALineOfThreeThousandPixels) {
    layer.SetValue(std::string(1000, 'W'));
    layer.SetFontSize(20);
    layer.SetFontSmoothing(2);
    layer.SetShadow(true);
    layer.SetAlignment(4);
    layer.Setx(100);
    layer.SetY(100);
    for (const float angle : {0.0F, 30.0F, 45.0F, 90.0F, 180.0F, 359.9F}) {
        SCOPED_TRACE(angle);
        layer.SetRotationAngle(angle);
        EXPECT_GE(Ink(*Draw(0xFFFFFF, 200, 200)).left, 0);  // the line runs through its centre
        const double radians = angle / 180 * std::numbers::pi;
        EXPECT_NEAR(layer.Width(), 3000 * std::abs(std::cos(radians)) + 31 * std::abs(std::sin(radians)), 3);
        EXPECT_NEAR(layer.Height(), 3000 * std::abs(std::sin(radians)) + 31 * std::abs(std::cos(radians)), 3);
    }
}

TEST_F(TextWithRealFonts, AnyTextAndSettingsAreDrawnAlikeTwice) {
    std::mt19937 random(9);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    const std::vector<std::string> pieces = {
        "<trendup>", "<TREND",  "STEADY>",      "<TIME100>",    "\n",     "\r\n",       "\xFF",
        "\xE2\x82",  "e\u0301", "\u05E9\u05DC", "\u0645\u0631", "\u65E5", "\U0001F600", std::string(1, '\0'),
        "\t",        "Wag ",    "\u202E",       "\u200D"};
    const char* faces[] = {"Arial", "Courier New", "Symbol", "No Such Face", "", "\xFF\x80", "DejaVu Sans"};
    for (int i = 0; i < 300; ++i) {
        std::string text;
        for (int n = below(25); n > 0; --n) text += pieces[random() % pieces.size()];
        layer.SetValue(text);
        layer.SetFontName(faces[random() % std::size(faces)]);
        layer.SetFontSize(static_cast<float>(below(10) == 0 ? below(300) : below(30)));
        layer.SetFontBold(below(2) == 0);
        layer.SetFontItalic(below(2) == 0);
        layer.SetFontSmoothing(below(3));
        layer.SetRotationAngle(static_cast<float>(below(3) == 0 ? below(3600) / 10.0 : 0));
        layer.SetShadow(below(2) == 0);
        layer.SetShadowSize(1 + below(4));
        layer.SetAlignment(below(9));
        layer.SetOpacity(below(101));
        layer.SetColor(below(0x1000000));
        layer.Setx(below(260) - 30);
        layer.SetY(below(100) - 30);
        const auto first = Draw();
        DIB shadow;
        shadow.SetWidthHeight(200, 40);
        layer.MergeShadowTo(shadow);
        layer.UnloadClass();
        layer.ForceUpdate();
        ASSERT_TRUE(Same(*first, *Draw())) << text;
    }
}

}  // namespace
}  // namespace tessaloom
