#include <gtest/gtest.h>

#include <random>

#include "model/Documents.h"
#include "model/edit/History.h"
#include "model/edit/Layers.h"
#include "model/edit/PropertySet.h"
#include "publish/CanvasSaves.h"

namespace tessaloom::testing {
namespace {

using Kind = LayerId::Kind;

struct HistoryTest : Documents, ::testing::Test {
    Canvas& canvas = Open(1, 320, 240);
    History history{portfolio, 1};

    std::map<std::string, std::vector<std::string>> Saved() {
        canvas.SetFileName("saved.can");
        canvas.SaveFile();
        auto sections = Contents("saved.can");
        std::erase_if(sections["Capture"], [](auto& line) { return line.starts_with("SequentialNumber"); });
        return sections;
    }

    void Set(std::string_view name, const std::string& value, int text = 1) {
        const auto set = PropertySets::Layer(portfolio, 1, {Kind::Text, text});
        set->Set(*set->Find(name), value);
    }
    void Do(std::string_view name, const std::string& value, std::string_view mergeKey = {}) {
        const HistoryStep step(&history, name, mergeKey);
        Set(name, value);
    }
};

/// Some edit or other, as a person might make it.
class Editor {
public:
    Editor(Portfolio& portfolio, unsigned seed) : portfolio_(portfolio), random_(seed) {}

    void Edit() {
        Canvas& canvas = portfolio_.Canvas(1);
        const std::vector<LayerId> layers = Layers::InDrawingOrder(canvas);
        const LayerId layer = layers.empty() ? LayerId() : layers[Below(layers.size())];
        switch (Below(11)) {
            case 0:
                Layers::AddText(canvas, Below(2) == 0 ? "one\r\n two'" : "<time>", 3, 4, Number(4));
                break;
            case 1:
                Layers::AddGraphic(canvas, Graphic::PlainBlock, "", 5, 6, Number(4));
                break;
            case 2:
                Layers::Remove(canvas, {&layer, 1});
                break;
            case 3:
                Layers::Duplicate(canvas, layers);
                break;
            case 4:
                Layers::Move(canvas, layers, Number(9) - 4, Number(9) - 4);
                break;
            case 5:
                Layers::Reorder(canvas, layer, Number(4), layers.empty() ? layer : layers.front());
                break;
            case 6:
                Layers::Rotate(canvas, layer, Number(360));
                break;
            case 7:
                Layers::Resize(canvas, layer, Number(50), Number(50), 1 + Number(90), 1 + Number(90));
                break;
            case 8:
                ChangeARow(*PropertySets::FTPUpload(portfolio_, 1));
                break;
            case 9:
                ChangeARow(*PropertySets::SequentialSave(portfolio_, 1));
                break;
            default:
                ChangeARow(*PropertySets::Layer(portfolio_, 1, layer));
        }
    }

private:
    std::size_t Below(std::size_t end) { return random_() % end; }
    int Number(int end) { return static_cast<int>(Below(static_cast<std::size_t>(end))); }

    void ChangeARow(PropertySet& set) {
        const char* const values[] = {"True",       "3",        "&H0000FF FF",
                                      "06:30:15",   "a file",   "1;1;2;0;5;0;0;0;-5",
                                      "two\nlines", "&H123456", "&H010203 &H040506 7 8; &H0 &H0 9 10"};
        set.Set(Below(set.Properties().size()), values[Below(std::size(values))]);
    }

    Portfolio& portfolio_;
    std::mt19937 random_;
};

TEST_F(HistoryTest, UndoesToTheBeginningAndRedoesToTheEnd) {
    for (unsigned seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        History fresh(portfolio, 1);
        Editor editor(portfolio, seed);
        const auto start = Saved();
        for (int edit = 0; edit < 25; ++edit) {
            const HistoryStep step(&fresh, "Edit");
            editor.Edit();
        }
        const auto end = Saved();
        while (fresh.CanUndo()) fresh.Undo();
        EXPECT_EQ(Saved(), start);
        while (fresh.CanRedo()) fresh.Redo();
        EXPECT_EQ(Saved(), end);
        for (const LayerId layer : Layers::InDrawingOrder(canvas)) Layers::Remove(canvas, {&layer, 1});
    }
}

TEST_F(HistoryTest, LeavesAloneWhatOthersChanged) {
    canvas.AddText(1);
    Do("FontSize", "30");
    Set("Color", "&H123456");  // a script
    canvas.Saves().SetSequentialNumber(7);
    history.Undo();
    EXPECT_EQ(canvas.Text(1)->FontSize(), 14);
    EXPECT_EQ(canvas.Text(1)->Color(), 0x123456);
    EXPECT_EQ(canvas.Saves().SequentialNumber(), 7);
    canvas.RemoveText(1);
    history.Redo();
    EXPECT_EQ(canvas.Text(1), nullptr);
    {
        const HistoryStep step(&history, "Remove");
        canvas.RemoveText(1);  // nothing to remove: no step
    }
    EXPECT_EQ(history.UndoName(), "FontSize");
    portfolio.ResetCanvas(1);
    history.Undo();
    EXPECT_TRUE(history.CanUndo());  // no canvas, nothing undone
}

TEST_F(HistoryTest, MergesStepsThatBelongTogether) {
    canvas.AddText(1);
    int told = 0;
    history.OnChanged([&] { ++told; });
    const int start = history.Position();
    Do("LocationX", "1", "move");
    Do("LocationY", "2", "move");
    Do("LocationX", "5", "move");
    history.Seal();
    Do("LocationX", "9", "move");
    const int end = history.Position();
    history.Undo();
    EXPECT_EQ(canvas.Text(1)->x(), 5);
    history.Undo();
    EXPECT_EQ(canvas.Text(1)->x(), 0);
    EXPECT_EQ(canvas.Text(1)->Y(), 0);
    EXPECT_EQ(history.Position(), start);
    history.Redo();
    Do("LocationX", "8", "move");  // never merged with what was redone
    EXPECT_NE(history.Position(), end);
    EXPECT_FALSE(history.CanRedo());
    history.Undo();
    EXPECT_EQ(canvas.Text(1)->x(), 5);
    EXPECT_EQ(told, 9);
}

TEST_F(HistoryTest, CountsOnlyTheOutermostStepAndPutsBackACancelledOne) {
    canvas.AddText(1);
    history.Begin("Outer");
    Do("Text", "inner");
    Set("FontBold", "True");
    history.End();
    EXPECT_EQ(history.UndoName(), "Outer");
    history.Begin("Drag");
    Set("LocationX", "50");
    Layers::AddText(canvas, "new", 0, 0);
    history.Cancel();
    EXPECT_EQ(canvas.Text(1)->x(), 0);
    EXPECT_EQ(canvas.Text(2), nullptr);
    history.Undo();
    EXPECT_FALSE(canvas.Text(1)->FontBold());
    EXPECT_EQ(canvas.Text(1)->Value(), "");
    EXPECT_FALSE(history.CanUndo());
}

}  // namespace
}  // namespace tessaloom::testing
