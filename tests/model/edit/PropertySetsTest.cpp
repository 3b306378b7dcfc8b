#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "model/Documents.h"
#include "model/PortfolioKeys.h"
#include "model/edit/LayerKeys.h"
#include "model/edit/PropertySet.h"
#include "publish/CanvasSaves.h"

namespace tessaloom::testing {
namespace {

using Set = std::unique_ptr<PropertySet>;
using Names = std::set<std::string_view>;

struct PropertySetsTest : Documents, ::testing::Test {
    static constexpr LayerId TextLayer{LayerId::Kind::Text, 3}, GraphicLayer{LayerId::Kind::Graphic, 100};

    PropertySetsTest() {
        Canvas& canvas = Open(2);
        canvas.AddText(3);
        canvas.AddGraphic(100);
    }

    /// Every set, with the tables of keys that it shows and those of their keys that it does not.
    struct Case {
        const char* name;
        std::function<Set()> make;
        Names keys, left;
    };
    template <typename... Keys>
    static Names NamesOf(const Keys&... tables) {
        Names names;
        const auto add = [&](const auto& table) {
            for (const auto& key : table) names.insert(key.name);
        };
        (add(tables), ...);
        return names;
    }

    std::vector<Case> Cases() {
        using namespace PropertySets;
        const auto keysOf = [](std::string_view beginning) {
            Names names = NamesOf(CanvasKeys::Capture);
            std::erase_if(names, [&](std::string_view name) { return !name.starts_with(beginning); });
            return names;
        };
        Names fixed = keysOf("Fixed");
        fixed.merge(keysOf("Cascade"));
        return {
            {"text",
             [this] { return Layer(portfolio, 2, TextLayer); },
             NamesOf(LayerKeys::TextHead,                                 CanvasKeys::TextBeforeSchedule,                                                 CanvasKeys::TextAfterSchedule),
             {"OpacityMode"}}, // decides nothing
            {"graphic",
             [this] { return Layer(portfolio, 2, GraphicLayer); },
             NamesOf(LayerKeys::GraphicHead,                                 CanvasKeys::GraphicBeforeSchedule,
             CanvasKeys::GraphicAfterSchedule, LayerKeys::GraphicColours,
             CanvasKeys::GraphicAfterTable),
             {"TransparentColorCount"}}, // in the table
            {"canvas",
             [this] { return CanvasGeneral(portfolio, 2); },
             NamesOf(CanvasKeys::General, CanvasKeys::BackgroundColor),
             {"WindowState", "PosX", "PosY", "FormType"}}, // the window's own
            {"fixed",                                           [this] { return FixedSave(portfolio, 2); },                                        fixed,              {}                                                                                                                },
            {"sequential", [this] { return SequentialSave(portfolio, 2); },     keysOf("Sequential"),       {}},
            {"wallpaper",                                         [this] { return Wallpaper(portfolio, 2); },                                             NamesOf(CanvasKeys::Background),                             {}},
            {"upload",                                         [this] { return FTPUpload(portfolio, 2); },                                             NamesOf(CanvasKeys::FTPPushKeys),                                     {}                                },
            {"web picture",
             [this] { return WebPicture(portfolio, 2); },
             NamesOf(CanvasKeys::WebServerKeys),
             {}                                                                  },
            {"feed",                                         [this] { return Feed(portfolio, 9); },                                             NamesOf(PortfolioKeys::Feed),     {}                                                                                                },
            {"motion",                                          [this] { return Motion(portfolio, 0); },                                              NamesOf(PortfolioKeys::Motion),                                                 {}},
            {"web",                                         [this] { return Web(portfolio); },                                             NamesOf(PortfolioKeys::Web),                                          {}},
            {"weather",                                         [this] { return Weather(portfolio); },                                             NamesOf(PortfolioKeys::Weather), {}                      },
            {"script",                                         [this] { return Scripting(portfolio); },                                             NamesOf(PortfolioKeys::Scripting),    {}                                                             },
        };
    }

    /// Each row of each set, named in failures.
    void ForEachRow(const std::function<void(PropertySet&, std::size_t, const Property&)>& check) {
        for (const Case& set : Cases()) {
            const Set properties = set.make();
            ASSERT_TRUE(properties->Exists()) << set.name;
            for (std::size_t row = 0; row < properties->Properties().size(); ++row) {
                const Property& property = properties->Properties()[row];
                SCOPED_TRACE(std::string(set.name) + ": " + std::string(property.name));
                check(*properties, row, property);
            }
        }
    }
};

bool IsNumber(PropertyKind kind) {
    return kind == PropertyKind::Whole || kind == PropertyKind::Real || kind == PropertyKind::Percent ||
           kind == PropertyKind::Rate || kind == PropertyKind::Canvas;
}

TEST_F(PropertySetsTest, ShowEveryKeyOfTheFilesOnce) {
    for (const Case& set : Cases()) {
        SCOPED_TRACE(set.name);
        std::multiset<std::string_view> shown;
        const Set properties = set.make();
        for (const Property& property : properties->Properties())
            if (property.kind != PropertyKind::Schedule) shown.insert(property.name);
        Names expected = set.keys;
        for (const std::string_view name : set.left) EXPECT_EQ(expected.erase(name), 1u) << name;
        EXPECT_TRUE(std::ranges::equal(shown, expected));
    }
}

TEST_F(PropertySetsTest, KeepGroupsTogetherAndMnemonicsApart) {
    for (const Case& set : Cases()) {
        const Set properties = set.make();
        std::string_view group;
        Names groups;
        std::set<char> mnemonics;
        for (const Property& property : properties->Properties()) {
            SCOPED_TRACE(std::string(set.name) + ": " + std::string(property.name));
            if (property.group != group) {
                EXPECT_TRUE(groups.insert(group = property.group).second);
            }
            const auto mark = property.label.find('&');
            if (mark != property.label.npos) {
                EXPECT_TRUE(mnemonics.insert(static_cast<char>(property.label[mark + 1] | 32)).second);
            }
            EXPECT_TRUE(property.relevantIf.empty() || properties->Find(property.relevantIf));
            EXPECT_TRUE(property.kind != PropertyKind::Choice || !property.choices.empty());
        }
    }
}

TEST_F(PropertySetsTest, TakeDefaultsAndChoicesAsTheyAre) {
    ForEachRow([](PropertySet& set, std::size_t row, const Property& property) {
        EXPECT_EQ(set.Set(row, std::string(property.fallback)), KeyFault::None);
        const std::string shown = set.Get(row);
        if (IsNumber(property.kind))
            EXPECT_EQ(modNumbers::Str2DblNI(shown), modNumbers::Str2DblNI(property.fallback));
        else
            EXPECT_EQ(shown, property.fallback);
        for (const PropertyChoice& choice : property.choices) {
            EXPECT_EQ(set.Set(row, std::string(choice.value)), KeyFault::None);
            EXPECT_EQ(set.Get(row), choice.value);
        }
        set.Set(row, shown);
    });
}

TEST_F(PropertySetsTest, HaveTheRangesOfTheSetters) {
    ForEachRow([](PropertySet& set, std::size_t row, const Property& property) {
        if (!IsNumber(property.kind)) return;
        const auto check = [&](double value, double stored) {
            set.Set(row, modNumbers::CStrNI(value));
            EXPECT_NEAR(modNumbers::Str2DblNI(set.Get(row)), stored, 1e-9) << value;
        };
        check(property.low - 1, property.low);
        check(property.high, property.high);
        if (property.name == "FrameRate") return;  // has no highest value of its own
        check(property.high + 1, property.high);
        EXPECT_EQ(set.Set(row, "1e99"), KeyFault::OutOfRange);
        EXPECT_NEAR(modNumbers::Str2DblNI(set.Get(row)), property.high, 1e-9);
    });
}

TEST_F(PropertySetsTest, LeaveAloneWhatTheyCannotRead) {
    ForEachRow([](PropertySet& set, std::size_t row, const Property& property) {
        const std::string before = set.Get(row);
        for (const std::string text :
             {"rubbish", "", "&H", "12 to 13", "sunrise to nowhere", "&H0 1", "; ;"}) {
            const KeyFault fault = set.Set(row, text);
            if (fault != KeyFault::None && fault != KeyFault::OutOfRange) {
                EXPECT_EQ(set.Get(row), before) << text;
            }
            EXPECT_TRUE(!IsNumber(property.kind) || fault != KeyFault::None) << text;
            set.Set(row, before);
        }
        EXPECT_EQ(set.Get(row), before);
    });
}

TEST_F(PropertySetsTest, SetSchedulesAndColourTablesByTheirTexts) {
    const Set text = PropertySets::Layer(portfolio, 2, TextLayer);
    const std::size_t schedule = *text->Find("Schedule");
    const std::string window = "1;0;2;0.25;30;-20;0.75;-10;-15.5";
    EXPECT_EQ(text->Set(schedule, window), KeyFault::None);
    EXPECT_EQ(text->Get(schedule), window);
    EXPECT_EQ(text->ScheduleOf(schedule)->Description(), "06:00:00 to sunset-15.5 min");
    EXPECT_EQ(text->Set(schedule, "1;0"), KeyFault::NotANumber);
    EXPECT_EQ(text->Get(schedule), window);
    const Set graphic = PropertySets::Layer(portfolio, 2, GraphicLayer);
    const std::size_t table = *graphic->Find("TransparentColorTable");
    const std::string colours = "&H0000FF &H1020FF 10 0; &HFFFFFF &HFFFFFF 0 50";
    EXPECT_EQ(graphic->Set(table, colours), KeyFault::None);
    EXPECT_EQ(graphic->Get(table), colours);
    EXPECT_EQ(portfolio.Canvas(2).Graphic(100)->TransparentColorCount(), 2);
}

TEST_F(PropertySetsTest, SetSeveralLayersAtOnceInWhatAllHave) {
    Canvas& canvas = portfolio.Canvas(2);
    canvas.AddText(4)->SetFontSize(40);
    canvas.Graphic(100)->SetShadow(true);
    const LayerId another{LayerId::Kind::Text, 4};
    const LayerId twoTexts[] = {TextLayer, another}, both[] = {TextLayer, GraphicLayer};
    const Set texts = PropertySets::Layers(portfolio, 2, twoTexts);
    const std::size_t size = *texts->Find("FontSize");
    EXPECT_TRUE(texts->Mixed(size));
    EXPECT_EQ(texts->Get(size), "40") << "that of the last";
    EXPECT_EQ(texts->Set(size, "999"), KeyFault::OutOfRange);
    EXPECT_FALSE(texts->Mixed(size));
    EXPECT_EQ(canvas.Text(3)->FontSize(), 288);

    const Set joint = PropertySets::Layers(portfolio, 2, both);
    const auto names = [](const PropertySet& set) {
        Names all;
        for (const Property& property : set.Properties()) all.insert(property.name);
        return all;
    };
    Names shared = names(*PropertySets::Layer(portfolio, 2, GraphicLayer));
    std::erase_if(shared, [&](auto name) { return !texts->Find(name) || name == "OpacityMode"; });
    EXPECT_EQ(names(*joint), shared);
    EXPECT_TRUE(joint->Relevant(*joint->Find("ShadowSize"))) << "to one of them";
    const std::size_t interval = *joint->Find("Interval");
    joint->Set(interval, "7");
    EXPECT_FALSE(joint->IsDefault(interval));
    joint->Reset(interval);
    EXPECT_TRUE(joint->IsDefault(interval));
    EXPECT_EQ(canvas.Text(3)->Rate(), 1) << "each its own";
    EXPECT_EQ(canvas.Graphic(100)->Rate(), 10);
    canvas.RemoveGraphic(100);
    EXPECT_EQ(joint->Layers(), std::vector{TextLayer});
    EXPECT_FALSE(joint->Mixed(interval));
    canvas.RemoveText(3);
    EXPECT_FALSE(joint->Exists());
}

TEST_F(PropertySetsTest, OutliveWhatTheyDescribe) {
    for (const Case& set : Cases()) {
        Set properties = set.make();
        if (properties->CanvasSlot() == 0) continue;
        portfolio.ResetCanvas(2);
        EXPECT_FALSE(properties->Exists()) << set.name;
        EXPECT_EQ(properties->Get(0), "");
        properties->Set(0, "True");
        for (std::size_t row = 0; row < properties->Properties().size(); ++row)
            EXPECT_EQ(properties->ScheduleOf(row), nullptr);
    }
    EXPECT_FALSE(PropertySets::CanvasGeneral(portfolio, 21)->Exists());
    EXPECT_FALSE(PropertySets::Motion(portfolio, -1)->Exists());
}

TEST_F(PropertySetsTest, FindTheFeedOfALayerAtOnceAndTheFileOfTheSlot) {
    portfolio.VideoFeed(4).SetFeedName("Roof");
    const Set graphic = PropertySets::Layer(portfolio, 2, GraphicLayer);
    graphic->Set(*graphic->Find("SourceVideoFeedName"), "Roof");
    EXPECT_EQ(portfolio.Canvas(2).Graphic(100)->SourceVideoFeed(), 4);
    const Set upload = PropertySets::FTPUpload(portfolio, 2);
    EXPECT_EQ(upload->Properties()[*upload->Find("FilePath")].fallback, "FTPPush02.jpg");
}

TEST_F(PropertySetsTest, CountNewRatesFromThePresent) {
    constexpr double Day = 1, Minute = 1.0 / 1440;
    CanvasSaves& saves = portfolio.Canvas(2).Saves();
    const double now = portfolio.Now();
    saves.SetFixedNextFrame(now + Day);
    const Set fixed = PropertySets::FixedSave(portfolio, 2);
    fixed->Set(*fixed->Find("FixedFileName"), "other.jpg");
    EXPECT_EQ(saves.FixedNextFrame(), now + Day);
    fixed->Set(*fixed->Find("FixedRate"), "60");
    EXPECT_GT(saves.FixedNextFrame(), now);
    EXPECT_LE(saves.FixedNextFrame(), now + Minute);
}

}  // namespace
}  // namespace tessaloom::testing
