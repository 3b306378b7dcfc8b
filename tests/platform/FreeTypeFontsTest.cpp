#include "platform/text/FreeTypeFonts.h"

#include <numeric>

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

/// A coverage map, top row first, with what tests ask of it.
struct Map {
    int width, height;
    std::vector<std::uint8_t> bytes;

    Map(int columns, int rows) : width(columns), height(rows), bytes(std::size_t(columns * rows * 3)) {}
    CoverageTarget Target() { return {bytes.data(), width, height, width * 3}; }

    std::set<int> Values() const { return {bytes.begin(), bytes.end()}; }
    bool HasInk() const { return Sum() > 0; }
    bool ComponentsDiffer() const {
        for (std::size_t i = 0; i < bytes.size(); i += 3)
            if (bytes[i] != bytes[i + 1] || bytes[i] != bytes[i + 2]) return true;
        return false;
    }
    long Sum() const { return std::accumulate(bytes.begin(), bytes.end(), 0L); }
    bool operator==(const Map&) const = default;
};

class FreeTypeFontsTest : public ::testing::Test {
protected:
    Map Draw(const LogicalFont& logical, std::string_view line) {
        const auto font = fonts.Create(logical);
        const TextExtent extent = font->Measure(line);
        const int left = std::min(0, extent.inkLeft), top = std::min(-extent.ascent, extent.inkTop);
        const int right = std::max(extent.width, extent.inkRight);
        const int bottom = std::max(extent.height - extent.ascent, extent.inkBottom);
        Map map(right - left, bottom - top);
        font->Render(line, -left, -top, map.Target());
        return map;
    }
    int Width(const LogicalFont& logical, std::string_view line) {
        return fonts.Create(logical)->Measure(line).width;
    }

    FreeTypeFonts fonts{TEST_DATA "/fonts.conf"};
};

LogicalFont Arial(int height, FontQuality quality = FontQuality::Antialiased) {
    return {.faceName = "Arial", .pixelHeight = height, .quality = quality};
}

TEST_F(FreeTypeFontsTest, SmoothsAsAsked) {
    const auto drawn = [this](FontQuality quality) { return Draw(Arial(24, quality), "Wall 123"); };
    EXPECT_EQ(drawn(FontQuality::NonAntialiased).Values(), (std::set<int>{0, 255}));
    const Map grey = drawn(FontQuality::Antialiased);
    EXPECT_GT(grey.Values().size(), 20u);
    EXPECT_FALSE(grey.ComponentsDiffer());

    fonts.SetClearType({1000, SubPixelOrder::RGB});
    const Map rgb = drawn(FontQuality::ClearType);
    EXPECT_TRUE(rgb.ComponentsDiffer());
    fonts.SetClearType({1000, SubPixelOrder::BGR});
    Map bgr = drawn(FontQuality::ClearType);
    EXPECT_NE(rgb, bgr);
    for (std::size_t i = 0; i < bgr.bytes.size(); i += 3) std::swap(bgr.bytes[i], bgr.bytes[i + 2]);
    EXPECT_EQ(rgb, bgr);
    fonts.SetClearType({2200, SubPixelOrder::RGB});
    EXPECT_GT(drawn(FontQuality::ClearType).Sum(), rgb.Sum());
    fonts.SetClearType({5000, SubPixelOrder::RGB});
    EXPECT_EQ(fonts.ClearType().contrast, 2200);
}

TEST_F(FreeTypeFontsTest, MeasuresByTheEmHeight) {
    const TextExtent line = fonts.Create(Arial(24))->Measure("Hello");
    EXPECT_EQ(line.ascent, 22);
    EXPECT_EQ(line.height, 27);
    EXPECT_NEAR(line.width, 55, 3);
    EXPECT_EQ(fonts.Create(Arial(24))->Measure("").width, 0);
    EXPECT_NEAR(Width(Arial(240), "Hello"), 547, 4);
    EXPECT_EQ(Width({.faceName = "Courier New", .pixelHeight = 24}, "iii"),
              Width({.faceName = "Courier New", .pixelHeight = 24}, "WWW"));
}

TEST_F(FreeTypeFontsTest, StandsInForFacesThatAreNotInstalled) {
    const auto drawn = [this](const char* face) {
        return Draw({.faceName = face, .pixelHeight = 24}, "Sample g");
    };
    EXPECT_EQ(drawn("Arial"), drawn("Liberation Sans"));
    EXPECT_EQ(drawn("times new roman"), drawn("Liberation Serif"));
    EXPECT_EQ(drawn("Courier New"), drawn("Liberation Mono"));
    EXPECT_EQ(drawn("Verdana"), drawn("DejaVu Sans"));
    for (const std::string& name : {std::string(), std::string("No Such Face"),
                                    std::string("\xFF\xFE\x80 bad"), std::string(100000, 'x')})
        EXPECT_TRUE(Draw({.faceName = name, .pixelHeight = 24}, "Sample").HasInk());
}

TEST_F(FreeTypeFontsTest, BoldAndItalicDifferInEveryFace) {
    // The Symbol stand-in has no slanted face in every set of fonts, so some of these are made up.
    for (const char* face : {"Arial", "Courier New", "Verdana", "DejaVu Sans Light", "Symbol"}) {
        SCOPED_TRACE(face);
        const LogicalFont plain{.faceName = face, .pixelHeight = 32, .quality = FontQuality::Antialiased};
        LogicalFont bold = plain, italic = plain;
        bold.bold = true;
        italic.italic = true;
        EXPECT_GT(Draw(bold, "lamp").Sum(), Draw(plain, "lamp").Sum() * 11 / 10);
        EXPECT_NE(Draw(italic, "lamp"), Draw(plain, "lamp"));
    }
}

TEST_F(FreeTypeFontsTest, DrawsScriptsThatTheFaceLacks) {
    const Map box = Draw(Arial(24), "\U000F0000");  // private use: in no font
    EXPECT_TRUE(box.HasInk());
    struct {
        const char* text;
        bool installed;
    } const rows[] = {
  // clang-format off
        {"Ελλάδα", true}, {"Москва", true}, {"שלום", true}, {"مرحبا", true}, {"😀", true}, {"👩‍👩‍👧", false},
        {"日本", false}, {"↑↓→", true}, {"e\u0301\u0323", true},
  // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        for (const auto quality :
             {FontQuality::NonAntialiased, FontQuality::Antialiased, FontQuality::ClearType})
            EXPECT_TRUE(Draw(Arial(24, quality), row.text).HasInk());
        if (row.installed) {
            EXPECT_NE(Draw(Arial(24), row.text), box);
        }
    }
}

TEST_F(FreeTypeFontsTest, OrdersMixedDirections) {
    // Right to left: the last letter in memory stands first on the line.
    const Map word = Draw(Arial(24), "אב");
    const Map reversed = Draw(Arial(24), "בא");
    EXPECT_NE(word, reversed);
    // Letters are shaped in their context: the joined word is narrower than its separated letters.
    EXPECT_LT(Width(Arial(48), "مرحبا"), Width(Arial(48), "م ر ح ب ا"));
    // A Latin line keeps its order; a number in a Hebrew line keeps its own.
    EXPECT_EQ(Draw(Arial(24), "ab אב"), Draw(Arial(24), "ab \u2067אב\u2069"));
    EXPECT_EQ(Width(Arial(24), "אב 12"), Width(Arial(24), "12 אב"));
    EXPECT_EQ(Draw(Arial(24), "אב 12"), Draw(Arial(24), "\u200E12 אב"));
}

TEST_F(FreeTypeFontsTest, SurvivesAnyText) {
    std::mt19937 random(7);
    Map map(300, 40);
    for (int i = 0; i < 400; ++i) {
        std::string text(random() % 60, '\0');
        for (char& c : text) c = static_cast<char>(random());
        const auto quality = static_cast<FontQuality>(3 + random() % 3);
        const auto font = fonts.Create(
            {"Arial", static_cast<int>(random() % 60), random() % 2 == 0, random() % 2 == 0, quality});
        font->Render(text, static_cast<int>(random() % 400) - 50, static_cast<int>(random() % 80) - 20,
                     map.Target());
    }
    const std::string endless(1'000'000, 'W');
    EXPECT_GT(Width(Arial(384), endless), 3000);
    fonts.Create(Arial(384))->Render(endless, -1000, 30, map.Target());
    EXPECT_EQ(Draw(Arial(24), "a\x01\x7F z"), Draw(Arial(24), "a z"));
    EXPECT_EQ(Draw(Arial(24), "a\xC0\xAF"), Draw(Arial(24), "a\uFFFD\uFFFD"));
    EXPECT_GT(Width(Arial(-5), "W"), 0);
    EXPECT_LT(Width(Arial(1'000'000), "W"), 2000);
}

TEST_F(FreeTypeFontsTest, ClipsAndKeepsTheLargerCoverage) {
    const auto font = fonts.Create(Arial(24));
    Map whole(60, 40), part(20, 10);
    font->Render("Ag", 10, 25, whole.Target());
    font->Render("Ag", 0, 10, part.Target());
    for (int y = 0; y < part.height; ++y)
        for (int x = 0; x < part.width; ++x)
            EXPECT_EQ(part.bytes[std::size_t((y * part.width + x) * 3)],
                      whole.bytes[std::size_t(((y + 15) * whole.width + x + 10) * 3)]);
    const Map before = whole;
    font->Render("Ag", 10, 25, whole.Target());
    EXPECT_EQ(whole, before);
}

TEST_F(FreeTypeFontsTest, FontsOutliveTheirMaker) {
    std::shared_ptr<Font> font;
    {
        FreeTypeFonts shortLived(TEST_DATA "/fonts.conf");
        font = shortLived.Create(Arial(20));
    }
    EXPECT_GT(font->Measure("still here").width, 0);
}

TEST_F(FreeTypeFontsTest, ManyFontsInTurnStayUsable) {
    const auto first = fonts.Create(Arial(10));
    const TextExtent before = first->Measure("abc");
    for (int height = 11; height < 180; ++height) EXPECT_GT(Width(Arial(height), "abc"), 0);
    EXPECT_EQ(first->Measure("abc").width, before.width);
    EXPECT_EQ(Width(Arial(10), "abc"), before.width);
}

TEST_F(FreeTypeFontsTest, ListsItsFaces) {
    const auto names = fonts.FaceNames();
    EXPECT_TRUE(std::binary_search(names.begin(), names.end(), std::string("Liberation Sans")));
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
}

TEST(FreeTypeFontsWithoutFonts, DrawNothing) {
    FreeTypeFonts fonts(TEST_DATA "/no-such-fonts.conf");
    const auto font = fonts.Create(Arial(20));
    Map map(50, 30);
    font->Render("text", 0, 20, map.Target());
    EXPECT_FALSE(map.HasInk());
    EXPECT_EQ(font->Measure("text").height, 20);
}

}  // namespace
}  // namespace tessaloom::testing
